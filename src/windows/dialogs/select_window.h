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
  explicit SelectWindow(dialogs::SelectDialog& dialog) : SelectWindow(dialog, dialog.list()) {}

 protected:
  // For a window that has more than one list in its body, the part above OK and Cancel.
  SelectWindow(dialogs::SelectDialog& dialog, dialogs::ListModel& list);

  virtual void CreateBody(HINSTANCE module) { list_.Create(module, handle()); }
  // What the foot has beside OK and Cancel.
  virtual HWND CreateExtraButton() { return nullptr; }
  virtual void Changed();  // something that may have changed the model has happened

  std::vector<PagedList*> Lists() override { return {&list_}; }
  std::wstring* Kept() override { return &dialog_.placement; }
  SIZE BodySize() const override { return list_.SizeFor(kInitialRows); }
  SIZE LeastBodySize() const override { return {0, list_.SizeFor(kLeastRows).cy}; }
  void PutBody(Placement& placement, const RECT& area) override {
    placement.Put(list_.handle(), area);
  }
  void Placed() override { shown_->Placed(); }
  void Opened() override { shown_->Open(); }
  HWND InitialFocus() const override { return shown_->focus_window(); }
  void Command(int id) override;

  static constexpr int kInitialRows = 20;
  static constexpr int kLeastRows = 3;

  PagedList::Events ListEvents();
  PagedList& list() { return list_; }
  // The list that is to be seen: `list` at first.
  PagedList& shown() { return *shown_; }
  void set_shown(PagedList& list) { shown_ = &list; }

 private:
  const wchar_t* Caption() const override { return dialog_.caption().c_str(); }
  bool OnScreen() const override { return dialog_.on_screen(); }
  void CreateControls(HINSTANCE module) override;
  int OpeningWidth() const override;
  void CloseBox() override;
  void Wheel(int delta) override { shown_->Wheel(delta); }

  void FinishIfHidden();

  dialogs::SelectDialog& dialog_;
  PagedList list_;
  PagedList* shown_ = &list_;
  HWND ok_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_SELECT_WINDOW_H_
