// A progress display, shown for as long as this lives. One that cannot be shown is done without.
#ifndef ARD_DIALOGS_PROGRESS_H_
#define ARD_DIALOGS_PROGRESS_H_

#include <cstdint>
#include <memory>
#include <string_view>

#include "frame/context.h"

namespace ard::dialogs {

class Progress {
 public:
  Progress(const Context& context, std::wstring_view title, std::int32_t maximum)
      : context_(context) {
    Attempt(context.trace(), {L"Environment", L"ShowProgress"},
            [&] { display_ = context.environment.ShowProgress(title, maximum); });
  }

  void Advance() {
    if (!display_) return;
    Attempt(context_.trace(), {L"Environment", L"Advance"}, [&] { display_->Advance(); });
  }

 private:
  const Context& context_;
  std::unique_ptr<ProgressDisplay> display_;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_PROGRESS_H_
