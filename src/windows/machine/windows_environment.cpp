#include "windows/machine/windows_environment.h"

#include <string>

#include "dialogs/select_dialog.h"
#include "windows/dialogs/activation_context.h"
#include "windows/dialogs/select_window.h"
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

void WindowsEnvironment::Show(dialogs::SelectDialog& dialog) {
  SelectWindow(dialog).Run(module_);
  RunPendingMessages();
}

}  // namespace ard::windows
