// A ledger of any size whose records are made up as they are read.
#ifndef ARD_SIMULATOR_SYNTHETIC_LEDGER_H_
#define ARD_SIMULATOR_SYNTHETIC_LEDGER_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/company.h"
#include "simulator/table.h"

namespace ard::simulator {

// What a made-up ledger holds, and under which key.
struct SyntheticKind;
extern const SyntheticKind kSyntheticCustomers;       // SalesData
extern const SyntheticKind kSyntheticSuppliers;       // PurchaseData
extern const SyntheticKind kSyntheticNominals;        // NominalData
extern const SyntheticKind kSyntheticProducts;        // StockData
extern const SyntheticKind kSyntheticSalesOrders;     // SopData
extern const SyntheticKind kSyntheticPurchaseOrders;  // PopData

// The keys, in key order, are A0000001, A0000002, ..., B0000001 and so on: an equal share of the
// records for each letter. Those of orders are the numbers from 1. Records are numbered the other
// way round, from the last key to the first, so that positions and record numbers cannot be mixed
// up unnoticed. Some accounts are on hold, over their limit, without agreed terms or deleted, some
// products out of stock, over-allocated or deleted; which ones depends on nothing but the record's
// place in the ledger.
class SyntheticLedger : public Table {
 public:
  // 0 to 200,000,000 records; another number throws Error.
  explicit SyntheticLedger(std::int32_t records, const SyntheticKind& kind = kSyntheticCustomers);

  std::int32_t size() const override { return records_; }
  Value Cell(std::int32_t record, std::size_t column) const override;
  std::int32_t RecordAt(std::int32_t position) const override { return records_ + 1 - position; }
  std::int32_t PositionOf(std::int32_t record) const override { return records_ + 1 - record; }
  std::wstring KeyAt(std::int32_t position) const override;
  std::int32_t LowerBound(std::wstring_view key) const override;
  // Throws Error: a made-up ledger cannot be written.
  bool Store(std::int32_t record, Row row) override;

 private:
  using Maker = Value (*)(std::int32_t position);

  std::int32_t FirstOfLetter(std::int32_t letter) const;
  // The same as LowerBound, for a key that is the beginning of one of ours; nothing for another.
  std::optional<std::int32_t> PositionOfPrefix(std::wstring_view key) const;

  std::int32_t records_;
  bool numbered_;              // by the key
  std::vector<Maker> makers_;  // by column; null for the key, and for cells that hold nothing
};

// A company with that many customers, suppliers, nominal accounts and orders of either kind, with
// those products, SetupData (terms warning on) and ControlData, and no other table.
std::unique_ptr<Company> MakeSyntheticCompany(std::int32_t accounts, std::int32_t products);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_SYNTHETIC_LEDGER_H_
