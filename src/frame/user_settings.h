// The user's settings below the host's registry path, guarded: a step that fails is skipped and
// noted in the trace.
#ifndef ARD_FRAME_USER_SETTINGS_H_
#define ARD_FRAME_USER_SETTINGS_H_

#include <string>
#include <string_view>

#include "frame/context.h"

namespace ard {

// `otherwise` where there is no such setting, or it cannot be read.
inline std::wstring UserSetting(const Context& context, std::wstring_view section,
                                std::wstring_view name, std::wstring_view otherwise) {
  std::wstring setting(otherwise);
  Attempt(context.trace(), {L"Environment", L"GetSetting", name}, [&] {
    setting = context.environment.GetSetting(context.registry_path, section, name, otherwise);
  });
  return setting;
}

inline void SaveUserSetting(const Context& context, std::wstring_view section,
                            std::wstring_view name, std::wstring_view value) {
  Attempt(context.trace(), {L"Environment", L"SaveSetting", name},
          [&] { context.environment.SaveSetting(context.registry_path, section, name, value); });
}

}  // namespace ard

#endif  // ARD_FRAME_USER_SETTINGS_H_
