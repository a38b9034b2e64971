' A host that uses its variables again, whatever they have held before.
'
'   used_variables.vbs <folder of the demo company>
Dim engine, products, general, rights, held, a, b, c, d
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)
Set products = CreateObject("ArdObjects100.Products")
Set products.ArdWorkspace = engine.Workspace
Set general = CreateObject("ArdObjects100.General")
Set general.ArdWorkspace = engine.Workspace
Set rights = CreateObject("ArdObjects100.cAccessRights")

On Error Resume Next
For Each held In Array("", Null, Empty, "text", "7", 7, True, #2026-11-21#, engine)
  Refill
  products.GetSupplierOnOrder "LOCK-CAM", a, b, c
  Tell TypeName(held) & ": " & Described(a) & Described(b) & Described(c)
  Refill
  general.GetDPSettings a, b, c, d
  Tell Described(a) & Described(b) & Described(c) & Described(d)
Next
a = Array(1, 2)
products.GetAllocOnOrder "LOCK-CAM", a, b
Tell "an array"
a = "text"
rights.IsUserAllowedAccess "manager", 0, a
Tell "a text for a Boolean that is only read"
a = "0"
b = rights.IsUserAllowedAccess("manager", 0, a)
Tell Described(a) & Described(b)

Sub Refill
  If IsObject(held) Then
    Set a = held: Set b = held: Set c = held: Set d = held
  Else
    a = held: b = held: c = held: d = held
  End If
End Sub

Function Described(value)
  Described = "[" & TypeName(value) & " " & value & "]"
End Function

Sub Tell(text)
  If Err.Number <> 0 Then text = text & " failed with " & Err.Number
  Err.Clear
  WScript.Echo text
End Sub
