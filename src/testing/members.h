// One table of the members of all classes: how to call each, how a user might answer the dialog
// that it shows, and which answers it may give when things go wrong. Every test that runs over all
// members (the fault sweep first of all) runs from it, so a new member is one more line.
#ifndef ARD_TESTING_MEMBERS_H_
#define ARD_TESTING_MEMBERS_H_

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "frame/context.h"
#include "host_database/odbc_connection.h"
#include "simulator/simulator.h"
#include "testing/scripted_environment.h"

namespace ard::testing {

// A member of one object, ready to be called as often as one likes. `take` gets its answers.
using Call = std::function<void(std::wstring* take)>;

struct Member {
  std::wstring name;  // "Customers.GetName", or the form and how the user goes about it
  // Makes an object with this context, and binds the member to it. A call gives its answer as text
  // to `take`; with none, nothing is done but to call.
  std::function<Call(const Context&)> bind;
  ScriptedEnvironment::Script script = nullptr;  // answers the dialog
  // Whether the member may give this answer when some of its steps fail.
  std::function<bool(const std::wstring&)> may_answer;
  // It writes, or answers its dialogs itself: it cannot be called again and again.
  bool has_effects = false;
};

const std::vector<Member>& Members();

// The company that the members are called on: small, with something of everything.
std::unique_ptr<simulator::Simulator> MembersCompany();
// The host's database that goes with it.
std::shared_ptr<host_database::OdbcConnection> MembersDatabase();

// Whether the description of some member names this message.
bool IsKnownMessage(const Message& message);

}  // namespace ard::testing

#endif  // ARD_TESTING_MEMBERS_H_
