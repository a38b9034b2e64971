' Every member of Suppliers, Nominal, Bank, the record objects, the orders, the company's settings and
' cDeliveryAddress, and the discounts of Customers, as a script host uses them. Their dialogs are
' worked by tests/windows/ledgers_test.sh. Argument: the folder of the demo company.
Option Explicit

Dim passed, failed, engine
passed = 0
failed = 0
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)

Ledgers
Records
Orders
Settings
Discounts
Addresses
Check "no file is left open", engine.OpenFiles, 0
Check "no object is left", engine.LivingObjects, 0
WScript.Echo passed & " passed, " & failed & " failed"
If failed > 0 Then WScript.Quit 1

Function Create(name)
  Set Create = CreateObject("ArdObjects100." & name)
  Set Create.ArdWorkspace = engine.Workspace
End Function

Sub Ledgers
  Dim suppliers, nominal, bank
  Set suppliers = Create("Suppliers")
  suppliers.AppName = "Manufacturing"
  Check "Suppliers.IsValid", suppliers.IsValid("SCA001"), True
  Check "Suppliers.GetName", suppliers.GetName("SCA001"), "Scandia Locks AB"
  Check "Suppliers.GetDiscPercent", suppliers.GetDiscPercent("ANG001"), 5
  Check "Suppliers.FastList", suppliers.FastList(), "ANG001"
  Check "Suppliers.List", suppliers.List("K*"), "KET001"
  Set nominal = Create("Nominal")
  Check "Nominal.IsValid", nominal.IsValid("0010"), True
  Check "Nominal.FastList", nominal.FastList(), "0010"
  Check "Nominal.List, a control account", nominal.List("1100"), ""
  Set bank = Create("Bank")
  Check "Bank.IsValid", bank.IsValid("1233"), True
  Check "Bank.FastList, the twelfth", bank.FastList(), "1250"
  Check "Bank.List", bank.List("126*"), "1265"
End Sub

Sub Records
  Dim customer, supplier
  Set customer = Create("CustomerRecord")
  Check "Read", customer.Read("SMI001"), True
  Check "Name", customer.Name, "Smith & Barnes Instruments Ltd"
  Check "Read, unknown", customer.Read("?"), False
  Check "Name, still", customer.Name, "Smith & Barnes Instruments Ltd"
  customer.Name = "of Name"
  Check "Name", customer.Name, "of Name"
  customer.Address1 = "of Address1"
  Check "Address1", customer.Address1, "of Address1"
  customer.Address2 = "of Address2"
  Check "Address2", customer.Address2, "of Address2"
  customer.Address3 = "of Address3"
  Check "Address3", customer.Address3, "of Address3"
  customer.Address4 = "of Address4"
  Check "Address4", customer.Address4, "of Address4"
  customer.Address5 = "of Address5"
  Check "Address5", customer.Address5, "of Address5"
  customer.DelAddress1 = "of DelAddress1"
  Check "DelAddress1", customer.DelAddress1, "of DelAddress1"
  customer.DelAddress2 = "of DelAddress2"
  Check "DelAddress2", customer.DelAddress2, "of DelAddress2"
  customer.DelAddress3 = "of DelAddress3"
  Check "DelAddress3", customer.DelAddress3, "of DelAddress3"
  customer.DelAddress4 = "of DelAddress4"
  Check "DelAddress4", customer.DelAddress4, "of DelAddress4"
  customer.DelAddress5 = "of DelAddress5"
  Check "DelAddress5", customer.DelAddress5, "of DelAddress5"
  customer.TelNumber = "of TelNumber"
  Check "TelNumber", customer.TelNumber, "of TelNumber"
  customer.ContactName = "of ContactName"
  Check "ContactName", customer.ContactName, "of ContactName"
  customer.NominalCode = "of NominalCode"
  Check "NominalCode", customer.NominalCode, "of NominalCode"
  customer.DueDays = "7"
  Check "DueDays", customer.DueDays, 7
  customer.SettDiscount = "7"
  Check "SettDiscount", customer.SettDiscount, 7
  customer.TaxCode = "7"
  Check "TaxCode", customer.TaxCode, 7
  customer.Department = "7"
  Check "Department", customer.Department, 7
  Set supplier = Create("SupplierRecord")
  Check "Read", supplier.Read("SCA001"), True
  Check "a name with its blanks", Len(supplier.Name), 60
  supplier.Name = "of Name"
  Check "Name", supplier.Name, "of Name"
  supplier.ContactName = "of ContactName"
  Check "ContactName", supplier.ContactName, "of ContactName"
  supplier.DefNomCode = "of DefNomCode"
  Check "DefNomCode", supplier.DefNomCode, "of DefNomCode"
  supplier.DefTaxCode = 7
  Check "DefTaxCode", supplier.DefTaxCode, 7
  supplier.DeptNumber = 7
  Check "DeptNumber", supplier.DeptNumber, 7
End Sub

Sub Orders
  Dim sales, purchases
  Set sales = Create("SalesOrders")
  Check "GetAccName", Trim(sales.GetAccName(4001)), "Northern Gymnasium Supplies"
  Check "GetAccRef", Trim(sales.GetAccRef(4001)), "NOR001"
  Check "SalesOrders.List", sales.List(), 4002
  Check "SalesOrders.FastList", sales.FastList(), "4001"
  sales.RegistryPath = "r"
  Check "RegistryPath", sales.RegistryPath, "r"
  Set purchases = Create("PurchaseOrders")
  Check "GetAccRef", Trim(purchases.GetAccRef(701)), "RUB001"
  Check "GetOrderDate", purchases.GetOrderDate(750), DateSerial(2026, 3, 15)
  Check "GetOrderDate, unknown", CDbl(purchases.GetOrderDate(1)), 0
  Check "IsValid", purchases.IsValid(702, False), True
  Check "IsValid, posted", purchases.IsValid(702, True), False
  Check "PurchaseOrders.List, cancelled", purchases.List(), 0
  Check "PurchaseOrders.FastList", purchases.FastList(), "701"
End Sub

Sub Settings
  Dim general, codes(99), few(3), names, quantity, unit, quantityFormat, unitFormat
  Set general = Create("General")
  few(0) = 5
  general.GetTaxCodes codes
  Check "T1", codes(1), "T1   20.00"
  Check "T20", codes(20), "T20 0.00"
  Check "T99", codes(99), "T99 0.00"
  general.GetCategories few
  Check "category 3", few(3), "3   Sheet and Section"
  ReDim names(2)
  general.GetDepartments names
  Check "department 2", names(2), "2   Shelving Shop"
  Check "as many as before", UBound(names), 2
  general.GetDPSettings quantity, unit, quantityFormat, unitFormat
  Check "decimals", quantity & unit & quantityFormat & unitFormat, "220.000.00"
  Check "GetVatRate", general.GetVatRate(15), 17.5
  Check "GetVatDesc", Trim(general.GetVatDesc(1)), "Standard rate"
  Check "GetVatRate, unknown", general.GetVatRate(100), 0
End Sub

Sub Discounts
  Dim customers
  Set customers = Create("Customers")
  Check "GetDiscPercent, value", customers.GetDiscPercent("SMI001", "CAB-FIRE", 10, 651), 15
  Check "GetDiscPercent, table", customers.GetDiscPercent("ADD001", "CAB-FIRE", 30, 651), 12.5
  customers.ShowDiscBDown "ADD001", "CAB-FIRE", 30, 651, 20, 2
End Sub

Sub Addresses
  Dim address, kind
  Set address = Create("cDeliveryAddress")
  address.AppName = "Manufacturing"
  Check "Description starts empty", address.Description, ""
  Check "GetAddress()", address.GetAddress(), True
  Check "Description", Trim(address.Description), "Works"
  kind = 1
  Check "GetAddress, by position", address.GetAddress("SMI001", "Smith", kind), True
  Check "AccountRef", Trim(address.AccountRef), "SMI001"
  Check "AddressRef", Trim(address.AddressRef), "3"
  Check "GetAddress, without the first two", address.GetAddress(, , 1), True
  Check "AccountRef", Trim(address.AccountRef), "ADD001"
  Check "Name", Trim(address.Name), "Addison Lifts (Northern) Ltd"
  Check "GetAddress, cancelled", address.GetAddress("", "", kind), False
  Check "the kind that was asked for", kind, 1
  Check "all properties", address.Telephone <> "" And address.Reference <> "" And address.Fax <> "" _
    And address.EMail <> "" And address.ContactName <> "" And address.Address1 <> "" _
    And address.Address2 <> "" And address.Address3 <> "" And address.Address4 <> "" _
    And address.Address5 <> "", True
  Check "DefaultRef", address.DefaultRef, "1"
End Sub

Sub Check(what, ByVal found, expected)
  If found = expected Then
    passed = passed + 1
  Else
    failed = failed + 1
    WScript.Echo "not ok - " & what & ": " & found & ", not " & expected
  End If
End Sub
