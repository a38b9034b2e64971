#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "simulator/current_record.h"
#include "simulator/engine_objects.h"
#include "simulator/fields.h"

namespace ard::simulator {
namespace {

constexpr std::wstring_view kExtraText = L"EXTRA_TEXT";

// How long Edit waits for who edits the record, and how long before it looks again.
constexpr std::chrono::seconds kPatience(2);
constexpr std::chrono::milliseconds kPause(1);

class SimulatedRecord : public engine::RecordObject, private EngineObject {
 public:
  SimulatedRecord(std::shared_ptr<EngineState> state, Table* table)
      : EngineObject(std::move(state)), current_(std::make_shared<CurrentRecord>()) {
    current_->Attach(table);
  }
  ~SimulatedRecord() override { current_->Attach(nullptr); }

  std::unique_ptr<engine::Fields> GetFields() override {
    return Run([&] { return MakeFields(state(), current_); });
  }

  bool Find(engine::Match match) override {
    return Run([&] {
      StopEditing();
      if (current_->table() == nullptr) return false;
      current_->table()->Refresh();
      const std::int32_t found = FindKey(match);
      if (found == 0) {
        current_->Leave();
        return false;
      }
      current_->MoveTo(found);
      return true;
    });
  }

  void MoveFirst() override {
    Run([&] { StandOn(1, Existing()); });
  }

  bool MoveNext() override {
    return Run([&] {
      Table& table = Existing();
      if (current_->record() == 0) return false;
      StandOn(current_->record() + 1, table);
      return current_->record() != 0;
    });
  }

  void AddNew() override {
    Run([&] {
      Existing();
      StopEditing();
      current_->MoveTo(0);
      editing_ = Editing::kNewRecord;
    });
  }

  void Edit() override {
    Run([&] {
      Table& table = Existing();
      if (current_->record() == 0) throw Error(kErrorFailed, L"There is no record to edit.");
      StopEditing();
      held_ = Hold(table);
      editing_ = Editing::kThisRecord;
      current_->BeginEdit();
    });
  }

  bool Update() override {
    return Run([&] {
      Table& table = Existing();
      if (editing_ == Editing::kNothing) {
        throw Error(kErrorFailed, L"No record is being added or edited.");
      }
      const Table::Turn turn(table);
      const bool is_new = editing_ == Editing::kNewRecord;
      if (!is_new && current_->IsStale()) return state()->Refuse(kChangedByOther);
      const std::int32_t record = is_new ? table.size() + 1 : current_->record();
      if (!table.Store(record, current_->Contents())) return false;
      StandOn(record, table);
      return true;
    });
  }

  // Kept in the field of that name; a table without one has no room for it.
  void SetExtraText(std::wstring_view text) override {
    Run([&] {
      const int column = Existing().columns().Find(kExtraText);
      if (column >= 0) current_->Set(static_cast<std::size_t>(column), text);
    });
  }

  std::unique_ptr<engine::TransactionsObject> Transactions() override {
    return Run([&] {
      const Table& table = Existing();
      if (&table != state()->company->Find(L"StockData")) {
        throw Error(kErrorFailed, L"Only a stock record has transactions.");
      }
      return MakeTransactions(state(), current_->Get(table.key().front()).ToText());
    });
  }

 private:
  enum class Editing { kNothing, kNewRecord, kThisRecord };

  // As it is now.
  Table& Existing() const {
    if (current_->table() == nullptr) throw Error(kErrorFailed, L"There is no such file.");
    current_->table()->Refresh();
    return *current_->table();
  }

  // Holds the current record, as it was read, for as long as the result lives. Waits for another
  // process that edits it; but not for ever, and then it may yet be Update that refuses one of
  // them.
  std::shared_ptr<void> Hold(Table& table) const {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    std::shared_ptr<void> held;
    while (!(held = table.TryHold(current_->record())) &&
           std::chrono::steady_clock::now() < deadline) {
      table.Refresh();
      if (current_->IsStale()) throw kChangedByOther;
      std::this_thread::sleep_for(kPause);
    }
    const Table::Turn turn(table);  // not in the middle of storing it
    if (current_->IsStale()) throw kChangedByOther;
    return held;
  }

  void StopEditing() {
    editing_ = Editing::kNothing;
    held_.reset();
  }

  // The record with the key that is set, 0 when there is none.
  std::int32_t FindKey(engine::Match match) const {
    const Table& table = *current_->table();
    const std::optional<std::wstring> key = table.ComposeKey(current_->Key());
    const std::int32_t position = key ? table.FindKey(*key, match) : 0;
    return position == 0 ? 0 : table.RecordAt(position);
  }

  // Makes `record` current, or the blank one when the table ends before it.
  void StandOn(std::int32_t record, const Table& table) {
    current_->MoveTo(record <= table.size() ? record : 0);
    StopEditing();
  }

  std::shared_ptr<CurrentRecord> current_;
  Editing editing_ = Editing::kNothing;
  std::shared_ptr<void> held_;
};

}  // namespace

std::unique_ptr<engine::RecordObject> MakeRecord(std::shared_ptr<EngineState> state, Table* table) {
  return std::make_unique<SimulatedRecord>(std::move(state), table);
}

}  // namespace ard::simulator
