#include "console/console_environment.h"

#include <algorithm>
#include <cstdlib>
#include <istream>
#include <iterator>
#include <ostream>
#include <utility>

#include "dialogs/address_dialog.h"
#include "dialogs/fields_dialog.h"
#include "dialogs/logon_dialog.h"
#include "dialogs/product_dialog.h"
#include "dialogs/user_list_dialog.h"
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

template <class OnWhat>
struct CommandOn {
  std::wstring_view word;
  const char* help;
  // Throws Error when the argument is not what it takes.
  void (*run)(OnWhat& target, std::wstring_view argument);
};
using Command = CommandOn<const Target>;

// A number from 1 to `most`. Throws Error that says what is wrong with another.
template <class Count>
std::int32_t Number(std::wstring_view text, Count most) {
  std::int32_t number = 0;
  try {
    number = Value(text).ToLong();
  } catch (const Error&) {
    // Told below.
  }
  if (number < 1 || number > static_cast<std::int32_t>(most)) {
    throw Error(kErrorOverflow, L"\"" + std::wstring(text) + L"\" is not from 1 to " +
                                    std::to_wstring(most) + L".");
  }
  return number;
}

// A row of a list.
template <class Dialog>
void SelectRow(Dialog& dialog, std::wstring_view text) {
  dialogs::ListModel& list = dialog.list();
  if (list.row_count() == 0) throw Error(kErrorOverflow, L"There is no row.");
  list.SelectItem(Number(text, list.row_count()));
}

constexpr Command kCommands[] = {
    {L"down", "", [](const Target& t, std::wstring_view) { t.dialog.list().LineDown(); }},
    {L"up", "", [](const Target& t, std::wstring_view) { t.dialog.list().LineUp(); }},
    {L"pgdn", "", [](const Target& t, std::wstring_view) { t.dialog.list().PageDown(); }},
    {L"pgup", "", [](const Target& t, std::wstring_view) { t.dialog.list().PageUp(); }},
    {L"home", "", [](const Target& t, std::wstring_view) { t.dialog.list().Home(); }},
    {L"end", "", [](const Target& t, std::wstring_view) { t.dialog.list().End(); }},
    {L"select", "N  the row at position N",
     [](const Target& t, std::wstring_view n) { SelectRow(t.dialog, n); }},
    {L"toggle", "  the row at the cursor, in or, where several can be picked, out",
     [](const Target& t, std::wstring_view) { t.dialog.list().Toggle(); }},
    {L"page", "N  rows at once",
     [](const Target& t, std::wstring_view n) { t.dialog.list().SetPageSize(Number(n, 1000)); }},
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
       t.products->TabClick(static_cast<ProductDialog::Tab>(Number(n, 2)));
     }},
    {L"field", "N  searches the code (1) or the description (2)",
     [](const Target& t, std::wstring_view n) {
       const bool description = Number(n, 2) == 2;
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
       const std::size_t columns = t.products->info_list().columns().size();
       t.products->ColumnClick(static_cast<std::size_t>(Number(n, columns)) - 1);
     }},
    {L"extend", "  to the next row, where several can be picked",
     [](const Target& t, std::wstring_view) { t.dialog.list().LineDown(dialogs::Pick::kExtend); }},
    {L"skip", "  a row, leaving what is picked",
     [](const Target& t, std::wstring_view) { t.dialog.list().LineDown(dialogs::Pick::kNone); }},
};

using dialogs::LogonDialog;
using dialogs::UserListDialog;

constexpr CommandOn<LogonDialog> kLogonCommands[] = {
    {L"name", "TEXT", [](LogonDialog& d, std::wstring_view text) { d.NameChange(text); }},
    {L"password", "TEXT", [](LogonDialog& d, std::wstring_view text) { d.PasswordChange(text); }},
    {L"remember", "  ticks the box, or not",
     [](LogonDialog& d, std::wstring_view) { d.RememberClick(!d.remember()); }},
    {L"ok", "", [](LogonDialog& d, std::wstring_view) { d.Ok(); }},
    {L"cancel", "", [](LogonDialog& d, std::wstring_view) { d.Cancel(); }},
    {L"help", "", [](LogonDialog& d, std::wstring_view) { d.HelpClick(); }},
};

constexpr CommandOn<UserListDialog> kUserListCommands[] = {
    {L"tab", "N  1 for the accounts, 2 for the host",
     [](UserListDialog& d, std::wstring_view n) {
       d.TabClick(Number(n, 2) == 2 ? UserListDialog::Tab::kHost : UserListDialog::Tab::kAccounts);
     }},
    {L"select", "N  the row at position N",
     [](UserListDialog& d, std::wstring_view n) { SelectRow(d, n); }},
    {L"refresh", "", [](UserListDialog& d, std::wstring_view) { d.RefreshClick(); }},
    {L"delete", "", [](UserListDialog& d, std::wstring_view) { d.DeleteClick(); }},
    {L"close", "", [](UserListDialog& d, std::wstring_view) { d.CloseBox(); }},
};

using dialogs::AddressDialog;
using dialogs::AddressKind;
using dialogs::FieldsDialog;

constexpr CommandOn<FieldsDialog> kFieldsCommands[] = {
    {L"close", "", [](FieldsDialog& d, std::wstring_view) { d.CloseClick(); }},
};

constexpr CommandOn<AddressDialog> kAddressCommands[] = {
    {L"kind", "N  1 for sales, 2 for purchase, 3 for the company",
     [](AddressDialog& d, std::wstring_view n) {
       d.KindChange(static_cast<AddressKind>(Number(n, AddressDialog::kind_names().size()) - 1));
     }},
    {L"type", "TEXT  in the account's field, without leaving it",
     [](AddressDialog& d, std::wstring_view text) {
       if (d.account_enabled()) d.AccountChange(text);
     }},
    {L"account", "TEXT",
     [](AddressDialog& d, std::wstring_view text) {
       if (!d.account_enabled()) return;
       d.AccountChange(text);
       if (!d.AccountEntered()) throw Error(kErrorOverflow, L"There is no such account.");
     }},
    {L"lookup", "  searches for an account",
     [](AddressDialog& d, std::wstring_view) { d.LookUpClick(); }},
    {L"select", "N  the row at position N",
     [](AddressDialog& d, std::wstring_view n) { SelectRow(d, n); }},
    {L"details", "", [](AddressDialog& d, std::wstring_view) { d.DetailsClick(); }},
    {L"ok", "", [](AddressDialog& d, std::wstring_view) { d.Ok(); }},
    {L"cancel", "", [](AddressDialog& d, std::wstring_view) { d.Cancel(); }},
};

// Shows how far a task has come, on a line of its own.
class Dots : public ProgressDisplay {
 public:
  Dots(std::ostream& out, std::wstring_view title) : out_(out) { out_ << ToUtf8(title) << ' '; }
  ~Dots() override { out_ << '\n'; }
  bool Advance() override {
    out_ << '.' << std::flush;
    return true;
  }

 private:
  std::ostream& out_;
};

template <class OnWhat, std::size_t size>
const CommandOn<OnWhat>* FindCommand(const CommandOn<OnWhat> (&commands)[size],
                                     std::wstring_view word) {
  const auto known = std::find_if(
      std::begin(commands), std::end(commands),
      [&](const CommandOn<OnWhat>& command) { return EqualsIgnoreCase(command.word, word); });
  return known == std::end(commands) ? nullptr : &*known;
}

// The word that a line begins with, and what follows it.
std::pair<std::wstring_view, std::wstring_view> Split(std::wstring_view line) {
  const std::size_t blank = std::min(line.find(L' '), line.size());
  return {line.substr(0, blank), Trimmed(line.substr(blank))};
}

template <class OnWhat, std::size_t size>
void WriteHelp(std::ostream& out, const CommandOn<OnWhat> (&commands)[size]) {
  for (const CommandOn<OnWhat>& command : commands) {
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

std::wstring WithoutPassword(std::wstring_view line) {
  const std::wstring upper = UpperCase(line);
  std::size_t end = line.size();
  for (const std::wstring_view word : {L"PASSWORD", L"LOGONUSER", L"PASSLOGGED"}) {
    const std::size_t found = upper.find(word);
    if (found != std::wstring::npos) end = std::min(end, found + word.size());
  }
  std::wstring repeated(line.substr(0, end));
  return end < line.size() ? repeated + L"..." : repeated;
}

void ConsoleEnvironment::ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) {
  out_ << (icon == Icon::kStop ? "[stop] " : "[!] ") << ToUtf8(title) << ": ";
  for (const char c : ToUtf8(text)) {
    if (c == '\n') out_ << "\n   ";
    if (c != '\r') out_ << (c == '\n' ? ' ' : c);
  }
  out_ << '\n';
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

template <class Dialog, class DrawDialog, class Commands>
void ConsoleEnvironment::Obey(Dialog& dialog, DrawDialog draw, const Commands& commands) {
  std::wstring line;
  while (dialog.visible()) {
    out_ << "--- " << ToUtf8(dialog.caption()) << " ---\n";
    draw();
    out_ << "(? helps) " << std::flush;
    if (!ReadLine(line)) return dialog.CloseBox();
    const auto [word, argument] = Split(Trimmed(line));
    const auto* command = FindCommand(commands, word);
    try {
      if (command) {
        command->run(dialog, argument);
        continue;
      }
    } catch (const Error& error) {
      out_ << ToUtf8(error.text()) << '\n';
      continue;
    }
    WriteHelp(out_, commands);
  }
}

void ConsoleEnvironment::Show(LogonDialog& dialog) {
  Obey(
      dialog,
      [&] {
        out_ << ToUtf8(dialog.welcome()) << '\n';
        if (dialog.has_heading()) out_ << "Company: " << ToUtf8(dialog.company()) << '\n';
        if (dialog.asks_name()) out_ << "User name: " << ToUtf8(dialog.name()) << '\n';
        out_ << "Password: " << std::string(dialog.password().size(), '*') << '\n';
        if (dialog.asks_name()) out_ << (dialog.remember() ? "[x]" : "[ ]") << " Remember\n";
      },
      kLogonCommands);
}

void ConsoleEnvironment::Show(UserListDialog& dialog) {
  Obey(
      dialog,
      [&] {
        if (dialog.tab() == UserListDialog::Tab::kHost) {
          out_ << ToUtf8(dialog.host_name()) << '\n';
        }
        out_ << "        ";
        DrawRows(dialog.list());
        out_ << (dialog.can_delete() ? "Refresh, Delete, Close " : "Refresh, Close ");
      },
      kUserListCommands);
}

void ConsoleEnvironment::Show(AddressDialog& dialog) {
  dialog.list().SetPageSize(kPageSize);
  Obey(
      dialog,
      [&] {
        out_ << ToUtf8(AddressDialog::kind_names()[static_cast<std::size_t>(dialog.kind())]);
        if (dialog.account_enabled()) {
          out_ << ", account \"" << ToUtf8(dialog.account()) << "\" "
               << ToUtf8(dialog.account_name()) << (dialog.entry_pending() ? "..." : "");
        }
        out_ << "\n        ";
        DrawRows(dialog.list());
        out_ << (dialog.ok_enabled() ? "OK, Details, Cancel " : "Cancel ");
      },
      kAddressCommands);
}

void ConsoleEnvironment::Show(FieldsDialog& dialog) {
  Obey(
      dialog,
      [&] {
        for (const FieldsDialog::Line& line : dialog.lines()) {
          out_ << ToUtf8(line.label) << ": " << ToUtf8(line.text) << '\n';
        }
      },
      kFieldsCommands);
}

std::unique_ptr<ProgressDisplay> ConsoleEnvironment::ShowProgress(std::wstring_view title,
                                                                  std::int32_t) {
  return std::make_unique<Dots>(out_, title);
}

Choice ConsoleEnvironment::AskWhatToDo(std::wstring_view text, std::wstring_view title) {
  ShowMessage(Icon::kExclamation, text, title);
  out_ << "Abort, Retry or Ignore? " << std::flush;
  std::wstring answer;
  if (!ReadLine(answer) || answer.empty()) return Choice::kAbort;
  const wchar_t letter = UpperCase(answer)[0];
  return letter == L'R' ? Choice::kRetry : letter == L'I' ? Choice::kIgnore : Choice::kAbort;
}

void ConsoleEnvironment::CreateShortcut(const Shortcut& shortcut) {
  out_ << "[shortcut] " << ToUtf8(shortcut.file) << " -> " << ToUtf8(shortcut.target)
       << ToUtf8(shortcut.arguments) << '\n';
}

void ConsoleEnvironment::OpenHelp(std::wstring_view page) {
  out_ << "[help] " << ToUtf8(page) << '\n';
}

std::wstring ConsoleEnvironment::AccountName() {
  const char* user = std::getenv("USER");
  return user ? FromUtf8(user) : std::wstring();
}

bool ConsoleEnvironment::ReadLine(std::wstring& line) {
  std::string bytes;
  if (!std::getline(in_, bytes)) return false;
  if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
  line = FromUtf8(bytes);
  if (echo_) out_ << ToUtf8(WithoutPassword(line)) << '\n';
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
  DrawRows(list);
  out_ << list.row_count() << " rows" << (dialog.ok_enabled() ? ", OK" : "")
       << ", Cancel (? helps) " << std::flush;
}

void ConsoleEnvironment::DrawRows(dialogs::ListModel& list) {
  for (const dialogs::Column& column : list.columns()) {
    out_ << Padded(column.header, static_cast<std::size_t>(column.width));
  }
  out_ << '\n';
  for (list.rows(); list.looking();) list.Home();
  if (list.rows().empty() && !list.WhyEmpty().empty()) {
    out_ << "        " << ToUtf8(list.WhyEmpty()) << '\n';
  }
  for (const dialogs::Row& row : list.rows()) {
    const std::string position = row.position > 0 ? std::to_string(row.position) : "";
    out_ << (list.IsSelected(row) ? '>' : ' ')
         << std::string(position.size() < 5 ? 5 - position.size() : 0, ' ') << position
         << (row.color == dialogs::kDefaultColor ? ' '
             : row.color == dialogs::kRed        ? '!'
                                                 : '*')
         << ' ';
    for (std::size_t i = 0; i < list.columns().size(); ++i) {
      out_ << Padded(row.Cell(static_cast<int>(i) + 1),
                     static_cast<std::size_t>(list.columns()[i].width));
    }
    out_ << '\n';
  }
}

void ConsoleEnvironment::Handle(SelectDialog& dialog, ProductDialog* products,
                                const std::wstring& line) {
  const std::wstring_view input = Trimmed(line);
  if (input.empty()) return dialog.KeyPress(dialogs::kEnterKey);
  if (input.size() == 1 && input != L"?") return dialog.KeyPress(input.front());

  const auto [word, argument] = Split(input);
  const Command* command = FindCommand(kCommands, word);
  if (!command && products) command = FindCommand(kProductCommands, word);
  try {
    if (command) {
      const Target target = {dialog, products};
      return command->run(target, argument);
    }
  } catch (const Error& error) {
    out_ << ToUtf8(error.text()) << '\n';
    return;
  }
  if (input != L"?")
    out_ << "There is no command \"" << ToUtf8(WithoutPassword(input)) << "\" here.\n";
  out_ << "  an empty line  Enter: OK when a row is selected\n"
          "  a character    that key: type-ahead\n";
  WriteHelp(out_, kCommands);
  if (products) WriteHelp(out_, kProductCommands);
}

}  // namespace ard::console
