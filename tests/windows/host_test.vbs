' What is a script host's own: its arrays and variables, its mistakes, and an engine in trouble.
' That the members answer as they should is asked by tests/windows/answers_test.sh.
' Argument: the folder of the demo company.
Option Explicit

Dim passed, failed, engine, folder
passed = 0
failed = 0
folder = WScript.Arguments(0)
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open folder

Values
Outputs
Mistakes
Trouble
Check "no file is left open", engine.OpenFiles, 0
Check "no object is left", engine.LivingObjects, 0
WScript.Echo passed & " passed, " & failed & " failed"
If failed > 0 Then WScript.Quit 1

Function Create(name)
  Set Create = CreateObject("ArdObjects100." & name)
  Set Create.ArdWorkspace = engine.Workspace
End Function

Sub Values
  Dim customers, general, few(3)
  Set customers = Create("Customers")
  customers.AppName = 12.5
  Check "a number becomes text", customers.AppName, CStr(12.5)
  Check "an empty variable", customers.IsValid(Empty), False
  Check "an expression", customers.GetName("ACE" & "001"), "Ace Shopfitting Ltd"
  Check "a Boolean", TypeName(customers.IsValid("ACE001")), "Boolean"
  Set general = Create("General")
  general.oDBaseConn = customers
  Check "an object without Set", general.oDBaseConn Is customers, True
  few(0) = 5
  general.GetCategories few
  Check "elements of any type", few(3), "3   Sheet and Section"
End Sub

Sub Outputs
  Dim products, allocated, onOrder
  Set products = Create("Products")
  onOrder = 7
  products.GetAllocOnOrder "NONE", 1, onOrder
  Check "an output is left alone", onOrder, 7
  products.GetAllocOnOrder "LOCK-CAM", allocated, onOrder
  Check "or becomes what it is", TypeName(allocated) & allocated & onOrder, "Double110"
  Check "Nothing", products.GetAveragePrice(Nothing), 0
End Sub

Sub Mistakes
  Dim customers
  Set customers = Create("Customers")
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

Sub Trouble
  Dim customers, general
  Set customers = Create("Customers")
  engine.FailFrom 1, True
  Check "while the engine fails", customers.GetName("ACE001"), ""
  engine.FailFrom 0, False
  Check "after that", customers.GetName("ACE001"), "Ace Shopfitting Ltd"
  Set general = Create("General")
  engine.HoldExclusively True
  Check "held exclusively", general.IsArdExclusive(folder), True
  engine.HoldExclusively False
  Check "let go", general.IsArdExclusive(folder), False
End Sub

Sub Check(what, found, expected)
  If found = expected Then
    passed = passed + 1
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
