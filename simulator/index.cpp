#include <optional>
#include <string>
#include <utility>

#include "simulator/engine_objects.h"

namespace ard::simulator {
namespace {

class SimulatedIndex : public engine::IndexObject, private EngineObject {
 public:
  SimulatedIndex(std::shared_ptr<EngineState> state, Table* table)
      : EngineObject(std::move(state)), table_(table) {}

  bool Open(engine::Mode) override {
    return Run([&] {
      if (open_) throw Error(kErrorFailed, L"The index is open already.");
      if (table_ == nullptr) return false;
      table_->Refresh();
      open_.emplace(state());
      StandOn(1);
      return true;
    });
  }

  void SetKey(const Value& key) override {
    Run([&] { key_ = Opened().KeyFrom(key); });
  }

  bool Find(engine::Match match) override {
    return Run([&] {
      const std::int32_t found = Opened().FindKey(key_, match);
      if (found == 0) return false;
      StandOn(found);
      return true;
    });
  }

  std::int32_t Position() override {
    return Run([&] { return Current(); });
  }

  std::int32_t RecordNumber() override {
    return Run([&] {
      Current();
      return record_;
    });
  }

  void MoveTo(std::int32_t position) override {
    Run([&] {
      Opened();
      StandOn(position);
    });
  }

  void MoveFirst() override { MoveTo(1); }

  bool MoveNext() override {
    return Run([&] {
      StandOn(Current() + 1);
      return position_ != 0;
    });
  }

  void Close() override {
    Run([&] {
      RequireOpen();
      open_.reset();
    });
  }

 private:
  void RequireOpen() const {
    if (!open_) throw Error(kErrorFailed, L"The index is not open.");
  }
  // As it is now. The entry goes with its record, when others come before it or go.
  Table& Opened() {
    RequireOpen();
    table_->Refresh();
    if (order_ != table_->order()) {
      const bool is_there = position_ != 0 && record_ <= table_->size();
      StandOn(is_there ? table_->PositionOf(record_) : 0);
    }
    return *table_;
  }

  void StandOn(std::int32_t position) {
    position_ = position >= 1 && position <= table_->size() ? position : 0;
    if (position_ != 0) record_ = table_->RecordAt(position_);
    order_ = table_->order();
  }

  std::int32_t Current() {
    Opened();
    if (position_ == 0) throw Error(kErrorFailed, L"The index stands on no entry.");
    return position_;
  }

  Table* table_;
  std::wstring key_;
  std::int32_t position_ = 0;
  std::int32_t record_ = 0;  // of that entry
  std::uint32_t order_ = 0;  // of the table, as it was then
  std::optional<OpenMark> open_;
};

}  // namespace

std::unique_ptr<engine::IndexObject> MakeIndex(std::shared_ptr<EngineState> state, Table* table) {
  return std::make_unique<SimulatedIndex>(std::move(state), table);
}

}  // namespace ard::simulator
