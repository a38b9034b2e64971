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

  // False when the user has cancelled the task.
  bool Advance() {
    if (!display_) return true;
    Attempt(context_.trace(), {L"Environment", L"Advance"},
            [&] { cancelled_ = !display_->Advance(); });
    return !cancelled_;
  }
  bool cancelled() const { return cancelled_; }

 private:
  const Context& context_;
  std::unique_ptr<ProgressDisplay> display_;
  bool cancelled_ = false;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_PROGRESS_H_
