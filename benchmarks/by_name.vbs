' The time of one look-up of a customer's name by a script, which calls the engine by name.
' Prints nanoseconds. Arguments: folder of the company, account reference, number of look-ups.
Option Explicit

Dim engine, workspace, ref, count, i, found, start

Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)
Set workspace = engine.Workspace
ref = WScript.Arguments(1)
count = CLng(WScript.Arguments(2))

start = Timer
For i = 1 To count
  found = NameOf(ref)
Next
WScript.Echo CLng((Timer - start) * 1000000000 / count)

Function NameOf(accRef)
  Dim record
  Set record = workspace.CreateRecordObject("SalesRecord")
  record.Fields.Item("ACCOUNT_REF").Value = accRef
  If record.Find(False) Then NameOf = Trim(record.Fields.Item("NAME").Value)
End Function
