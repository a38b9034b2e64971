// An Environment for tests: dialogs are answered by a script, and every message is recorded.
#ifndef ARD_TESTING_SCRIPTED_ENVIRONMENT_H_
#define ARD_TESTING_SCRIPTED_ENVIRONMENT_H_

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dialogs/product_dialog.h"
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
  using ProductScript = std::function<void(dialogs::ProductDialog&)>;

  // Answers the next dialog with `script`; one that leaves the dialog visible, and a dialog
  // without a script, ends with the close box.
  void Answer(Script script) { scripts_.push_back(std::move(script)); }
  void AnswerProducts(ProductScript script) {
    Answer([script = std::move(script)](dialogs::SelectDialog& dialog) {
      script(dynamic_cast<dialogs::ProductDialog&>(dialog));
    });
  }
  // Answers every input box.
  void AnswerInput(std::wstring text) { input_ = std::move(text); }
  // What the input boxes asked, as "title: prompt".
  const std::vector<std::wstring>& questions() const { return questions_; }

  // The user's settings, by "application|section|name".
  std::map<std::wstring, std::wstring>& settings() { return settings_; }

  // Lets the operations count in `plan`, and fail by it.
  void Obey(simulator::FaultPlan& plan) { plan_ = &plan; }

  const std::vector<Message>& messages() const { return messages_; }
  int dialogs_shown() const { return dialogs_shown_; }

  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override {
    if (plan_) plan_->Operation();
    messages_.push_back({icon, std::wstring(text), std::wstring(title)});
  }

  std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) override {
    if (plan_) plan_->Operation();
    questions_.push_back(std::wstring(title) + L": " + std::wstring(prompt));
    return input_;
  }

  std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                          std::wstring_view name, std::wstring_view otherwise) override {
    if (plan_) plan_->Operation();
    const auto setting = settings_.find(SettingKey(application, section, name));
    return setting == settings_.end() ? std::wstring(otherwise) : setting->second;
  }
  void SaveSetting(std::wstring_view application, std::wstring_view section, std::wstring_view name,
                   std::wstring_view value) override {
    if (plan_) plan_->Operation();
    settings_[SettingKey(application, section, name)] = value;
  }

  void Show(dialogs::ProductDialog& dialog) override {
    Show(static_cast<dialogs::SelectDialog&>(dialog));
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
  static std::wstring SettingKey(std::wstring_view application, std::wstring_view section,
                                 std::wstring_view name) {
    return std::wstring(application) + L'|' + std::wstring(section) + L'|' + std::wstring(name);
  }

  simulator::FaultPlan* plan_ = nullptr;
  std::wstring input_;
  std::vector<std::wstring> questions_;
  std::map<std::wstring, std::wstring> settings_;
  std::deque<Script> scripts_;
  std::vector<Message> messages_;
  int dialogs_shown_ = 0;
};

}  // namespace ard::testing

#endif  // ARD_TESTING_SCRIPTED_ENVIRONMENT_H_
