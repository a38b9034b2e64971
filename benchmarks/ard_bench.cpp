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
#include "engine/seam.h"
#include "frame/environment.h"
#include "frame/text.h"
#include "simulator/simulator.h"

namespace ard::benchmarks {
namespace {

constexpr double kTargetRatio = 1.10;
constexpr double kTargetOpening = 1e6;  // nanoseconds, whatever the size of the ledger

class NobodyThere : public Environment {
 public:
  void ShowMessage(Icon, std::wstring_view, std::wstring_view) override {}
  void Show(dialogs::SelectDialog&) override {}
};

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

bool LookUpNames(const char* company) {
  const auto simulator = simulator::Simulator::Open(company);
  const auto workspace = simulator->workspace();
  NobodyThere environment;
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
  const auto operations_of = [&](const auto& action) {
    const std::int64_t before = simulator->operations();
    action();
    return simulator->operations() - before;
  };
  const std::int64_t operations_by_hand = operations_of([&] { NameByHand(*workspace, refs[0]); });
  const std::int64_t operations_by_library = operations_of([&] { customers.GetName(refs[0]); });

  PrintComparisonHeader();
  return Report("Customers.GetName, native", Compare(by_hand, by_library), kTargetRatio,
                operations_by_hand, operations_by_library) &&
         characters > 0;
}

// The cost of one opening, up to the first page.
bool OpenList(std::int32_t accounts) {
  const auto simulator = simulator::Simulator::OpenSynthetic(accounts);
  NobodyThere environment;
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
    const bool names_met = ard::benchmarks::LookUpNames(company);
    const bool lists_met = ard::benchmarks::OpenLists();
    return names_met && lists_met ? 0 : 1;
  } catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
  }
}
