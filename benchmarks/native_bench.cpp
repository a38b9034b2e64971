#include "benchmarks/native_bench.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace ard::benchmarks {
namespace {

constexpr double kTargetRatio = 1.10;
constexpr double kReplayRatio = 1.03;  // of a replay, to the same sequence written by hand

// What is held to a higher ratio, and why.
struct Exception {
  std::wstring_view name;
  double ratio;
  const char* reason;
};
constexpr Exception kExceptions[] = {
    {L"General.IsF12Hide", 1.3, "asks the ini file once, and trims what it says"},
    {L"General.GetF11Program", 1.7, "asks the ini file once, and makes the text of the answer"},
    {L"General.IsArdExclusive", 3.5, "asks for one file in 30 ns, whose path it makes"},
    {L"General.IsArdExclusive, held", 1.3, "the same, which is refused"},
    {L"Messaging.LogoffUser", 3.5, "asks for one operation of 8 ns"},
    // Lists: what is asked for is put together to rows of text.
    {L"frmFastSelectCust, pages", 1.35, "makes 40 rows of text"},
    {L"frmFastSelectSupp, pages", 1.35, "makes 40 rows of text"},
    {L"frmFastSelectNom, pages", 1.35, "makes 40 rows of text"},
    {L"frmFastSelectSop, pages", 1.5, "makes 40 rows of text, of three columns"},
    {L"frmFastSelectPop, pages", 1.5, "makes 40 rows of text, of three columns"},
    {L"frmFastSelectProduct, pages", 1.35, "makes 40 rows of text"},
    {L"frmUserList, 1,000 records", 2.1, "keeps 1,000 rows, in capital letters"},
    {L"frmDelAddresses, 1,000 records", 2.1, "keeps 1,000 rows, compares accounts"},
    {L"Bank.FastList, 1,000 records", 1.6, "makes a dialog for 12 rows"},
    {L"Bank.List, 1,000 records", 1.4, "keeps 1,000 rows"},
    {L"SalesOrders.List, 1,000 records", 2.2, "keeps 1,000 rows, of three columns"},
    {L"PurchaseOrders.List, 1,000 records", 2.2, "keeps 1,000 rows, of three columns"},
    {L"cAccessRights.List, 1,000 records", 1.3, "keeps 1,000 rows"},
};

}  // namespace

double TargetOf(std::wstring_view name) {
  const auto* const exception = std::find_if(std::begin(kExceptions), std::end(kExceptions),
                                             [&](const Exception& e) { return e.name == name; });
  if (exception != std::end(kExceptions)) return exception->ratio;
  return name.ends_with(kReplayed) ? kReplayRatio : kTargetRatio;
}

void PrintExceptions() {
  std::printf("\nheld to more than %.2f:\n", kTargetRatio);
  for (const Exception& exception : kExceptions) {
    std::printf("%-40s %7.2f  %s\n", ToUtf8(exception.name).c_str(), exception.ratio,
                exception.reason);
  }
}

bool Bench::CompareMember(std::wstring_view name, const Binding& bind, int needed) {
  testing::Recording bare;
  Record(bare, [&](const Context& context) { bind(context)(nullptr); });
  if (bare.steps.empty()) return true;  // beside nothing, a ratio says nothing
  const testing::Call call = bind(context_);
  return Compare(
      name, [&] { bare.Replay(*context_.workspace); }, [&] { call(nullptr); }, needed);
}

}  // namespace ard::benchmarks
