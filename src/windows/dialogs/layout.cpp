#include "windows/dialogs/layout.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <string_view>

#include "windows/dialogs/dialog_window.h"

namespace ard::windows {
namespace {

constexpr int kDroppedLines = 8;
constexpr int kMostLabelWidth = 150;  // in dialog units

// How high a box is that chooses its height itself; 0 for one that does not.
int OwnHeight(HWND control) {
  wchar_t name[16] = {};
  GetClassNameW(control, name, 16);
  if (std::wstring_view(name) != WC_COMBOBOXW) return 0;
  RECT box = {};
  GetWindowRect(control, &box);
  return static_cast<int>(box.bottom - box.top);
}

bool IsEdit(HWND control) {
  return (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0;
}

}  // namespace

Placement::~Placement() {
  if (step_) EndDeferWindowPos(step_);
}

void Placement::Put(HWND window, const RECT& place) {
  constexpr UINT kFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS;
  const auto x = static_cast<int>(place.left);
  const auto y = static_cast<int>(place.top);
  const int width = std::max(static_cast<int>(place.right - place.left), 0);
  const int height = std::max(static_cast<int>(place.bottom - place.top), 0);
  if (step_) step_ = DeferWindowPos(step_, window, nullptr, x, y, width, height, kFlags);
  // Without memory for the step, one by one.
  if (!step_) SetWindowPos(window, nullptr, x, y, width, height, kFlags);
}

int Lines::Width(const Metrics& metrics) const {
  int width = 0;
  for (const Line& line : lines_) width = std::max(width, WidthOf(metrics, line));
  return width;
}

int Lines::Height(const Metrics& metrics, int width) const {
  int height = 0;
  for (const Line& line : lines_) {
    height += HeightOf(metrics, line, width) + metrics.Y(line.gap_below);
  }
  return height;
}

void Lines::Put(Placement& placement, const Metrics& metrics, RECT& area) const {
  const auto width = static_cast<int>(area.right - area.left);
  for (const Line& line : lines_) {
    const int height = HeightOf(metrics, line, width);
    const auto growing = static_cast<int>(
        std::count_if(line.parts.begin(), line.parts.end(), [](const Part& p) { return p.grows; }));
    const int rest = width - WidthOf(metrics, line);
    RECT place = {area.left, area.top, area.left, area.top + height};
    for (const Part& part : line.parts) {
      place.right = place.left + WidthOf(metrics, part) + (part.grows ? rest / growing : 0);
      if (part.control) {
        RECT own = place;
        // An edit control has its text in the middle only at this height; the one that a combo box
        // is given is that of the list that it drops.
        if (IsEdit(part.control)) InflateRect(&own, 0, (metrics.BoxHeight() - height) / 2);
        if (OwnHeight(part.control) > 0) own.bottom += kDroppedLines * height;
        placement.Put(part.control, own);
      }
      place.left = place.right + metrics.X(kGap);
    }
    area.top += height + metrics.Y(line.gap_below);
  }
}

int Lines::WidthOf(const Metrics& metrics, const Part& part) const {
  if (part.width >= 0) return metrics.X(part.width);
  if (part.width == kOwnWidth) return static_cast<int>(metrics.TextSize(part.control).cx);
  LONG widest = 0;
  for (const Line& line : lines_) {
    const Part& first = line.parts.front();
    if (first.width == kLabelWidth) widest = std::max(widest, metrics.TextSize(first.control).cx);
  }
  return std::min(static_cast<int>(widest), metrics.X(kMostLabelWidth));
}

int Lines::WidthOf(const Metrics& metrics, const Line& line) const {
  int width = metrics.X(kGap) * (static_cast<int>(line.parts.size()) - 1);
  for (const Part& part : line.parts) width += WidthOf(metrics, part);
  return width;
}

int Lines::HeightOf(const Metrics& metrics, const Line& line, int width) {
  if (line.height == kBox) {
    int height = metrics.BoxHeight();
    for (const Part& part : line.parts) height = std::max(height, OwnHeight(part.control));
    return height;
  }
  if (line.height == kRule) return GetSystemMetrics(SM_CYEDGE);
  if (line.height == kWrapped) {
    return static_cast<int>(metrics.TextSize(line.parts.front().control, width).cy);
  }
  return metrics.Y(line.height);
}

}  // namespace ard::windows
