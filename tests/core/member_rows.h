// What the rows of the table of members (members.h) are made of: ways to call, answers, users.
#ifndef ARD_TESTS_CORE_MEMBER_ROWS_H_
#define ARD_TESTS_CORE_MEMBER_ROWS_H_

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "published_classes.h"
#include "tests/core/members.h"
#include "tests/core/memory_faults.h"

namespace ard::testing {

// The rooms' rows.
std::vector<Member> LedgerMembers();
std::vector<Member> ProductMembers();
std::vector<Member> UserMembers();

// Answers: one of these; none, or a reference that begins with one of these letters, for a list may
// be positioned elsewhere when a step fails; parts with "|" between them, of which each is one of
// these.
Member::Answers OneOf(std::set<std::wstring> answers);
Member::Answers SomeReference(std::wstring_view first_letters);
Member::Answers ManyOf(std::set<std::wstring> parts);
// Such parts, of which each is blank, or "0", or stands in `whole` at its place; the first is True
// or False.
Member::Answers PartsOf(const std::wstring& whole);

// Users, each of whom goes through the handlers of a list dialog in their own way.
void Confirm(dialogs::SelectDialog& dialog);
void TypePageAndConfirm(dialogs::SelectDialog& dialog);
void LookAndCancel(dialogs::SelectDialog& dialog);
void TryEveryRow(dialogs::SelectDialog& dialog);

// For what only the users' side has, and the dialogs that a row answers itself.
ScriptedEnvironment& Scripted(const Context& context);

// The object of class `Class` with this context.
template <class Class>
std::unique_ptr<Class> Create(const Context& context) {
  auto object = std::make_unique<Class>(context.environment);
  object->context().workspace = context.workspace;
  object->context().engine = context.engine;
  object->context().app_name = context.app_name;
  object->context().database = context.database;
  return object;
}

inline std::wstring Text(const Value& answer) { return answer.ToText(); }

// The elements of an array that a member has filled.
template <std::size_t size>
std::wstring Text(const std::array<std::wstring, size>& elements) {
  std::wstring text;
  for (const std::wstring& element : elements) text += L"|" + element;
  return text;
}

// The outputs of a member, without the blanks that a field is filled up with.
template <class First, class... More>
std::wstring Text(const std::tuple<First, More...>& outputs) {
  return std::apply(
      [](const First& first, const More&... more) {
        std::wstring text(Trimmed(Text(first)));
        ((text += L"," + Text(more)), ...);
        return text;
      },
      outputs);
}

// Hands an answer over as text.
void Give(std::wstring* take, auto&& answer) {
  if (!take) return;
  const AllocationsObey none(nullptr);
  *take = Text(std::move(answer));
}

// `Object` is told where the member is that of a base class.
template <class Object = void, class Class, class Result, class... Parameters, class... Arguments>
Way Calls(Result (Class::*member)(Parameters...) const noexcept, Arguments... arguments) {
  const auto bind = [=](const Context& context) -> Call {
    using Created = std::conditional_t<std::is_void_v<Object>, Class, Object>;
    return [=, object = std::shared_ptr<Created>(Create<Created>(context))](std::wstring* take) {
      Give(take, (object.get()->*member)(arguments...));
    };
  };
  Way way{bind, {{arguments...}}};
  if constexpr (!std::is_void_v<Result>) way.neutral = Text(Result{});
  return way;
}

// Calls a member by hand, where a host does no more than to call it.
template <class Class, class Action>
Way Natively(Action action) {
  const auto bind = [=](const Context& context) -> Call {
    return [=, object = std::shared_ptr<Class>(Create<Class>(context))](std::wstring* take) {
      Give(take, action(*object, object->context()));
    };
  };
  return {bind};
}

// The same for a member with outputs or objects, and what a host passes to it.
template <class Class, class Action>
Way Does(Action action, std::vector<Argument> arguments) {
  Way way = Natively<Class>(action);
  way.arguments = std::move(arguments);
  return way;
}

// It writes, or answers its dialogs itself: it cannot be called again and again.
inline Way Once(Way way) {
  way.has_effects = true;
  return way;
}

// The arguments of a host that are more than values.
inline Argument Output(Value before) { return {Argument::Kind::kOutput, std::move(before)}; }
inline Argument Texts(std::int32_t count) { return {Argument::Kind::kTexts, count}; }
inline Argument StockRecord(const wchar_t* code) { return {Argument::Kind::kStockRecord, code}; }

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_MEMBER_ROWS_H_
