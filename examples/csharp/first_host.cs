// A first host in C#, early-bound: members are called through the interop of the type library. What C# 4
// calls dynamic does without the interop: dynamic_host.cs.
//
// Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
//         An output is passed by ref, an array as an Array of strings. Engine and database are dynamic.
// Build   csc /r:Interop.ArdObjects100.dll first_host.cs
//         after: tlbimp ArdObjects100.dll /namespace:ArdObjects100 /sysarray /out:Interop.ArdObjects100.dll
//         or, in Visual Studio, a COM reference to "Core Accounts Integration". The same interop as a
//         source, for where there is no tlbimp, is include/ArdObjects100.cs of the developer's archive:
//         compile it with the host, or as a library.
//         /platform:x86 is for the 32-bit library, /platform:x64 for the 64-bit one.
// Run     first_host [COMPANY [CONNECTION]]
// Checked compiled by Mono against the project's interop. Not run.
using System;
using System.Globalization;
using ArdObjects100;

class FirstHost {
  // Your own accounts engine, company and database go here.
  const string EngineClass = "ArdSimulator.Engine";
  const string DemoCompany = @"C:\companies\demo";
  const string DemoConnection = @"Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db";
  // Access:      "Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb"
  // SQL Server:  "Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
  // No database: ""

  readonly string company;
  readonly dynamic engine = Create(EngineClass);
  readonly dynamic database;
  readonly Customers customers = new Customers();
  readonly Products products = new Products();
  readonly General general = new General();
  string quantityFormat = "";
  string priceFormat = "";

  // The objects live on this thread, which has windows.
  [STAThread]
  static void Main(string[] arguments) {
    new FirstHost(arguments.Length > 0 ? arguments[0] : DemoCompany,
                  arguments.Length > 1 ? arguments[1] : DemoConnection).Run();
  }

  static dynamic Create(string name) {
    return Activator.CreateInstance(Type.GetTypeFromProgID(name, true));
  }

  FirstHost(string company, string connection) {
    this.company = company;
    engine.Open(company);
    if (connection == "") return;
    database = Create("ADODB.Connection");
    database.Open(connection);
  }

  void Run() {
    var session = new Messaging {
      AppName = "Manufacturing",
      RegistryPath = "First Host",
      ArdDataPath = company,
      UniqueID = "FIRST",
      ArdEngine = engine,
      ArdWorkspace = engine.Workspace,
      oDBaseConn = database,
      UseAccRights = database != null,
    };
    if (!session.CheckForLogon()) {
      Console.WriteLine("Not logged on");
      return;
    }
    Console.WriteLine("Logged on: " + session.UserLogged);

    customers.AppName = products.AppName = session.AppName;
    products.RegistryPath = session.RegistryPath;
    products.oDBaseConn = database;
    customers.ArdWorkspace = products.ArdWorkspace = general.ArdWorkspace = engine.Workspace;
    short quantityPlaces = 0, pricePlaces = 0;
    general.GetDPSettings(ref quantityPlaces, ref pricePlaces, ref quantityFormat, ref priceFormat);

    AskAboutCustomers();
    AskAboutProduct("SHELF-1200X600", "ABC001");
    Console.WriteLine("Decimal places: {0} of quantities, {1} of prices", quantityPlaces, pricePlaces);
    AskAboutTax("ABC001");
    Pick();
    Allocate("SHELF-1200X600");

    session.LogoffUser();
    Console.WriteLine("Logged off");
  }

  void AskAboutCustomers() {
    foreach (var reference in new[] {"ABC001", "NOBODY"}) {
      // Nothing throws: what is not there has an empty name.
      Console.WriteLine("Customer {0}: {1}", reference,
                        customers.IsValid(reference) ? customers.GetName(reference) : "not known");
    }
  }

  void AskAboutProduct(string code, string customer) {
    double allocated = 0, onOrder = 0;
    products.GetAllocOnOrder(code, ref allocated, ref onOrder);
    Console.WriteLine("Product {0}: {1}", code, products.GetDesc(code));
    Console.WriteLine("Free {0}, allocated {1}, on order {2}", Quantity(products.GetFreeStock(code)),
                      Quantity(allocated), Quantity(onOrder));
    Console.WriteLine("Price {0}, for {1} {2}", Price(products.GetSellPrice(code)), customer,
                      Price(products.GetSpecialPrice(code, customer)));
    Console.WriteLine("Last bought: {0}; LOCKER-3D300 on {1}", LastBought(code), LastBought("LOCKER-3D300"));
  }

  string LastBought(string code) {
    var date = products.GetLastPurDate(code);
    // The zero date stands for none.
    return date == DateTime.FromOADate(0) ? "never" : date.ToString("yyyy-MM-dd");
  }

  void AskAboutTax(string customer) {
    var record = new CustomerRecord {ArdWorkspace = engine.Workspace};
    if (record.Read(customer)) {
      Console.WriteLine("Tax of {0}: {1} %, {2}", customer, Price(general.GetVatRate(record.TaxCode)),
                        general.GetVatDesc(record.TaxCode).Trim());
    }
    // The library fills the elements that there are, here those of codes 0 to 2.
    Array codes = new string[3];
    general.GetTaxCodes(ref codes);
    Console.WriteLine("Tax codes: " + string.Join(", ", (string[])codes));
  }

  void Pick() {
    // The list opens on the first customer that matches.
    var customer = customers.List("SMI*");
    Console.WriteLine("Picked customer: " +
                      (customer == "" ? "none" : customer + ", " + customers.GetName(customer)));
    // An optional argument is left out.
    var product = products.FastList();
    Console.WriteLine("Picked product: " + (product == "" ? "none" : product));
  }

  void Allocate(string code) {
    if (products.UpdateAllocQty(code, 6)) Console.WriteLine("6 more: allocated " + Allocated(code));
    if (!products.UpdateAllocQty(code, 1000)) Console.WriteLine("1000 more: refused");
    if (products.UpdateAllocQty(code, -6)) Console.WriteLine("6 less: allocated " + Allocated(code));
  }

  string Allocated(string code) {
    double allocated = 0, onOrder = 0;
    products.GetAllocOnOrder(code, ref allocated, ref onOrder);
    return Quantity(allocated);
  }

  string Quantity(double value) {
    return value.ToString(quantityFormat, CultureInfo.InvariantCulture);
  }

  string Price(double value) {
    return value.ToString(priceFormat, CultureInfo.InvariantCulture);
  }
}
