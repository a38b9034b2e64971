#include "windows/machine/windows_environment.h"

#include <string>

#include "dialogs/product_dialog.h"
#include "windows/dialogs/activation_context.h"
#include "windows/dialogs/input_window.h"
#include "windows/dialogs/product_window.h"
#include "windows/dialogs/select_window.h"
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
  if (Trace::Sink sink = OpenTraceFile()) trace().Attach(std::move(sink));
}

void WindowsEnvironment::ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) {
  const ActivationContext visual_styles(module_);
  const HWND owner = GetActiveWindow();
  const UINT kind = icon == Icon::kStop ? MB_ICONSTOP : MB_ICONEXCLAMATION;
  MessageBoxW(owner, std::wstring(text).c_str(), std::wstring(title).c_str(),
              MB_OK | kind | (owner ? 0 : MB_TASKMODAL));
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
  // With one page, it is like any other selection dialog.
  if (!dialog.has_product_info()) return Show(static_cast<dialogs::SelectDialog&>(dialog));
  ProductWindow window(dialog);
  Run(window);
}

void WindowsEnvironment::Run(ModalWindow& window) {
  window.Run(module_);
  RunPendingMessages();
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

}  // namespace ard::windows
