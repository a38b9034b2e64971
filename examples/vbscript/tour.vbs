' A host in VBScript: asks the library everything it can answer, and lets the user pick.
'
'   cscript //nologo tour.vbs COMPANY_FOLDER
Option Explicit

Dim engine, workspace

If WScript.Arguments.Count <> 1 Then
  WScript.Echo "usage: cscript //nologo tour.vbs COMPANY_FOLDER"
  WScript.Quit 2
End If
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)
Set workspace = engine.Workspace

TourOfCustomers
WScript.Echo ""
WScript.Echo "Engine files left open: " & engine.OpenFiles

Sub TourOfCustomers
  Dim customers, reference
  Set customers = CreateObject("ArdObjects100.Customers")
  customers.AppName = "Manufacturing"
  customers.RegistryPath = "Manufacturing"
  Set customers.ArdWorkspace = workspace

  WScript.Echo "Customers"
  Show "AppName", customers.AppName
  Show "RegistryPath", customers.RegistryPath
  Show "ArdWorkspace Is workspace", customers.ArdWorkspace Is workspace
  For Each reference In Array("ABC001", "abc001", "NOBODY")
    Show "IsValid(""" & reference & """)", customers.IsValid(reference)
    Show "GetName(""" & reference & """)", customers.GetName(reference)
    Show "GetContact(""" & reference & """)", customers.GetContact(reference)
  Next
  WScript.Echo "  The customer list opens: pick one."
  reference = customers.FastList()
  Show "FastList()", reference
  WScript.Echo "Customer: " & reference
  WScript.Echo "  It opens again, on the first reference that starts with S: cancel it."
  Show "List(""S*"")", customers.List("S*")
End Sub

' One call and its answer, as a literal.
Sub Show(expression, ByVal answer)
  If VarType(answer) = vbString Then answer = """" & Replace(answer, """", """""") & """"
  WScript.Echo "  " & expression & " = " & answer
End Sub
