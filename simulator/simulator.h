// The simulated accounts engine: a company of plain-text tables (or a synthetic ledger of any
// size) behind the engine seam, with what a test wants to know of it.
#ifndef ARD_SIMULATOR_SIMULATOR_H_
#define ARD_SIMULATOR_SIMULATOR_H_

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "engine/seam.h"
#include "simulator/fault_plan.h"

namespace ard::simulator {

// How many engine objects live (files, records, indexes, fields, errors; workspaces do not count)
// and how many of their files and indexes are open.
struct Counters {
  std::int32_t living_objects = 0;
  std::int32_t open_files = 0;
};

class Company;
struct EngineState;

// An engine with one company. The workspace and every object made from it share the engine's
// state, so they stay usable when the engine itself is gone first.
class Simulator : public engine::Engine {
 public:
  // Opens the company in `folder`. Throws CompanyError (file, line, column, what is wrong) when a
  // table cannot be read or is malformed.
  static std::unique_ptr<Simulator> Open(const std::filesystem::path& folder);

  // A company with `accounts` customers, suppliers, nominal accounts and orders of either kind, and
  // with `products` products, made up as they are read: they cost no memory, whatever their
  // numbers.
  static std::unique_ptr<Simulator> OpenSynthetic(std::int32_t accounts, std::int32_t products = 0);

  explicit Simulator(std::unique_ptr<Company> company);
  Simulator(const Simulator&) = delete;
  Simulator& operator=(const Simulator&) = delete;
  ~Simulator() override;

  // Objects created through the workspace count in counters(), and ask faults() before every
  // operation.
  std::shared_ptr<engine::Workspace> workspace();
  // The error of the last operation; number 0 and no text when it has not failed.
  std::unique_ptr<engine::EngineError> LastError() override;

  // Whether collections of fields that are taken from now on, and their fields, hold the record
  // that is current then, instead of following their object to another one; Null where there is
  // none.
  void SnapshotFields(bool snapshot);

  Counters counters() const;
  FaultPlan& faults();

  // Number of operations that engine objects have carried out, records that data files have read.
  std::int64_t operations() const;
  std::int64_t records_read() const;

  // The user who is logged on through the workspace, "" for none, and how often it has been asked
  // to log off.
  const std::wstring& user() const;
  std::int64_t disconnects() const;
  // Whether who is logged on by their Windows account may Connect without the password: yes, until
  // told otherwise.
  void TrustWindows(bool trust);
  // Holds the company's "queue.dta" as a single-user copy of the accounts program does, or lets go
  // of it. Throws Error when the company has no such file, or it is open already.
  void HoldExclusively(bool hold);

  // The tables, for a test or a tool that builds or changes a company.
  Company& company();

 private:
  std::shared_ptr<EngineState> state_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_SIMULATOR_H_
