' A first host in VBScript.
'
' Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
'         Any variable takes an output; an array is dimensioned by the host, and filled.
' Run     cscript //nologo first_host.vbs [COMPANY [CONNECTION]]
'         %windir%\SysWOW64\cscript.exe is the one for the 32-bit library.
' Checked run under Wine, with the 64-bit and the 32-bit library.
Option Explicit

' Your own accounts engine, company and database go here.
Const ENGINE_CLASS = "ArdSimulator.Engine"
Const COMPANY = "C:\companies\demo"
Const CONNECTION = "Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db"
' Access:      "Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb"
' SQL Server:  "Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
' No database: ""

Dim engine, database, session, customers, products, general, quantityPlaces, pricePlaces

Set engine = CreateObject(ENGINE_CLASS)
engine.Open Setting(0, COMPANY)
Set database = Nothing
If Setting(1, CONNECTION) <> "" Then
  Set database = CreateObject("ADODB.Connection")
  database.Open Setting(1, CONNECTION)
End If

Set session = Create("Messaging")
session.AppName = "Manufacturing"
session.RegistryPath = "First Host"
session.ArdDataPath = Setting(0, COMPANY)
session.UniqueID = "FIRST"
Set session.ArdEngine = engine
Set session.oDBaseConn = database
session.UseAccRights = Not database Is Nothing

If session.CheckForLogon() Then
  WScript.Echo "Logged on: " & session.UserLogged
  Set customers = Create("Customers")
  customers.AppName = session.AppName
  Set products = Create("Products")
  products.AppName = session.AppName
  products.RegistryPath = session.RegistryPath
  Set products.oDBaseConn = database
  Set general = Create("General")
  general.GetDPSettings quantityPlaces, pricePlaces, Empty, Empty

  AskAboutCustomers
  AskAboutProduct "SHELF-1200X600", "ABC001"
  AskAboutSettings "ABC001"
  Pick
  Allocate "SHELF-1200X600"

  session.LogoffUser
  WScript.Echo "Logged off"
Else
  WScript.Echo "Not logged on"
End If

Sub AskAboutCustomers
  Dim reference
  For Each reference In Array("ABC001", "NOBODY")
    ' Nothing raises an error: what is not there has an empty name.
    If customers.IsValid(reference) Then
      WScript.Echo "Customer " & reference & ": " & customers.GetName(reference)
    Else
      WScript.Echo "Customer " & reference & ": not known"
    End If
  Next
End Sub

Sub AskAboutProduct(code, customer)
  Dim allocated, onOrder
  products.GetAllocOnOrder code, allocated, onOrder
  WScript.Echo "Product " & code & ": " & products.GetDesc(code)
  WScript.Echo "Free " & Quantity(products.GetFreeStock(code)) & ", allocated " & _
    Quantity(allocated) & ", on order " & Quantity(onOrder)
  WScript.Echo "Price " & Price(products.GetSellPrice(code)) & ", for " & customer & " " & _
    Price(products.GetSpecialPrice(code, customer))
  WScript.Echo "Last bought: " & LastBought(code) & "; LOCKER-3D300 on " & LastBought("LOCKER-3D300")
End Sub

Function LastBought(code)
  Dim bought
  bought = products.GetLastPurDate(code)
  ' The zero date stands for none.
  If CDbl(bought) = 0 Then
    LastBought = "never"
  Else
    LastBought = Year(bought) & "-" & Right("0" & Month(bought), 2) & "-" & Right("0" & Day(bought), 2)
  End If
End Function

Sub AskAboutSettings(customer)
  Dim record, codes(2)
  WScript.Echo "Decimal places: " & quantityPlaces & " of quantities, " & pricePlaces & " of prices"
  Set record = Create("CustomerRecord")
  If record.Read(customer) Then
    WScript.Echo "Tax of " & customer & ": " & Price(general.GetVatRate(record.TaxCode)) & " %, " & _
      Trim(general.GetVatDesc(record.TaxCode))
  End If
  ' The library fills the elements that there are, here those of codes 0 to 2.
  general.GetTaxCodes codes
  WScript.Echo "Tax codes: " & codes(0) & ", " & codes(1) & ", " & codes(2)
End Sub

Sub Pick
  Dim picked
  ' The list opens on the first customer that matches.
  picked = customers.List("SMI*")
  If picked = "" Then
    WScript.Echo "Picked customer: none"
  Else
    WScript.Echo "Picked customer: " & picked & ", " & customers.GetName(picked)
  End If
  ' An optional argument is left out.
  picked = products.FastList()
  If picked = "" Then picked = "none"
  WScript.Echo "Picked product: " & picked
End Sub

Sub Allocate(code)
  If products.UpdateAllocQty(code, 6) Then WScript.Echo "6 more: allocated " & Allocated(code)
  If Not products.UpdateAllocQty(code, 1000) Then WScript.Echo "1000 more: refused"
  If products.UpdateAllocQty(code, -6) Then WScript.Echo "6 less: allocated " & Allocated(code)
End Sub

Function Allocated(code)
  Dim quantities
  products.GetAllocOnOrder code, quantities, Empty
  Allocated = Quantity(quantities)
End Function

Function Quantity(value)
  Quantity = FormatNumber(value, quantityPlaces, vbTrue, vbFalse, vbFalse)
End Function

Function Price(value)
  Price = FormatNumber(value, pricePlaces, vbTrue, vbFalse, vbFalse)
End Function

' An object of the library's: each needs the engine's workspace.
Function Create(name)
  Set Create = CreateObject("ArdObjects100." & name)
  Set Create.ArdWorkspace = engine.Workspace
End Function

Function Setting(number, otherwise)
  Setting = otherwise
  If WScript.Arguments.Count > number Then Setting = WScript.Arguments(number)
End Function
