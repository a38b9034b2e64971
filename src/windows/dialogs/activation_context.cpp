#include "windows/dialogs/activation_context.h"

namespace ard::windows {

ActivationContext::ActivationContext(HINSTANCE module) {
  ACTCTXW request = {};
  request.cbSize = sizeof(request);
  request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  request.hModule = module;
  request.lpResourceName = MAKEINTRESOURCEW(2);
  context_ = CreateActCtxW(&request);
  if (context_ != INVALID_HANDLE_VALUE) active_ = ActivateActCtx(context_, &cookie_) != FALSE;
}

ActivationContext::~ActivationContext() {
  if (active_) DeactivateActCtx(0, cookie_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace ard::windows
