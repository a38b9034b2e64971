// WindowsEnvironment: the machine as Windows has it.
#ifndef ARD_WINDOWS_MACHINE_WINDOWS_ENVIRONMENT_H_
#define ARD_WINDOWS_MACHINE_WINDOWS_ENVIRONMENT_H_

#include <windows.h>

#include <string>
#include <string_view>

#include "frame/environment.h"

namespace ard::windows {

class ModalWindow;

class WindowsEnvironment : public Environment {
 public:
  // `module` is the library itself, whose resources the windows use. Opens the trace when the
  // environment variable or the registry value ARDOBJECTS_TRACE (machine/trace_file.h) asks for it.
  explicit WindowsEnvironment(HINSTANCE module);

  // Boxes and windows belong to the calling thread's active window; without one, the thread's
  // windows are disabled meanwhile.
  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override;
  std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) override;
  void Show(dialogs::SelectDialog& dialog) override;
  void Show(dialogs::ProductDialog& dialog) override;
  void Show(dialogs::LogonDialog& dialog) override;
  void Show(dialogs::UserListDialog& dialog) override;
  void Show(dialogs::AddressDialog& dialog) override;
  void Show(dialogs::FieldsDialog& dialog) override;
  std::unique_ptr<ProgressDisplay> ShowProgress(std::wstring_view title,
                                                std::int32_t maximum) override;
  Choice AskWhatToDo(std::wstring_view text, std::wstring_view title) override;

  // As windows/machine/settings.h says.
  std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                          std::wstring_view name, std::wstring_view otherwise) override;
  void SaveSetting(std::wstring_view application, std::wstring_view section, std::wstring_view name,
                   std::wstring_view value) override;

  // A text of that name under Software\ArdObjects100 of the machine.
  std::wstring GetMachineSetting(std::wstring_view name) override;
  // As windows/machine/ini_file.h and files.h say.
  std::wstring ReadIni(std::wstring_view file, std::wstring_view section,
                       std::wstring_view key) override;
  void WriteIni(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                std::wstring_view value) override;
  std::wstring ShortPath(std::wstring_view path) override;
  std::wstring CommonFilesFolder(std::int32_t owner) override;
  void CreateShortcut(const Shortcut& shortcut) override;
  void TryToRead(std::wstring_view file) override;
  void OpenHelp(std::wstring_view page) override;

  std::wstring AccountName() override;
  bool IsCtrlDown() override;

 private:
  int ShowBox(UINT kind, std::wstring_view text, std::wstring_view title);
  void Run(ModalWindow& window);

  HINSTANCE module_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_WINDOWS_ENVIRONMENT_H_
