// PagedList: a list model as a list view with a scroll bar of its own. The list view holds the rows
// of the page shown and nothing else, so that the list may be of any length; the scroll bar covers
// the whole row count. Everything that the user does goes to the model, and what the model then
// shows and has selected is drawn.
//
// A double-click anywhere on it counts, below the rows, too: it stands for OK, and it is the
// selection, not the pointer, that says which row is meant. With multiple selection, Shift extends
// it, Ctrl with a click or the space bar takes a row in or out, and arrow keys with Ctrl only move
// the cursor, as in any list view.
#ifndef ARD_WINDOWS_DIALOGS_PAGED_LIST_H_
#define ARD_WINDOWS_DIALOGS_PAGED_LIST_H_

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/list_model.h"
#include "windows/dialogs/accessible_list.h"
#include "windows/dialogs/dialog_window.h"
#include "windows/dialogs/metrics.h"

namespace ard::windows {

class PagedList : private DialogWindow {
 public:
  struct Events {
    std::function<void(wchar_t key)> key_press;  // a character
    std::function<void()> double_click;
    std::function<void()> changed;  // after anything that may have changed the model
    std::function<void(std::size_t index)> column_click;  // without it, headers take no clicks
  };

  PagedList(dialogs::ListModel& model, Events events) : model_(model), events_(std::move(events)) {}
  ~PagedList() override;

  // The owner window calls these in this order. No page is asked for before Open.
  void Create(HINSTANCE module, HWND parent);
  void SetMetrics(const Metrics& metrics);  // again, before Placed, when they have changed
  SIZE SizeFor(int rows) const;             // with every column at its width
  void Placed();                            // the window has got its place
  void Open();

  using DialogWindow::handle;
  // Calls `action`, a handler of the model, and draws what that now shows. Not while another one
  // runs, or before Open.
  void Do(const std::function<void()>& action);
  // Draws what the model now shows.
  void Refresh() {
    Do([] {});
  }
  // Takes the focus, with a row selected if there is one.
  void Enter();
  void Wheel(int delta);

  // Of the columns, as they are to be where there is room for them.
  std::vector<int>& widths() { return widths_; }
  // The window that takes the focus.
  HWND focus_window() const { return list_; }

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;
  std::optional<LRESULT> HandleNotification(NMHDR& notification);
  std::optional<LRESULT> CustomDraw(NMLVCUSTOMDRAW& draw) const;
  void DrawWhyEmpty(HDC dc) const;
  void GetText(LVITEMW& item) const;
  std::optional<LRESULT> PaintBorder(WPARAM region) const;

  // The list view's own messages, before it sees them.
  static LRESULT CALLBACK ListProcedure(HWND list, UINT message, WPARAM wparam,
                                        LPARAM lparam) noexcept;
  std::optional<LRESULT> HandleList(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT CallList(UINT message, WPARAM wparam, LPARAM lparam) const;
  bool HandleKey(WPARAM key);
  void Click(POINT point, WPARAM keys);
  void DoubleClick(POINT point, WPARAM keys);
  int RowAt(POINT point) const;
  // Shows the whole text of the cell there when there is no room for it.
  void TipFor(POINT point);
  std::optional<LRESULT> DescribeTo(WPARAM reader);

  // The list view's own number of a column, and the column of that number. The list view aligns its
  // number 0 to the left always, so a first column of numbers changes places with the second, and
  // back again by the order in which they are shown.
  std::size_t Swapped(std::size_t column) const;

  void Scroll(int code);
  void Draw();
  void MeasureRows();
  void FitColumns();
  void ColumnDragged(std::size_t column, int width);
  void DrawSelection();
  void DrawSortArrows() const;
  void DrawScrollBar();
  HWND Header() const;
  int ColumnWidth(std::size_t column) const;
  int Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;

  dialogs::ListModel& model_;
  Events events_;
  HWND list_ = nullptr;
  WNDPROC list_procedure_ = nullptr;
  // The page drawn: painting must not depend on the model, which may just be at work.
  std::vector<dialogs::Row> page_;
  std::wstring why_empty_;
  HWND tip_ = nullptr;
  RECT tip_cell_ = {};
  AccessibleList* accessible_ = nullptr;
  std::vector<int> widths_;
  std::size_t flexible_ = 0;  // the column that takes what the others leave
  int character_width_ = 0;
  int header_height_ = 0;
  int row_height_ = 0;
  int wheel_ = 0;  // turned but not yet scrolled, in rows times WHEEL_DELTA
  bool open_ = false;
  bool fitting_ = false;  // the widths that change are our own doing
  bool busy_ = false;     // the model's handlers must not be re-entered
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_PAGED_LIST_H_
