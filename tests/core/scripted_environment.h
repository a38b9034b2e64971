// An Environment for tests: dialogs are answered by a script, and every message is recorded.
#ifndef ARD_TESTS_CORE_SCRIPTED_ENVIRONMENT_H_
#define ARD_TESTS_CORE_SCRIPTED_ENVIRONMENT_H_

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "dialogs/address_dialog.h"
#include "dialogs/fields_dialog.h"
#include "dialogs/logon_dialog.h"
#include "dialogs/product_dialog.h"
#include "dialogs/user_list_dialog.h"
#include "frame/environment.h"
#include "simulator/fault_plan.h"
#include "simulator/ini_file.h"

namespace ard::testing {

struct Message {
  Icon icon;
  std::wstring text;
  std::wstring title;
};

class ScriptedEnvironment : public Environment {
 public:
  using Script = std::function<void(dialogs::SelectDialog&)>;

  // Answers the next dialog of that kind with `script`; one that leaves the dialog visible, and a
  // dialog without a script, ends with the close box. All lists to select from are of one kind.
  template <class Dialog = dialogs::SelectDialog>
  void Answer(std::type_identity_t<std::function<void(Dialog&)>> script) {
    using Kind = std::conditional_t<std::is_base_of_v<dialogs::SelectDialog, Dialog>,
                                    dialogs::SelectDialog, Dialog>;
    std::get<Scripts<Kind>>(scripts_).push_back(
        [script = std::move(script)](Kind& dialog) { script(dynamic_cast<Dialog&>(dialog)); });
  }

  // The machine and its user: what a test may look at and change.
  struct Machine {
    std::map<std::wstring, std::wstring> settings;       // by name
    std::map<std::wstring, std::wstring> user_settings;  // by "application|section|name"
    simulator::IniFiles ini_files;
    bool ini_files_read_only = false;
    std::set<std::wstring> held_files;  // that cannot be opened
    std::wstring account_name;
    bool ctrl_down = false;
    bool has_help = true;
    int progress_cancelled_at = 0;  // things done
    std::wstring input;             // into every input box
    std::deque<Choice> choices;     // the next answers to the question what to do; then Abort
    // What has been made and shown: of the progress "title: done/maximum", of the input boxes
    // "title: prompt", of the dialogs "form, caption: what else names it".
    std::vector<Shortcut> shortcuts;
    std::vector<std::wstring> help_pages, progress, questions, captions;
  };
  Machine& machine() { return machine_; }

  // Lets the operations count in `plan`, and fail by it.
  void Obey(simulator::FaultPlan& plan) { plan_ = &plan; }

  const std::vector<Message>& messages() const { return messages_; }
  // Those since the last time that they were taken: "! title: text", with "x" for a stop.
  std::vector<std::wstring> TakeMessages() {
    std::vector<std::wstring> texts;
    for (; taken_ < messages_.size(); ++taken_) {
      const Message& message = messages_[taken_];
      texts.push_back((message.icon == Icon::kStop ? L"x " : L"! ") + message.title + L": " +
                      message.text);
    }
    return texts;
  }

  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override {
    Step();
    messages_.push_back({icon, std::wstring(text), std::wstring(title)});
  }

  std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) override {
    Step();
    machine_.questions.push_back(std::wstring(title) + L": " + std::wstring(prompt));
    return machine_.input;
  }

  std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                          std::wstring_view name, std::wstring_view otherwise) override {
    Step();
    const auto setting = machine_.user_settings.find(SettingKey(application, section, name));
    return setting == machine_.user_settings.end() ? std::wstring(otherwise) : setting->second;
  }
  void SaveSetting(std::wstring_view application, std::wstring_view section, std::wstring_view name,
                   std::wstring_view value) override {
    Step();
    machine_.user_settings[SettingKey(application, section, name)] = value;
  }

  // Recorded among the messages.
  Choice AskWhatToDo(std::wstring_view text, std::wstring_view title) override {
    ShowMessage(Icon::kExclamation, text, title);
    if (machine_.choices.empty()) return Choice::kAbort;
    const Choice choice = machine_.choices.front();
    machine_.choices.pop_front();
    return choice;
  }

  std::wstring GetMachineSetting(std::wstring_view name) override {
    Step();
    return machine_.settings[std::wstring(name)];
  }
  std::wstring ReadIni(std::wstring_view file, std::wstring_view section,
                       std::wstring_view key) override {
    Step();
    return machine_.ini_files.Read(file, section, key);
  }
  void WriteIni(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                std::wstring_view value) override {
    Step();
    if (machine_.ini_files_read_only) throw Error(5, L"Access denied.");
    machine_.ini_files.Write(file, section, key, value);
  }
  std::wstring ShortPath(std::wstring_view path) override {
    Step();
    return std::wstring(path.substr(0, 9)) + L"~1";
  }
  std::wstring CommonFilesFolder(std::int32_t owner) override {
    Step();
    return L"C:\\Common" + std::to_wstring(owner);
  }
  void CreateShortcut(const Shortcut& shortcut) override {
    Step();
    machine_.shortcuts.push_back(shortcut);
  }
  void TryToRead(std::wstring_view file) override {
    Step();
    if (machine_.held_files.contains(std::wstring(file))) throw Error(32, L"Sharing violation.");
  }
  void OpenHelp(std::wstring_view page) override {
    Step();
    if (!machine_.has_help) throw Error(kErrorNoFile, L"There is no such file.");
    machine_.help_pages.emplace_back(page);
  }
  std::wstring AccountName() override {
    Step();
    return machine_.account_name;
  }
  bool IsCtrlDown() override {
    Step();
    return machine_.ctrl_down;
  }

  std::unique_ptr<ProgressDisplay> ShowProgress(std::wstring_view title,
                                                std::int32_t maximum) override {
    Step();
    return std::make_unique<RecordedProgress>(*this, title, maximum);
  }

  void Show(dialogs::SelectDialog& dialog) override { Present(dialog); }
  void Show(dialogs::ProductDialog& dialog) override { Present<dialogs::SelectDialog>(dialog); }
  void Show(dialogs::AddressDialog& dialog) override { Present<dialogs::SelectDialog>(dialog); }
  void Show(dialogs::LogonDialog& dialog) override { Present(dialog); }
  void Show(dialogs::UserListDialog& dialog) override { Present(dialog); }
  void Show(dialogs::FieldsDialog& dialog) override { Present(dialog); }

 private:
  template <class Dialog>
  using Scripts = std::deque<std::function<void(Dialog&)>>;

  void Step() const {
    if (plan_) plan_->Operation();
  }

  class RecordedProgress : public ProgressDisplay {
   public:
    RecordedProgress(ScriptedEnvironment& environment, std::wstring_view title,
                     std::int32_t maximum)
        : environment_(environment), title_(title), maximum_(maximum) {
      environment_.machine_.progress.push_back(Text());
    }
    bool Advance() override {
      environment_.Step();
      ++done_;
      environment_.machine_.progress.back() = Text();
      return done_ != environment_.machine_.progress_cancelled_at;
    }

   private:
    std::wstring Text() const {
      return title_ + L": " + std::to_wstring(done_) + L"/" + std::to_wstring(maximum_);
    }

    ScriptedEnvironment& environment_;
    std::wstring title_;
    std::int32_t maximum_;
    std::int32_t done_ = 0;
  };

  template <class Dialog>
  void Present(Dialog& dialog) {
    Step();
    machine_.captions.push_back(std::wstring(dialog.form()) + L", " +
                                std::wstring(dialog.caption()) + L":" + Heading(dialog));
    if (auto& scripts = std::get<Scripts<Dialog>>(scripts_); !scripts.empty()) {
      const auto script = std::move(scripts.front());
      scripts.pop_front();
      // A window goes on after a handler that memory ran out in, and so does its user.
      for (int attempt = 0; attempt < 2 && dialog.visible(); ++attempt) {
        try {
          script(dialog);
          break;
        } catch (const std::bad_alloc&) {
          continue;
        }
      }
    }
    if (dialog.visible()) dialog.CloseBox();
  }

  // The columns of lists and their widths, the welcome of a logon, the lines of a dialog that has
  // nothing else.
  static std::wstring Columns(const dialogs::ListModel& list) {
    std::wstring columns = (list.multiple() ? L" several " : L" ") + list.Title();
    for (const dialogs::Column& column : list.columns()) {
      columns += L"|" + column.header + L" " + std::to_wstring(column.width) +
                 (column.number ? L" #" : L"");
    }
    return columns;
  }
  static std::wstring Heading(dialogs::SelectDialog& dialog) {
    std::wstring heading = Columns(dialog.list());
    if (dialog.on_screen()) heading += L" on screen";
    if (dialog.width() != 0) heading += L" in " + std::to_wstring(dialog.width());
    if (auto* const products = dynamic_cast<dialogs::ProductDialog*>(&dialog)) {
      heading += L" or" + Columns(products->info_list());
    } else if (dynamic_cast<dialogs::AddressDialog*>(&dialog)) {
      for (const std::wstring_view kind : dialogs::AddressDialog::kind_names()) {
        heading.append(L" ").append(kind);
      }
    }
    return heading;
  }
  static std::wstring Heading(dialogs::UserListDialog& dialog) {
    return Columns(dialog.accounts_list()) + L" and" + Columns(dialog.host_list()) + L" " +
           std::to_wstring(dialog.host_list_height()) + L" high";
  }
  static std::wstring Heading(const dialogs::LogonDialog& dialog) {
    return L" " + dialog.welcome();
  }
  static std::wstring Heading(const dialogs::FieldsDialog& dialog) {
    std::wstring lines;
    for (const auto& line : dialog.lines()) {
      lines += L"|" + line.label + (line.number ? L" #=" : L"=") + line.text;
    }
    return lines;
  }
  static std::wstring SettingKey(std::wstring_view application, std::wstring_view section,
                                 std::wstring_view name) {
    return std::wstring(application) + L'|' + std::wstring(section) + L'|' + std::wstring(name);
  }

  simulator::FaultPlan* plan_ = nullptr;
  Machine machine_;
  std::tuple<Scripts<dialogs::SelectDialog>, Scripts<dialogs::LogonDialog>,
             Scripts<dialogs::UserListDialog>, Scripts<dialogs::FieldsDialog>>
      scripts_;
  std::vector<Message> messages_;
  std::size_t taken_ = 0;
};

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_SCRIPTED_ENVIRONMENT_H_
