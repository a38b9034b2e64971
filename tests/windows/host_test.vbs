' The library as a script host uses it, late-bound. Argument: the folder of the demo company.
Option Explicit

Dim passed, failed
passed = 0
failed = 0

Classes
ContextProperties
LookUps
Mistakes

WScript.Echo passed & " passed, " & failed & " failed"
If failed > 0 Then WScript.Quit 1

Sub Classes
  Dim name, created
  For Each name In Array("CustomerRecord", "Messaging", "SupplierRecord", "General", "Products", _
                         "Bank", "Customers", "Nominal", "PurchaseOrders", "SalesOrders", _
                         "Suppliers", "cAccessRights", "cDeliveryAddress")
    On Error Resume Next
    created = IsObject(CreateObject("ArdObjects100." & name))
    On Error GoTo 0
    Check name & " can be created", created, True
    created = False
  Next
End Sub

Sub ContextProperties
  Dim general, first, second, long_text
  Set general = CreateObject("ArdObjects100.General")
  Set first = CreateObject("ArdObjects100.Bank")
  Set second = CreateObject("ArdObjects100.Nominal")
  Check "AppName starts empty", general.AppName, ""
  Check "ArdEngine starts as Nothing", general.ArdEngine Is Nothing, True

  general.AppName = "Manufacturing"
  general.RegistryPath = "Software\" & Chr(0) & "x"
  Set general.ArdWorkspace = first
  Set general.ArdEngine = second
  general.oDBaseConn = first
  Check "AppName", general.AppName, "Manufacturing"
  Check "RegistryPath", general.RegistryPath, "Software\" & Chr(0) & "x"
  Check "ArdWorkspace is the object given", general.ArdWorkspace Is first, True
  Check "ArdEngine is the object given", general.ArdEngine Is second, True
  Check "oDBaseConn is the object given without Set", general.oDBaseConn Is first, True

  general.AppName = 12.5
  Check "a number becomes text", general.AppName, CStr(12.5)
  long_text = String(1048576, "x")
  general.AppName = long_text
  Check "a long text", general.AppName = long_text, True
  Set general.ArdWorkspace = Nothing
  Check "Nothing", general.ArdWorkspace Is Nothing, True
End Sub

Sub LookUps
  Dim engine, customers, accRef
  Set engine = CreateObject("ArdSimulator.Engine")
  Set customers = CreateObject("ArdObjects100.Customers")
  Check "GetName without a workspace", customers.GetName("ACE001"), ""
  Check "IsValid without a workspace", customers.IsValid("ACE001"), False

  engine.Open WScript.Arguments(0)
  Set customers.ArdWorkspace = engine.Workspace
  accRef = "ACE001"
  Check "IsValid", customers.IsValid(accRef), True
  Check "IsValid is Boolean", TypeName(customers.IsValid(accRef)), "Boolean"
  Check "GetName", customers.GetName(accRef), "Ace Shopfitting Ltd"
  Check "GetName of an expression", customers.GetName("ACE" & "001"), "Ace Shopfitting Ltd"
  Check "GetContact", customers.GetContact(accRef), "Derek Coombes"
  Check "the argument is left alone", accRef, "ACE001"
  Check "GetName of an unknown account", customers.GetName("ZZZ999"), ""
  Check "IsValid of an empty variable", customers.IsValid(Empty), False
  Check "no file is left open", engine.OpenFiles, 0
  Check "no object is left", engine.LivingObjects, 0

  engine.FailFrom 1, True
  Check "GetName while the engine fails", customers.GetName(accRef), ""
  Check "IsValid while the engine fails", customers.IsValid(accRef), False
  engine.FailFrom 0, False
  Check "GetName after that", customers.GetName(accRef), "Ace Shopfitting Ltd"
End Sub

Sub Mistakes
  Dim customers
  Set customers = CreateObject("ArdObjects100.Customers")
  On Error Resume Next
  customers.GetName
  CheckError "too few arguments", 450
  customers.GetName "a", "b"
  CheckError "too many arguments", 450
  customers.GetName Null
  CheckError "an argument of the wrong type", 13
  customers.NoSuchMember
  CheckError "an unknown member", 438
End Sub

Sub Check(what, found, expected)
  If found = expected Then
    passed = passed + 1
    WScript.Echo "ok - " & what
  Else
    failed = failed + 1
    WScript.Echo "not ok - " & what & ": " & found & ", expected " & expected
  End If
End Sub

Sub CheckError(what, number)
  Dim found
  found = Err.Number
  Err.Clear
  Check what, found, number
End Sub
