// ActivationContext: while one lives, windows that the calling thread creates get the version of
// the common controls that the library's own manifest (resource 2) asks for. Without it they still
// work, in the look that the host has chosen.
#ifndef ARD_WINDOWS_DIALOGS_ACTIVATION_CONTEXT_H_
#define ARD_WINDOWS_DIALOGS_ACTIVATION_CONTEXT_H_

#include <windows.h>

namespace ard::windows {

class ActivationContext {
 public:
  explicit ActivationContext(HINSTANCE module);
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;
  ~ActivationContext();

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_ACTIVATION_CONTEXT_H_
