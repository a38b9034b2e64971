// An Environment for tests: dialogs are answered by a script, and every message is recorded.
#ifndef ARD_TESTING_SCRIPTED_ENVIRONMENT_H_
#define ARD_TESTING_SCRIPTED_ENVIRONMENT_H_

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dialogs/select_dialog.h"
#include "frame/environment.h"
#include "simulator/fault_plan.h"

namespace ard::testing {

struct Message {
  Icon icon;
  std::wstring text;
  std::wstring title;
  bool operator==(const Message&) const = default;
};

class ScriptedEnvironment : public Environment {
 public:
  using Script = std::function<void(dialogs::SelectDialog&)>;

  // Answers the next dialog with `script`; one that leaves the dialog visible, and a dialog
  // without a script, ends with the close box.
  void Answer(Script script) { scripts_.push_back(std::move(script)); }

  // Lets the operations count in `plan`, and fail by it.
  void Obey(simulator::FaultPlan& plan) { plan_ = &plan; }

  const std::vector<Message>& messages() const { return messages_; }
  int dialogs_shown() const { return dialogs_shown_; }

  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override {
    if (plan_) plan_->Operation();
    messages_.push_back({icon, std::wstring(text), std::wstring(title)});
  }

  void Show(dialogs::SelectDialog& dialog) override {
    if (plan_) plan_->Operation();
    ++dialogs_shown_;
    if (!scripts_.empty()) {
      const Script script = std::move(scripts_.front());
      scripts_.pop_front();
      script(dialog);
    }
    if (dialog.visible()) dialog.CloseBox();
  }

 private:
  simulator::FaultPlan* plan_ = nullptr;
  std::deque<Script> scripts_;
  std::vector<Message> messages_;
  int dialogs_shown_ = 0;
};

}  // namespace ard::testing

#endif  // ARD_TESTING_SCRIPTED_ENVIRONMENT_H_
