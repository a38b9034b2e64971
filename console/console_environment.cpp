#include "console/console_environment.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <ostream>
#include <span>

#include "dialogs/product_dialog.h"
#include "frame/error.h"
#include "frame/text.h"
#include "frame/value.h"

namespace ard::console {
namespace {

using dialogs::ProductDialog;
using dialogs::SelectDialog;

constexpr std::int32_t kPageSize = 20;

// What a command works on; `products` is null when the dialog is another one.
struct Target {
  SelectDialog& dialog;
  ProductDialog* products;
};

struct Command {
  std::wstring_view word;
  const char* help;
  // Throws Error when the argument is not what it takes.
  void (*run)(const Target& target, std::wstring_view argument);
};

std::int32_t Number(std::wstring_view text) { return Value(text).ToLong(); }

constexpr Command kCommands[] = {
    {L"down", "", [](const Target& t, std::wstring_view) { t.dialog.list().LineDown(); }},
    {L"up", "", [](const Target& t, std::wstring_view) { t.dialog.list().LineUp(); }},
    {L"pgdn", "", [](const Target& t, std::wstring_view) { t.dialog.list().PageDown(); }},
    {L"pgup", "", [](const Target& t, std::wstring_view) { t.dialog.list().PageUp(); }},
    {L"home", "", [](const Target& t, std::wstring_view) { t.dialog.list().Home(); }},
    {L"end", "", [](const Target& t, std::wstring_view) { t.dialog.list().End(); }},
    {L"select", "N  the row at position N",
     [](const Target& t, std::wstring_view n) { t.dialog.list().SelectItem(Number(n)); }},
    {L"ok", "",
     [](const Target& t, std::wstring_view) {
       if (t.dialog.ok_enabled()) t.dialog.Ok();
     }},
    {L"cancel", "", [](const Target& t, std::wstring_view) { t.dialog.Cancel(); }},
    {L"close", "", [](const Target& t, std::wstring_view) { t.dialog.CloseBox(); }},
};

constexpr Command kProductCommands[] = {
    {L"tab", "N  1 for the products, 2 for the product information",
     [](const Target& t, std::wstring_view n) {
       t.products->TabClick(static_cast<ProductDialog::Tab>(Number(n)));
     }},
    {L"field", "N  searches the code (1) or the description (2)",
     [](const Target& t, std::wstring_view n) {
       const bool description = Number(n) == 2;
       t.products->SearchFieldChange(description ? ProductDialog::SearchField::kDescription
                                                 : ProductDialog::SearchField::kStockCode);
     }},
    {L"search", "TEXT  in the product information",
     [](const Target& t, std::wstring_view text) {
       t.products->SearchTextChange(text);
       t.products->SearchClick();
     }},
    {L"clear", "", [](const Target& t, std::wstring_view) { t.products->ClearClick(); }},
    {L"sort", "N  by column N of the product information",
     [](const Target& t, std::wstring_view n) {
       t.products->ColumnClick(static_cast<std::size_t>(Number(n) - 1));
     }},
    {L"extend", "  to the next row, where several can be picked",
     [](const Target& t, std::wstring_view) { t.dialog.list().LineDown(dialogs::Pick::kExtend); }},
    {L"skip", "  a row, leaving what is picked",
     [](const Target& t, std::wstring_view) { t.dialog.list().LineDown(dialogs::Pick::kNone); }},
    {L"toggle", "  the row at the cursor in or out",
     [](const Target& t, std::wstring_view) { t.dialog.list().Toggle(); }},
};

const Command* FindCommand(std::span<const Command> commands, std::wstring_view word) {
  const auto known = std::find_if(commands.begin(), commands.end(), [&](const Command& command) {
    return EqualsIgnoreCase(command.word, word);
  });
  return known == commands.end() ? nullptr : &*known;
}

void WriteHelp(std::ostream& out, std::span<const Command> commands) {
  for (const Command& command : commands) {
    out << "  " << ToUtf8(command.word) << ' ' << command.help << '\n';
  }
}

std::string Padded(std::wstring_view text, std::size_t width) {
  std::wstring padded(Trimmed(text));
  padded.resize(std::max(padded.size(), width), L' ');
  return ToUtf8(padded);
}

std::wstring SettingKey(std::wstring_view application, std::wstring_view section,
                        std::wstring_view name) {
  std::wstring key(application);
  for (const std::wstring_view part : {section, name}) {
    key += L'\\';
    key += part;
  }
  return UpperCase(key);
}

}  // namespace

void ConsoleEnvironment::ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) {
  out_ << (icon == Icon::kStop ? "[stop] " : "[!] ") << ToUtf8(title) << ": " << ToUtf8(text)
       << '\n';
}

std::wstring ConsoleEnvironment::InputBox(std::wstring_view prompt, std::wstring_view title) {
  out_ << "[?] " << ToUtf8(title) << ": " << ToUtf8(prompt) << ' ' << std::flush;
  std::wstring answer;
  ReadLine(answer);
  return answer;
}

void ConsoleEnvironment::Show(ProductDialog& dialog) {
  dialog.info_list().SetPageSize(kPageSize);
  Converse(dialog, &dialog);
}

std::wstring ConsoleEnvironment::GetSetting(std::wstring_view application,
                                            std::wstring_view section, std::wstring_view name,
                                            std::wstring_view otherwise) {
  const auto setting = settings_.find(SettingKey(application, section, name));
  return setting == settings_.end() ? std::wstring(otherwise) : setting->second;
}

void ConsoleEnvironment::SaveSetting(std::wstring_view application, std::wstring_view section,
                                     std::wstring_view name, std::wstring_view value) {
  settings_[SettingKey(application, section, name)] = value;
}

void ConsoleEnvironment::Converse(SelectDialog& dialog, ProductDialog* products) {
  dialog.list().SetPageSize(kPageSize);
  std::wstring line;
  while (dialog.visible()) {
    Draw(dialog, products);
    if (!ReadLine(line)) return dialog.CloseBox();
    Handle(dialog, products, line);
  }
}

bool ConsoleEnvironment::ReadLine(std::wstring& line) {
  std::string bytes;
  if (!std::getline(in_, bytes)) return false;
  if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
  if (echo_) out_ << bytes << '\n';
  line = FromUtf8(bytes);
  return true;
}

void ConsoleEnvironment::Draw(SelectDialog& dialog, ProductDialog* products) {
  dialogs::ListModel& list = dialog.list();
  out_ << "--- " << ToUtf8(dialog.caption());
  if (products && products->tab() == ProductDialog::Tab::kProductInfo) {
    const bool in_code = products->search_field() == ProductDialog::SearchField::kStockCode;
    out_ << ": Product Information, search " << (in_code ? "code" : "description") << " \""
         << ToUtf8(products->search_text()) << '"';
  }
  out_ << " ---\n        ";
  for (const dialogs::Column& column : list.columns()) {
    out_ << Padded(column.header, static_cast<std::size_t>(column.width));
  }
  out_ << '\n';
  for (const dialogs::Row& row : list.rows()) {
    const std::string position = row.position > 0 ? std::to_string(row.position) : "";
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

void ConsoleEnvironment::Handle(SelectDialog& dialog, ProductDialog* products,
                                const std::wstring& line) {
  const std::wstring_view input = Trimmed(line);
  if (input.empty()) return dialog.KeyPress(dialogs::kEnterKey);
  if (input.size() == 1 && input != L"?") return dialog.KeyPress(input.front());

  const std::size_t blank = std::min(input.find(L' '), input.size());
  const std::wstring_view word = input.substr(0, blank);
  const Command* command = FindCommand(kCommands, word);
  if (!command && products) command = FindCommand(kProductCommands, word);
  try {
    if (command) return command->run({dialog, products}, Trimmed(input.substr(blank)));
  } catch (const Error&) {
    // Told below.
  }
  if (input != L"?") out_ << "There is no command \"" << ToUtf8(input) << "\" here.\n";
  out_ << "  an empty line  Enter: OK when a row is selected\n"
          "  a character    that key: type-ahead\n";
  WriteHelp(out_, kCommands);
  if (products) WriteHelp(out_, kProductCommands);
}

}  // namespace ard::console
