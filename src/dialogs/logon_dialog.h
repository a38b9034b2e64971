// frmUserDetails, in which a user logs on with name and password, and frmCompanyPassword, which
// asks for a password alone; without their windows.
#ifndef ARD_DIALOGS_LOGON_DIALOG_H_
#define ARD_DIALOGS_LOGON_DIALOG_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "frame/context.h"

namespace ard::dialogs {

class LogonDialog {
 public:
  enum class Form { kUserDetails, kCompanyPassword };
  enum class Box { kName, kPassword };

  // Logs a user on; tells the user itself why it cannot.
  using Logon = std::function<bool(const std::wstring& name, const std::wstring& password)>;

  // Greets in the name of the context's application. The context has to outlive the dialog.
  LogonDialog(const Context& context, Form kind, Logon logon);
  LogonDialog(const LogonDialog&) = delete;
  LogonDialog& operator=(const LogonDialog&) = delete;

  // Before the dialog is shown: the company that its heading names, where the help pages are, and
  // what is kept of the last logon.
  void SetCompany(std::wstring_view company) { company_ = company; }
  void SetProgPath(std::wstring_view prog_path) { prog_path_ = prog_path; }
  void SetRemembered(std::int16_t remembered) { remembered_ = remembered; }
  void SetName(std::wstring_view name);

  // The published name of the form, and the window's caption.
  std::wstring_view form() const;
  const std::wstring& caption() const { return caption_; }
  const std::wstring& welcome() const { return welcome_; }
  // What it has to say meanwhile, in place of the welcome; "" for nothing.
  const std::wstring& notice() const { return notice_; }
  const std::wstring& company() const { return company_; }
  // Whether it asks for a name, remembers it and has a help page.
  bool asks_name() const { return kind_ == Form::kUserDetails; }
  // Whether it has a heading: the controls 8 (its label), 9 (the company) and 12 (the line below).
  // Without a company there is none, and an application for several at once has none.
  bool has_heading() const;

  const std::wstring& name() const { return name_; }
  const std::wstring& password() const { return password_; }
  // The box holds a number, and is ticked at 1.
  std::int16_t remembered() const { return remembered_; }
  bool remember() const { return remembered_ == 1; }
  // The box that has the focus, or is to get it.
  Box focus() const { return focus_; }

  // True until a handler has hidden the dialog; a presentation ends its modal loop then.
  bool visible() const { return visible_; }
  // True once a user has been logged on.
  bool result() const { return result_; }

  // The handlers.
  void NameChange(std::wstring_view text) { name_ = text; }
  void PasswordChange(std::wstring_view text) { password_ = text; }
  void RememberClick(bool ticked) {
    if (ticked != remember()) remembered_ = ticked;
  }
  void Ok();
  void Cancel() { visible_ = false; }
  void CloseBox() { Cancel(); }
  void HelpClick();

 private:
  const Context& context_;
  Form kind_;
  Logon logon_;
  std::wstring caption_;
  std::wstring welcome_;
  std::wstring notice_;
  std::wstring company_;
  std::wstring prog_path_;
  std::wstring name_;
  std::wstring password_;
  std::int16_t remembered_ = 0;
  Box focus_;
  bool visible_ = true;
  bool result_ = false;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_LOGON_DIALOG_H_
