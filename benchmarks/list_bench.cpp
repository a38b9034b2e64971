#include "benchmarks/list_bench.h"

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "accounts/customers.h"
#include "accounts/nominal_bank.h"
#include "benchmarks/native_bench.h"
#include "dialogs/fast_select.h"
#include "dialogs/product_dialog.h"
#include "engine/seam.h"
#include "host_database/odbc_connection.h"
#include "orders/orders.h"
#include "simulator/testing/company_builder.h"

namespace ard::benchmarks {
namespace {

constexpr double kTargetOpening = 1e6;  // nanoseconds, whatever the size of the ledger

using Dialog = std::unique_ptr<dialogs::SelectDialog>;

// A dialog whose list is paged: read as far as it is looked at.
struct PagedDialog {
  std::wstring_view name;
  std::function<Dialog(const Context& context, std::int32_t records)> open;
};

template <class Opened>
Dialog Load(std::unique_ptr<Opened> dialog, std::int32_t records) {
  dialog->Load(records);
  return dialog;
}

PagedDialog Paged(const dialogs::FastSelectForm& form) {
  return {form.name, [&form](const Context& context, std::int32_t records) {
            return Load(std::make_unique<dialogs::FastSelectDialog>(context, form), records);
          }};
}

const std::vector<PagedDialog>& PagedDialogs() {
  static const std::vector<PagedDialog> dialogs = {
      Paged(accounts::kSalesLedger.list),
      Paged(accounts::kPurchaseLedger.list),
      Paged(accounts::kNominalList),
      Paged(orders::kSalesOrderBook.list),
      Paged(orders::kPurchaseOrderBook.list),
      {L"frmFastSelectProduct",
       [](const Context& context, std::int32_t records) {
         return Load(std::make_unique<dialogs::ProductDialog>(
                         context, dialogs::ProductDialog::Options{.product_info = false}),
                     records);
       }},
  };
  return dialogs;
}

constexpr std::int32_t kPage = 20;

// Two pages in turn, so that neither is there already.
constexpr std::int32_t kTops[] = {50'001, 1};

std::size_t ShowPages(dialogs::ListModel& list) {
  std::size_t rows = 0;
  for (const std::int32_t top : kTops) {
    list.ScrollTo(top);
    rows += list.rows().size();
  }
  return rows;
}

// Two pages of a list, against what they ask of the engine with nothing around it.
bool ComparePages(const PagedDialog& paged) {
  constexpr std::int32_t kRecords = 1'000'000;
  Bench bench(simulator::Simulator::OpenSynthetic(kRecords, kRecords));
  testing::Recording bare;
  std::size_t opened = 0;
  std::size_t shown = 0;
  bench.Record(bare, [&](const Context& context) {
    const Dialog dialog = paged.open(context, kRecords);
    dialog->list().SetPageSize(kPage);
    ShowPages(dialog->list());
    opened = bare.steps.size();
    ShowPages(dialog->list());
    shown = bare.steps.size();
  });
  engine::Workspace& workspace = *bench.context().workspace;
  testing::Recording::Slots slots;
  bare.Replay(workspace, slots, 0, opened);
  const Dialog dialog = paged.open(bench.context(), kRecords);
  dialog->list().SetPageSize(kPage);
  std::size_t rows = 0;
  const bool met = bench.Compare(
      std::wstring(paged.name) + L", pages", [&] { bare.Replay(workspace, slots, opened, shown); },
      [&] { rows += ShowPages(dialog->list()); });
  bare.Release(slots);
  return met && rows > 0;
}

// Pages of products with their rows, as a host would write them.
class StockPagesByHand {
 public:
  explicit StockPagesByHand(engine::Workspace& workspace)
      : index_(workspace.CreateIndex(L"StockIndex")),
        data_(workspace.CreateDataFile(L"StockData")) {
    index_->Open(engine::Mode::kRead);
    data_->Open(engine::Mode::kRead);
  }

  std::size_t Load(std::int32_t first, std::int32_t count) {
    std::vector<dialogs::Row> rows;
    rows.reserve(static_cast<std::size_t>(count));
    index_->MoveTo(first);
    for (std::int32_t position = first; position < first + count; ++position) {
      if (data_->Read(index_->RecordNumber())) {
        const std::unique_ptr<engine::Fields> fields = data_->GetFields();
        if (!fields->Item(L"DELETED_FLAG")->GetValue().ToBoolean()) {
          std::wstring text = fields->Item(L"STOCK_CODE")->GetValue().ToText();
          text += L'\t';
          text += fields->Item(L"DESCRIPTION")->GetValue().ToText();
          rows.push_back({position, std::move(text), dialogs::kDefaultColor});
        }
      }
      if (!index_->MoveNext()) break;
    }
    return rows.size();
  }

 private:
  std::unique_ptr<engine::IndexObject> index_;
  std::unique_ptr<engine::DataFileObject> data_;
};

bool CompareStockPages() {
  constexpr std::int32_t kRecords = 1'000'000;
  Bench bench(simulator::Simulator::OpenSynthetic(0, kRecords));
  StockPagesByHand by_hand(*bench.context().workspace);
  dialogs::ProductDialog dialog(bench.context(), {.product_info = false});
  dialog.Load(kRecords);
  dialog.list().SetPageSize(kPage);
  std::size_t rows = 0;
  return bench.Compare(
             L"frmFastSelectProduct, pages of rows",
             [&] {
               for (const std::int32_t top : kTops) rows += by_hand.Load(top, kPage);
             },
             [&] { rows += ShowPages(dialog.list()); }) &&
         rows > 0;
}

// A page of the host's product information, from its recordset.
std::size_t InfoPageByHand(database::RecordsetObject& recordset, std::int32_t first,
                           std::int32_t count) {
  std::vector<dialogs::Row> rows;
  rows.reserve(static_cast<std::size_t>(count));
  recordset.SetAbsolutePosition(first);
  for (std::int32_t row = first; row < first + count && !recordset.Eof(); ++row) {
    std::wstring text = recordset.GetValue(0).ToText();
    text += L'\t';
    text += recordset.GetValue(1).ToText();
    rows.push_back({row, std::move(text), dialogs::kDefaultColor});
    recordset.MoveNext();
  }
  return rows.size();
}

bool CompareInfoPages() {
  const auto database =
      std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  database->Execute(
      L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), "
      L"Description VARCHAR(60))");
  database->Execute(
      L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
      L" INSERT INTO ProdInfoStockFields SELECT printf('P%06d', i), 'Made up' FROM n");
  Bench bench(simulator::Simulator::OpenSynthetic(0));
  bench.context().database = database;
  const auto recordset = database->Open(dialogs::kProductInfoQuery, database::Cursor::kStatic,
                                        database::Lock::kReadOnly);
  dialogs::ProductDialog dialog(bench.context(), {});
  dialog.Load(0);
  dialog.info_list().SetPageSize(kPage);
  std::size_t rows = 0;
  return bench.Compare(
             L"frmFastSelectProduct, information pages",
             [&] {
               for (const std::int32_t top : kTops) rows += InfoPageByHand(*recordset, top, kPage);
             },
             [&] { rows += ShowPages(dialog.info_list()); }) &&
         rows > 0;
}

class NoOwners : public dialogs::AddressOwners {
 public:
  bool IsValid(dialogs::AddressKind, const std::wstring&) override { return true; }
  std::wstring GetName(dialogs::AddressKind, const std::wstring&) override { return {}; }
  std::wstring Search(dialogs::AddressKind, const std::wstring&) override { return {}; }
};

// Lists that by their descriptions hold every record, read as they open; their pages are there
// then. What is compared is an opening.
bool OpenWholeLists() {
  constexpr std::int32_t kRecords = 1000;
  simulator::CompanyBuilder company;
  for (std::int32_t i = 1; i <= kRecords; ++i) {
    const std::wstring number = std::to_wstring(i);
    company.Bank(L"12" + number, {{L"NAME", L"Bank " + number}});
    company.Record(L"SopData", {{L"ORDER_NUMBER", i}, {L"ACCOUNT_REF", L"A"}, {L"NAME", number}})
        .Record(L"PopData", {{L"ORDER_NUMBER", i}, {L"ACCOUNT_REF", L"S"}, {L"NAME", number}})
        .Record(L"AccessData", {{L"NAME", L"USER " + number}})
        .Record(L"QueueData", {{L"LOGON_NAME", L"USER " + number}, {L"STATION_NAME", L"PC"}})
        .Record(L"SalesDeliveryData", {{L"ACCOUNT_REF", L"A"},
                                       {L"ADDRESS_REF", number},
                                       {L"DESCRIPTION", L"Yard " + number}});
  }
  Bench bench(company.Build());
  const auto compare = [&](std::wstring_view name, const Binding& bind) {
    return bench.CompareMember(std::wstring(name) + L", 1,000 records", bind);
  };
  bool met = compare(L"frmUserList", [](const Context& context) {
    return [&context](std::wstring*) { dialogs::UserListDialog(context, false); };
  });
  met &= compare(L"frmDelAddresses", [](const Context& context) {
    return [&context](std::wstring*) {
      NoOwners owners;
      dialogs::AddressDialog(context, owners).ShowAccount(L"A");
    };
  });
  for (const testing::Member& member : testing::Members()) {
    for (const wchar_t* name : {L"Bank.FastList", L"Bank.List", L"SalesOrders.List",
                                L"PurchaseOrders.List", L"cAccessRights.List"}) {
      if (member.name == name) met &= compare(name, member.bind);
    }
  }
  return met;
}

// The cost of one opening of a paged dialog, up to the first page.
bool OpenPaged(const PagedDialog& paged, std::int32_t records) {
  Bench bench(simulator::Simulator::OpenSynthetic(records, records));
  const simulator::Simulator& engine = bench.engine();
  std::int64_t read_before = 0;
  std::int64_t read_with_page = 0;
  std::size_t rows = 0;
  std::int32_t page_size = 0;
  std::vector<double> times;
  for (int i = 0; i < kBatches; ++i) {
    const std::int64_t read = engine.records_read();
    times.push_back(Time(1, [&] {
      const Dialog dialog = paged.open(bench.context(), records);
      read_before = engine.records_read() - read;
      rows = dialog->list().rows().size();
      page_size = dialog->list().page_size();
    }));
    read_with_page = engine.records_read() - read;
  }
  const double time = Median(times);
  const bool met =
      read_before == 0 && read_with_page <= page_size && rows > 0 && time <= kTargetOpening;
  std::printf("%-22s %12d %24" PRId64 " %20" PRId64 " %8zu %14.1f%s\n", ToUtf8(paged.name).c_str(),
              records, read_before, read_with_page, rows, time / 1000, met ? "" : "   MISSED");
  return met;
}

}  // namespace

bool CompareLists() {
  bool met = true;
  for (const PagedDialog& paged : PagedDialogs()) met &= ComparePages(paged);
  met &= CompareStockPages();
  met &= CompareInfoPages();
  met &= OpenWholeLists();
  return met;
}

bool OpenPagedDialogs() {
  std::printf("\n%-22s %12s %24s %20s %8s %14s\n", "opening", "records", "records before a page",
              "with the first page", "rows", "microseconds");
  bool met = true;
  for (const PagedDialog& paged : PagedDialogs()) {
    for (const std::int32_t records : {1'000, 10'000'000}) met &= OpenPaged(paged, records);
  }
  return met;
}

}  // namespace ard::benchmarks
