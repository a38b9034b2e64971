' Products as a script host uses them: every member, its outputs in the script's own variables, and
' the lists, which tests/windows/products_test.sh works by keys.
' Arguments: a copy of the demo company and of the demo database, both to be written to.
Option Explicit

Const PATH = "Manufacturing Test"
Dim passed, failed, engine, products, connection
passed = 0
failed = 0

Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)
Set connection = CreateObject("ADODB.Connection")
connection.Open "Driver=SQLite3;Database=" & WScript.Arguments(1)
Set products = CreateObject("ArdObjects100.Products")
products.AppName = "Manufacturing"
products.RegistryPath = PATH
Set products.ArdWorkspace = engine.Workspace
Set products.oDBaseConn = connection

Queries
Outputs
Prices
Writes
Lists
WithoutStores
Check "no file is left open", engine.OpenFiles, 0
Check "no object is left", engine.LivingObjects, 0
Check "no recordset is left", connection.OpenRecordsets, 0
connection.Close
WScript.Echo passed & " passed, " & failed & " failed"
If failed > 0 Then WScript.Quit 1

Sub Queries
  Check "IsValid", products.IsValid("LOCK-CAM"), True
  Check "IsValid, unknown", products.IsValid("LOCK"), False
  Check "GetDesc", products.GetDesc("LOCK-CAM"), "Cam Lock 20mm, Keyed Alike"
  Check "GetDept", products.GetDept("LOCK-CAM"), 4
  Check "GetDept is an Integer", TypeName(products.GetDept("LOCK-CAM")), "Integer"
  Check "GetCategory", products.GetCategory("LOCK-CAM"), 2
  Check "IsMemberOfCategory", products.IsMemberOfCategory("LOCK-CAM", 2), True
  Check "GetBinLocation", RTrim(products.GetBinLocation("LOCK-CAM")), "G2-01"
  Check "GetSupplier", RTrim(products.GetSupplier("LOCK-CAM")), "SCA001"
  Check "GetSupplierPart", RTrim(products.GetSupplierPart("LOCK-CAM")), "SC27380"
  Check "GetUnitSale", RTrim(products.GetUnitSale("LOCK-CAM")), "Each"
  Check "GetInStock", products.GetInStock("LOCK-CAM"), 118
  Check "GetInStock is a Double", TypeName(products.GetInStock("LOCK-CAM")), "Double"
  Check "GetFreeStock", products.GetFreeStock("LOCK-CAM"), 107
  Check "GetReOrderLevel", products.GetReOrderLevel("LOCK-CAM"), 22
  Check "GetReOrderQty", products.GetReOrderQty("LOCK-CAM"), 44
  Check "GetLastPurDate", products.GetLastPurDate("LOCK-CAM"), DateSerial(2026, 6, 5)
  Check "GetLastPurDate is a Date", TypeName(products.GetLastPurDate("NONE")), "Date"
  Check "IgnoreStock", products.IgnoreStock("LOCK-CAM"), False
  Check "ShowSpecialProds starts False", products.ShowSpecialProds, False
End Sub

Sub Outputs
  Dim allocated, onOrder, supplier, reorder
  allocated = "mine"
  onOrder = 7
  products.GetAllocOnOrder "NONE", 1, onOrder
  Check "an output is left alone", onOrder, 7
  allocated = Empty
  products.GetAllocOnOrder "LOCK-CAM", allocated, onOrder
  Check "Allocated", allocated, 11
  Check "OnOrder", onOrder, 0
  products.GetSupplierOnOrder "BOLT-M6X60", supplier, onOrder, reorder
  Check "Supplier", RTrim(supplier), "ALL001"
  Check "MinReOrder", reorder, 1000
End Sub

Sub Prices
  Dim record
  Check "GetSellPrice", products.GetSellPrice("LOCK-CAM"), 4.11
  Check "GetCostPrice", products.GetCostPrice("LOCK-CAM", False), 2.35
  Check "GetSpecialPrice", products.GetSpecialPrice("LOCK-CAM", "NOBODY"), 4.11
  Check "GetSupplierPrice", products.GetSupplierPrice("LOCK-CAM", "NOBODY"), 2.35
  Set record = engine.Workspace.CreateRecordObject("StockRecord")
  record.Fields.Item("STOCK_CODE").Value = "HINGE-100"
  Check "the record is found", record.Find(False), True
  Check "GetAveragePrice", products.GetAveragePrice(record), 2.75
  Check "GetAveragePrice of Nothing", products.GetAveragePrice(Nothing), 0
End Sub

Sub Writes
  Check "UpdateAllocQty, too much", products.UpdateAllocQty("LOCK-CAM", 107.5), False
  Check "UpdateAllocQty", products.UpdateAllocQty("LOCK-CAM", 107), True
  Check "CopyProduct", products.CopyProduct("LOCK-CAM", "COPY", "A copy"), True
  Check "SaveNewProduct", products.SaveNewProduct("BLANK"), True
  Check "CreateNewProduct", products.CreateNewProduct("GIVEN", " Given "), "Given"
  Check "CreateNewProduct, asking", products.CreateNewProduct("ASKED"), "Typed in"
End Sub

Sub Lists
  products.ShowSpecialProds = True
  Check "FastList", products.FastList(), "S2"
  products.ShowSpecialProds = False
  Check "List", products.List("LOCK"), "LOCK-BAR"
  Check "FastList, remembered page", products.FastList(), "CAB-2D-GR"
  Check "ListMultipleSelect", products.ListMultipleSelect(""), ";ABRASIVE-D125;ABRASIVE-F40;ABRASIVE-ROLL;"
  Check "List without product information, cancelled", products.List("LOCK", False), ""
End Sub

' The stock list is there without a database, and the dialog without an engine.
Sub WithoutStores
  Set products.oDBaseConn = Nothing
  Check "List without a database", products.List("LOCK"), "LOCK-3PT"
  Set products.ArdWorkspace = Nothing
  Check "FastList without an engine", products.FastList(), ""
End Sub

Sub Check(what, ByVal found, expected)
  If found = expected Then
    passed = passed + 1
    WScript.Echo "ok - " & what
  Else
    failed = failed + 1
    WScript.Echo "not ok - " & what & ": " & found & ", expected " & expected
  End If
End Sub
