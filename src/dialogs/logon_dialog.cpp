#include "dialogs/logon_dialog.h"

#include <utility>

#include "frame/text.h"

namespace ard::dialogs {
namespace {

// Who logs on with the company's password.
constexpr std::wstring_view kManager = L"MANAGER";

constexpr std::wstring_view kHelpPage = L"\\Html\\Logging On.htm";

}  // namespace

LogonDialog::LogonDialog(const Context& context, Form kind, Logon logon)
    : context_(context),
      kind_(kind),
      logon_(std::move(logon)),
      caption_(asks_name() ? L"Logon" : L"Company Password"),
      welcome_(L"Welcome to " + context.app_name + L"."),
      name_(asks_name() ? std::wstring_view() : kManager),
      focus_(asks_name() ? Box::kName : Box::kPassword) {}

void LogonDialog::SetName(std::wstring_view name) {
  name_ = name;
  if (!Trimmed(name_).empty()) focus_ = Box::kPassword;
}

std::wstring_view LogonDialog::form() const {
  return asks_name() ? L"frmUserDetails" : L"frmCompanyPassword";
}

bool LogonDialog::has_heading() const {
  return asks_name() && !Trimmed(company_).empty() &&
         context_.app_name.find(L"Multi") == std::wstring::npos;
}

void LogonDialog::Ok() {
  if (Trimmed(name_).empty()) {
    context_.ShowMessage(Icon::kExclamation, L"You must enter a user name.", context_.app_name);
    focus_ = Box::kName;
  } else if (logon_(name_, password_)) {
    result_ = true;
    visible_ = false;
  } else {
    focus_ = asks_name() ? Box::kName : Box::kPassword;
  }
}

void LogonDialog::HelpClick() {
  const std::wstring page = prog_path_ + std::wstring(kHelpPage);
  notice_.clear();
  Attempt(context_.trace(), {L"Environment", L"OpenHelp", page}, [&] {
    try {
      context_.environment.OpenHelp(page);
    } catch (const Error& error) {
      if (error.number() == kErrorNoFile || error.number() == kErrorNoPath) {
        notice_ = L"The help page " + page.substr(page.rfind(L'\\') + 1) + L" is not there.";
      }
      throw;
    }
  });
}

}  // namespace ard::dialogs
