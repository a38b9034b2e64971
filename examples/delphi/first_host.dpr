// A first host in Delphi, early-bound: members are called through the interfaces of the type library.
//
// Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
//         An output is a variable of exactly its type, an array the one inside a variant. Optional
//         arguments have to be written out.
// Build   In Delphi: Component > Import Component > Import a Type Library, "Core Accounts Integration",
//         makes ArdObjects100_TLB.pas; then dcc32 or dcc64 first_host.dpr. The
//         developer's archive has a unit of that name, too, which Free Pascal takes as well: include.
// Run     first_host [COMPANY [CONNECTION]]
// Checked cross-compiled by Free Pascal as Delphi and run under Wine, 64 and 32 bit, with the project's
//         own unit. Not compiled by Delphi.
program FirstHost;
{$APPTYPE CONSOLE}
uses
  ActiveX, ComObj, SysUtils, Variants, ArdObjects100_TLB;

const
  // Your own accounts engine, company and database go here.
  EngineClass = 'ArdSimulator.Engine';
  DemoCompany = 'C:\companies\demo';
  DemoConnection = 'Driver={SQLite3 ODBC Driver};Database=C:\companies\host.db';
  // Access:      'Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\companies\host.accdb'
  // SQL Server:  'Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes'
  // No database: ''

type
  THost = class
  private
    FEngine, FDatabase: OleVariant;
    FWorkspace: IDispatch;
    FCustomers: _Customers;
    FProducts: _Products;
    FGeneral: _General;
    FQuantityFormat, FPriceFormat: WideString;
    FQuantityPlaces, FPricePlaces: Smallint;
    function Quantity(Value: Double): string;
    function Price(Value: Double): string;
    function LastBought(const Code: WideString): string;
    function Allocated(const Code: WideString): string;
    procedure AskAboutCustomer(const Reference: WideString);
    procedure AskAboutProduct(const Code, Customer: WideString);
    procedure AskAboutSettings(const Customer: WideString);
    procedure Pick;
    procedure Allocate(const Code: WideString);
  public
    constructor Create(const Company, Connection: WideString);
    procedure Run(const Company: WideString);
  end;

constructor THost.Create(const Company, Connection: WideString);
begin
  FEngine := CreateOleObject(EngineClass);
  FEngine.Open(Company);
  FWorkspace := FEngine.Workspace;
  FDatabase := IDispatch(nil);
  if Connection <> '' then
  begin
    FDatabase := CreateOleObject('ADODB.Connection');
    FDatabase.Open(Connection);
  end;
end;

procedure THost.Run(const Company: WideString);
var
  Session: _Messaging;
begin
  Session := CoMessaging.Create;
  Session.AppName := 'Manufacturing';
  Session.RegistryPath := 'First Host';
  Session.ArdDataPath := Company;
  Session.UniqueID := 'FIRST';
  Session.ArdEngine := FEngine;
  Session.ArdWorkspace := FWorkspace;
  Session.oDBaseConn := FDatabase;
  Session.UseAccRights := IDispatch(FDatabase) <> nil;
  if not Session.CheckForLogon(False) then
  begin
    WriteLn('Not logged on');
    Exit;
  end;
  WriteLn('Logged on: ', Session.UserLogged);

  FCustomers := CoCustomers.Create;
  FCustomers.AppName := Session.AppName;
  FCustomers.ArdWorkspace := FWorkspace;
  FProducts := CoProducts.Create;
  FProducts.AppName := Session.AppName;
  FProducts.RegistryPath := Session.RegistryPath;
  FProducts.ArdWorkspace := FWorkspace;
  FProducts.oDBaseConn := FDatabase;
  FGeneral := CoGeneral.Create;
  FGeneral.ArdWorkspace := FWorkspace;
  FGeneral.GetDPSettings(FQuantityPlaces, FPricePlaces, FQuantityFormat, FPriceFormat);

  AskAboutCustomer('ABC001');
  AskAboutCustomer('NOBODY');
  AskAboutProduct('SHELF-1200X600', 'ABC001');
  AskAboutSettings('ABC001');
  Pick;
  Allocate('SHELF-1200X600');

  Session.LogoffUser;
  WriteLn('Logged off');
end;

procedure THost.AskAboutCustomer(const Reference: WideString);
begin
  // Nothing raises an error: what is not there has an empty name.
  if FCustomers.IsValid(Reference) then
    WriteLn('Customer ', Reference, ': ', FCustomers.GetName(Reference))
  else
    WriteLn('Customer ', Reference, ': not known');
end;

procedure THost.AskAboutProduct(const Code, Customer: WideString);
var
  Allocated, OnOrder: Double;
begin
  Allocated := 0;
  OnOrder := 0;
  FProducts.GetAllocOnOrder(Code, Allocated, OnOrder);
  WriteLn('Product ', Code, ': ', FProducts.GetDesc(Code));
  WriteLn('Free ', Quantity(FProducts.GetFreeStock(Code)), ', allocated ', Quantity(Allocated),
    ', on order ', Quantity(OnOrder));
  WriteLn('Price ', Price(FProducts.GetSellPrice(Code)), ', for ', Customer, ' ',
    Price(FProducts.GetSpecialPrice(Code, Customer)));
  WriteLn('Last bought: ', LastBought(Code), '; LOCKER-3D300 on ', LastBought('LOCKER-3D300'));
end;

function THost.LastBought(const Code: WideString): string;
var
  Date: TDateTime;
begin
  Date := FProducts.GetLastPurDate(Code);
  // The zero date stands for none.
  if Date = 0 then
    Result := 'never'
  else
    Result := FormatDateTime('yyyy-mm-dd', Date);
end;

procedure THost.AskAboutSettings(const Customer: WideString);
var
  CustomerRecord: _CustomerRecord;
  Codes: OleVariant;
  List: PSafeArray;
begin
  WriteLn('Decimal places: ', FQuantityPlaces, ' of quantities, ', FPricePlaces, ' of prices');
  CustomerRecord := CoCustomerRecord.Create;
  CustomerRecord.ArdWorkspace := FWorkspace;
  if CustomerRecord.Read(Customer) then
    WriteLn('Tax of ', Customer, ': ', Price(FGeneral.GetVatRate(CustomerRecord.TaxCode)), ' %, ',
      TrimRight(FGeneral.GetVatDesc(CustomerRecord.TaxCode)));
  // The library fills the elements that there are, here those of codes 0 to 2.
  Codes := VarArrayCreate([0, 2], varOleStr);
  List := PSafeArray(TVarData(Codes).VArray);
  FGeneral.GetTaxCodes(List);
  WriteLn('Tax codes: ', Codes[0], ', ', Codes[1], ', ', Codes[2]);
end;

procedure THost.Pick;
var
  Picked: WideString;
begin
  // The list opens on the first customer that matches.
  Picked := FCustomers.List('SMI*');
  if Picked = '' then
    WriteLn('Picked customer: none')
  else
    WriteLn('Picked customer: ', Picked, ', ', FCustomers.GetName(Picked));
  Picked := FProducts.FastList(True);
  if Picked = '' then
    Picked := 'none';
  WriteLn('Picked product: ', Picked);
end;

procedure THost.Allocate(const Code: WideString);
begin
  if FProducts.UpdateAllocQty(Code, 6) then
    WriteLn('6 more: allocated ', Allocated(Code));
  if not FProducts.UpdateAllocQty(Code, 1000) then
    WriteLn('1000 more: refused');
  if FProducts.UpdateAllocQty(Code, -6) then
    WriteLn('6 less: allocated ', Allocated(Code));
end;

function THost.Allocated(const Code: WideString): string;
var
  Quantities, OnOrder: Double;
begin
  Quantities := 0;
  OnOrder := 0;
  FProducts.GetAllocOnOrder(Code, Quantities, OnOrder);
  Result := Quantity(Quantities);
end;

function THost.Quantity(Value: Double): string;
begin
  Result := FormatFloat(FQuantityFormat, Value);
end;

function THost.Price(Value: Double): string;
begin
  Result := FormatFloat(FPriceFormat, Value);
end;

function Setting(Number: Integer; const Fallback: WideString): WideString;
begin
  if ParamCount >= Number then
    Result := ParamStr(Number)
  else
    Result := Fallback;
end;

var
  Host: THost;

begin
  CoInitialize(nil);
  Host := THost.Create(Setting(1, DemoCompany), Setting(2, DemoConnection));
  try
    Host.Run(Setting(1, DemoCompany));
  finally
    Host.Free;
  end;
  CoUninitialize;
end.
