#include "windows/machine/windows_environment.h"

#include <iterator>
#include <string>

#include "dialogs/address_dialog.h"
#include "dialogs/fields_dialog.h"
#include "dialogs/product_dialog.h"
#include "windows/dialogs/activation_context.h"
#include "windows/dialogs/address_window.h"
#include "windows/dialogs/fields_window.h"
#include "windows/dialogs/input_window.h"
#include "windows/dialogs/logon_window.h"
#include "windows/dialogs/product_window.h"
#include "windows/dialogs/progress_window.h"
#include "windows/dialogs/select_window.h"
#include "windows/dialogs/user_list_window.h"
#include "windows/floating_point.h"
#include "windows/machine/ansi.h"
#include "windows/machine/files.h"
#include "windows/machine/ini_file.h"
#include "windows/machine/registry.h"
#include "windows/machine/settings.h"
#include "windows/machine/trace_file.h"

namespace ard::windows {
namespace {

void RunPendingMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      // Meant for the host's own loop.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace

WindowsEnvironment::WindowsEnvironment(HINSTANCE module) : module_(module) {
  AttachTraceFile(trace(), module);
}

void WindowsEnvironment::ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) {
  ShowBox(MB_OK | (icon == Icon::kStop ? MB_ICONSTOP : MB_ICONEXCLAMATION), text, title);
}

Choice WindowsEnvironment::AskWhatToDo(std::wstring_view text, std::wstring_view title) {
  switch (ShowBox(MB_ABORTRETRYIGNORE | MB_ICONEXCLAMATION, text, title)) {
    case IDRETRY:
      return Choice::kRetry;
    case IDIGNORE:
      return Choice::kIgnore;
    default:
      return Choice::kAbort;
  }
}

int WindowsEnvironment::ShowBox(UINT kind, std::wstring_view text, std::wstring_view title) {
  const ActivationContext visual_styles(module_);
  const HWND owner = GetActiveWindow();
  const int answer = MessageBoxW(owner, std::wstring(text).c_str(), std::wstring(title).c_str(),
                                 kind | (owner ? 0 : MB_TASKMODAL));
  FloatingPoint::Establish();  // the host's windows have had their messages, too
  return answer;
}

std::wstring WindowsEnvironment::InputBox(std::wstring_view prompt, std::wstring_view title) {
  InputWindow window(prompt, title);
  Run(window);
  return window.text();
}

void WindowsEnvironment::Show(dialogs::SelectDialog& dialog) {
  SelectWindow window(dialog);
  Run(window);
}

void WindowsEnvironment::Show(dialogs::ProductDialog& dialog) {
  ProductWindow window(dialog);
  Run(window);
}

void WindowsEnvironment::Show(dialogs::LogonDialog& dialog) {
  LogonWindow window(dialog);
  Run(window);
}

void WindowsEnvironment::Show(dialogs::UserListDialog& dialog) {
  UserListWindow window(dialog);
  Run(window);
}

void WindowsEnvironment::Show(dialogs::AddressDialog& dialog) {
  AddressWindow window(dialog);
  Run(window);
}

void WindowsEnvironment::Show(dialogs::FieldsDialog& dialog) {
  FieldsWindow window(dialog);
  Run(window);
  dialog.CloseClick();
}

std::unique_ptr<ProgressDisplay> WindowsEnvironment::ShowProgress(std::wstring_view title,
                                                                  std::int32_t maximum) {
  return std::make_unique<ProgressWindow>(module_, title, maximum);
}

void WindowsEnvironment::Run(ModalWindow& window) {
  window.Run(module_);
  RunPendingMessages();
  FloatingPoint::Establish();
}

std::wstring WindowsEnvironment::GetSetting(std::wstring_view application,
                                            std::wstring_view section, std::wstring_view name,
                                            std::wstring_view otherwise) {
  return GetUserSetting(application, section, name, otherwise);
}

void WindowsEnvironment::SaveSetting(std::wstring_view application, std::wstring_view section,
                                     std::wstring_view name, std::wstring_view value) {
  SaveUserSetting(application, section, name, value);
}

std::wstring WindowsEnvironment::GetMachineSetting(std::wstring_view name) {
  std::wstring text;
  const LSTATUS status =
      ReadRegistryText(HKEY_LOCAL_MACHINE, kLibraryKey, std::wstring(name).c_str(), text);
  return status == ERROR_SUCCESS ? text : std::wstring();
}

std::wstring WindowsEnvironment::ReadIni(std::wstring_view file, std::wstring_view section,
                                         std::wstring_view key) {
  return ReadIniFile(file, section, key);
}

void WindowsEnvironment::WriteIni(std::wstring_view file, std::wstring_view section,
                                  std::wstring_view key, std::wstring_view value) {
  WriteIniFile(file, section, key, value);
}

std::wstring WindowsEnvironment::ShortPath(std::wstring_view path) { return ShortPathOf(path); }

std::wstring WindowsEnvironment::CommonFilesFolder(std::int32_t owner) {
  return CommonFilesFolderFor(owner);
}

void WindowsEnvironment::CreateShortcut(const Shortcut& shortcut) { WriteShortcut(shortcut); }

void WindowsEnvironment::TryToRead(std::wstring_view file) { TryToReadFile(file); }

void WindowsEnvironment::OpenHelp(std::wstring_view page) { OpenWithItsProgram(page); }

std::wstring WindowsEnvironment::AccountName() {
  char name[255];
  DWORD length = std::size(name);
  // The length counts the zero at the end.
  return GetUserNameA(name, &length) ? FromAnsi({name, length - 1}) : std::wstring();
}

bool WindowsEnvironment::IsCtrlDown() { return GetAsyncKeyState(VK_CONTROL) < 0; }

}  // namespace ard::windows
