# A first host in PowerShell.
#
# Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
#         An output is a variable with a type, passed as [ref]; so is an array.
# Run     powershell -Sta -ExecutionPolicy Bypass -File first_host.ps1 [COMPANY [CONNECTION]]
#         The PowerShell of SysWOW64 is the one for the 32-bit library.
# Checked not at all: Debian has no PowerShell.
param(
  # Your own company and database go here, and below your own accounts engine.
  [string]$Company = 'C:\companies\demo',
  [string]$Connection = 'Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db'
  # Access:      'Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb'
  # SQL Server:  'Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes'
  # No database: ''
)
$EngineClass = 'ArdSimulator.Engine'
Set-StrictMode -Version Latest
$ErrorActionPreference = 'Stop'

# An object of the library's: each needs the engine's workspace.
function New-Ard([string]$Name) {
  $object = New-Object -ComObject "ArdObjects100.$Name"
  $object.ArdWorkspace = $engine.Workspace
  $object
}

function Format-Quantity([double]$Value) { $Value.ToString($quantityFormat, [cultureinfo]::InvariantCulture) }
function Format-Price([double]$Value) { $Value.ToString($priceFormat, [cultureinfo]::InvariantCulture) }

function Show-Customer([string]$Reference) {
  # Nothing throws: what is not there has an empty name.
  if ($customers.IsValid($Reference)) { "Customer ${Reference}: $($customers.GetName($Reference))" }
  else { "Customer ${Reference}: not known" }
}

function Show-Product([string]$Code, [string]$Customer) {
  [double]$allocated = 0
  [double]$onOrder = 0
  $products.GetAllocOnOrder($Code, [ref]$allocated, [ref]$onOrder)
  "Product ${Code}: $($products.GetDesc($Code))"
  "Free $(Format-Quantity ($products.GetFreeStock($Code))), allocated $(Format-Quantity $allocated), " +
  "on order $(Format-Quantity $onOrder)"
  "Price $(Format-Price ($products.GetSellPrice($Code))), " +
  "for $Customer $(Format-Price ($products.GetSpecialPrice($Code, $Customer)))"
  "Last bought: $(Get-LastBought $Code); LOCKER-3D300 on $(Get-LastBought 'LOCKER-3D300')"
}

function Get-LastBought([string]$Code) {
  $date = $products.GetLastPurDate($Code)
  # The zero date stands for none.
  if ($date -eq [datetime]::FromOADate(0)) { 'never' } else { $date.ToString('yyyy-MM-dd') }
}

function Show-Tax([string]$Customer) {
  $record = New-Ard CustomerRecord
  if ($record.Read($Customer)) {
    "Tax of ${Customer}: $(Format-Price ($general.GetVatRate($record.TaxCode))) %, " +
    $general.GetVatDesc($record.TaxCode).Trim()
  }
  # The library fills the elements that there are, here those of codes 0 to 2.
  $codes = [string[]]::new(3)
  $general.GetTaxCodes([ref]$codes)
  'Tax codes: ' + ($codes -join ', ')
}

function Show-Picked {
  # The list opens on the first customer that matches.
  $customer = $customers.List('SMI*')
  if ($customer) { "Picked customer: $customer, $($customers.GetName($customer))" }
  else { 'Picked customer: none' }
  # An optional argument is left out.
  $product = $products.FastList()
  if ($product) { "Picked product: $product" } else { 'Picked product: none' }
}

function Get-Allocated([string]$Code) {
  [double]$allocated = 0
  [double]$onOrder = 0
  $products.GetAllocOnOrder($Code, [ref]$allocated, [ref]$onOrder)
  Format-Quantity $allocated
}

function Update-Allocation([string]$Code) {
  if ($products.UpdateAllocQty($Code, 6)) { "6 more: allocated $(Get-Allocated $Code)" }
  if (-not $products.UpdateAllocQty($Code, 1000)) { '1000 more: refused' }
  if ($products.UpdateAllocQty($Code, -6)) { "6 less: allocated $(Get-Allocated $Code)" }
}

$engine = New-Object -ComObject $EngineClass
$engine.Open($Company)
$database = $null
if ($Connection) {
  $database = New-Object -ComObject ADODB.Connection
  $database.Open($Connection)
}

$session = New-Ard Messaging
$session.AppName = 'Manufacturing'
$session.RegistryPath = 'First Host'
$session.ArdDataPath = $Company
$session.UniqueID = 'FIRST'
$session.ArdEngine = $engine
$session.oDBaseConn = $database
$session.UseAccRights = $null -ne $database
if (-not $session.CheckForLogon()) {
  'Not logged on'
  exit 1
}
"Logged on: $($session.UserLogged)"

$customers = New-Ard Customers
$customers.AppName = $session.AppName
$products = New-Ard Products
$products.AppName = $session.AppName
$products.RegistryPath = $session.RegistryPath
$products.oDBaseConn = $database
$general = New-Ard General
[int16]$quantityPlaces = 0
[int16]$pricePlaces = 0
[string]$quantityFormat = ''
[string]$priceFormat = ''
$general.GetDPSettings([ref]$quantityPlaces, [ref]$pricePlaces, [ref]$quantityFormat, [ref]$priceFormat)

Show-Customer 'ABC001'
Show-Customer 'NOBODY'
Show-Product 'SHELF-1200X600' 'ABC001'
"Decimal places: $quantityPlaces of quantities, $pricePlaces of prices"
Show-Tax 'ABC001'
Show-Picked
Update-Allocation 'SHELF-1200X600'

[void]$session.LogoffUser()
'Logged off'
