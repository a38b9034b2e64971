// TabStrip: a tab strip, and what all windows with one do alike: the pages stand inside it, and
// Ctrl+Tab, Ctrl+PageDown and Ctrl+PageUp switch them.
#ifndef ARD_WINDOWS_DIALOGS_TAB_STRIP_H_
#define ARD_WINDOWS_DIALOGS_TAB_STRIP_H_

#include <windows.h>

#include <optional>
#include <string>

#include "windows/dialogs/layout.h"
#include "windows/dialogs/metrics.h"

namespace ard::windows {

class TabStrip {
 public:
  // After what stands on its pages, which it would be drawn over otherwise.
  void Create(HWND parent);
  void Add(std::wstring text);
  // Puts it below its pages: it is then the last stop of the Tab key before the page.
  void Lower() const;
  void Select(int tab) const;  // from 0

  // The size around a page with content of that size.
  SIZE Around(const Metrics& metrics, SIZE content) const;
  // Puts it into `area`, of which the content of a page remains.
  void Put(Placement& placement, const Metrics& metrics, RECT& area) const;

  // The tab that a key which `control` is about to get, or a notification, asks for. One that asks
  // for the only tab is dealt with, too.
  std::optional<int> TabFor(HWND control, WPARAM key) const;
  std::optional<int> TabFor(const NMHDR& notification) const;

 private:
  int Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;

  HWND tabs_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_TAB_STRIP_H_
