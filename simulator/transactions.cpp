#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "simulator/current_record.h"
#include "simulator/engine_objects.h"
#include "simulator/fields.h"

namespace ard::simulator {
namespace {

class SimulatedTransactions : public engine::TransactionsObject, private EngineObject {
 public:
  SimulatedTransactions(std::shared_ptr<EngineState> state, std::wstring_view stock_code)
      : EngineObject(std::move(state)), current_(std::make_shared<CurrentRecord>()) {
    Table* table = this->state()->company->Find(L"StockTransactionData");
    if (table == nullptr) return;
    const std::size_t column = table->columns().Require(L"STOCK_CODE");
    for (std::int32_t record = 1; record <= table->size(); ++record) {
      const std::wstring code = table->Cell(record, column).ToText();
      if (EqualsIgnoreCase(code, WithoutPadding(stock_code))) records_.push_back(record);
    }
    current_->Attach(table);
    StandOn(0);
  }
  ~SimulatedTransactions() override { current_->Attach(nullptr); }

  std::int32_t Count() override {
    return Run([&] { return static_cast<std::int32_t>(records_.size()); });
  }

  std::unique_ptr<engine::Fields> GetFields() override {
    return Run([&] { return MakeFields(state(), current_); });
  }

  void MoveFirst() override {
    Run([&] { StandOn(0); });
  }

  bool MoveNext() override {
    return Run([&] {
      if (place_ < records_.size()) StandOn(place_ + 1);
      return place_ < records_.size();
    });
  }

 private:
  void StandOn(std::size_t place) {
    place_ = place;
    current_->MoveTo(place < records_.size() ? records_[place] : 0);
  }

  std::vector<std::int32_t> records_;
  std::size_t place_ = 0;  // in `records_`
  std::shared_ptr<CurrentRecord> current_;
};

}  // namespace

std::unique_ptr<engine::TransactionsObject> MakeTransactions(std::shared_ptr<EngineState> state,
                                                             std::wstring_view stock_code) {
  return std::make_unique<SimulatedTransactions>(std::move(state), stock_code);
}

}  // namespace ard::simulator
