#include "tests/core/member_rows.h"
#include "tests/core/operations.h"

namespace ard::testing {
namespace {

using namespace classes;  // NOLINT(google-build-using-namespace): the published ones
using addresses::DelAddType;
using addresses::DeliveryAddress;
using dialogs::AddressDialog;
using dialogs::AddressKind;
using dialogs::SelectDialog;

// The answers of a method that fills an array, from index 0 on.
template <std::size_t size>
auto Fills(void (General::*method)(TextArray) const noexcept) {
  return [=](const General& general, const Context&) -> const std::array<std::wstring, size>& {
    static std::array<std::wstring, size> elements;
    for (std::wstring& element : elements) element.clear();
    (general.*method)({0, elements});
    return elements;
  };
}

std::tuple<std::int16_t, std::int16_t, std::wstring, std::wstring> Decimals(const General& general,
                                                                            const Context&) {
  std::int16_t quantity = -1;
  std::int16_t unit = -1;
  std::wstring formats[2];
  general.GetDPSettings(quantity, unit, formats[0], formats[1]);
  return {quantity, unit, std::move(formats[0]), std::move(formats[1])};
}

std::wstring Breakdown(const Customers& customers, const Context& context) {
  std::wstring shown;
  Scripted(context).Answer<dialogs::FieldsDialog>([&](dialogs::FieldsDialog& dialog) {
    for (std::size_t i = 1; i < dialog.lines().size(); ++i) shown += dialog.lines()[i].text + L"|";
    dialog.CloseClick();
  });
  customers.ShowDiscBDown(L"ABC001", L"BOLT", 10, 1, 20, 0);
  return shown;
}

// What the properties of an account's record hold after a reading.
template <class Record>
std::wstring ReadProperties(Record& record, const wchar_t* acc_ref) {
  std::wstring answer = Text(record.Read(acc_ref));
  for (const auto& property : Record::kProperties) {
    std::visit(
        [&](auto member) {
          record.Put(property.name, member, record.Get(property.name, member));
          answer += L"|" + std::wstring(Trimmed(Text(record.details().*member)));
        },
        property.member);
  }
  return answer;
}
std::wstring ReadCustomer(CustomerRecord& record, const Context&) {
  return ReadProperties(record, L"ABC001");
}
std::wstring ReadSupplier(SupplierRecord& record, const Context&) {
  return ReadProperties(record, L"SUP001");
}

// Every handler of the address dialogs, the lists that they open included.
std::wstring WorkTheAddresses(DeliveryAddress& address, const Context& context) {
  Scripted(context).Answer<AddressDialog>([](AddressDialog& dialog) {
    dialog.KindChange(AddressKind::kPurchase);
    dialog.AccountChange(L"SUP001");
    dialog.AccountEntered();
    dialog.KindChange(AddressKind::kSales);
    dialog.AccountEntered();
    dialog.LookUpClick();
    dialog.AccountChange(L"?");
    dialog.AccountEntered();
    dialog.list().rows();
    dialog.DetailsClick();
    dialog.Ok();
    dialog.Cancel();
  });
  for (int list = 0; list < 2; ++list) {
    Scripted(context).Answer([](SelectDialog& dialog) { dialog.Ok(); });
  }
  const std::wstring picked = Text(address.GetAddress());
  return picked + address.Get(L"AccountRef", &dialogs::Address::account_ref);
}

std::wstring PickAddress(DeliveryAddress& address, const Context& context) {
  Scripted(context).Answer<AddressDialog>([](AddressDialog& dialog) { dialog.Ok(); });
  std::wstring answer = Text(address.GetAddress(L"SUP001", L"Name", DelAddType::kPurchase));
  for (const auto& property : DeliveryAddress::kProperties) {
    const auto member = std::get<std::wstring dialogs::Address::*>(property.member);
    answer += L"|" + std::wstring(Trimmed(address.Get(property.name, member)));
  }
  return answer;
}

}  // namespace

std::vector<Member> LedgerMembers() {
  using namespace needed;  // NOLINT(google-build-using-namespace): the steps
  const auto nothing = OneOf({L""});
  const auto customer = SomeReference(L"ABCHTVW");
  const auto supplier = SomeReference(L"SW");
  const auto code = SomeReference(L"12");
  constexpr std::int16_t kNone = -1;
  return {
      // Limit, balance, on hold and terms; whether there are to be warnings.
      {L"Customers.IsValid", kFound + 4 * kField + kSingle + kField,
       Calls<Customers>(&Customers::IsValid, L"WORST"), L"True"},
      {L"Customers.IsValid, unknown", kLooked, Calls<Customers>(&Customers::IsValid, L"?"),
       L"False"},
      {L"Customers.GetName", kFound + kField, Calls<Customers>(&Customers::GetName, L"ABC001"),
       L"ABC Ltd"},
      {L"Customers.GetContact", kFound + kField, Calls(&Customers::GetContact, L"ABC001"), L"Ann"},
      {L"Customers.FastList, first row", Calls<Customers>(&Customers::FastList), customer, Confirm},
      {L"Customers.FastList, typing and paging", Calls<Customers>(&Customers::FastList), customer,
       TypePageAndConfirm},
      {L"Customers.FastList, cancelled", Calls<Customers>(&Customers::FastList), nothing,
       LookAndCancel},
      {L"Customers.List, confirmed", Calls<Customers>(&Customers::List, L"W*"), customer, Confirm},
      {L"Customers.List, cancelled", Calls<Customers>(&Customers::List, L"W*"), nothing,
       LookAndCancel},
      // The account's rate and type; the thresholds from level 10 down to the one reached,
      // its rate.
      {L"Customers.GetDiscPercent, table", kFound + 2 * kField + kFound + 4 * kField + kField,
       Calls(&Customers::GetDiscPercent, L"ABC001", L"BOLT", 10.0, 1.0),
       OneOf({L"0", L"5", L"7.5", L"12.5", L"2", L"7"})},
      {L"Customers.GetDiscPercent, value", kFound + 2 * kField + kSingle + 9 * kField + kField,
       Calls(&Customers::GetDiscPercent, L"VALUE", L"BOLT", 10.0, 1.0), L"4"},
      {L"Customers.ShowDiscBDown",
       Once(Does<Customers>(Breakdown, {L"ABC001", L"BOLT", 10, 1, 20, 0})),
       ManyOf({L"", L"5", L"8", L"2", L"20", L"15", L"13", L"12", L"18"})},
      {L"Suppliers.IsValid", kFound + 4 * kField + kSingle + kField,
       Calls<Suppliers>(&Suppliers::IsValid, L"WOOD"), L"True"},
      {L"Suppliers.GetName", kFound + kField, Calls<Suppliers>(&Suppliers::GetName, L"SUP001"),
       L"Supply"},
      {L"Suppliers.GetDiscPercent", kFound + kField, Calls(&Suppliers::GetDiscPercent, L"SUP001"),
       L"2.5"},
      {L"Suppliers.FastList", Calls<Suppliers>(&Suppliers::FastList), supplier, TypePageAndConfirm},
      {L"Suppliers.List", Calls<Suppliers>(&Suppliers::List, L"W*"), supplier, Confirm},
      {L"Nominal.IsValid", kLooked, Calls<Nominal>(&Nominal::IsValid, L"2100"), L"True"},
      {L"Nominal.FastList", Calls<Nominal>(&Nominal::FastList), code, TryEveryRow},
      {L"Nominal.List", Calls(&Nominal::List, L"1*"), code, Confirm},
      {L"Bank.IsValid", kLooked, Calls<Bank>(&Bank::IsValid, L"1200"), L"True"},
      {L"Bank.FastList", Calls<Bank>(&Bank::FastList), code, TypePageAndConfirm},
      {L"Bank.FastList, a blank", Calls<Bank>(&Bank::FastList), code,
       [](SelectDialog& dialog) {
         dialog.KeyPress(L' ');
         dialog.Ok();
       }},
      {L"Bank.List", Calls(&Bank::List, L"12*"), code, TryEveryRow},
      {L"Bank.List, cancelled", Calls(&Bank::List, L"?"), nothing, LookAndCancel},
      {L"Bank.List, stopped", kOpen + kFind + kCount + kFields + 2 * kField + kClose,
       Once(Natively<Bank>([](const Bank& bank, const Context& context) {
         Scripted(context).machine().progress_cancelled_at = 1;
         return bank.List(L"*");
       })),
       nothing},
      {L"CustomerRecord.Read, and all properties", kFound + 18 * kField,
       Once(Does<CustomerRecord>(ReadCustomer, {L"ABC001"})),
       PartsOf(L"True|ABC Ltd|Road 1||||Town|Yard 2||||City|0123|Ann|30|2.5|1|3|4000")},
      {L"SupplierRecord.Read, and all properties", kFound + 5 * kField,
       Once(Does<SupplierRecord>(ReadSupplier, {L"SUP001"})), PartsOf(L"True|Supply|Sue|5000|1|2")},
      {L"SalesOrders.GetAccName", kFound + kField, Calls(&SalesOrders::GetAccName, 1), L"First"},
      {L"SalesOrders.GetAccRef", kFound + kField, Calls<SalesOrders>(&SalesOrders::GetAccRef, 1),
       L"ABC001"},
      {L"SalesOrders.List", Calls<SalesOrders>(&SalesOrders::List), OneOf({L"0", L"1", L"2"}),
       Confirm},
      {L"SalesOrders.FastList", Calls<SalesOrders>(&SalesOrders::FastList), SomeReference(L"12"),
       TypePageAndConfirm},
      {L"PurchaseOrders.GetAccRef", kFound + kField,
       Calls<PurchaseOrders>(&PurchaseOrders::GetAccRef, 7), L"SUP001"},
      {L"PurchaseOrders.GetOrderDate", kFound + kField, Calls(&PurchaseOrders::GetOrderDate, 7),
       L"2023-03-15"},
      {L"PurchaseOrders.List", Calls<PurchaseOrders>(&PurchaseOrders::List),
       OneOf({L"0", L"7", L"8"}), TryEveryRow},
      {L"PurchaseOrders.FastList", Calls<PurchaseOrders>(&PurchaseOrders::FastList),
       SomeReference(L"7"),
       [](SelectDialog& dialog) {
         dialog.KeyPress(L'7');
         Confirm(dialog);
       }},
      {L"PurchaseOrders.IsValid", kFound + kField, Calls(&PurchaseOrders::IsValid, 7, true),
       L"False"},
      // An array of four, the last without a record, and one of two; twelve tax codes.
      {L"General.GetCategories", kOpen + 4 * kRead + 3 * (kFields + kField) + kClose,
       Does<General>(Fills<4>(&General::GetCategories), {Texts(4)}),
       ManyOf({L"", L"0   Bolts", L"1   Bolts", L"2   Bolts", L"2   Nuts", L"3   Nuts",
               L"3   Bolts"})},
      {L"General.GetDepartments", kOpen + 2 * (kRead + kFields + kField) + kClose,
       Does<General>(Fills<2>(&General::GetDepartments), {Texts(2)}),
       ManyOf({L"", L"0   Works", L"1   Works"})},
      {L"General.GetDPSettings", kSingle + 2 * kField,
       Does<General>(Decimals, {Output(kNone), Output(kNone), Output(L""), Output(L"")}),
       OneOf({L"2,0,0.00,0.", L"4,4,0.0000,0.0000", L"-1,0,,0.", L"2,-1,0.00,", L"-1,-1,,",
              L"0,0,0.,0.", L"2,0,,", L"2,0,0.00,", L"4,4,,", L"2,-1,,", L"-1,0,,",
              L"4,4,0.0000,"})},
      {L"General.GetTaxCodes", kSingle + 12 * kField,
       Does<General>(Fills<12>(&General::GetTaxCodes), {Texts(12)}),
       [](const std::wstring& answer) {
         std::wstring all;
         for (int n = 0; n < 12; ++n) {
           all += L"|T" + std::to_wstring(n) + (n < 10 ? L"   " : L" ");
           all += n == 1 ? L"17.50" : L"0.00";
         }
         return answer == all || answer.size() < all.size();
       }},
      {L"General.GetVatRate", kSingle + kField, Calls(&General::GetVatRate, std::int16_t{1}),
       L"17.5"},
      {L"General.GetVatDesc", kSingle + kField, Calls(&General::GetVatDesc, std::int16_t{1}),
       L"Standard"},
      {L"cDeliveryAddress.GetAddress, every handler",
       Once(Does<DeliveryAddress>(WorkTheAddresses, {})),
       [](const std::wstring& answer) {
         return answer == L"False" || answer == L"True" || answer == L"TrueABC001  ";
       }},
      {L"cDeliveryAddress.GetAddress, and all properties",
       Once(Does<DeliveryAddress>(PickAddress, {L"SUP001", L"Name", 2})),
       PartsOf(L"True|SUP001|Gate 3||||Port|1|Sue|1|Works|s@x|02|Supply|R7|01")},
  };
}

}  // namespace ard::testing
