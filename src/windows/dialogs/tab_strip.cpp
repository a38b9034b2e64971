#include "windows/dialogs/tab_strip.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>

#include "windows/dialogs/dialog_window.h"

namespace ard::windows {

void TabStrip::Create(HWND parent) {
  tabs_ = CreateControl(parent, {WC_TABCONTROLW, L"", WS_TABSTOP | WS_CLIPSIBLINGS});
}

void TabStrip::Add(std::wstring text) {
  // An ampersand is one.
  for (std::size_t i = 0; (i = text.find(L'&', i)) != std::wstring::npos; i += 2) {
    text.insert(i, 1, L'&');
  }
  TCITEMW item = {};
  item.mask = TCIF_TEXT;
  item.pszText = text.data();
  Send(TCM_INSERTITEMW, static_cast<WPARAM>(Send(TCM_GETITEMCOUNT)),
       reinterpret_cast<LPARAM>(&item));
}

void TabStrip::Lower() const {
  SetWindowPos(tabs_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void TabStrip::Select(int tab) const { Send(TCM_SETCURSEL, static_cast<WPARAM>(tab)); }

SIZE TabStrip::Around(const Metrics& metrics, SIZE content) const {
  RECT area = {0, 0, content.cx + 2 * metrics.X(kMargin), content.cy + 2 * metrics.Y(kMargin)};
  Send(TCM_ADJUSTRECT, TRUE, reinterpret_cast<LPARAM>(&area));
  return {area.right - area.left, area.bottom - area.top};
}

void TabStrip::Put(Placement& placement, const Metrics& metrics, RECT& area) const {
  placement.Put(tabs_, area);
  Send(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
  InflateRect(&area, -metrics.X(kMargin), -metrics.Y(kMargin));
}

std::optional<int> TabStrip::TabFor(HWND control, WPARAM key) const {
  const int count = Send(TCM_GETITEMCOUNT);
  const int tab = Send(TCM_GETCURSEL);
  if (control == tabs_ && (key == VK_LEFT || key == VK_RIGHT)) {
    // Not by the tab strip itself: after a key, that of Wine takes no clicks.
    return std::clamp(key == VK_LEFT ? tab - 1 : tab + 1, 0, count - 1);
  }
  // AltGr, with which characters are typed, is Ctrl and Alt.
  if (GetKeyState(VK_CONTROL) >= 0 || GetKeyState(VK_MENU) < 0) return std::nullopt;
  if (key == VK_PRIOR || (key == VK_TAB && GetKeyState(VK_SHIFT) < 0)) {
    return (tab + count - 1) % count;
  }
  if (key == VK_NEXT || key == VK_TAB) return (tab + 1) % count;
  return std::nullopt;
}

std::optional<int> TabStrip::TabFor(const NMHDR& notification) const {
  if (notification.hwndFrom != tabs_ || notification.code != TCN_SELCHANGE) return std::nullopt;
  return Send(TCM_GETCURSEL);
}

int TabStrip::Send(UINT message, WPARAM wparam, LPARAM lparam) const {
  return static_cast<int>(SendMessageW(tabs_, message, wparam, lparam));
}

}  // namespace ard::windows
