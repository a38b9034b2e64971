#include "tests/windows/window_test.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <map>
#include <thread>

#include "frame/text.h"

namespace ard::windows::testing {
namespace {

using namespace std::chrono_literals;

constexpr UINT kAsk = WM_APP;
constexpr auto kPatience = 60s;

const std::map<std::wstring_view, WORD> kKeys = {
    {L"Ctrl", VK_CONTROL}, {L"Alt", VK_MENU},  {L"Shift", VK_SHIFT}, {L"Enter", VK_RETURN},
    {L"Esc", VK_ESCAPE},   {L"Tab", VK_TAB},   {L"Space", VK_SPACE}, {L"Back", VK_BACK},
    {L"Up", VK_UP},        {L"Down", VK_DOWN}, {L"Right", VK_RIGHT}, {L"PgUp", VK_PRIOR},
    {L"PgDn", VK_NEXT},    {L"Home", VK_HOME}, {L"End", VK_END},     {L"F4", VK_F4}};

bool focus_returned = false;  // to the host's field

void Send(std::vector<INPUT> input) {
  const auto sent = SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
  EXPECT_EQ(sent, input.size());
}

INPUT Key(WORD key, DWORD flags, wchar_t character = 0) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = character;
  input.ki.dwFlags = flags;
  return input;
}

INPUT Mouse(DWORD flags, int data = 0) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  input.mi.mouseData = static_cast<DWORD>(data);
  return input;
}

// The pointer has arrived when it stays there: a late echo of an earlier move may take it back.
void MovePointer(POINT to) {
  constexpr int kStays = 4;
  int stayed = 0;
  EXPECT_TRUE(Eventually([&] {
    POINT now = {};
    GetCursorPos(&now);
    stayed = now.x == to.x && now.y == to.y ? stayed + 1 : 0;
    if (stayed == 0) SetCursorPos(static_cast<int>(to.x), static_cast<int>(to.y));
    std::this_thread::sleep_for(20ms);
    return stayed == kStays;
  }));
}

// Waiting on would be waiting forever.
void EventuallyOrGiveUp(const std::function<bool()>& condition, const char* otherwise) {
  if (Eventually(condition)) return;
  ADD_FAILURE() << otherwise;
  std::fflush(nullptr);
  std::_Exit(1);
}

LRESULT CALLBACK HostProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == kAsk) (*reinterpret_cast<const std::function<void()>*>(lparam))();
  if (message == WM_COMMAND && HIWORD(wparam) == EN_SETFOCUS) focus_returned = true;
  return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace

View::View(HWND of)
    : window(of),
      list(Descendant(of, WC_LISTVIEWW)),
      frame(GetParent(list)),
      ok(GetDlgItem(of, IDOK)) {}

std::wstring View::Cell(int row, int column) const {
  wchar_t text[64] = {};
  ListView_GetItemText(list, row, column, text, 64);
  return text;
}

std::wstring View::Rows(UINT state) const {
  std::wstring cells;
  for (int row = -1; (row = ListView_GetNextItem(list, row, state)) >= 0;) {
    if (!cells.empty()) cells += L' ';
    cells += Cell(row, 0);
  }
  return cells;
}

RECT View::RowRect(int row) const {
  RECT rect = {};
  ListView_GetItemRect(list, row, &rect, LVIR_BOUNDS);
  return rect;
}

SCROLLINFO View::Scroll() const {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_ALL;
  GetScrollInfo(frame, SB_VERT, &info);
  return info;
}

POINT View::Place(std::wstring_view name) const {
  const int number = name.back() - L'0';
  HWND owner = list;
  RECT rect = {};
  if (name.starts_with(L"Row")) {
    rect = RowRect(0);
    OffsetRect(&rect, 0, static_cast<int>(rect.bottom - rect.top) * number);
    rect.right = rect.left + 40;
  } else if (name.starts_with(L"Header")) {
    owner = Header();
    Header_GetItemRect(owner, number, &rect);
  } else if (name.starts_with(L"Tab")) {
    owner = Descendant(window, WC_TABCONTROLW);
    TabCtrl_GetItemRect(owner, number, &rect);
  } else {
    owner = FindWindowExW(window, nullptr, nullptr, std::wstring(name).c_str());
    GetClientRect(owner, &rect);
  }
  EXPECT_FALSE(IsRectEmpty(&rect)) << ToUtf8(name);
  POINT point = {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  ClientToScreen(owner, &point);
  return point;
}

WindowTest::WindowTest() {
  host_ = CreateWindowW(L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 80, 800, 700,
                        nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrW(host_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(HostProcedure));
  field_ = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 10, 100, 20, host_,
                         nullptr, nullptr, nullptr);
}

void WindowTest::Drive(const std::wstring& title, const std::function<void()>& open,
                       const Act& act) {
  // The display may take its time, and take the focus away when a window goes.
  EXPECT_TRUE(Eventually([&] {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    if (GetForegroundWindow() != host_) SetForegroundWindow(host_);
    SetFocus(field_);
    return GetForegroundWindow() == host_ && GetFocus() == field_;
  }));
  std::atomic<bool> returned = false;
  const auto user = std::async(std::launch::async, [&] {
    SCOPED_TRACE(ToUtf8(title));
    HWND& window = driven_;
    EventuallyOrGiveUp(
        [&] {
          window = FindWindowW(nullptr, title.c_str());
          if (!window || !IsWindowVisible(window)) return false;
          if (GetForegroundWindow() != window) SetForegroundWindow(window);
          return GetForegroundWindow() == window;
        },
        "no window has come to the foreground");
    Settle();
    act(View(window));
    Settle();
    EventuallyOrGiveUp(
        [&] {
          if (IsWindow(window)) PostMessageW(window, WM_CLOSE, 0, 0);
          return !IsWindow(window);
        },
        "the window cannot be closed");
    EventuallyOrGiveUp([&] { return returned.load(); }, "the call does not return");
  });
  focus_returned = false;
  open();
  returned = true;
  // What it sends is answered, and nothing else is touched.
  while (user.wait_for(0s) != std::future_status::ready) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

void WindowTest::Work(const std::wstring& title, const std::function<void()>& open,
                      const Act& act) {
  Drive(title, open, [&](const View& view) {
    EXPECT_EQ(GetWindow(view.window, GW_OWNER), host_);
    EXPECT_FALSE(IsWindowEnabled(host_));
    act(view);
  });
  EXPECT_TRUE(IsWindowEnabled(host_));
  EXPECT_TRUE(focus_returned);
}

void WindowTest::Keys(std::wstring_view keys) const {
  while (!keys.empty()) {
    if (keys.front() != L'{') {
      Send({Key(0, KEYEVENTF_UNICODE, keys.front()),
            Key(0, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP, keys.front())});
      keys.remove_prefix(1);
      continue;
    }
    std::wstring_view names = keys.substr(1, keys.find(L'}') - 1);
    keys.remove_prefix(names.size() + 2);
    std::vector<INPUT> input;
    std::size_t clicks = 1;
    while (!names.empty()) {
      const std::wstring_view name = names.substr(0, names.find(L'+'));
      names.remove_prefix(std::min(name.size() + 1, names.size()));
      std::vector<INPUT> pressed;
      if (name == L"Double") {
        clicks = 2;
      } else if (name.size() == 1 || kKeys.contains(name)) {
        const WORD key = name.size() == 1 ? static_cast<WORD>(name[0]) : kKeys.at(name);
        pressed = {Key(key, 0), Key(key, KEYEVENTF_KEYUP)};
      } else {
        // Before any key: a move of the pointer may bring the true state of the keys along.
        MovePointer(View(driven_).Place(name));
        pressed = {Mouse(MOUSEEVENTF_LEFTDOWN), Mouse(MOUSEEVENTF_LEFTUP)};
        if (clicks == 2) pressed.insert(pressed.end(), {pressed[0], pressed[1]});
      }
      const auto released = static_cast<std::ptrdiff_t>(input.size() / 2);
      input.insert(input.begin() + released, pressed.begin(), pressed.end());
    }
    Send(std::move(input));
  }
  Settle();
}

void WindowTest::Drag(POINT from, POINT to) const {
  MovePointer(from);
  Send({Mouse(MOUSEEVENTF_LEFTDOWN)});
  MovePointer({(from.x + to.x) / 2, (from.y + to.y) / 2});
  MovePointer(to);
  Send({Mouse(MOUSEEVENTF_LEFTUP)});
  Settle();
}

void WindowTest::TurnWheel(HWND window, int delta) const {
  MovePointer(MiddleOf(window));
  Send({Mouse(MOUSEEVENTF_WHEEL, delta)});
  Settle();
}

void WindowTest::Walk(const std::function<std::wstring()>& look,
                      std::initializer_list<Step> steps) const {
  for (const Step& step : steps) {
    Keys(step.keys);
    EXPECT_EQ(look(), step.seen) << ToUtf8(step.keys);
  }
}

void WindowTest::Ask(const std::function<void()>& action) const {
  constexpr UINT kMilliseconds = 20'000;  // `action` must not outlive the call
  SendMessageTimeoutW(host_, kAsk, 0, reinterpret_cast<LPARAM>(&action), SMTO_NORMAL, kMilliseconds,
                      nullptr);
}

HWND WindowTest::FocusWindow() const {
  HWND focus = nullptr;
  Ask([&] { focus = GetFocus(); });
  return focus;
}

Picture WindowTest::PictureOf(HWND window) const {
  const SIZE size = SizeOf(window);
  Picture picture = {size.cx, {}};
  Ask([&] {
    HideCaret(nullptr);  // it blinks
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(info.bmiHeader), size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HDC source = GetDCEx(window, nullptr, DCX_WINDOW | DCX_CACHE);
    const HDC copy = CreateCompatibleDC(source);
    const HBITMAP bitmap = CreateDIBSection(source, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ previous = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, static_cast<int>(size.cx), static_cast<int>(size.cy), source, 0, 0, SRCCOPY);
    GdiFlush();
    const auto* pixels = static_cast<const COLORREF*>(bits);
    picture.pixels.assign(pixels, pixels + std::ptrdiff_t{size.cx} * size.cy);
    DeleteObject(SelectObject(copy, previous));
    DeleteDC(copy);
    ReleaseDC(window, source);
    ShowCaret(nullptr);
  });
  return picture;
}

void WindowTest::Settle() const {
  EXPECT_TRUE(Eventually([&] {
    if (!IsWindow(driven_)) return true;
    DWORD waiting = 1;
    Ask([&] { waiting = HIWORD(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE)); });
    return waiting == 0;
  }));
}

void WindowTest::ExpectClosed(const View& view) {
  EXPECT_TRUE(Eventually([&] { return !IsWindow(view.window); }));
}

bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(10ms);
  }
  return true;
}

std::vector<HWND> Descendants(HWND parent) {
  std::vector<HWND> windows;
  for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    const std::vector<HWND> below = Descendants(child);
    windows.push_back(child);
    windows.insert(windows.end(), below.begin(), below.end());
  }
  return windows;
}

HWND Descendant(HWND parent, std::wstring_view window_class) {
  for (const HWND window : Descendants(parent)) {
    if (IsWindowVisible(window) && ClassOf(window) == window_class) return window;
  }
  return nullptr;
}

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

std::wstring TextOf(HWND window) {
  wchar_t text[256] = {};
  GetWindowTextW(window, text, 256);
  return text;
}

RECT RectOf(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  return rect;
}

SIZE SizeOf(HWND window) {
  const RECT rect = RectOf(window);
  return {rect.right - rect.left, rect.bottom - rect.top};
}

POINT MiddleOf(HWND window) {
  const RECT rect = RectOf(window);
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

}  // namespace ard::windows::testing
