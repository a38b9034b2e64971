#include "tests/core/members.h"

#include <sstream>

#include "simulator/testing/company_builder.h"
#include "tests/core/member_rows.h"

namespace ard::testing {

using Answers = Member::Answers;
using dialogs::SelectDialog;
using simulator::TakeUpTo;

Answers OneOf(std::set<std::wstring> answers) {
  return [answers = std::move(answers)](const std::wstring& answer) {
    return answers.contains(answer);
  };
}

Answers SomeReference(std::wstring_view first_letters) {
  return [=](const std::wstring& answer) {
    return answer.empty() || first_letters.find(answer[0]) != std::wstring_view::npos;
  };
}

Answers PartsOf(const std::wstring& whole) {
  return [=](const std::wstring& answer) {
    std::wstringstream expected(whole);
    std::wstringstream given(answer);
    std::wstring part;
    std::wstring expected_part;
    std::getline(given, part, L'|');
    std::getline(expected, expected_part, L'|');
    if (part != L"True" && part != L"False") return false;
    while (std::getline(given, part, L'|')) {
      std::getline(expected, expected_part, L'|');
      if (!part.empty() && part != L"0" && part != expected_part) return false;
    }
    return true;
  };
}

Answers ManyOf(std::set<std::wstring> parts) {
  return [parts = std::move(parts)](const std::wstring& answer) {
    std::wstringstream given(answer);
    std::wstring part;
    while (std::getline(given, part, L'|')) {
      if (!parts.contains(part)) return false;
    }
    return true;
  };
}

void Confirm(SelectDialog& dialog) {
  dialog.list().rows();
  dialog.KeyPress(dialogs::kEnterKey);
}

void TypePageAndConfirm(SelectDialog& dialog) {
  dialog.list().rows();
  dialog.KeyPress(L'w');
  dialog.list().PageDown();
  dialog.list().LineUp();
  dialog.list().ScrollBy(-3);
  dialog.list().SetPageSize(4);
  dialog.list().rows();
  dialog.KeyPress(L'w');
  dialog.DoubleClick();
}

void LookAndCancel(SelectDialog& dialog) {
  dialog.list().End();
  dialog.list().Home();
  dialog.Cancel();
}

void TryEveryRow(SelectDialog& dialog) {
  for (std::int32_t item = dialog.list().row_count(); item > 0 && dialog.visible(); --item) {
    dialog.list().SelectItem(item);
    dialog.Ok();
  }
}

ScriptedEnvironment& Scripted(const Context& context) {
  return dynamic_cast<ScriptedEnvironment&>(context.environment);
}

Member::Member(std::wstring_view the_name, int needed, Way way, Answers answers,
               ScriptedEnvironment::Script the_script)
    : name(the_name),
      class_name(TakeUpTo(L'.', the_name)),
      member_name(TakeUpTo(L',', the_name)),
      operations(needed),
      bind(std::move(way.bind)),
      arguments(std::move(way.arguments)),
      script(std::move(the_script)),
      may_answer(std::move(answers)),
      has_effects(way.has_effects) {
  using Plain = void (*)(SelectDialog&);
  const Plain* const plain = script.target<Plain>();
  is_cancelled = plain && *plain == LookAndCancel;
}

Member::Member(std::wstring_view the_name, int needed, Way way, std::wstring_view answer)
    : Member(the_name, needed, way,
             [neutral = way.neutral, told = std::wstring(answer)](const std::wstring& given) {
               return given == neutral || Trimmed(given) == told;
             }) {}

const std::vector<Member>& Members() {
  static const std::vector<Member> members = [] {
    std::vector<Member> all = LedgerMembers();
    for (const auto& more : {ProductMembers(), UserMembers()}) {
      all.insert(all.end(), more.begin(), more.end());
    }
    return all;
  }();
  return members;
}

bool IsKnownMessage(const Message& message) {
  const auto has = [&](std::wstring_view text) {
    return message.text.find(text) != std::wstring::npos;
  };
  if (message.icon == Icon::kStop) {
    return message.title == L"Select Nominal Code" &&
           message.text == L"Entry to a major Control Account is not permitted";
  }
  if (message.title == L"User List") return message.text == L"You must select a logon to delete.";
  return message.title == L"Manufacturing" &&
         (has(L"You must enter a user name.") || has(L"Could not logon to Ardenic.") ||
          has(L" is not allowed access to Manufacturing.") ||
          has(L"Ardenic is currently running and is a single-user version.") ||
          has(L"You do not have the access rights") ||
          has(L"An error occurred whilst making an entry to the 'veltrix.ini' file.") ||
          has(L"Account is on hold.") || has(L"Account is over credit limit.") ||
          has(L"Terms have not been agreed with this account."));
}

}  // namespace ard::testing
