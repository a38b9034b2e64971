#include "console/classes.h"

#include <algorithm>
#include <tuple>
#include <type_traits>
#include <utility>

#include "frame/text.h"
#include "published_classes.h"
// After the classes.
#include <ArdObjects100_members.h>

namespace ard::console {
namespace {

constexpr std::wstring_view kAppName = L"Manufacturing";
constexpr std::wstring_view kRegistryPath = L"Manufacturing Demo";

// One by reference is an output.
template <class Type>
inline constexpr bool kIsOutput =
    std::is_lvalue_reference_v<Type> && !std::is_const_v<std::remove_reference_t<Type>>;

// What a parameter is kept in for the time of a call, and made of an argument.
template <class Type>
struct Kept {
  Type value{};

  void Load(Value&& argument, const Context&) {
    if constexpr (std::is_enum_v<Type>) {
      value = static_cast<Type>(argument.ToLong());
    } else {
      Convert(std::move(argument), value);
    }
  }
  Type& Get() { return value; }
};
template <>
struct Kept<std::wstring_view> {
  std::wstring value;

  void Load(Value&& argument, const Context&) { value = std::move(argument).ToText(); }
  std::wstring_view Get() { return value; }
};
// The elements of an array are separated by semicolons.
template <>
struct Kept<TextArray> {
  std::vector<std::wstring> value{1};

  void Load(Value&& argument, const Context&) {
    for (const wchar_t c : argument.ToText()) {
      if (c == L';') {
        value.emplace_back();
      } else {
        value.back() += c;
      }
    }
  }
  TextArray Get() { return {0, value}; }
};
// The stock record that a host would hand in is here the one of a stock code.
template <>
struct Kept<std::unique_ptr<engine::RecordObject>> {
  std::unique_ptr<engine::RecordObject> value;

  void Load(Value&& argument, const Context& context) {
    value = context.workspace->CreateRecord(L"StockRecord");
    value->GetFields()->Item(L"STOCK_CODE")->SetValue(argument);
    value->Find(engine::Match::kExact);
  }
  std::unique_ptr<engine::RecordObject> Get() { return std::move(value); }
};

// What the prompt takes in its own way has no type there.
template <class Type>
inline constexpr bool kIsOwn =
    std::is_same_v<Type, TextArray> || std::is_same_v<Type, std::unique_ptr<engine::RecordObject>>;

// Makes members of one object.
template <class Class>
class Binder {
 public:
  Binder(Class& object, std::vector<Member>& members) : object_(object), members_(members) {}

  template <class Base, class Result, class... Parameters>
  void Method(const Published& published, Result (Base::*method)(Parameters...) const noexcept,
              std::vector<Parameter> parameters) {
    Add<Result, Parameters...>(published, method, std::move(parameters));
  }
  template <class Base, class Result, class... Parameters>
  void Method(const Published& published, Result (Base::*method)(Parameters...) noexcept,
              std::vector<Parameter> parameters) {
    Add<Result, Parameters...>(published, method, std::move(parameters));
  }
  // One that fills an array takes the bounds, and answers with the elements.
  template <class Base>
  void Method(const Published& published, void (Base::*method)(TextArray) const noexcept,
              std::vector<Parameter> outputs) {
    Member& member = New(published);
    member.parameters = {{L"LowerBound", L""}, {L"UpperBound", L""}};
    member.outputs = std::move(outputs);
    member.call = [&object = object_, method](Arguments& arguments) {
      const std::int32_t lower = arguments[0].ToLong();
      // From the first to the last: more would be too many to show.
      const int last = Value(arguments[1].ToDouble() - lower).ToInteger();
      std::vector<std::wstring> texts(static_cast<std::size_t>(std::max(last + 1, 0)));
      (object.*method)({lower, texts});
      std::vector<Answer> answers;
      for (std::wstring& text : texts) answers.push_back({{}, Value(std::move(text))});
      return answers;
    };
  }

  void ContextProperty(const Published& published) {
    Context& context = object_.context();
    std::wstring& text = published.name == L"AppName" ? context.app_name : context.registry_path;
    Member& member = New(published);
    member.call = [&text](Arguments&) { return std::vector<Answer>{{{}, Value(text)}}; };
    member.put = [&text](Value value) { text = std::move(value).ToText(); };
  }
  void Property(const Published& published, bool puts) {
    for (const auto& property : Class::kProperties) {
      if (property.name != published.name) continue;
      std::visit([&](auto kept) { Add(New(published), published.name, kept, puts); },
                 property.member);
    }
  }

 private:
  Member& New(const Published& published) {
    members_.push_back({published, object_.name(), {}, {}, nullptr, nullptr});
    return members_.back();
  }

  template <class Details, class T>
  void Add(Member& member, std::wstring_view name, T Details::*kept, bool puts) {
    member.call = [&object = object_, name, kept](Arguments&) {
      return std::vector<Answer>{{{}, Value(object.Get(name, kept))}};
    };
    if (!puts) return;
    member.put = [&object = object_, name, kept](Value value) {
      T converted{};
      Convert(std::move(value), converted);
      object.Put(name, kept, converted);
    };
  }

  // What an output starts as may be left out.
  template <class Result, class... Parameters, class Method>
  void Add(const Published& published, Method method, std::vector<Parameter> parameters) {
    Member& member = New(published);
    std::size_t at = 0;
    [[maybe_unused]] const auto describe = [&]<class Type>(std::type_identity<Type>) {
      Parameter& parameter = parameters[at++];
      if (kIsOutput<Type>) {
        member.outputs.push_back(parameter);
        parameter.default_value = parameter.type == L"String" ? L"" : L"0";
      }
      if (kIsOwn<std::decay_t<Type>>) parameter.type = L"";
    };
    (describe(std::type_identity<Parameters>()), ...);
    member.call = [&object = object_, method, outputs = member.outputs](Arguments& arguments) {
      return Call<Result, Parameters...>(object, method, outputs, arguments,
                                         std::index_sequence_for<Parameters...>());
    };
    member.parameters = std::move(parameters);
  }

  template <class Result, class... Parameters, class Method, std::size_t... index>
  static std::vector<Answer> Call(Class& object, Method method,
                                  const std::vector<Parameter>& outputs, Arguments& arguments,
                                  std::index_sequence<index...>) {
    std::tuple<Kept<std::decay_t<Parameters>>...> kept;
    (std::get<index>(kept).Load(std::move(arguments[index]), object.context()), ...);
    std::vector<Answer> answers;
    if constexpr (std::is_void_v<Result>) {
      (object.*method)(std::get<index>(kept).Get()...);
    } else {
      answers.push_back({{}, Value((object.*method)(std::get<index>(kept).Get()...))});
    }
    std::size_t next = 0;
    [[maybe_unused]] const auto take = [&]<class Type>(auto& parameter, std::type_identity<Type>) {
      if constexpr (kIsOutput<Type>) {
        answers.push_back({outputs[next++].name, Value(std::move(parameter.value))});
      }
    };
    (take(std::get<index>(kept), std::type_identity<Parameters>()), ...);
    return answers;
  }

  Class& object_;
  std::vector<Member>& members_;
};

}  // namespace

Classes::Classes(Environment& environment, const Stores& stores) {
  const auto add = [&]<class Class>(std::type_identity<Class>, auto bind) {
    const auto object = std::make_shared<Class>(environment);
    Context& context = object->context();
    context.app_name = kAppName;
    context.registry_path = kRegistryPath;
    context.workspace = stores.workspace;
    context.database = stores.database;
    context.engine = stores.engine;
    if constexpr (std::is_same_v<Class, classes::Messaging>) {
      object->details().ard_data_path = stores.data_path;
    }
    Binder<Class> binder(*object, members_);
    bind(binder);
    objects_.push_back(object);
  };
#define ARD_ADD(name)                      \
  add(std::type_identity<classes::name>(), \
      [](auto& binder) { published::Bind##name<classes::name>(binder); });
  ARD_PUBLISHED_CLASSES(ARD_ADD)
#undef ARD_ADD
}

std::wstring Signature(const Member& member) {
  const auto typed = [](std::wstring_view name, std::wstring_view type) {
    return std::wstring(name) + (type.empty() ? L"" : L" As ") + std::wstring(type);
  };
  std::wstring text = std::wstring(member.class_name) + L'.' + std::wstring(member.name);
  if (member.put) return text + L" = " + std::wstring(member.type);
  text += L'(';
  for (const Parameter& parameter : member.parameters) {
    if (text.back() != L'(') text += L", ";
    const std::wstring one = typed(parameter.name, parameter.type);
    text += parameter.default_value ? L'[' + one + L']' : one;
  }
  text = typed(L"? " + text + L')', member.type);
  for (const Parameter& output : member.outputs) text += L", " + typed(output.name, output.type);
  return text;
}

}  // namespace ard::console
