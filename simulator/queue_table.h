// QueueData: the logon queue. Its file says who is logged on to begin with; who logs on through an
// engine, of this process or another, is there for as long as the engine lives.
#ifndef ARD_SIMULATOR_QUEUE_TABLE_H_
#define ARD_SIMULATOR_QUEUE_TABLE_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "simulator/company_share.h"
#include "simulator/memory_table.h"

namespace ard::simulator {

class QueueTable : public MemoryTable {
 public:
  // `share` may be null, for a company that is ours alone; else it lives longer, and counts this
  // table's changes under `ordinal`.
  QueueTable(Columns columns, CompanyShare* share, std::size_t ordinal);

  // Logs this engine's user on, into the first free slot or a new one, and off again. Throws Error.
  void Enter(std::wstring_view user);
  void Leave();

  // Drops the logons of processes that have ended, too.
  void Reopen() override {
    if (share_ != nullptr) Reload();
  }

 protected:
  void Reload() override;

 private:
  bool IsFree(std::int32_t record) const;
  // Makes the record a slot that is the user's; free when there is no user.
  void Show(std::int32_t record, std::wstring_view user);

  CompanyShare* share_;
  std::size_t ordinal_;
  std::wstring user_;
  std::int32_t record_ = 0;          // of our user; 0 for nobody
  std::vector<std::wstring> shown_;  // by slot: who has logged on there; "" for those of the file
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_QUEUE_TABLE_H_
