#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "simulator/current_record.h"
#include "simulator/engine_objects.h"
#include "simulator/fields.h"

namespace ard::simulator {
namespace {

// What FindFirst and FindNext look for. Text is compared without regard to case and to the blanks
// at its end; other types by value. With a "*" at its end, any text, or number as text, that begins
// so matches.
class Criterion {
 public:
  Criterion(const Table& table, std::wstring_view field, const Value& value)
      : table_(table),
        column_(table.columns().Require(field)),
        type_(table.columns()[column_].type),
        text_(value.ToText()),
        prefix_(text_.ends_with(L'*')) {
    if (prefix_) {
      text_.pop_back();
    } else if (type_ == ColumnType::kText) {
      text_.resize(WithoutPadding(text_).size());
    } else {
      number_ = value.ToDouble();
    }
    const std::vector<std::size_t>& key = table.key();
    const bool begins_key = !key.empty() && key.front() == column_;
    if (begins_key && type_ == ColumnType::kText) runs_ = std::vector{text_};
    // No run of numbers begins with a minus.
    const bool by_digits = prefix_ && type_ != ColumnType::kText && !text_.starts_with(L'-');
    if (begins_key && key.size() == 1 && by_digits) FindRunsOfNumbers();
  }

  // The first record that matches after record `after`, 0 for the first of all; 0 when none does.
  std::int32_t Next(std::int32_t after) const {
    if (runs_) return NextInKeyOrder(after);
    for (std::int32_t record = after + 1; record <= table_.size(); ++record) {
      if (Matches(record)) return record;
    }
    return 0;
  }

 private:
  // Those that begin with the same digits are in one run for each number of digits.
  void FindRunsOfNumbers() {
    runs_.emplace();
    if (text_.empty()) runs_->push_back({});
    if (text_.empty() || text_.find_first_not_of(L"0123456789") != std::wstring::npos) return;
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    double first = Value(text_).ToDouble();
    do {
      if (first <= kHighest) runs_->push_back(table_.KeyFrom(Value(first)));
      first *= 10;
    } while (first != 0 && first <= kHighest);
  }

  std::int32_t NextInKeyOrder(std::int32_t after) const {
    const std::int32_t start = after == 0 ? 1 : table_.PositionOf(after) + 1;
    for (const std::wstring& first : *runs_) {
      const std::int32_t position = std::max(start, table_.LowerBound(first));
      if (position > table_.size()) break;
      const std::int32_t record = table_.RecordAt(position);
      if (Matches(record)) return record;
    }
    return 0;
  }

  bool Matches(std::int32_t record) const {
    Value cell = table_.Cell(record, column_);
    if (cell.is_empty()) cell = Blank(type_);
    if (cell.is_null()) return false;
    if (!prefix_ && type_ != ColumnType::kText) return cell.ToDouble() == number_;
    const std::wstring text = std::move(cell).ToText();
    return prefix_ ? StartsWithIgnoreCase(text, text_) : EqualsIgnoreCase(text, text_);
  }

  const Table& table_;
  std::size_t column_;
  ColumnType type_;
  std::wstring text_;
  bool prefix_;
  double number_ = 0;
  // Matching keys follow one another from each of these; nothing where there is no such order.
  std::optional<std::vector<std::wstring>> runs_;
};

class SimulatedDataFile : public engine::DataFileObject, private EngineObject {
 public:
  SimulatedDataFile(std::shared_ptr<EngineState> state, Table* table)
      : EngineObject(std::move(state)),
        table_(table),
        current_(std::make_shared<CurrentRecord>()) {}
  ~SimulatedDataFile() override { current_->Attach(nullptr); }

  bool Open(engine::Mode mode) override {
    return Run([&] {
      if (open_) throw Error(kErrorFailed, L"The file is open already.");
      if (table_ == nullptr) return false;
      table_->Reopen();
      open_.emplace(state());
      mode_ = mode;
      current_->Attach(table_);
      return true;
    });
  }

  bool Read(std::int32_t record) override {
    return Run([&] {
      if (record < 1 || record > Opened().size()) return false;
      current_->MoveTo(record);
      ++state()->records_read;
      return true;
    });
  }

  std::int32_t Count() override {
    return Run([&] { return Opened().size(); });
  }

  std::unique_ptr<engine::Fields> GetFields() override {
    return Run([&] {
      RequireOpen();
      return MakeFields(state(), current_);
    });
  }

  bool FindFirst(std::wstring_view field, const Value& value) override {
    return Run([&] { return MoveTo(Criterion(Opened(), field, value).Next(0)); });
  }

  bool FindNext(std::wstring_view field, const Value& value) override {
    return Run([&] {
      const Criterion criterion(Opened(), field, value);
      return current_->record() != 0 && MoveTo(criterion.Next(current_->record()));
    });
  }

  bool Write(std::int32_t record) override {
    return Run([&] {
      RequireOpen();
      if (mode_ != engine::Mode::kAppend) {
        throw Error(kErrorFailed, L"The file is not open for writing.");
      }
      const Table::Turn turn(*table_);
      if (current_->IsStale(record)) return state()->Refuse(kChangedByOther);
      if (!table_->Store(record, current_->Contents())) return false;
      current_->Stored(record);
      return true;
    });
  }

  void Close() override {
    Run([&] {
      RequireOpen();
      open_.reset();
      current_->Attach(nullptr);
    });
  }

 private:
  void RequireOpen() const {
    if (!open_) throw Error(kErrorFailed, L"The file is not open.");
  }
  // As it is now.
  Table& Opened() const {
    RequireOpen();
    table_->Refresh();
    return *table_;
  }

  bool MoveTo(std::int32_t record) {
    if (record == 0) return false;
    current_->MoveTo(record);
    return true;
  }

  Table* table_;
  engine::Mode mode_ = engine::Mode::kRead;
  std::shared_ptr<CurrentRecord> current_;
  std::optional<OpenMark> open_;
};

}  // namespace

std::unique_ptr<engine::DataFileObject> MakeDataFile(std::shared_ptr<EngineState> state,
                                                     Table* table) {
  return std::make_unique<SimulatedDataFile>(std::move(state), table);
}

}  // namespace ard::simulator
