#include "console/console_environment.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>

#include "dialogs/select_dialog.h"
#include "frame/text.h"
#include "frame/value.h"

namespace ard::console {
namespace {

using dialogs::SelectDialog;

constexpr std::int32_t kPageSize = 20;

constexpr const char* kDialogHelp =
    "  an empty line  Enter: OK when a row is selected\n"
    "  a character    that key: type-ahead\n"
    "  down, up, pgdn, pgup, home, end\n"
    "  select N       the row at position N\n"
    "  ok, cancel, close\n";

struct Command {
  std::wstring_view word;
  void (*run)(SelectDialog&);
};

constexpr Command kCommands[] = {
    {L"down", [](SelectDialog& dialog) { dialog.list().LineDown(); }},
    {L"up", [](SelectDialog& dialog) { dialog.list().LineUp(); }},
    {L"pgdn", [](SelectDialog& dialog) { dialog.list().PageDown(); }},
    {L"pgup", [](SelectDialog& dialog) { dialog.list().PageUp(); }},
    {L"home", [](SelectDialog& dialog) { dialog.list().Home(); }},
    {L"end", [](SelectDialog& dialog) { dialog.list().End(); }},
    {L"ok",
     [](SelectDialog& dialog) {
       if (dialog.ok_enabled()) dialog.Ok();
     }},
    {L"cancel", [](SelectDialog& dialog) { dialog.Cancel(); }},
    {L"close", [](SelectDialog& dialog) { dialog.CloseBox(); }},
};

std::string Padded(std::wstring_view text, std::size_t width) {
  std::wstring padded(Trimmed(text));
  padded.resize(std::max(padded.size(), width), L' ');
  return ToUtf8(padded);
}

}  // namespace

void ConsoleEnvironment::ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) {
  out_ << (icon == Icon::kStop ? "[stop] " : "[!] ") << ToUtf8(title) << ": " << ToUtf8(text)
       << '\n';
}

void ConsoleEnvironment::Show(SelectDialog& dialog) {
  dialog.list().SetPageSize(kPageSize);
  std::string line;
  while (dialog.visible()) {
    Draw(dialog);
    if (!std::getline(in_, line)) return dialog.CloseBox();
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (echo_) out_ << line << '\n';
    Handle(dialog, FromUtf8(line));
  }
}

void ConsoleEnvironment::Draw(SelectDialog& dialog) {
  dialogs::ListModel& list = dialog.list();
  out_ << "--- " << ToUtf8(dialog.caption()) << " ---\n        ";
  for (const dialogs::Column& column : list.columns()) {
    out_ << Padded(column.header, static_cast<std::size_t>(column.width));
  }
  out_ << '\n';
  for (const dialogs::Row& row : list.rows()) {
    const std::string position = std::to_string(row.position);
    out_ << (list.IsSelected(row) ? '>' : ' ')
         << std::string(position.size() < 5 ? 5 - position.size() : 0, ' ') << position
         << (row.color == dialogs::kRed ? '!' : ' ') << ' ';
    for (std::size_t i = 0; i < list.columns().size(); ++i) {
      out_ << Padded(row.Cell(static_cast<int>(i) + 1),
                     static_cast<std::size_t>(list.columns()[i].width));
    }
    out_ << '\n';
  }
  out_ << list.row_count() << " rows" << (dialog.ok_enabled() ? ", OK" : "")
       << ", Cancel (? helps) " << std::flush;
}

void ConsoleEnvironment::Handle(SelectDialog& dialog, const std::wstring& line) {
  const std::wstring_view command = Trimmed(line);
  if (command.empty()) return dialog.KeyPress(dialogs::kEnterKey);
  if (command == L"?") {
    out_ << kDialogHelp;
    return;
  }
  if (command.size() == 1) return dialog.KeyPress(command.front());
  const auto known =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&](const Command& c) { return EqualsIgnoreCase(c.word, command); });
  if (known != std::end(kCommands)) return known->run(dialog);
  constexpr std::wstring_view kSelect = L"select ";
  try {
    if (StartsWithIgnoreCase(command, kSelect)) {
      return dialog.list().SelectItem(Value(command.substr(kSelect.size())).ToLong());
    }
  } catch (const std::exception&) {
    // Told below.
  }
  out_ << "There is no command \"" << ToUtf8(command) << "\" here.\n" << kDialogHelp;
}

}  // namespace ard::console
