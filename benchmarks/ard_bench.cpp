// What the library costs beyond the engine calls it makes, and what opening a pick list costs.
// Exits with 1 when a target is missed.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "accounts/customers.h"
#include "benchmarks/timing.h"
#include "dialogs/fast_select.h"
#include "dialogs/product_dialog.h"
#include "engine/seam.h"
#include "frame/decimal.h"
#include "frame/error.h"
#include "frame/text.h"
#include "host_database/odbc_connection.h"
#include "products/products.h"
#include "simulator/testing/company_builder.h"
#include "testing/members.h"
#include "testing/recording_workspace.h"
#include "testing/scripted_environment.h"

namespace ard::benchmarks {
namespace {

constexpr double kTargetRatio = 1.10;
constexpr double kTargetOpening = 1e6;  // nanoseconds, whatever the size of the ledger

std::wstring NameByHand(engine::Workspace& workspace, std::wstring_view acc_ref) {
  const auto record = workspace.CreateRecord(L"SalesRecord");
  const auto fields = record->GetFields();
  fields->Item(L"ACCOUNT_REF")->SetValue(acc_ref);
  if (!record->Find(engine::Match::kExact)) return {};
  std::wstring name = fields->Item(L"NAME")->GetValue().ToText();
  Trim(name);
  return name;
}

std::vector<std::wstring> CustomerRefs(engine::Workspace& workspace) {
  const auto file = workspace.CreateDataFile(L"SalesData");
  file->Open(engine::Mode::kRead);
  const auto ref = file->GetFields()->Item(L"ACCOUNT_REF");
  std::vector<std::wstring> refs;
  for (std::int32_t i = 1; i <= file->Count(); ++i) {
    if (file->Read(i)) refs.emplace_back(Trimmed(ref->GetValue().ToText()));
  }
  file->Close();
  return refs;
}

// Times both ways, and counts what each asks of the engine in one call.
template <class HandWritten, class Library>
bool CompareCalls(const char* operation, simulator::Simulator& engine, HandWritten&& by_hand,
                  Library&& by_library, double target = kTargetRatio) {
  const auto operations_of = [&](auto& action) {
    const std::int64_t before = engine.operations();
    action();
    return engine.operations() - before;
  };
  // What is read once and kept does not belong to a call.
  by_hand();
  by_library();
  const std::int64_t operations_by_hand = operations_of(by_hand);
  const std::int64_t operations_by_library = operations_of(by_library);
  return Report(operation, Compare(by_hand, by_library), target, operations_by_hand,
                operations_by_library);
}

bool LookUpNames(const char* company) {
  const auto simulator = simulator::Simulator::Open(company);
  const auto workspace = simulator->workspace();
  testing::ScriptedEnvironment environment;
  accounts::Customers customers(environment);
  customers.context().workspace = workspace;

  const std::vector<std::wstring> refs = CustomerRefs(*workspace);
  std::size_t characters = 0;
  // Every account, found by both in the same order.
  auto by_hand = [&, next = std::size_t{0}]() mutable {
    characters += NameByHand(*workspace, refs[next++ % refs.size()]).size();
  };
  auto by_library = [&, next = std::size_t{0}]() mutable {
    characters += customers.GetName(refs[next++ % refs.size()]).size();
  };

  for (const std::wstring& ref : refs) {
    if (NameByHand(*workspace, ref) == customers.GetName(ref)) continue;
    std::printf("The two ways give different names.\n");
    return false;
  }
  return CompareCalls("Customers.GetName, native", *simulator, by_hand, by_library) &&
         characters > 0;
}

double FreeStockByHand(engine::Workspace& workspace, std::wstring_view stock_code) {
  const auto index = workspace.CreateIndex(L"StockIndex");
  const auto data = workspace.CreateDataFile(L"StockData");
  index->Open(engine::Mode::kQuery);
  data->Open(engine::Mode::kQuery);
  double free = 0;
  index->SetKey(stock_code);
  if (index->Find(engine::Match::kExact) && data->Read(index->RecordNumber())) {
    const auto fields = data->GetFields();
    const double in_stock = fields->Item(L"QTY_IN_STOCK")->GetValue().ToDouble();
    free = ExactDifference(in_stock, fields->Item(L"QTY_ALLOCATED")->GetValue().ToDouble());
  }
  index->Close();
  data->Close();
  return free;
}

double SpecialPriceByHand(engine::Workspace& workspace, std::wstring_view stock_code,
                          std::wstring_view acc_ref) {
  try {
    return workspace.CreatePricing()->CustomerUnitPrice(acc_ref, stock_code);
  } catch (const Error&) {
    // This engine has no pricing service.
  }
  const auto stock = workspace.CreateRecord(L"StockRecord");
  const auto stock_fields = stock->GetFields();
  stock_fields->Item(L"STOCK_CODE")->SetValue(stock_code);
  if (!stock->Find(engine::Match::kExact)) return 0;
  const double selling = stock_fields->Item(L"SALES_PRICE")->GetValue().ToDouble();
  const double cost = stock_fields->Item(L"LAST_PURCHASE_PRICE")->GetValue().ToDouble();
  const auto entry = workspace.CreateRecord(L"PriceRecord");
  const auto customer = workspace.CreateRecord(L"SalesRecord");
  const auto fields = entry->GetFields();
  const auto code = fields->Item(L"Stock_Code");
  do {
    if (Trimmed(code->GetValue().ToText()) != stock_code) continue;
    if (fields->Item(L"Type")->GetValue().ToInteger() != 83) continue;
    if (Trimmed(fields->Item(L"Ext_Ref")->GetValue().ToText()) != acc_ref) continue;
    const std::int16_t type = fields->Item(L"Discount_Type")->GetValue().ToInteger();
    const double value = fields->Item(L"Value")->GetValue().ToDouble();
    return type == 0 ? value : cost + value;
  } while (entry->MoveNext());
  return selling;
}

bool AskAboutProducts() {
  constexpr int kEntries = 1000;
  simulator::CompanyBuilder builder;
  builder.Customer(L"ABC").Product(
      L"BOLT", {{L"SALES_PRICE", 5.0}, {L"QTY_IN_STOCK", 10.3}, {L"QTY_ALLOCATED", 10.1}});
  for (int i = 1; i <= kEntries; ++i) {
    const std::wstring code = i < kEntries ? L"NUT" + std::to_wstring(i) : L"BOLT";
    builder.Record(L"PriceData", {{L"TYPE", std::int16_t{83}},
                                  {L"EXT_REF", L"ABC"},
                                  {L"STOCK_CODE", code},
                                  {L"VALUE", 4.0}});
  }
  const auto simulator = builder.Build();
  const auto workspace = simulator->workspace();
  testing::ScriptedEnvironment environment;
  products::Products products(environment);
  products.context().workspace = workspace;
  if (products.GetFreeStock(L"BOLT") != 0.2 || products.GetSpecialPrice(L"BOLT", L"ABC") != 4) {
    std::printf("The library's own answers are wrong.\n");
    return false;
  }

  double sum = 0;
  const bool free_stock_met = CompareCalls(
      "Products.GetFreeStock", *simulator, [&] { sum += FreeStockByHand(*workspace, L"BOLT"); },
      [&] { sum += products.GetFreeStock(L"BOLT"); });
  const bool price_met = CompareCalls(
      "Products.GetSpecialPrice, 1,000 entries", *simulator,
      [&] { sum += SpecialPriceByHand(*workspace, L"BOLT", L"ABC"); },
      [&] { sum += products.GetSpecialPrice(L"BOLT", L"ABC"); });
  return free_stock_met && price_met && sum > 0;
}

// Every member that shows no dialog and writes nothing, against what it asks of the engine with
// nothing around it: recorded from the call itself, and replayed. Some members work out more than
// they ask for, so no ratio is held; what is asked must be the same.
bool AskEveryMember() {
  bool met = true;
  for (const testing::Member& member : testing::Members()) {
    if (member.script || member.has_effects) continue;
    const auto simulator = testing::MembersCompany();
    testing::ScriptedEnvironment environment;
    Context context(environment);
    context.app_name = L"Manufacturing";
    context.database = testing::MembersDatabase();

    testing::Recording bare;
    context.workspace = testing::Recorded(simulator->workspace(), bare);
    member.bind(context)(nullptr);
    context.workspace = simulator->workspace();
    const testing::Call call = member.bind(context);
    met &= CompareCalls(
        ToUtf8(member.name).c_str(), *simulator, [&] { bare.Replay(*context.workspace); },
        [&] { call(nullptr); }, kNoTarget);
  }
  return met;
}

// A page of the dialog's first list: from the index and the data file.
class StockPagesByHand {
 public:
  explicit StockPagesByHand(engine::Workspace& workspace)
      : index_(workspace.CreateIndex(L"StockIndex")),
        data_(workspace.CreateDataFile(L"StockData")) {
    index_->Open(engine::Mode::kRead);
    data_->Open(engine::Mode::kRead);
    fields_ = data_->GetFields();
    code_ = fields_->Item(L"STOCK_CODE");
    description_ = fields_->Item(L"DESCRIPTION");
    deleted_ = fields_->Item(L"DELETED_FLAG");
  }

  std::size_t Load(std::int32_t first, std::int32_t count) {
    std::vector<dialogs::Row> rows;
    rows.reserve(static_cast<std::size_t>(count));
    index_->MoveTo(first);
    for (std::int32_t position = first; position < first + count; ++position) {
      if (data_->Read(index_->RecordNumber()) && !deleted_->GetValue().ToBoolean()) {
        std::wstring text = code_->GetValue().ToText();
        text += L'\t';
        text += description_->GetValue().ToText();
        rows.push_back({position, std::move(text), dialogs::kDefaultColor});
      }
      if (!index_->MoveNext()) break;
    }
    return rows.size();
  }

 private:
  std::unique_ptr<engine::IndexObject> index_;
  std::unique_ptr<engine::DataFileObject> data_;
  std::unique_ptr<engine::Fields> fields_;
  std::unique_ptr<engine::Field> code_, description_, deleted_;
};

// And one of the second: from the recordset.
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

bool PageThroughProducts() {
  constexpr std::int32_t kProducts = 1'000'000;
  constexpr std::int32_t kInfoRows = 100'000;
  constexpr std::int32_t kPage = 20;
  const auto simulator = simulator::Simulator::OpenSynthetic(0, kProducts);
  const auto database =
      std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  database->Execute(
      L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), "
      L"Description VARCHAR(60))");
  database->Execute(
      L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000)"
      L" INSERT INTO ProdInfoStockFields SELECT printf('P%06d', i), 'Made up' FROM n");
  testing::ScriptedEnvironment environment;
  Context context(environment);
  context.workspace = simulator->workspace();
  context.database = database;

  StockPagesByHand stock(*context.workspace);
  const auto recordset = database->Open(dialogs::kProductInfoQuery, database::Cursor::kStatic,
                                        database::Lock::kReadOnly);
  dialogs::ProductDialog dialog(context, {});
  dialog.Load(kProducts);
  dialog.stock_list().SetPageSize(kPage);
  dialog.info_list().SetPageSize(kPage);

  // Page after page, so that none is there already.
  std::size_t rows = 0;
  const auto next = [](std::int32_t& top, std::int32_t end) {
    top = top + kPage < end - kPage ? top + kPage : 1;
    return top;
  };
  bool met = CompareCalls(
      "frmFastSelectProduct, stock page", *simulator,
      [&, top = std::int32_t{1}]() mutable { rows += stock.Load(next(top, kProducts), kPage); },
      [&, top = std::int32_t{1}]() mutable {
        dialog.stock_list().ScrollTo(next(top, kProducts));
        rows += dialog.stock_list().rows().size();
      });
  met &= CompareCalls(
      "frmFastSelectProduct, information page", *simulator,
      [&, top = std::int32_t{1}]() mutable {
        rows += InfoPageByHand(*recordset, next(top, kInfoRows), kPage);
      },
      [&, top = std::int32_t{1}]() mutable {
        dialog.info_list().ScrollTo(next(top, kInfoRows));
        rows += dialog.info_list().rows().size();
      });
  return met && rows > 0;
}

// The cost of one opening, up to the first page.
bool OpenList(std::int32_t accounts) {
  const auto simulator = simulator::Simulator::OpenSynthetic(accounts);
  testing::ScriptedEnvironment environment;
  Context context(environment);
  context.workspace = simulator->workspace();

  std::int64_t read_before = 0;
  std::int64_t read_with_page = 0;
  std::size_t rows = 0;
  std::int32_t page_size = 0;
  std::vector<double> times;
  for (int i = 0; i < kBatches; ++i) {
    const std::int64_t read = simulator->records_read();
    times.push_back(Time(1, [&] {
      dialogs::FastSelectDialog dialog(context, dialogs::kFastSelectCust);
      dialog.Load(accounts);
      read_before = simulator->records_read() - read;
      rows = dialog.list().rows().size();
      page_size = dialog.list().page_size();
    }));
    read_with_page = simulator->records_read() - read;
  }
  const double time = Median(times);
  const bool met =
      read_before == 0 && read_with_page <= page_size && rows > 0 && time <= kTargetOpening;
  std::printf("%14d %24" PRId64 " %20" PRId64 " %8zu %14.1f%s\n", accounts, read_before,
              read_with_page, rows, time / 1000, met ? "" : "   MISSED");
  return met;
}

bool OpenLists() {
  std::printf("\n%14s %24s %20s %8s %14s\n", "accounts", "records before a page",
              "with the first page", "rows", "microseconds");
  bool met = true;
  for (const std::int32_t accounts : {1'000, 1'000'000, 10'000'000}) met &= OpenList(accounts);
  return met;
}

}  // namespace
}  // namespace ard::benchmarks

int main(int count, char** arguments) {
  try {
    const char* company = count > 1 ? arguments[1] : ARD_DEMO_COMPANY;
    ard::benchmarks::PrintComparisonHeader();
    bool met = ard::benchmarks::LookUpNames(company);
    met &= ard::benchmarks::AskAboutProducts();
    met &= ard::benchmarks::AskEveryMember();
    met &= ard::benchmarks::PageThroughProducts();
    met &= ard::benchmarks::OpenLists();
    return met ? 0 : 1;
  } catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
  }
}
