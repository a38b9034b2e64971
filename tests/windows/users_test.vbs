' The users' side as a script host uses it: a session from the first logon to the last, whose dialogs
' and messages tests/windows/users_test.sh works by keys, and every member of Messaging,
' cAccessRights and General that belongs to it.
' Arguments: a copy of the demo company and of the demo database, both to be written to.
Option Explicit

Dim passed, failed, folder, engine, connection, session
passed = 0
failed = 0
folder = WScript.Arguments(0)

Set engine = CreateObject("ArdSimulator.Engine")
engine.Open folder
Set connection = CreateObject("ADODB.Connection")
connection.Open "Driver=SQLite3;Database=" & WScript.Arguments(1)

Logons
AccessTable
Rights
Users
AccountsProgram
Check "no file is left open", engine.OpenFiles, 0
Check "no object is left", engine.LivingObjects, 0
Check "no recordset is left", connection.OpenRecordsets, 0
connection.Close
WScript.Echo passed & " passed, " & failed & " failed"
If failed > 0 Then WScript.Quit 1

' A session as a host begins it.
Sub Begin
  Set session = CreateObject("ArdObjects100.Messaging")
  session.AppName = "Manufacturing"
  session.RegistryPath = "Manufacturing Users Test"
  session.CompanyName = "Acme"
  session.ArdDataPath = folder
  session.UniqueID = "A1"
  session.ProgPath = "C:\Host"
  session.UseAccRights = True
  Set session.ArdEngine = engine
  Set session.ArdWorkspace = engine.Workspace
  Set session.oDBaseConn = connection
End Sub

Sub Logons
  Begin
  engine.HoldExclusively True
  Check "held exclusively", session.CheckForLogon, False
  engine.HoldExclusively False
  Check "a refusal, then ANNE", session.CheckForLogon, True
  Check "UserLogged", session.UserLogged, "anne"
  Check "PassLogged", session.PassLogged, "Rivet7"
  Check "the engine's user", engine.User, "ANNE"
  Check "LogoffUser", session.LogoffUser, True
  Check "nobody is logged on", engine.User, ""
  Begin
  Check "ANNE again, remembered", session.CheckForLogon(False), True
  Check "UserLogged again", session.UserLogged, "anne"
  session.LogoffUser
  Check "cancelled", session.CheckForLogon, False
  Check "CheckUserAccess", session.CheckUserAccess, True
  Check "GetPassword", session.GetPassword, ""
  Check "UseAccRights", session.UseAccRights, True
  Check "ProgPath", session.ProgPath, "C:\Host"
  Check "CompanyName", session.CompanyName, "Acme"
End Sub

Sub AccessTable
  Dim before
  before = engine.Disconnects
  Check "Visitor is not in the table", session.LogonUser("Visitor", ""), False
  Check "Disconnect", engine.Disconnects, before + 1
  connection.Execute "DELETE FROM AccessRights"
  Check "manager, with an empty table", session.LogonUser(" manager ", ""), True
  Check "still one Disconnect", engine.Disconnects, before + 1
  session.LogoffUser
  connection.Execute "DROP TABLE AccessRights"
  Check "no table", session.LogonUser("BRIAN", ""), False
  Set session.oDBaseConn = engine
  Check "another kind of object", session.LogonUser("BRIAN", ""), False
  Check "nobody got in", engine.User, ""
  Check "PoAccess", session.PoAccess("BRIAN"), True
  Check "PoAccess, denied", session.PoAccess("CLAIRE"), False
End Sub

Sub Rights
  Dim access, show
  Set access = CreateObject("ArdObjects100.cAccessRights")
  access.AppName = "Manufacturing"
  Set access.ArdWorkspace = engine.Workspace
  Check "may open products", access.IsUserAllowedAccess("derek", 4), True
  Check "may not open bank accounts", access.IsUserAllowedAccess("derek", 3), False
  show = True
  Check "nor when told so", access.IsUserAllowedAccess("derek", 3, show), False
  Check "the manager may", access.IsUserAllowedAccess("Manager", 3, True), True
  Check "IsValid", access.IsValid("visitor"), True
  Check "AddUser", access.AddUser("NEWCOMER"), True
  Check "and is one", access.IsValid("newcomer"), True
  Check "List", access.List, "ANNE"
End Sub

Sub Users
  Dim general, name, machine
  Set general = NewGeneral
  Check "GetNumActiveUsers", general.GetNumActiveUsers, 3
  name = "MANAGER"
  machine = ""
  Check "GetNumActiveUsersInclDet", general.GetNumActiveUsersInclDet(name, machine), 3
  Check "sUserName", name, "ANNE"
  Check "sMachName", machine, "OFFICE-04"
  general.ShowUserList True
  general.ShowUserList False
End Sub

Sub AccountsProgram
  Dim general, items(1)
  Set general = NewGeneral
  items(0) = "host.exe"
  Check "AddEntryToIniFile", _
    general.AddEntryToIniFile(items, "C:\windows", "Host", "host.bmp", "host.exe"), True
  Check "again", general.AddEntryToIniFile(items, "C:\windows", "Host", "host.bmp", "host.exe"), True
  Check "IsF12Hide", general.IsF12Hide, False
  Check "GetF11Program", general.GetF11Program, "CONTROL.EXE"
  Check "IsArdExclusive", general.IsArdExclusive(folder), False
  Check "IsArdExclusive, no such folder", general.IsArdExclusive(folder & "\none"), True
  Check "CreateAccountsShortcut", general.CreateAccountsShortcut(0, "C:\Accounts", folder & "\"), _
    folder & "\RunAccounts.lnk"
  Check "for another version", general.CreateAccountsShortcut(0, "C:\Accounts", folder, 14), ""
End Sub

Function NewGeneral
  Set NewGeneral = CreateObject("ArdObjects100.General")
  NewGeneral.AppName = "Manufacturing"
  Set NewGeneral.ArdEngine = engine
  Set NewGeneral.ArdWorkspace = engine.Workspace
  Set NewGeneral.oDBaseConn = connection
End Function

Sub Check(name, value, expected)
  If value = expected Then
    passed = passed + 1
  Else
    failed = failed + 1
    WScript.Echo "not ok - " & name & ": " & value & ", not " & expected
  End If
End Sub
