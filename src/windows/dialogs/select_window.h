// SelectWindow: the window of a selection dialog (dialogs/select_dialog.h): a list, OK and Cancel.
#ifndef ARD_WINDOWS_DIALOGS_SELECT_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_SELECT_WINDOW_H_

#include <windows.h>

#include "dialogs/select_dialog.h"
#include "windows/dialogs/modal_window.h"
#include "windows/dialogs/paged_list.h"

namespace ard::windows {

class SelectWindow : public ModalWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit SelectWindow(dialogs::SelectDialog& dialog);

 private:
  const wchar_t* Caption() const override { return dialog_.caption().c_str(); }
  void CreateControls(HINSTANCE module) override;
  void MetricsChanged() override { list_.SetMetrics(metrics()); }
  SIZE InitialSize() const override;
  SIZE MinimumSize() const override;
  void Layout(SIZE client) override;
  void Opened() override { list_.Open(); }
  HWND InitialFocus() const override { return list_.focus_window(); }
  void Command(int id) override;
  void CloseBox() override;
  void Wheel(int delta) override { list_.Wheel(delta); }

  SIZE SizeFor(int rows) const;
  int HeightBelowList() const;
  void FinishIfHidden();
  void UpdateOk();

  dialogs::SelectDialog& dialog_;
  PagedList list_;
  HWND ok_ = nullptr;
  HWND cancel_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_SELECT_WINDOW_H_
