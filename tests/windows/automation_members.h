// The table of members (tests/core/members.h) as a host calls it: late-bound, on objects of the
// registered library, which are given the table's company and database.
#ifndef ARD_TESTS_WINDOWS_AUTOMATION_MEMBERS_H_
#define ARD_TESTS_WINDOWS_AUTOMATION_MEMBERS_H_

#include "tests/windows/host.h"
// After windows.h.
#include <functional>
#include <string>
#include <vector>

#include "tests/core/members.h"

namespace ard::windows::testing {

// A fresh company and a fresh database, and what they count and fail on request.
class MembersWorld {
 public:
  // What stands for an object of the world wherever it is passed on.
  using Wrap = std::function<ComPtr<IDispatch>(ComPtr<IDispatch>)>;

  // Throws Error when a class is not registered, or the database cannot be made.
  explicit MembersWorld(const Wrap& wrap = std::identity());

  // A new object of that class with all that the world has for it. Throws Error when it cannot be
  // created.
  LateBound Create(const std::wstring& class_name) const;

  // The engine answers to all that ArdSimulator.Engine does, the connection to what
  // ado_objects.h says.
  const LateBound& engine() const { return engine_; }
  const LateBound& connection() const { return connection_; }
  const LateBound& workspace() const { return workspace_; }

 private:
  LateBound engine_;
  LateBound connection_;
  LateBound workspace_;
};

// What an object of the world counts, by the counter's name.
double Count(const LateBound& object, const wchar_t* counter);

// A member bound to an object: the arguments are made once, and every call is one Invoke by id.
// Variables passed for outputs keep from one call to the next what the member has put into them.
class AutomationCall {
 public:
  // `member` has to have arguments. Throws Error when they cannot be made; nothing may be failing
  // meanwhile. The object lives as long as the call.
  AutomationCall(const LateBound& object, const ard::testing::Member& member,
                 const MembersWorld& world);
  AutomationCall(AutomationCall&&) = default;

  HRESULT operator()();
  // The last call's answer as text: its result and its outputs, without trailing blanks.
  std::wstring Answer() const;

 private:
  ComPtr<IDispatch> object_;
  DISPID id_ = DISPID_UNKNOWN;
  std::vector<ScopedVariant> outputs_;    // the variables, from the first on
  std::vector<ScopedVariant> arguments_;  // the last one first
  ScopedVariant result_;
};

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_AUTOMATION_MEMBERS_H_
