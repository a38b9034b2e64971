// AddressWindow: the window of the delivery addresses (dialogs/address_dialog.h): a selection
// window with the kind and the account above its list, and a button for the details.
#ifndef ARD_WINDOWS_DIALOGS_ADDRESS_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_ADDRESS_WINDOW_H_

#include <windows.h>

#include <functional>
#include <optional>

#include "dialogs/address_dialog.h"
#include "windows/dialogs/select_window.h"

namespace ard::windows {

class AddressWindow : public SelectWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit AddressWindow(dialogs::AddressDialog& dialog) : SelectWindow(dialog), dialog_(dialog) {}

 private:
  void CreateBody(HINSTANCE module) override;
  HWND CreateExtraButton() override;
  void Changed() override;
  HWND InitialFocus() const override;
  void Command(int id) override;
  bool HandleKey(HWND control, WPARAM key) override;
  void Handled(const MSG& message) override;
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

  // The entry of an account is complete when Enter is pressed in its box, and when the user goes on
  // to another control but those that make it pointless. An unknown account is to be
  // entered again.
  void AccountEntered();
  // Calls a handler of the dialog, and shows what comes of it.
  void Do(const std::function<void()>& handler);
  void RefreshHeading();

  dialogs::AddressDialog& dialog_;
  HWND kind_ = nullptr;
  HWND account_ = nullptr;
  HWND look_up_ = nullptr;
  HWND name_ = nullptr;
  HWND details_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_ADDRESS_WINDOW_H_
