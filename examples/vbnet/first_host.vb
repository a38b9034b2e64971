' A first host in VB.NET, early-bound: members are called through the interop of the type library.
'
' Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
'         An output is a variable of its type: Double, Short, String. An array is an Array of strings.
'         Engine and database are late-bound, which Option Strict would not allow.
' Build   vbc /r:Interop.ArdObjects100.dll first_host.vb
'         after: tlbimp ArdObjects100.dll /namespace:ArdObjects100 /sysarray /out:Interop.ArdObjects100.dll
'         or, in Visual Studio, a COM reference to "Core Accounts Integration".
'         /platform:x86 is for the 32-bit library, /platform:x64 for the 64-bit one.
' Run     first_host [COMPANY [CONNECTION]]
' Checked not at all: Debian has no compiler of VB.NET. The same calls in C#, against the same interop, are
'         compiled.
Option Explicit On
Option Strict Off
Imports System
Imports System.Globalization
Imports ArdObjects100

Module FirstHost
  ' Your own accounts engine, company and database go here.
  Const EngineClass As String = "ArdSimulator.Engine"
  Const DemoCompany As String = "C:\companies\demo"
  Const DemoConnection As String = "Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db"
  ' Access:      "Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb"
  ' SQL Server:  "Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
  ' No database: ""

  Private engine As Object
  Private database As Object
  Private accounts As Customers
  Private stock As Products
  Private company As General
  Private quantityFormat As String = ""
  Private priceFormat As String = ""

  ' The objects live on this thread, which has windows.
  <STAThread>
  Sub Main(arguments As String())
    Dim folder = If(arguments.Length > 0, arguments(0), DemoCompany)
    Dim connection = If(arguments.Length > 1, arguments(1), DemoConnection)
    engine = CreateObject(EngineClass)
    engine.Open(folder)
    If connection <> "" Then
      database = CreateObject("ADODB.Connection")
      database.Open(connection)
    End If

    Dim session As New Messaging With {
      .AppName = "Manufacturing",
      .RegistryPath = "First Host",
      .ArdDataPath = folder,
      .UniqueID = "FIRST",
      .ArdEngine = engine,
      .ArdWorkspace = engine.Workspace,
      .oDBaseConn = database,
      .UseAccRights = database IsNot Nothing
    }
    If Not session.CheckForLogon() Then
      Console.WriteLine("Not logged on")
      Return
    End If
    Console.WriteLine("Logged on: " & session.UserLogged)

    accounts = New Customers With {.AppName = session.AppName, .ArdWorkspace = engine.Workspace}
    stock = New Products With {
      .AppName = session.AppName,
      .RegistryPath = session.RegistryPath,
      .ArdWorkspace = engine.Workspace,
      .oDBaseConn = database
    }
    company = New General With {.ArdWorkspace = engine.Workspace}
    Dim quantityPlaces, pricePlaces As Short
    company.GetDPSettings(quantityPlaces, pricePlaces, quantityFormat, priceFormat)

    AskAboutCustomer("ABC001")
    AskAboutCustomer("NOBODY")
    AskAboutProduct("SHELF-1200X600", "ABC001")
    Console.WriteLine("Decimal places: {0} of quantities, {1} of prices", quantityPlaces, pricePlaces)
    AskAboutTax("ABC001")
    Pick()
    Allocate("SHELF-1200X600")

    session.LogoffUser()
    Console.WriteLine("Logged off")
  End Sub

  Sub AskAboutCustomer(reference As String)
    ' Nothing throws: what is not there has an empty name.
    Console.WriteLine("Customer {0}: {1}", reference,
                      If(accounts.IsValid(reference), accounts.GetName(reference), "not known"))
  End Sub

  Sub AskAboutProduct(code As String, customer As String)
    Dim allocated, onOrder As Double
    stock.GetAllocOnOrder(code, allocated, onOrder)
    Console.WriteLine("Product {0}: {1}", code, stock.GetDesc(code))
    Console.WriteLine("Free {0}, allocated {1}, on order {2}", Quantity(stock.GetFreeStock(code)),
                      Quantity(allocated), Quantity(onOrder))
    Console.WriteLine("Price {0}, for {1} {2}", Price(stock.GetSellPrice(code)), customer,
                      Price(stock.GetSpecialPrice(code, customer)))
    Console.WriteLine("Last bought: {0}; LOCKER-3D300 on {1}", LastBought(code), LastBought("LOCKER-3D300"))
  End Sub

  Function LastBought(code As String) As String
    Dim bought = stock.GetLastPurDate(code)
    ' The zero date stands for none.
    Return If(bought = DateTime.FromOADate(0), "never", bought.ToString("yyyy-MM-dd"))
  End Function

  Sub AskAboutTax(customer As String)
    Dim record As New CustomerRecord With {.ArdWorkspace = engine.Workspace}
    If record.Read(customer) Then
      Console.WriteLine("Tax of {0}: {1} %, {2}", customer, Price(company.GetVatRate(record.TaxCode)),
                        company.GetVatDesc(record.TaxCode).Trim())
    End If
    ' The library fills the elements that there are, here those of codes 0 to 2.
    Dim codes As Array = New String(2) {}
    company.GetTaxCodes(codes)
    Console.WriteLine("Tax codes: " & String.Join(", ", CType(codes, String())))
  End Sub

  Sub Pick()
    ' The list opens on the first customer that matches.
    Dim customer = accounts.List("SMI*")
    Console.WriteLine("Picked customer: " &
                      If(customer = "", "none", customer & ", " & accounts.GetName(customer)))
    ' An optional argument is left out.
    Dim product = stock.FastList()
    Console.WriteLine("Picked product: " & If(product = "", "none", product))
  End Sub

  Sub Allocate(code As String)
    If stock.UpdateAllocQty(code, 6) Then Console.WriteLine("6 more: allocated " & Allocated(code))
    If Not stock.UpdateAllocQty(code, 1000) Then Console.WriteLine("1000 more: refused")
    If stock.UpdateAllocQty(code, -6) Then Console.WriteLine("6 less: allocated " & Allocated(code))
  End Sub

  Function Allocated(code As String) As String
    Dim quantities, onOrder As Double
    stock.GetAllocOnOrder(code, quantities, onOrder)
    Return Quantity(quantities)
  End Function

  Function Quantity(value As Double) As String
    Return value.ToString(quantityFormat, CultureInfo.InvariantCulture)
  End Function

  Function Price(value As Double) As String
    Return value.ToString(priceFormat, CultureInfo.InvariantCulture)
  End Function
End Module
