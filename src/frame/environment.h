// Environment: everything the library asks of the machine it runs on, behind one seam. There is a
// Windows one, a console one, and a scripted one for tests. Every operation may throw Error.
#ifndef ARD_FRAME_ENVIRONMENT_H_
#define ARD_FRAME_ENVIRONMENT_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/trace.h"

namespace ard {

namespace dialogs {
class AddressDialog;
class FieldsDialog;
class LogonDialog;
class ProductDialog;
class SelectDialog;
class UserListDialog;
}  // namespace dialogs

enum class Icon { kExclamation, kStop };

// What a user may answer when a step has failed.
enum class Choice { kAbort, kRetry, kIgnore };

// A shortcut: the file that it is, and what it starts, in a normal window.
struct Shortcut {
  std::wstring file;
  std::wstring target;
  std::wstring arguments;
  std::wstring working_folder;
  std::wstring description;
};

// What is shown of a task that takes its time, until it is destroyed.
class ProgressDisplay {
 public:
  virtual ~ProgressDisplay() = default;
  // One more of the maximum is done. False when the user has cancelled the task.
  virtual bool Advance() = 0;
};

class Environment {
 public:
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  virtual ~Environment() = default;

  // A modal message with an OK button.
  virtual void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) = 0;

  // Asks for a line of text, modally; "" when the user cancels.
  virtual std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) = 0;

  // Shows the dialog modally and returns once it has hidden itself (`dialog.visible()` is false).
  virtual void Show(dialogs::SelectDialog& dialog) = 0;
  virtual void Show(dialogs::ProductDialog& dialog) = 0;
  virtual void Show(dialogs::LogonDialog& dialog) = 0;
  virtual void Show(dialogs::UserListDialog& dialog) = 0;
  virtual void Show(dialogs::AddressDialog& dialog) = 0;
  virtual void Show(dialogs::FieldsDialog& dialog) = 0;

  // A modal question with the exclamation icon and the buttons Abort, Retry and Ignore.
  virtual Choice AskWhatToDo(std::wstring_view text, std::wstring_view title) = 0;

  // Shows that `maximum` things are being done.
  virtual std::unique_ptr<ProgressDisplay> ShowProgress(std::wstring_view title,
                                                        std::int32_t maximum) = 0;

  // The user's settings: text by application, section and name, such as "Options\ProductSearch" and
  // "Tab". `otherwise` is the answer where there is none.
  virtual std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                                  std::wstring_view name, std::wstring_view otherwise) = 0;
  virtual void SaveSetting(std::wstring_view application, std::wstring_view section,
                           std::wstring_view name, std::wstring_view value) = 0;

  // A setting of the whole machine, under the library's own key; "" when there is none.
  virtual std::wstring GetMachineSetting(std::wstring_view name) = 0;

  // A private profile, such as "veltrix.ini"; a name without a folder is one in the Windows folder.
  // A value has no blanks around it and at most kIniValueLength characters: the rest is not read.
  // It is "" when there is none.
  static constexpr std::size_t kIniValueLength = 254;
  virtual std::wstring ReadIni(std::wstring_view file, std::wstring_view section,
                               std::wstring_view key) = 0;
  virtual void WriteIni(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                        std::wstring_view value) = 0;

  // The short (8.3) form of a path, of less than 255 characters.
  virtual std::wstring ShortPath(std::wstring_view path) = 0;
  // The folder of program files that all programs share; `owner` is a window handle.
  virtual std::wstring CommonFilesFolder(std::int32_t owner) = 0;
  virtual void CreateShortcut(const Shortcut& shortcut) = 0;
  // Opens a file for reading and closes it again. Throws when it cannot be opened, because another
  // process holds it exclusively or for any other reason; it does not mind others who share it.
  virtual void TryToRead(std::wstring_view file) = 0;
  // Shows a page of help in whatever the user reads such pages with.
  virtual void OpenHelp(std::wstring_view page) = 0;

  // Who uses the machine; "" when that cannot be told.
  virtual std::wstring AccountName() = 0;
  // Whether the Ctrl key is held down at this moment.
  virtual bool IsCtrlDown() = 0;

  Trace& trace() { return trace_; }

 private:
  Trace trace_;
};

}  // namespace ard

#endif  // ARD_FRAME_ENVIRONMENT_H_
