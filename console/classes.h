// One object of each class, and its members by name.
#ifndef ARD_CONSOLE_CLASSES_H_
#define ARD_CONSOLE_CLASSES_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "database/seam.h"
#include "engine/seam.h"
#include "frame/public_class.h"

namespace ard::console {

// What the objects work on; all but the workspace may be missing.
struct Stores {
  std::shared_ptr<engine::Workspace> workspace;
  std::shared_ptr<database::Connection> database;
  std::shared_ptr<engine::Engine> engine = nullptr;
  std::wstring data_path = {};  // the company's folder
};

using Arguments = std::vector<Value>;

// A part of what a call answers: its result, without a name, or a named output.
struct Answer {
  std::wstring_view name;
  Value value;
};

struct Parameter {
  std::wstring_view name;
  std::wstring_view type;  // "String"; none for what the prompt takes in its own way
  const wchar_t* default_value = nullptr;  // of one that may be left out
};

// What is published of a member.
struct Published {
  std::wstring_view name;
  std::wstring_view type;  // of a property or of a method's result; "" without one
  std::wstring_view help;
};

struct Member : Published {
  std::wstring_view class_name;
  std::vector<Parameter> parameters;  // that are passed; those that may be left out last
  std::vector<Parameter> outputs;
  std::function<std::vector<Answer>(Arguments&)> call;
  std::function<void(Value)> put;  // of a property
};

// "? Customers.GetName(AccRef As String) As String", "Customers.AppName = String".
std::wstring Signature(const Member& member);

class Classes {
 public:
  Classes(Environment& environment, const Stores& stores);

  const std::vector<Member>& members() const { return members_; }

 private:
  std::vector<std::shared_ptr<void>> objects_;
  std::vector<Member> members_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_CLASSES_H_
