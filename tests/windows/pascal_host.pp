// A host in Free Pascal: late-bound with variables of its own types, and early-bound by declarations
// of its own. Prints what it gets.
//
//   pascal_host <folder of the demo company>
program PascalHost;
{$mode objfpc}{$H+}
uses
  Windows, ActiveX, ComObj, SysUtils, Variants;

type
  // The first members, in the order of the vtable.
  IGeneral = interface(IDispatch)
    ['{18BF13BA-2CA1-4DF7-8D39-E157596EDD52}']
    procedure put_AppName(const Value: WideString); safecall;
    function get_AppName: WideString; safecall;
    procedure putref_ArdWorkspace(const Value: IDispatch); safecall;
    function get_ArdWorkspace: IDispatch; safecall;
    procedure putref_ArdEngine(const Value: IDispatch); safecall;
    function get_ArdEngine: IDispatch; safecall;
    procedure putref_oDBaseConn(const Value: IDispatch); safecall;
    function get_oDBaseConn: IDispatch; safecall;
    procedure put_RegistryPath(const Value: WideString); safecall;
    function get_RegistryPath: WideString; safecall;
    function AddEntryToIniFile(var Items: PSafeArray;
      const LongPath, Narrative, Bitmap, ExeName: WideString): WordBool; safecall;
    function IsF12Hide: WordBool; safecall;
    function GetF11Program: WideString; safecall;
    function IsArdExclusive(const Path: WideString): WordBool; safecall;
    function CreateAccountsShortcut(Owner: LongInt; const Accts, Manuf: WideString;
      Version: SmallInt): WideString; safecall;
    function GetNumActiveUsers: SmallInt; safecall;
    function GetNumActiveUsersInclDet(var User, Machine: WideString): SmallInt; safecall;
    procedure ShowUserList(Manager: WordBool); safecall;
    procedure GetCategories(var List: PSafeArray); safecall;
    procedure GetDepartments(var List: PSafeArray); safecall;
    procedure GetDPSettings(var QtyDP, UnitDP: SmallInt; var QtyFormat, UnitFormat: WideString); safecall;
    procedure GetTaxCodes(var List: PSafeArray); safecall;
    function GetVatRate(Code: SmallInt): Double; safecall;
    function GetVatDesc(Code: SmallInt): WideString; safecall;
  end;

var
  Engine, Workspace: OleVariant;

procedure LateBound;
var
  Products, General, Codes: OleVariant;
  Whole: Integer;
  Small: SmallInt;
  Fraction: Single;
  Amount: Currency;
  Supplier, Format: WideString;
begin
  Products := CreateOleObject('ArdObjects100.Products');
  Products.ArdWorkspace := Workspace;
  Whole := 1; Fraction := 1.5; Amount := 2.5; Supplier := 'x';
  Products.GetSupplierOnOrder('LOCK-CAM', Supplier, Whole, Fraction);
  WriteLn('supplier ', Supplier, ' ', Whole, ' ', Fraction:0:2);
  Products.GetAllocOnOrder('LOCK-CAM', Amount, Whole);
  WriteLn('allocated ', Amount:0:2, ' ', Whole);
  General := CreateOleObject('ArdObjects100.General');
  General.ArdWorkspace := Workspace;
  Small := 0; Whole := 0; Format := '';
  General.GetDPSettings(Small, Whole, Format, Supplier);
  WriteLn('decimals ', Small, ' ', Whole, ' ', Format, ' ', Supplier);
  Codes := VarArrayCreate([0, 1], varOleStr);
  General.GetTaxCodes(Codes);
  WriteLn('codes [', Codes[0], '][', Codes[1], ']');
  Codes := VarArrayCreate([1, 2], varVariant);
  General.GetCategories(Codes);
  WriteLn('categories [', Codes[1], '][', Codes[2], ']');
end;

procedure EarlyBound;
var
  General: IGeneral;
  QtyDP, UnitDP: SmallInt;
  QtyFormat, UnitFormat: WideString;
  Codes: OleVariant;
  List: PSafeArray;
begin
  General := CreateComObject(StringToGUID('{E8274DEF-D136-4752-AFBC-8448DDB53D40}')) as IGeneral;
  General.put_AppName('Pascal');
  General.putref_ArdWorkspace(Workspace);
  QtyDP := 0; UnitDP := 0;
  General.GetDPSettings(QtyDP, UnitDP, QtyFormat, UnitFormat);
  WriteLn('decimals ', QtyDP, ' ', UnitDP, ' ', QtyFormat, ' ', UnitFormat);
  Codes := VarArrayCreate([1, 2], varOleStr);
  List := PSafeArray(TVarData(Codes).VArray);
  General.GetTaxCodes(List);
  WriteLn('codes [', Codes[1], '][', Codes[2], ']');
  WriteLn('rate ', General.GetVatRate(1):0:2, ' of ', General.get_AppName);
end;

begin
  CoInitialize(nil);
  Engine := CreateOleObject('ArdSimulator.Engine');
  Engine.Open(WideString(ParamStr(1)));
  Workspace := Engine.Workspace;
  LateBound;
  EarlyBound;
  WriteLn('open ', Integer(Engine.OpenFiles), ' ', Integer(Engine.LivingObjects));
  Workspace := Unassigned;
  Engine := Unassigned;
end.
