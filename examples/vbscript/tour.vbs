' A host in VBScript: asks the library everything it can answer, and lets the user pick.
'
'   cscript //nologo tour.vbs COMPANY_FOLDER DATABASE_FILE
Option Explicit

' How the host's database is opened: the first of these that works, with the file's name behind it.
' "Driver={Microsoft Access Driver (*.mdb, *.accdb)};DBQ=" would be for a database of Access,
' "Driver={SQL Server};Server=(local);Trusted_Connection=Yes;Database=" for one of a server.
Dim drivers
drivers = Array("Driver=SQLite3;Database=", "Driver={SQLite3 ODBC Driver};Database=")

Dim engine, workspace, connection, session

If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 2 Then
  WScript.Echo "usage: cscript //nologo tour.vbs COMPANY_FOLDER [DATABASE_FILE]"
  WScript.Quit 2
End If
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)
Set workspace = engine.Workspace
Set connection = Nothing
If WScript.Arguments.Count = 2 Then OpenDatabase WScript.Arguments(1)

If LogOn Then
  TourOfCustomers
  TourOfProducts
  TourOfLedgers
  TourOfSettings
  TourOfUsers
  Show "LogoffUser()", session.LogoffUser()
End If
WScript.Echo " "
WScript.Echo "Engine files left open: " & engine.OpenFiles
If Not connection Is Nothing Then connection.Close

Sub OpenDatabase(file)
  Dim driver, said
  Set connection = CreateObject("ADODB.Connection")
  For Each driver In drivers
    On Error Resume Next
    connection.Open driver & file
    If Err.Number = 0 Then Exit Sub
    said = said & vbCrLf & "  " & driver & ": " & Err.Description
    On Error GoTo 0
  Next
  WScript.Echo "No driver opens " & file & ":" & said
  WScript.Quit 1
End Sub

' As a host starts: nothing is asked before somebody has logged on.
Function LogOn
  Set session = CreateObject("ArdObjects100.Messaging")
  session.AppName = "Manufacturing"
  session.RegistryPath = "Manufacturing Demo"
  session.CompanyName = "Brackenridge Fabrications"
  session.ArdDataPath = WScript.Arguments(0)
  session.UniqueID = "TOUR"
  ' Who may do what is in the host's database.
  session.UseAccRights = Not connection Is Nothing
  Set session.ArdEngine = engine
  Set session.ArdWorkspace = workspace
  Set session.oDBaseConn = connection

  WScript.Echo "Logon"
  WScript.Echo "  In the demo company: ANNE, with the password Rivet7; any other password is refused."
  LogOn = session.CheckForLogon()
  Show "CheckForLogon()", LogOn
  Show "UserLogged", session.UserLogged
End Function

Sub TourOfUsers
  Dim general, rights, name, machine
  Set general = CreateObject("ArdObjects100.General")
  general.AppName = "Manufacturing"
  Set general.ArdWorkspace = workspace
  Set general.ArdEngine = engine
  Set general.oDBaseConn = connection
  Set rights = CreateObject("ArdObjects100.cAccessRights")
  rights.AppName = "Manufacturing"
  Set rights.ArdWorkspace = workspace

  WScript.Echo "Users"
  Show "IsArdExclusive", general.IsArdExclusive(WScript.Arguments(0))
  Show "GetF11Program", general.GetF11Program()
  Show "GetNumActiveUsers", general.GetNumActiveUsers()
  name = session.UserLogged
  Show "GetNumActiveUsersInclDet", general.GetNumActiveUsersInclDet(name, machine)
  Show "  the first other one", name
  Show "  at", machine
  Show "IsUserAllowedAccess(""HELEN"", customers)", rights.IsUserAllowedAccess("HELEN", 0)
  Show "IsUserAllowedAccess(""manager"", customers)", rights.IsUserAllowedAccess("manager", 0)
  Show "PoAccess(""CLAIRE"")", session.PoAccess("CLAIRE")
  WScript.Echo "  The list of users opens: look at both pages, then close it."
  general.ShowUserList True
End Sub

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

Sub TourOfProducts
  Dim products, code, allocated, onOrder, supplier, reorder
  Set products = CreateObject("ArdObjects100.Products")
  products.AppName = "Manufacturing"
  products.RegistryPath = "Manufacturing Demo"
  Set products.ArdWorkspace = workspace
  Set products.oDBaseConn = connection

  WScript.Echo "Products"
  For Each code In Array("CAB-COSHH", "RACK-M1800", "NOTHING")
    Show "IsValid(""" & code & """)", products.IsValid(code)
    Show "GetDesc(""" & code & """)", products.GetDesc(code)
    Show "GetFreeStock(""" & code & """)", products.GetFreeStock(code)
    Show "GetSellPrice(""" & code & """)", products.GetSellPrice(code)
    Show "GetCostPrice(""" & code & """, True)", products.GetCostPrice(code, True)
    Show "GetSpecialPrice(""" & code & """, ""ABC001"")", products.GetSpecialPrice(code, "ABC001")
  Next
  Show "GetSupplierPrice(""BOLT-M6X60"", ""ALL001"")", products.GetSupplierPrice("BOLT-M6X60", "ALL001")
  products.GetSupplierOnOrder "BOLT-M6X60", supplier, onOrder, reorder
  Show "GetSupplierOnOrder: Supplier", supplier
  Show "  OnOrder", onOrder
  Show "  MinReOrder", reorder
  products.GetAllocOnOrder "BOLT-M6X60", allocated, onOrder
  Show "GetAllocOnOrder: Allocated", allocated
  Show "UpdateAllocQty(""BOLT-M6X60"", 36)", products.UpdateAllocQty("BOLT-M6X60", 36)
  Show "CopyProduct(...)", products.CopyProduct("BOLT-M6X60", "BOLT-M6X70", "Hex Bolt M6 x 70")
  Show "GetDesc of the copy", products.GetDesc("BOLT-M6X70")
  Show "GetInStock of the copy", products.GetInStock("BOLT-M6X70")

  WScript.Echo "  The product list opens, special items on top: pick one."
  products.ShowSpecialProds = True
  code = products.FastList()
  Show "FastList()", code
  WScript.Echo "Product: " & code
  WScript.Echo "  It opens again, on CAB: look at both pages, pick from the second."
  Show "List(""CAB"")", products.List("CAB")
  WScript.Echo "  And once more: pick several."
  products.ShowSpecialProds = False
  Show "ListMultipleSelect("""")", products.ListMultipleSelect("")
  WScript.Echo "  A new product is asked for its description."
  Show "CreateNewProduct(""BOLT-M6X75"")", products.CreateNewProduct("BOLT-M6X75")
  Show "GetUnitSale(""BOLT-M6X75"")", products.GetUnitSale("BOLT-M6X75")
End Sub

' An object of a class, with the context that all of them carry.
Function Create(name)
  Set Create = CreateObject("ArdObjects100." & name)
  Set Create.ArdWorkspace = workspace
End Function

Sub TourOfLedgers
  Dim customers, suppliers, nominal, bank, sales, purchases, record, order
  Set customers = Create("Customers")
  Set suppliers = Create("Suppliers")
  suppliers.AppName = "Manufacturing"
  Set nominal = Create("Nominal")
  Set bank = Create("Bank")
  WScript.Echo "Ledgers"
  Show "GetDiscPercent(ADD001, CAB-FIRE, 30, 651)", customers.GetDiscPercent("ADD001", "CAB-FIRE", 30, 651)
  WScript.Echo "  How that comes about is shown: close it."
  customers.ShowDiscBDown "ADD001", "CAB-FIRE", 30, 651, 20, 2
  Show "Suppliers.GetName(""SCA001"")", suppliers.GetName("SCA001")
  WScript.Echo "  The lists of suppliers, nominal and bank accounts open, one after the other: pick."
  Show "Suppliers.FastList()", suppliers.FastList()
  Show "Nominal.FastList()", nominal.FastList()
  WScript.Echo "  A control account is refused: cancel then."
  Show "Nominal.List(""1100"")", nominal.List("1100")
  Show "Bank.FastList()", bank.FastList()
  Show "Bank.List(""12*"")", bank.List("12*")
  Set record = Create("CustomerRecord")
  Show "CustomerRecord.Read(""SMI001"")", record.Read("SMI001")
  Show "  Name", record.Name
  Show "  DueDays", record.DueDays
  Set record = Create("SupplierRecord")
  Show "SupplierRecord.Read(""SCA001"")", record.Read("SCA001")
  Show "  DefNomCode", record.DefNomCode

  Set sales = Create("SalesOrders")
  Set purchases = Create("PurchaseOrders")
  WScript.Echo "Orders"
  Show "SalesOrders.GetAccName(4001)", sales.GetAccName(4001)
  Show "PurchaseOrders.GetOrderDate(750)", purchases.GetOrderDate(750)
  Show "PurchaseOrders.IsValid(702, True)", purchases.IsValid(702, True)
  WScript.Echo "  The lists of sales and purchase orders open: pick."
  Show "SalesOrders.FastList()", sales.FastList()
  Show "PurchaseOrders.FastList()", purchases.FastList()
End Sub

Sub TourOfSettings
  Dim general, taxCodes(99), address, quantityDP, unitDP, quantityFormat, unitFormat
  Set general = Create("General")
  WScript.Echo "Settings"
  general.GetTaxCodes taxCodes
  Show "GetTaxCodes: T1", taxCodes(1)
  Show "  T20", taxCodes(20)
  general.GetDPSettings quantityDP, unitDP, quantityFormat, unitFormat
  Show "GetDPSettings", quantityFormat & " and " & unitFormat
  Show "GetVatRate(15)", general.GetVatRate(15)
  Set address = Create("cDeliveryAddress")
  address.AppName = "Manufacturing"
  WScript.Echo "  The delivery addresses of SMI001 open: look at the details of one, pick it."
  Show "GetAddress(""SMI001"", , 1)", address.GetAddress("SMI001", , 1)
  Show "Description", Trim(address.Description)
  Show "Address1", Trim(address.Address1)
End Sub

' One call and its answer, as a literal.
Sub Show(expression, ByVal answer)
  If VarType(answer) = vbString Then answer = """" & Replace(answer, """", """""") & """"
  WScript.Echo "  " & expression & " = " & answer
End Sub
