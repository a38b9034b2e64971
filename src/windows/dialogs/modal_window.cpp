#include "windows/dialogs/modal_window.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <utility>
#include <vector>

#include "windows/dialogs/activation_context.h"
#include "windows/dialogs/paged_list.h"
#include "windows/floating_point.h"

namespace ard::windows {

// Disables the calling thread's other windows, as a modal window does; not only the owner, since
// nothing of the host may call the library while one of its methods is waiting for the user.
class ModalWindow::Modality {
 public:
  explicit Modality(HWND window) : window_(window) {
    EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(this));
    // Where threads share their input, the active window may be another one's.
    const HWND owner = GetWindow(window, GW_OWNER);
    if (GetWindowThreadProcessId(owner, nullptr) != GetCurrentThreadId()) {
      Collect(owner, reinterpret_cast<LPARAM>(this));
    }
    for (const HWND other : disabled_) EnableWindow(other, FALSE);
  }
  Modality(const Modality&) = delete;
  Modality& operator=(const Modality&) = delete;
  ~Modality() {
    for (const HWND other : disabled_) EnableWindow(other, TRUE);
  }

 private:
  static BOOL CALLBACK Collect(HWND other, LPARAM self) noexcept {
    auto* modality = reinterpret_cast<Modality*>(self);
    if (other == modality->window_ || !IsWindowVisible(other) || !IsWindowEnabled(other)) {
      return TRUE;
    }
    try {
      modality->disabled_.push_back(other);
      return TRUE;
    } catch (...) {
      return FALSE;
    }
  }

  HWND window_;
  std::vector<HWND> disabled_;
};

namespace {

BOOL CALLBACK SetFontOf(HWND control, LPARAM font) noexcept {
  SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(font), TRUE);
  return TRUE;
}

// Of the numbers that are kept: the place of the window, its client area, and the DPI at which all
// of them are meant. The widths of the columns follow.
constexpr std::size_t kPlaceNumbers = 5;
constexpr long kMostKept = 0x7FFF;

BOOL CALLBACK ForwardTo(HWND control, LPARAM message) noexcept {
  SendMessageW(control, static_cast<UINT>(message), 0, 0);
  return TRUE;
}

// A newer system would resize the dialog's controls by itself when the DPI changes, and get in the
// way of our own layout.
void KeepLayoutOurs(HWND window) {
  using SetBehavior = BOOL(WINAPI*)(HWND, int mask, int values);
  constexpr int kDisableAll = 7;
  const auto set_behavior = reinterpret_cast<SetBehavior>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetDialogDpiChangeBehavior")));
  if (set_behavior) set_behavior(window, kDisableAll, kDisableAll);
}

POINT MiddleOf(const RECT& rect) {
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

RECT WorkAreaOf(HMONITOR monitor) {
  MONITORINFO info = {};
  info.cbSize = sizeof(info);
  GetMonitorInfoW(monitor, &info);
  return info.rcWork;
}

}  // namespace

ModalWindow::ModalWindow(Border border) : border_(border) {}
ModalWindow::~ModalWindow() = default;

void ModalWindow::Run(HINSTANCE module) {
  const ActivationContext visual_styles(module);
  Open(module);
  Loop();
  if (!finished_) CloseBox();
  Close();
}

void ModalWindow::Open(HINSTANCE module) {
  const ActivationContext visual_styles(module);
  INITCOMMONCONTROLSEX classes = {sizeof(classes),
                                  ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&classes);

  const HWND owner = GetActiveWindow();
  host_focus_ = GetFocus();
  const bool resizable = border_ == Border::kResizable;
  Create(module, owner,
         WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | (resizable ? WS_THICKFRAME : 0),
         WS_EX_DLGMODALFRAME);
  KeepLayoutOurs(handle());
  SetWindowTextW(handle(), Caption());
  CreateControls(module);
  if (resizable) {
    size_grip_ = CreateControl(handle(), {WC_SCROLLBARW, L"", SBS_SIZEGRIP | WS_CLIPSIBLINGS});
  }
  OpenNear(owner);
  LayoutClient();
  Opened();
  opened_ = Present();
  modality_ = std::make_unique<Modality>(handle());
  ShowWindow(handle(), SW_SHOWNORMAL);
  // The cursor of a list is to be seen whether the mouse or the keyboard was used last.
  SendMessageW(handle(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
  Focus(InitialFocus());
}

void ModalWindow::Close() {
  if (handle() && Kept() && Present() != opened_) *Kept() = Present();
  modality_.reset();
  const bool was_active = handle() && GetActiveWindow() == handle();
  Destroy();
  if (was_active && IsWindow(host_focus_)) SetFocus(host_focus_);
  FloatingPoint::Establish();  // the host's windows have been told
}

// Centred on the owner or on the work area, and never larger than that.
void ModalWindow::OpenNear(HWND owner) {
  const RECT work = WorkAreaOf(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY));
  if (Recall()) return;
  // On that monitor first: only there is its DPI known.
  SetWindowPos(handle(), nullptr, work.left, work.top, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  SetMetrics(DpiOf(handle()), work);

  SIZE size = SizeAround(BodySize());
  if (OpeningWidth() > 0) size.cx = OpeningWidth();
  const SIZE frame = FrameOf(handle());
  RECT around = work;
  if (!OnScreen() && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &around);
  PlaceWithin(work, MiddleOf(around), {size.cx + frame.cx, size.cy + frame.cy});
}

void ModalWindow::PlaceWithin(const RECT& work, POINT middle, SIZE size) {
  const SIZE least = LeastSize();
  const LONG width = std::min(std::max(size.cx, least.cx), work.right - work.left);
  const LONG height = std::min(std::max(size.cy, least.cy), work.bottom - work.top);
  const LONG x = std::clamp(middle.x - width / 2, work.left, work.right - width);
  const LONG y = std::clamp(middle.y - height / 2, work.top, work.bottom - height);
  Place(handle(), static_cast<int>(x), static_cast<int>(y), static_cast<int>(width),
        static_cast<int>(height));
}

void ModalWindow::Refit() {
  if (!metrics_) return;
  const RECT work = WorkAreaOf(MonitorFromWindow(handle(), MONITOR_DEFAULTTONEAREST));
  SetMetrics(DpiOf(handle()), work);
  RECT place = {};
  GetWindowRect(handle(), &place);
  PlaceWithin(work, MiddleOf(place), {place.right - place.left, place.bottom - place.top});
  LayoutClient();
}

// As the user has left it, unless it would not be wholly to be seen there any more.
bool ModalWindow::Recall() {
  if (!Kept()) return false;
  std::vector<int> numbers;
  const wchar_t* text = Kept()->c_str();
  for (wchar_t* end = nullptr;; text = end) {
    const long number = std::wcstol(text, &end, 10);
    if (end == text) break;
    numbers.push_back(static_cast<int>(std::clamp(number, -kMostKept, kMostKept)));
  }
  std::size_t columns = 0;
  for (PagedList* list : Lists()) columns += list->widths().size();
  if (numbers.size() != kPlaceNumbers + columns || numbers[4] < 1) return false;

  const RECT kept = {numbers[0], numbers[1], numbers[0] + 1, numbers[1] + 1};
  const HMONITOR monitor = MonitorFromRect(&kept, MONITOR_DEFAULTTONULL);
  if (!monitor) return false;
  const RECT work = WorkAreaOf(monitor);
  SetWindowPos(handle(), nullptr, numbers[0], numbers[1], 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  const UINT dpi = DpiOf(handle());
  SetMetrics(dpi, work);
  const auto scaled = [&](int number) { return MulDiv(number, static_cast<int>(dpi), numbers[4]); };
  const SIZE frame = FrameOf(handle());
  const SIZE least = LeastSize();
  const RECT place = {kept.left, kept.top,
                      kept.left + std::max(scaled(numbers[2]) + frame.cx, least.cx),
                      kept.top + std::max(scaled(numbers[3]) + frame.cy, least.cy)};
  RECT both = {};
  if (!IntersectRect(&both, &place, &work) || !EqualRect(&both, &place)) return false;
  auto next = numbers.begin() + kPlaceNumbers;
  for (PagedList* list : Lists()) {
    for (int& width : list->widths()) width = std::max(scaled(*next++), 1);
  }
  Place(handle(), static_cast<int>(place.left), static_cast<int>(place.top),
        static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top));
  return true;
}

std::wstring ModalWindow::Present() {
  RECT place = {};
  GetWindowRect(handle(), &place);
  const SIZE client = ClientOf(handle());
  std::wstring text;
  for (const long number :
       {place.left, place.top, client.cx, client.cy, static_cast<LONG>(metrics_->dpi())}) {
    text += std::to_wstring(number) + L' ';
  }
  for (PagedList* list : Lists()) {
    for (const int width : list->widths()) text += std::to_wstring(width) + L' ';
  }
  return text;
}

void ModalWindow::Loop() {
  MSG message;
  while (!finished_ && handle()) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      // The host's own loop has to see it, too.
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    Deal(message);
    WithoutExceptions([&] {
      Handled(message);
      return LRESULT{};
    });
  }
}

void ModalWindow::AnswerPending() {
  MSG message;
  while (handle() && PeekMessageW(&message, handle(), 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return CloseBox();
    }
    Deal(message);
  }
  FloatingPoint::Establish();
}

void ModalWindow::Deal(MSG& message) {
  if (Translate(message)) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

bool ModalWindow::Translate(MSG& message) {
  if (!handle()) return false;
  if (message.message == WM_KEYDOWN && IsChild(handle(), message.hwnd)) {
    const std::optional<LRESULT> handled =
        WithoutExceptions([&] { return LRESULT{HandleKey(message.hwnd, message.wParam)}; });
    if (*handled) return true;
  }
  return IsDialogMessageW(handle(), &message) != FALSE;
}

void ModalWindow::Focus(HWND control) const {
  SendMessageW(handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

void ModalWindow::Finish() {
  finished_ = true;
  // A handler may have been called while the loop goes on waiting for a message: by SendMessage.
  PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

std::optional<LRESULT> ModalWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      LayoutClient();
      return 0;
    case WM_GETMINMAXINFO:
      LimitSize(*reinterpret_cast<MINMAXINFO*>(lparam));
      return 0;
    case WM_DPICHANGED: {
      const RECT& rect = *reinterpret_cast<const RECT*>(lparam);
      SetMetrics(LOWORD(wparam), WorkAreaOf(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST)));
      Place(handle(), static_cast<int>(rect.left), static_cast<int>(rect.top),
            static_cast<int>(rect.right - rect.left), static_cast<int>(rect.bottom - rect.top));
      LayoutClient();
      return 0;
    }
    case WM_SETTINGCHANGE:
      if (wparam != SPI_SETNONCLIENTMETRICS && wparam != SPI_SETWORKAREA) return std::nullopt;
      Refit();
      return 0;
    case WM_DISPLAYCHANGE:
      Refit();
      return 0;
    case WM_EXITSIZEMOVE:
      // Another screen may have room for the usual font.
      if (metrics_ && metrics_->is_small()) Refit();
      return 0;
    case WM_SYSCOLORCHANGE:
      // The system tells the windows of the screen only.
      EnumChildWindows(handle(), ForwardTo, message);
      return 0;
    case WM_COMMAND:
      if (HIWORD(wparam) != BN_CLICKED) return std::nullopt;
      Command(LOWORD(wparam));
      return 0;
    case WM_CLOSE:
      CloseBox();
      return 0;
    case WM_DESTROY:
      // Not by us, but along with its owner.
      CloseBox();
      return std::nullopt;
    case WM_MOUSEWHEEL:
      Wheel(GET_WHEEL_DELTA_WPARAM(wparam));
      return 0;
    default:
      return std::nullopt;
  }
}

void ModalWindow::SetMetrics(UINT dpi, const RECT& work) {
  constexpr int kStep = 2;
  SIZE least = {};
  int percent = 100 + kStep;
  do {
    percent -= kStep;
    // The controls use the previous font until they have the next.
    auto next = std::make_unique<Metrics>(dpi, percent);
    EnumChildWindows(handle(), SetFontOf, reinterpret_cast<LPARAM>(next->font()));
    metrics_ = std::move(next);
    for (PagedList* list : Lists()) list->SetMetrics(*metrics_);
    least = LeastSize();
  } while (percent > kStep &&
           (least.cx > work.right - work.left || least.cy > work.bottom - work.top));
}

void ModalWindow::LayoutClient() {
  if (!metrics_) return;
  const SIZE client = ClientOf(handle());
  {
    Placement placement;
    RECT area = {0, 0, client.cx, client.cy};
    InflateRect(&area, -metrics().X(kMargin), -metrics().Y(kMargin));
    RECT foot = area;
    foot.top = area.bottom -= foot_.Height(metrics(), static_cast<int>(area.right - area.left));
    foot_.Put(placement, metrics(), foot);
    area.bottom -= metrics().Y(kMargin);
    head_.Put(placement, metrics(), area);
    PutBody(placement, area);
    if (size_grip_) {
      const LONG side = GetSystemMetrics(SM_CXVSCROLL);
      placement.Put(size_grip_, {client.cx - side, client.cy - side, client.cx, client.cy});
    }
  }
  Placed();
}

SIZE ModalWindow::SizeAround(SIZE body) const {
  const int width =
      std::max({static_cast<int>(body.cx), head_.Width(metrics()), foot_.Width(metrics())});
  const int height = head_.Height(metrics(), width) + foot_.Height(metrics(), width);
  return {width + 2 * metrics().X(kMargin), body.cy + height + 3 * metrics().Y(kMargin)};
}

SIZE ModalWindow::LeastSize() const {
  const SIZE least = SizeAround(LeastBodySize());
  const SIZE frame = FrameOf(handle());
  return {least.cx + frame.cx, least.cy + frame.cy};
}

void ModalWindow::LimitSize(MINMAXINFO& limits) const {
  if (!metrics_) return;
  const SIZE least = LeastSize();
  limits.ptMinTrackSize = {least.cx, least.cy};
  // Without a body, there is nothing that could become higher.
  if (BodySize().cy == 0) limits.ptMaxTrackSize.y = limits.ptMinTrackSize.y;
}

}  // namespace ard::windows
