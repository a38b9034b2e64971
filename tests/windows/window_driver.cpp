#include "tests/windows/window_driver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <thread>
#include <utility>
#include <vector>

namespace ard::windows::testing {
namespace {

using namespace std::chrono_literals;

constexpr wchar_t kClass[] = L"TestHost";
constexpr UINT kAsk = WM_APP;
constexpr auto kPatience = 10s;

const std::map<std::wstring_view, WORD> kKeys = {
    {L"Ctrl", VK_CONTROL}, {L"Alt", VK_MENU},  {L"Shift", VK_SHIFT}, {L"Enter", VK_RETURN},
    {L"Esc", VK_ESCAPE},   {L"Tab", VK_TAB},   {L"Space", VK_SPACE}, {L"Back", VK_BACK},
    {L"Up", VK_UP},        {L"Down", VK_DOWN}, {L"Right", VK_RIGHT}, {L"PgUp", VK_PRIOR},
    {L"PgDn", VK_NEXT},    {L"Home", VK_HOME}, {L"End", VK_END},     {L"F4", VK_F4}};

void Send(std::vector<INPUT> input) {
  const auto sent = SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
  EXPECT_EQ(sent, input.size());
}

INPUT Key(WORD key, wchar_t character, DWORD flags) {
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
[[noreturn]] void GiveUp(const char* why) {
  ADD_FAILURE() << why;
  std::fflush(nullptr);
  std::_Exit(1);
}

// The window of that title, once it takes the input.
HWND WaitForWindow(const wchar_t* title) {
  HWND window = nullptr;
  const bool ready = Eventually([&] {
    window = FindWindowW(nullptr, title);
    if (!window || !IsWindowVisible(window)) return false;
    if (GetForegroundWindow() != window) SetForegroundWindow(window);
    return GetForegroundWindow() == window;
  });
  if (!window) GiveUp("no window appeared");
  if (!ready) GiveUp("the window does not come to the foreground");
  return window;
}

// For a few milliseconds, what other threads send is answered, and nothing else is touched.
void AnswerQuestions() {
  MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_SENDMESSAGE);
  MSG message;
  PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

}  // namespace

Host::Host() {
  WNDCLASSW window_class = {};
  window_class.lpfnWndProc = Procedure;
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = kClass;
  window_class.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1));
  RegisterClassW(&window_class);
  window_ = CreateWindowW(kClass, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 80, 800, 700,
                          nullptr, nullptr, nullptr, nullptr);
  field_ = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 10, 100, 20, window_,
                         nullptr, nullptr, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  Activate();
}

Host::~Host() {
  if (IsWindow(window_)) DestroyWindow(window_);
  UnregisterClassW(kClass, GetModuleHandleW(nullptr));
}

LRESULT CALLBACK Host::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  auto* self = reinterpret_cast<Host*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == kAsk) {
    (*reinterpret_cast<const std::function<void()>*>(lparam))();
    return 1;
  }
  if (message == WM_COMMAND && HIWORD(wparam) == EN_SETFOCUS && self) self->focus_returned_ = true;
  return DefWindowProcW(window, message, wparam, lparam);
}

void Host::Drive(const wchar_t* title, const std::function<void()>& show,
                 const std::function<void(HWND)>& act) {
  std::atomic<bool> returned = false;
  std::atomic<bool> done = false;
  std::thread user([&] {
    const HWND window = driven_ = WaitForWindow(title);
    EXPECT_TRUE(Settle());
    act(window);
    Settle();
    const bool closed = Eventually([&] {
      if (IsWindow(window)) PostMessageW(window, WM_CLOSE, 0, 0);
      return !IsWindow(window);
    });
    if (!closed) GiveUp("the window cannot be closed");
    if (!Eventually([&] { return returned.load(); })) GiveUp("the call does not return");
    done = true;
  });
  focus_returned_ = false;
  show();
  returned = true;
  while (!done) AnswerQuestions();
  user.join();
}

void Host::Activate() {
  // The display may take its time, and take the focus away when a window goes.
  const bool active = Eventually([&] {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    if (GetForegroundWindow() != window_) SetForegroundWindow(window_);
    SetFocus(field_);
    return GetForegroundWindow() == window_ && GetFocus() == field_;
  });
  EXPECT_TRUE(active);
}

bool Host::Ask(const std::function<void()>& action) const {
  constexpr UINT kMilliseconds = 2000;
  DWORD_PTR answered = 0;
  SendMessageTimeoutW(window_, kAsk, 0, reinterpret_cast<LPARAM>(&action), SMTO_NORMAL,
                      kMilliseconds, &answered);
  return answered == 1;
}

bool Host::IsIdle() const {
  DWORD waiting = 1;
  Ask([&] { waiting = HIWORD(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE)); });
  return waiting == 0;
}

bool Host::Settle() const {
  return Eventually([&] { return !IsWindow(driven_) || IsIdle(); });
}

bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(10ms);
  }
  return true;
}

HWND Descendant(HWND parent, std::wstring_view window_class) {
  HWND found = nullptr;
  for (HWND child = GetWindow(parent, GW_CHILD); child && !found;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsWindowVisible(child)) continue;
    wchar_t name[64] = {};
    GetClassNameW(child, name, 64);
    found = window_class == name ? child : Descendant(child, window_class);
  }
  return found;
}

std::wstring TextOf(HWND window) {
  wchar_t text[256] = {};
  GetWindowTextW(window, text, 256);
  return text;
}

void Keys(std::wstring_view keys) {
  while (!keys.empty()) {
    if (keys.front() != L'{') {
      Send({Key(0, keys.front(), KEYEVENTF_UNICODE),
            Key(0, keys.front(), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP)});
      keys.remove_prefix(1);
      continue;
    }
    std::wstring_view names = keys.substr(1, keys.find(L'}') - 1);
    keys.remove_prefix(names.size() + 2);
    std::vector<INPUT> input;
    while (!names.empty()) {
      const std::wstring_view name = names.substr(0, names.find(L'+'));
      names.remove_prefix(std::min(name.size() + 1, names.size()));
      const WORD key = name.size() == 1 ? static_cast<WORD>(name[0]) : kKeys.at(name);
      const auto released = static_cast<std::ptrdiff_t>(input.size() / 2);
      input.insert(input.begin() + released, {Key(key, 0, 0), Key(key, 0, KEYEVENTF_KEYUP)});
    }
    Send(std::move(input));
  }
}

void Click(POINT point, int times) {
  MovePointer(point);
  std::vector<INPUT> input;
  for (; times > 0; --times) {
    input.push_back(Mouse(MOUSEEVENTF_LEFTDOWN));
    input.push_back(Mouse(MOUSEEVENTF_LEFTUP));
  }
  Send(std::move(input));
}

void ClickWith(WORD key, POINT point) {
  // A move of the pointer may bring the true state of the keys along.
  MovePointer(point);
  Send({Key(key, 0, 0), Mouse(MOUSEEVENTF_LEFTDOWN), Mouse(MOUSEEVENTF_LEFTUP),
        Key(key, 0, KEYEVENTF_KEYUP)});
}

void Drag(POINT from, POINT to) {
  MovePointer(from);
  Send({Mouse(MOUSEEVENTF_LEFTDOWN)});
  MovePointer({(from.x + to.x) / 2, (from.y + to.y) / 2});
  MovePointer(to);
  Send({Mouse(MOUSEEVENTF_LEFTUP)});
}

void TurnWheel(POINT point, int delta) {
  MovePointer(point);
  Send({Mouse(MOUSEEVENTF_WHEEL, delta)});
}

POINT MiddleOf(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

}  // namespace ard::windows::testing
