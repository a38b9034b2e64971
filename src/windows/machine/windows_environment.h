// WindowsEnvironment: the machine as Windows has it.
#ifndef ARD_WINDOWS_MACHINE_WINDOWS_ENVIRONMENT_H_
#define ARD_WINDOWS_MACHINE_WINDOWS_ENVIRONMENT_H_

#include <windows.h>

#include <string_view>

#include "frame/environment.h"

namespace ard::windows {

class WindowsEnvironment : public Environment {
 public:
  // `module` is the library itself, whose resources the windows use. Opens the trace when the
  // environment variable or the registry value ARDOBJECTS_TRACE (machine/trace_file.h) asks for it.
  explicit WindowsEnvironment(HINSTANCE module);

  // Boxes and windows belong to the calling thread's active window; without one, the thread's
  // windows are disabled meanwhile.
  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override;
  void Show(dialogs::SelectDialog& dialog) override;

 private:
  HINSTANCE module_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_WINDOWS_ENVIRONMENT_H_
