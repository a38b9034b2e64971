Attribute VB_Name = "FirstHost"
' A first host in VBA, early-bound.
'
' Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
'         An output is a variable of exactly its type: Double, Integer, String. An array is one of String
'         that has its bounds already.
' Run     File > Import File... in the editor of Excel, Access or another program, Tools > References...
'         with a tick at "Core Accounts Integration", then FirstHost from the immediate window (Ctrl+G).
' Checked not in any program with VBA. What is left of it as VBScript (types, conditions and
'         CreateObject for New aside) is run under Wine, with the 64-bit and the 32-bit library.
Option Explicit

' Your own accounts engine, company and database go here.
Private Const ENGINE_CLASS As String = "ArdSimulator.Engine"
Private Const COMPANY As String = "C:\companies\demo"
Private Const CONNECTION As String = "Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db"
' Access:      "Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb"
' SQL Server:  "Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
' No database: ""

' The library, engine and database drivers have to be those for the bits of Office, not of Windows. From
' VBA7 (Office 2010) on, Office may be 64-bit; the library itself is used in the same way.
#If VBA7 And Win64 Then
Private Const BITS As String = "64-bit"
#Else
Private Const BITS As String = "32-bit"
#End If

Private engine As Object
Private database As Object
Private customers As ArdObjects100.Customers
Private products As ArdObjects100.Products
Private general As ArdObjects100.General
Private quantityFormat As String
Private priceFormat As String

Public Sub FirstHost()
  Dim session As ArdObjects100.Messaging
  Dim quantityPlaces As Integer
  Dim pricePlaces As Integer

  Set engine = Create(ENGINE_CLASS)
  engine.Open COMPANY
  Set database = Nothing
  If CONNECTION <> "" Then
    Set database = Create("ADODB.Connection")
    database.Open CONNECTION
  End If

  Set session = New ArdObjects100.Messaging
  session.AppName = "Manufacturing"
  session.RegistryPath = "First Host"
  session.ArdDataPath = COMPANY
  session.UniqueID = "FIRST"
  Set session.ArdEngine = engine
  Set session.ArdWorkspace = engine.Workspace
  Set session.oDBaseConn = database
  session.UseAccRights = Not database Is Nothing
  If Not session.CheckForLogon() Then
    Debug.Print "Not logged on"
    Exit Sub
  End If
  Debug.Print "Logged on: " & session.UserLogged

  Set customers = New ArdObjects100.Customers
  customers.AppName = session.AppName
  Set customers.ArdWorkspace = engine.Workspace
  Set products = New ArdObjects100.Products
  products.AppName = session.AppName
  products.RegistryPath = session.RegistryPath
  Set products.ArdWorkspace = engine.Workspace
  Set products.oDBaseConn = database
  Set general = New ArdObjects100.General
  Set general.ArdWorkspace = engine.Workspace
  general.GetDPSettings quantityPlaces, pricePlaces, quantityFormat, priceFormat

  AskAboutCustomer "ABC001"
  AskAboutCustomer "NOBODY"
  AskAboutProduct "SHELF-1200X600", "ABC001"
  Debug.Print "Decimal places: " & quantityPlaces & " of quantities, " & pricePlaces & " of prices"
  AskAboutTax "ABC001"
  Pick
  Allocate "SHELF-1200X600"

  session.LogoffUser
  Debug.Print "Logged off"
End Sub

' An object known by name only, or in words why there is none.
Private Function Create(ByVal name As String) As Object
  On Error Resume Next
  Set Create = CreateObject(name)
  If Err.Number <> 0 Then Debug.Print name & " is not registered for " & BITS & " programs"
End Function

Private Sub AskAboutCustomer(ByVal reference As String)
  ' Nothing raises an error: what is not there has an empty name.
  If customers.IsValid(reference) Then
    Debug.Print "Customer " & reference & ": " & customers.GetName(reference)
  Else
    Debug.Print "Customer " & reference & ": not known"
  End If
End Sub

Private Sub AskAboutProduct(ByVal code As String, ByVal customer As String)
  Dim allocated As Double
  Dim onOrder As Double
  products.GetAllocOnOrder code, allocated, onOrder
  Debug.Print "Product " & code & ": " & products.GetDesc(code)
  Debug.Print "Free " & Format(products.GetFreeStock(code), quantityFormat) & _
    ", allocated " & Format(allocated, quantityFormat) & ", on order " & Format(onOrder, quantityFormat)
  Debug.Print "Price " & Format(products.GetSellPrice(code), priceFormat) & ", for " & customer & " " & _
    Format(products.GetSpecialPrice(code, customer), priceFormat)
  Debug.Print "Last bought: " & LastBought(code) & "; LOCKER-3D300 on " & LastBought("LOCKER-3D300")
End Sub

Private Function LastBought(ByVal code As String) As String
  Dim bought As Date
  bought = products.GetLastPurDate(code)
  ' The zero date stands for none.
  If bought = 0 Then
    LastBought = "never"
  Else
    LastBought = Format(bought, "yyyy-mm-dd")
  End If
End Function

Private Sub AskAboutTax(ByVal customer As String)
  Dim record As ArdObjects100.CustomerRecord
  Dim codes(0 To 2) As String
  Set record = New ArdObjects100.CustomerRecord
  Set record.ArdWorkspace = engine.Workspace
  If record.Read(customer) Then
    Debug.Print "Tax of " & customer & ": " & Format(general.GetVatRate(record.TaxCode), priceFormat) & _
      " %, " & Trim(general.GetVatDesc(record.TaxCode))
  End If
  ' The library fills the elements that there are, here those of codes 0 to 2.
  general.GetTaxCodes codes
  Debug.Print "Tax codes: " & codes(0) & ", " & codes(1) & ", " & codes(2)
End Sub

Private Sub Pick()
  Dim picked As String
  ' The list opens on the first customer that matches.
  picked = customers.List("SMI*")
  If picked = "" Then
    Debug.Print "Picked customer: none"
  Else
    Debug.Print "Picked customer: " & picked & ", " & customers.GetName(picked)
  End If
  ' An optional argument is left out.
  picked = products.FastList()
  If picked = "" Then picked = "none"
  Debug.Print "Picked product: " & picked
End Sub

Private Sub Allocate(ByVal code As String)
  If products.UpdateAllocQty(code, 6) Then Debug.Print "6 more: allocated " & Allocated(code)
  If Not products.UpdateAllocQty(code, 1000) Then Debug.Print "1000 more: refused"
  If products.UpdateAllocQty(code, -6) Then Debug.Print "6 less: allocated " & Allocated(code)
End Sub

Private Function Allocated(ByVal code As String) As String
  Dim quantities As Double
  Dim onOrder As Double
  products.GetAllocOnOrder code, quantities, onOrder
  Allocated = Format(quantities, quantityFormat)
End Function
