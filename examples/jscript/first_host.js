// A first host in JScript.
//
// Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
//         JScript hands out the values of its variables, never the variables, so nothing can be put out
//         to one. An object is handed out itself: the library puts an output into its property value,
//         and fills an array.
// Run     cscript //nologo first_host.js [COMPANY [CONNECTION]]
//         %windir%\SysWOW64\cscript.exe is the one for the 32-bit library.
// Checked run under Wine, with the 64-bit and the 32-bit library.

// Your own accounts engine, company and database go here.
var ENGINE_CLASS = "ArdSimulator.Engine";
var COMPANY = "C:\\companies\\demo";
var CONNECTION = "Driver={SQLite3 ODBC Driver};Database=C:\\companies\\host.db";
// Access:      "Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\\companies\\host.accdb"
// SQL Server:  "Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
// No database: ""

var engine = new ActiveXObject(ENGINE_CLASS);
engine.Open(setting(0, COMPANY));
var database = null;
if (setting(1, CONNECTION) != "") {
  database = new ActiveXObject("ADODB.Connection");
  database.Open(setting(1, CONNECTION));
}

var session = create("Messaging");
session.AppName = "Manufacturing";
session.RegistryPath = "First Host";
session.ArdDataPath = setting(0, COMPANY);
session.UniqueID = "FIRST";
session.ArdEngine = engine;
session.oDBaseConn = database;
session.UseAccRights = database != null;

if (session.CheckForLogon()) {
  WScript.Echo("Logged on: " + session.UserLogged);
  var customers = create("Customers");
  customers.AppName = session.AppName;
  var products = create("Products");
  products.AppName = session.AppName;
  products.RegistryPath = session.RegistryPath;
  products.oDBaseConn = database;
  var general = create("General");
  var quantityPlaces = {}, pricePlaces = {};
  general.GetDPSettings(quantityPlaces, pricePlaces, {}, {});

  askAboutCustomers();
  askAboutProduct("SHELF-1200X600", "ABC001");
  askAboutSettings("ABC001");
  pick();
  allocate("SHELF-1200X600");

  session.LogoffUser();
  WScript.Echo("Logged off");
} else {
  WScript.Echo("Not logged on");
}

function askAboutCustomers() {
  var references = ["ABC001", "NOBODY"];
  for (var i = 0; i < references.length; ++i) {
    // Nothing raises an error: what is not there has an empty name.
    var known = customers.IsValid(references[i]);
    WScript.Echo("Customer " + references[i] + ": " +
                 (known ? customers.GetName(references[i]) : "not known"));
  }
}

function askAboutProduct(code, customer) {
  var allocated = {}, onOrder = {};
  products.GetAllocOnOrder(code, allocated, onOrder);
  WScript.Echo("Product " + code + ": " + products.GetDesc(code));
  WScript.Echo("Free " + quantity(products.GetFreeStock(code)) + ", allocated " +
               quantity(allocated.value) + ", on order " + quantity(onOrder.value));
  WScript.Echo("Price " + price(products.GetSellPrice(code)) + ", for " + customer + " " +
               price(products.GetSpecialPrice(code, customer)));
  WScript.Echo("Last bought: " + lastBought(code) + "; LOCKER-3D300 on " + lastBought("LOCKER-3D300"));
}

function lastBought(code) {
  var day = new Date(products.GetLastPurDate(code));
  // The zero date, 30 December 1899, stands for none.
  if (day.getFullYear() < 1900) return "never";
  return day.getFullYear() + "-" + twoDigits(day.getMonth() + 1) + "-" + twoDigits(day.getDate());
}

function twoDigits(number) {
  return (number < 10 ? "0" : "") + number;
}

function askAboutSettings(customer) {
  WScript.Echo("Decimal places: " + quantityPlaces.value + " of quantities, " + pricePlaces.value +
               " of prices");
  var record = create("CustomerRecord");
  if (record.Read(customer)) {
    WScript.Echo("Tax of " + customer + ": " + price(general.GetVatRate(record.TaxCode)) + " %, " +
                 general.GetVatDesc(record.TaxCode).replace(/ +$/, ""));
  }
  // The library fills the elements that there are, here those of codes 0 to 2.
  var codes = new Array(3);
  general.GetTaxCodes(codes);
  WScript.Echo("Tax codes: " + codes.join(", "));
}

function pick() {
  // The list opens on the first customer that matches.
  var customer = customers.List("SMI*");
  WScript.Echo("Picked customer: " +
               (customer == "" ? "none" : customer + ", " + customers.GetName(customer)));
  // An optional argument is left out.
  WScript.Echo("Picked product: " + (products.FastList() || "none"));
}

function allocate(code) {
  if (products.UpdateAllocQty(code, 6)) WScript.Echo("6 more: allocated " + allocated(code));
  if (!products.UpdateAllocQty(code, 1000)) WScript.Echo("1000 more: refused");
  if (products.UpdateAllocQty(code, -6)) WScript.Echo("6 less: allocated " + allocated(code));
}

function allocated(code) {
  var quantities = {};
  products.GetAllocOnOrder(code, quantities, {});
  return quantity(quantities.value);
}

function quantity(value) {
  return value.toFixed(quantityPlaces.value);
}

function price(value) {
  return value.toFixed(pricePlaces.value);
}

// An object of the library's: each needs the engine's workspace.
function create(name) {
  var object = new ActiveXObject("ArdObjects100." + name);
  object.ArdWorkspace = engine.Workspace;
  return object;
}

function setting(number, otherwise) {
  return WScript.Arguments.length > number ? WScript.Arguments(number) : otherwise;
}
