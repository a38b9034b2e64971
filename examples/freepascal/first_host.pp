// A first host in Free Pascal, late-bound: members are called by name through variants.
//
// Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
//         A variable of any simple type takes an output. An array is a variant made by VarArrayCreate.
//         What a property is set to has a type of its own: a variant would be handed over by reference,
//         which properties for objects take and others do not.
// Build   fpc first_host.pp                        for Windows, 64 or 32 bit
// Run     first_host [COMPANY [CONNECTION]]
// Checked cross-compiled by Free Pascal and run under Wine, 64 and 32 bit.
program FirstHost;
{$mode objfpc}{$H+}
uses
  ActiveX, ComObj, SysUtils, Variants;

const
  // Your own accounts engine, company and database go here.
  EngineClass = 'ArdSimulator.Engine';
  DemoCompany = 'C:\companies\demo';
  DemoConnection = 'Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db';
  // Access:      'Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb'
  // SQL Server:  'Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes'
  // No database: ''
  AppName = 'Manufacturing';
  RegistryPath = 'First Host';

var
  // Those that are not assigned are Nothing to the library.
  Engine, Database, Session, Customers, Products, General: OleVariant;
  QuantityFormat, PriceFormat: WideString;
  QuantityPlaces, PricePlaces: Integer;

function Setting(Number: Integer; const Fallback: WideString): WideString;
begin
  Result := Fallback;
  if ParamCount >= Number then
    Result := WideString(ParamStr(Number));
end;

// An object of the library's: each needs the engine's workspace.
function CreateObject(const Name: string): OleVariant;
begin
  Result := CreateOleObject('ArdObjects100.' + Name);
  Result.ArdWorkspace := Engine.Workspace;
end;

function LogOn: Boolean;
begin
  Session := CreateObject('Messaging');
  Session.AppName := AppName;
  Session.RegistryPath := RegistryPath;
  Session.ArdDataPath := Setting(1, DemoCompany);
  Session.UniqueID := 'FIRST';
  Session.ArdEngine := Engine;
  Session.oDBaseConn := Database;
  Session.UseAccRights := not VarIsEmpty(Database);
  Result := Session.CheckForLogon();
end;

function Quantity(Value: Double): string;
begin
  Result := FormatFloat(string(QuantityFormat), Value);
end;

function Price(Value: Double): string;
begin
  Result := FormatFloat(string(PriceFormat), Value);
end;

procedure AskAboutCustomer(const Reference: WideString);
begin
  // Nothing raises an error: what is not there has an empty name.
  if Customers.IsValid(Reference) then
    WriteLn('Customer ', Reference, ': ', Customers.GetName(Reference))
  else
    WriteLn('Customer ', Reference, ': not known');
end;

function LastBought(const Code: WideString): string;
var
  Date: TDateTime;
begin
  Date := Products.GetLastPurDate(Code);
  // The zero date stands for none.
  if Date = 0 then
    Result := 'never'
  else
    Result := FormatDateTime('yyyy-mm-dd', Date);
end;

procedure AskAboutProduct(const Code, Customer: WideString);
var
  Allocated, OnOrder: Double;
begin
  Allocated := 0;
  OnOrder := 0;
  Products.GetAllocOnOrder(Code, Allocated, OnOrder);
  WriteLn('Product ', Code, ': ', Products.GetDesc(Code));
  WriteLn('Free ', Quantity(Products.GetFreeStock(Code)), ', allocated ', Quantity(Allocated),
    ', on order ', Quantity(OnOrder));
  WriteLn('Price ', Price(Products.GetSellPrice(Code)), ', for ', Customer, ' ',
    Price(Products.GetSpecialPrice(Code, Customer)));
  WriteLn('Last bought: ', LastBought(Code), '; LOCKER-3D300 on ', LastBought('LOCKER-3D300'));
end;

procedure AskAboutSettings(const Customer: WideString);
var
  CustomerRecord, Codes: OleVariant;
begin
  WriteLn('Decimal places: ', QuantityPlaces, ' of quantities, ', PricePlaces, ' of prices');
  CustomerRecord := CreateObject('CustomerRecord');
  if CustomerRecord.Read(Customer) then
    WriteLn('Tax of ', Customer, ': ', Price(General.GetVatRate(CustomerRecord.TaxCode)), ' %, ',
      TrimRight(string(General.GetVatDesc(CustomerRecord.TaxCode))));
  // The library fills the elements that there are, here those of codes 0 to 2.
  Codes := VarArrayCreate([0, 2], varOleStr);
  General.GetTaxCodes(Codes);
  WriteLn('Tax codes: ', Codes[0], ', ', Codes[1], ', ', Codes[2]);
end;

procedure Pick;
var
  Picked: WideString;
begin
  // The list opens on the first customer that matches.
  Picked := Customers.List('SMI*');
  if Picked = '' then
    WriteLn('Picked customer: none')
  else
    WriteLn('Picked customer: ', Picked, ', ', Customers.GetName(Picked));
  // An optional argument is left out.
  Picked := Products.FastList();
  if Picked = '' then
    Picked := 'none';
  WriteLn('Picked product: ', Picked);
end;

procedure Allocate(const Code: WideString);

  function Allocated: string;
  var
    Quantities, OnOrder: Double;
  begin
    Quantities := 0;
    OnOrder := 0;
    Products.GetAllocOnOrder(Code, Quantities, OnOrder);
    Result := Quantity(Quantities);
  end;

begin
  if Products.UpdateAllocQty(Code, 6) then
    WriteLn('6 more: allocated ', Allocated);
  if not Products.UpdateAllocQty(Code, 1000) then
    WriteLn('1000 more: refused');
  if Products.UpdateAllocQty(Code, -6) then
    WriteLn('6 less: allocated ', Allocated);
end;

begin
  Engine := CreateOleObject(EngineClass);
  Engine.Open(Setting(1, DemoCompany));
  if Setting(2, DemoConnection) <> '' then
  begin
    Database := CreateOleObject('ADODB.Connection');
    Database.Open(Setting(2, DemoConnection));
  end;

  if LogOn then
  begin
    WriteLn('Logged on: ', Session.UserLogged);
    Customers := CreateObject('Customers');
    Customers.AppName := AppName;
    Products := CreateObject('Products');
    Products.AppName := AppName;
    Products.RegistryPath := RegistryPath;
    Products.oDBaseConn := Database;
    General := CreateObject('General');
    General.GetDPSettings(QuantityPlaces, PricePlaces, QuantityFormat, PriceFormat);

    AskAboutCustomer('ABC001');
    AskAboutCustomer('NOBODY');
    AskAboutProduct('SHELF-1200X600', 'ABC001');
    AskAboutSettings('ABC001');
    Pick;
    Allocate('SHELF-1200X600');

    Session.LogoffUser();
    WriteLn('Logged off');
  end
  else
    WriteLn('Not logged on');
end.
