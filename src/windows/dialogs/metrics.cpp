#include "windows/dialogs/metrics.h"

#include <algorithm>
#include <string_view>

#include "windows/dialogs/dialog_window.h"

namespace ard::windows {
namespace {

class ScreenDc {
 public:
  ScreenDc() = default;
  ScreenDc(const ScreenDc&) = delete;
  ScreenDc& operator=(const ScreenDc&) = delete;
  ~ScreenDc() { ReleaseDC(nullptr, dc_); }

  HDC get() const { return dc_; }

 private:
  HDC dc_ = GetDC(nullptr);
};

UINT ScreenDpi() { return static_cast<UINT>(GetDeviceCaps(ScreenDc().get(), LOGPIXELSY)); }

// Buttons as small as that still hold their texts.
constexpr int kLeastDistance = 85;

HFONT CreateMessageFont(UINT dpi, int percent) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  // The system gives the font for the screen's DPI.
  LOGFONTW& font = metrics.lfMessageFont;
  font.lfHeight =
      MulDiv(font.lfHeight * percent, static_cast<int>(dpi), static_cast<int>(ScreenDpi()) * 100);
  return CreateFontIndirectW(&font);
}

}  // namespace

UINT DpiOf(HWND window) {
  // Only Windows 10 and later have it.
  using GetDpiForWindowFunction = UINT(WINAPI*)(HWND);
  const auto get_dpi_for_window = reinterpret_cast<GetDpiForWindowFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  const UINT dpi = get_dpi_for_window ? get_dpi_for_window(window) : 0;
  return dpi ? dpi : ScreenDpi();
}

Metrics::Metrics(UINT dpi, int percent)
    : dpi_(dpi),
      distance_(std::max(percent, kLeastDistance)),
      font_(CreateMessageFont(dpi, percent * 100 / distance_)) {
  // The base units as the dialog manager defines them: the average width of these letters, and the
  // height of the font.
  constexpr std::wstring_view kLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int kCount = static_cast<int>(kLetters.size());
  const ScreenDc dc;
  const HGDIOBJ previous = SelectObject(dc.get(), font_);
  SIZE extent = {};
  TEXTMETRICW text = {};
  GetTextExtentPoint32W(dc.get(), kLetters.data(), kCount, &extent);
  GetTextMetricsW(dc.get(), &text);
  SelectObject(dc.get(), previous);
  base_width_ = (static_cast<int>(extent.cx) + kCount / 2) / kCount;
  base_height_ = static_cast<int>(text.tmHeight);
}

int Metrics::BoxHeight() const {
  // Its edge, and the row of pixels that it leaves above its text whatever its height.
  const int around = GetSystemMetrics(SM_CYEDGE) + 1;
  return base_height_ + 2 * around;
}

SIZE Metrics::TextSize(HWND control, int width) const {
  const bool literal = (GetWindowLongPtrW(control, GWL_STYLE) & SS_NOPREFIX) != 0;
  RECT area = {0, 0, width, 0};
  const ScreenDc dc;
  const HGDIOBJ previous = SelectObject(dc.get(), font_);
  DrawTextW(
      dc.get(), TextOf(control).c_str(), -1, &area,
      DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_EDITCONTROL | (literal ? DT_NOPREFIX : 0U));
  SelectObject(dc.get(), previous);
  return {area.right, area.bottom};
}

Metrics::~Metrics() { DeleteObject(font_); }

}  // namespace ard::windows
