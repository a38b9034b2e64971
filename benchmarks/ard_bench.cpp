// What the library costs beyond the operations that it asks for, what opening a pick list costs,
// and what the trace costs. Exits with 1 when a target is missed but that of a ratio: layouts.py
// holds those of several programs to their targets.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "accounts/customers.h"
#include "benchmarks/by_hand.h"
#include "benchmarks/list_bench.h"
#include "benchmarks/native_bench.h"
#include "benchmarks/timing.h"
#include "frame/error.h"
#include "frame/text.h"
#include "products/products.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"
#include "tests/core/recording_workspace.h"

namespace ard::benchmarks {
namespace {

constexpr double kTargetTraceOff = 0.01;  // of a call's time
constexpr double kTargetDetail = 2;       // times a call's time with the trace on

// A replay costs what the same sequence costs that is written by hand; else it would be no limit.
bool HoldReplaysToHand(std::wstring_view only) {
  bool met = true;
  for (const SequenceByHand& sequence : SequencesByHand()) {
    if (!sequence.member.starts_with(only)) continue;
    for (const testing::Member& member : testing::Members()) {
      if (member.name != sequence.member) continue;
      Bench bench(testing::MembersCompany());
      testing::Recording bare;
      bench.Record(bare, [&](const Context& context) { member.bind(context)(nullptr); });
      engine::Workspace& workspace = *bench.context().workspace;
      double answer = 0;
      const auto by_hand = [&] { answer = sequence.run(workspace); };
      if (sequence.has_replay) {
        met &= bench.Compare(member.name + std::wstring(kReplayed), by_hand,
                             [&] { bare.Replay(workspace); });
      }
      const testing::Call call = member.bind(bench.context());
      met &= bench.Compare(member.name + L", by hand", by_hand, [&] { call(nullptr); });
      if (answer != sequence.answer) {
        std::printf("%s, by hand: %g\n", ToUtf8(member.name).c_str(), answer);
        met = false;
      }
    }
  }
  return met;
}

// Every other member that shows no dialog and writes nothing. None of them asks the host's
// database.
bool AskEveryMember(std::wstring_view only) {
  bool met = true;
  bool any = false;
  for (const testing::Member& member : testing::Members()) {
    if (member.script || member.has_effects || !member.name.starts_with(only)) continue;
    any = true;
    const auto sequences = SequencesByHand();
    if (std::any_of(sequences.begin(), sequences.end(),
                    [&](const SequenceByHand& sequence) { return sequence.member == member.name; }))
      continue;
    met &=
        Bench(testing::MembersCompany()).CompareMember(member.name, member.bind, member.operations);
  }
  if (!any) std::printf("No member that is measured begins with %s.\n", ToUtf8(only).c_str());
  return met && any;
}

// A walk over a long price list, whose entry for this customer and product is the last.
bool WalkPriceList() {
  constexpr int kEntries = 1000;
  simulator::CompanyBuilder company;
  company.Customer(L"ABC").Product(L"BOLT", L"SALES_PRICE=5");
  for (int i = 1; i <= kEntries; ++i) {
    const std::wstring code = i < kEntries ? L"NUT" + std::to_wstring(i) : L"BOLT";
    company.Record(L"PriceData", {{L"TYPE", std::int16_t{83}},
                                  {L"EXT_REF", L"ABC"},
                                  {L"STOCK_CODE", code},
                                  {L"VALUE", 4.0}});
  }
  const auto bind = [](const Context& context) {
    const auto products = std::make_shared<products::Products>(context.environment);
    products->context().workspace = context.workspace;
    return [products](std::wstring*) {
      if (products->GetSpecialPrice(L"BOLT", L"ABC") != 4)
        throw Error(kErrorFailed, L"wrong price");
    };
  };
  return Bench(company.Build()).CompareMember(L"Products.GetSpecialPrice, 1,000 entries", bind);
}

// ---- The trace ----

// A public method with nothing in it, and the same without the frame of a public method, in which
// is all that the trace costs when it is off.
class Empty : public PublicClass {
 public:
  explicit Empty(Environment& environment) : PublicClass(L"Empty", environment) {}
  [[gnu::noinline]] std::size_t Framed(std::size_t number) const noexcept {
    return Call<std::size_t>(L"Framed", [&](std::size_t& answer) { answer = number; });
  }
  [[gnu::noinline]] std::size_t Plain(std::size_t number) const noexcept { return number; }
};

bool CompareTraces() {
  Machine machine;
  const Empty empty(machine);
  Bench bench(testing::MembersCompany());
  accounts::Customers customers(bench.context().environment);
  customers.context().workspace = bench.context().workspace;
  std::size_t answers = 0;
  const auto get_name = [&] { answers += customers.GetName(L"ABC001").size(); };
  const Comparison frame =
      Compare([&] { answers += empty.Plain(answers); }, [&] { answers += empty.Framed(answers); });
  const double off = frame.ours - frame.hand_written;
  const double share = off / Compare(get_name, get_name).ours;
  std::printf("\ntrace off: the frame of a call takes %.1f ns, %.2f %% of Customers.GetName%s\n",
              off, 100 * share, share < kTargetTraceOff ? "" : "   MISSED");

  Trace& trace = bench.context().trace();
  const auto compare_on = [&](const char* sink_name, const Trace::Sink& sink, bool detail) {
    Trace::Origin origin;
    origin.detail = detail;
    trace.Attach(sink, origin);
    const int calls = BatchSize(get_name);
    std::vector<double> without;
    std::vector<double> with;
    for (int i = 0; i < kBatches; ++i) {
      trace.Attach(nullptr);
      without.push_back(Time(calls, get_name) / calls);
      trace.Attach(sink, origin);
      with.push_back(Time(calls, get_name) / calls);
    }
    trace.Attach(nullptr);
    const Comparison on{Median(without), Median(with)};
    std::printf("trace on, %-26s %10.0f ns, without %6.0f ns, ratio %6.2f\n", sink_name, on.ours,
                on.hand_written, on.ratio());
    return on.ours;
  };
  compare_on(
      "lines dropped", [](std::string_view) {}, false);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
  if (!file) return false;
  const auto write = [&](std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), file.get());
    std::fputc('\n', file.get());
    std::fflush(file.get());
  };
  const double on = compare_on("lines written to a file", write, false);
  const double detailed = compare_on("with detail", write, true);
  return share < kTargetTraceOff && detailed < kTargetDetail * on && answers > 0;
}

}  // namespace
}  // namespace ard::benchmarks

// Nothing but the members whose names begin with the argument, if there is one.
int main(int count, char** arguments) {
  using namespace ard::benchmarks;
  try {
    const std::wstring only = ard::FromUtf8(count > 1 ? arguments[1] : "");
    PrintComparisonHeader();
    bool met = HoldReplaysToHand(only);
    met &= AskEveryMember(only);
    if (!only.empty()) return met ? 0 : 1;
    met &= WalkPriceList();
    met &= CompareLists();
    PrintExceptions();
    met &= OpenPagedDialogs();
    met &= CompareTraces();
    return met ? 0 : 1;
  } catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
  }
}
