// One table of the members of all classes: how to call each, how a user might answer the dialog
// that it shows, and which answers it may give when things go wrong. Every test that runs over all
// members (the fault sweep first of all) runs from it, so a new member is one more line.
#ifndef ARD_TESTS_CORE_MEMBERS_H_
#define ARD_TESTS_CORE_MEMBERS_H_

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/context.h"
#include "frame/value.h"
#include "host_database/odbc_connection.h"
#include "simulator/simulator.h"
#include "tests/core/scripted_environment.h"

namespace ard::testing {

// A member of one object, ready to be called as often as one likes. `take` gets its answers.
using Call = std::function<void(std::wstring* take)>;

// What a host passes for one parameter.
struct Argument {
  enum class Kind {
    kValue,
    kOutput,       // a variable that holds `value` before the call
    kTexts,        // an array of so many empty texts, from index 0
    kStockRecord,  // the engine's record of that product
  };

  Argument(Kind what, Value with) : kind(what), value(std::move(with)) {}
  template <std::convertible_to<Value> T>
  Argument(const T& plain) : value(plain) {}

  Kind kind = Kind::kValue;
  Value value;
};

// How a member is called: natively, and by a host.
struct Way {
  // Makes an object with this context, and binds the member to it. A call gives its answer as text
  // to `take`; with none, nothing is done but to call.
  std::function<Call(const Context&)> bind;
  // None when the row goes beyond what a host can do.
  std::optional<std::vector<Argument>> arguments = std::nullopt;
  std::wstring neutral = {};  // the answer when nothing can be told
  bool has_effects = false;
};

inline constexpr int kAsItIs = -1;

struct Member {
  using Answers = std::function<bool(const std::wstring&)>;

  Member(std::wstring_view name, int operations, Way way, Answers may_answer,
         ScriptedEnvironment::Script script = nullptr);
  // A user decides how many operations there are.
  Member(std::wstring_view the_name, Way way, Answers answers,
         ScriptedEnvironment::Script the_script = nullptr)
      : Member(the_name, kAsItIs, std::move(way), std::move(answers), std::move(the_script)) {}
  // May answer this, or the neutral answer of its type.
  Member(std::wstring_view name, int operations, Way way, std::wstring_view answer);

  std::wstring name;  // "Customers.GetName"; how the user goes about it may follow, after a comma
  std::wstring class_name;   // "Customers"
  std::wstring member_name;  // "GetName"
  // How many operations a call asks of the engine, as its description needs them (operations.h);
  // kAsItIs where a user decides how many.
  int operations;
  std::function<Call(const Context&)> bind;
  std::optional<std::vector<Argument>> arguments;
  ScriptedEnvironment::Script script;  // answers the dialog
  bool is_cancelled = false;           // the script does not confirm it
  // Whether the member may give this answer when some of its steps fail. To a host it answers with
  // its result and its outputs, with commas between them.
  Answers may_answer;
  // It writes, or answers its dialogs itself: it cannot be called again and again.
  bool has_effects = false;
};

const std::vector<Member>& Members();
// What their users log on with; it is written nowhere.
inline constexpr wchar_t kPassword[] = L"q7Z";

// The company that the members are called on (members_company.inc): small, with something of
// everything.
std::unique_ptr<simulator::Simulator> MembersCompany();
// The host's database that goes with it, and what it is made with.
std::shared_ptr<host_database::OdbcConnection> MembersDatabase();
inline constexpr wchar_t kMembersConnection[] = L"Driver=SQLite3;Database=:memory:";
std::vector<std::wstring> MembersDatabaseCommands();

// Whether the description of some member names this message.
bool IsKnownMessage(const Message& message);

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_MEMBERS_H_
