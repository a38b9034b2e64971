#include "simulator/synthetic_ledger.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "frame/error.h"
#include "simulator/company.h"

namespace ard::simulator {
namespace {

using engine::Match;

TEST(SyntheticLedgerTest, BehavesLikeTheSameLedgerInMemory) {
  const struct {
    std::int32_t accounts;
    const SyntheticKind& kind;
    const wchar_t* table;
  } cases[] = {{0, kSyntheticCustomers, L"SalesData"},
               {25, kSyntheticNominals, L"NominalData"},
               {27, kSyntheticProducts, L"StockData"},
               {300, kSyntheticPurchaseOrders, L"PopData"}};
  for (const auto& [accounts, kind, table] : cases) {
    SCOPED_TRACE(accounts);
    const SyntheticLedger ledger(accounts, kind);
    Company company;
    const auto copy = company.NewTable(table, ledger.columns());
    for (std::int32_t record = 1; record <= ledger.size(); ++record) {
      Row row;
      for (std::size_t i = 0; i < copy->columns().size(); ++i)
        row.push_back(ledger.Cell(record, i));
      ASSERT_TRUE(copy->Store(record, std::move(row)));
    }
    ASSERT_EQ(copy->size(), accounts);
    for (std::int32_t position = 1; position <= accounts; ++position) {
      ASSERT_EQ(ledger.RecordAt(position), copy->RecordAt(position));
      ASSERT_EQ(ledger.PositionOf(ledger.RecordAt(position)), position);
    }
    for (const wchar_t* key : {L"", L"A", L"a0000001", L"A0000001 ", L"A00000010", L"B", L"m",
                               L"M0000099", L"Z0000026", L"Z9", L"\u00C9", L"!", L"2147483900"}) {
      ASSERT_EQ(ledger.LowerBound(key), copy->LowerBound(key)) << key;
      ASSERT_EQ(ledger.FindKey(key, Match::kExact), copy->FindKey(key, Match::kExact)) << key;
      ASSERT_EQ(ledger.FindKey(key, Match::kPartial), copy->FindKey(key, Match::kPartial)) << key;
    }
  }
}

TEST(SyntheticLedgerTest, IsNotWrittenAndHasItsLimits) {
  SyntheticLedger ledger(5);
  EXPECT_THROW(ledger.Store(1, Row(ledger.columns().size())), Error);
  EXPECT_THROW(SyntheticLedger(-1), Error);
  EXPECT_THROW(SyntheticLedger(200'000'001), Error);
  EXPECT_EQ(SyntheticLedger(200'000'000).FindKey(L"Z7692307", Match::kExact), 200'000'000);
}

}  // namespace
}  // namespace ard::simulator
