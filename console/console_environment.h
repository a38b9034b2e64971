// The console's Environment: messages and dialogs as text, driven by a person or a pipe.
#ifndef ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_
#define ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "dialogs/list_model.h"
#include "frame/environment.h"
#include "simulator/ini_file.h"
#include "simulator/shared_file.h"

namespace ard::console {

// What may be repeated of a line of input: nothing from where a password may follow.
std::wstring WithoutPassword(std::wstring_view line);

class ConsoleEnvironment : public Environment {
 public:
  // Both streams carry UTF-8 and must outlive the environment.
  ConsoleEnvironment(std::istream& in, std::ostream& out) : in_(in), out_(out) {}

  // Repeats what it reads, for an input that does not show itself: a pipe.
  void set_echo(bool echo) { echo_ = echo; }

  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override;

  // The answer is a line of input; an empty one, or none, cancels.
  std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) override;

  // Draws the dialog, and again after each line of input: an empty line is Enter, a single
  // character is that key, a word is a command. The end of the input closes the dialog.
  void Show(dialogs::SelectDialog& dialog) override { Converse(dialog, nullptr); }
  void Show(dialogs::ProductDialog& dialog) override;
  // Boxes are filled by commands, such as "name ann". A password is not repeated.
  void Show(dialogs::LogonDialog& dialog) override;
  void Show(dialogs::UserListDialog& dialog) override;
  void Show(dialogs::AddressDialog& dialog) override;
  void Show(dialogs::FieldsDialog& dialog) override;

  // A dot for each step.
  std::unique_ptr<ProgressDisplay> ShowProgress(std::wstring_view title,
                                                std::int32_t maximum) override;

  // The answer is the word, or its first letter.
  Choice AskWhatToDo(std::wstring_view text, std::wstring_view title) override;

  // Settings last as long as the environment.
  std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                          std::wstring_view name, std::wstring_view otherwise) override;
  void SaveSetting(std::wstring_view application, std::wstring_view section, std::wstring_view name,
                   std::wstring_view value) override;

  // There are no settings of the machine, ini files last as long as the environment, and a path has
  // no short form; files are tried for real.
  std::wstring GetMachineSetting(std::wstring_view) override { return {}; }
  std::wstring ReadIni(std::wstring_view file, std::wstring_view section,
                       std::wstring_view key) override {
    return ini_files_.Read(file, section, key);
  }
  void WriteIni(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                std::wstring_view value) override {
    ini_files_.Write(file, section, key, value);
  }
  std::wstring ShortPath(std::wstring_view path) override { return std::wstring(path); }
  std::wstring CommonFilesFolder(std::int32_t) override { return {}; }
  void CreateShortcut(const Shortcut& shortcut) override;
  void TryToRead(std::wstring_view file) override { simulator::TryToRead(file); }
  void OpenHelp(std::wstring_view page) override;
  std::wstring AccountName() override;
  bool IsCtrlDown() override { return false; }

 private:
  // `products` is the same dialog when it is that of the products.
  void Converse(dialogs::SelectDialog& dialog, dialogs::ProductDialog* products);
  void Draw(dialogs::SelectDialog& dialog, dialogs::ProductDialog* products);
  void Handle(dialogs::SelectDialog& dialog, dialogs::ProductDialog* products,
              const std::wstring& line);
  // Shows a list without its heading.
  void DrawRows(dialogs::ListModel& list);
  // The commands of a dialog that is no list: draws it and obeys until it is hidden.
  template <class Dialog, class DrawDialog, class Commands>
  void Obey(Dialog& dialog, DrawDialog draw, const Commands& commands);
  bool ReadLine(std::wstring& line);

  std::istream& in_;
  std::ostream& out_;
  bool echo_ = false;
  std::map<std::wstring, std::wstring> settings_;
  simulator::IniFiles ini_files_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_
