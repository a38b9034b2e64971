// ModalWindow: what every dialog window of the library has in common. It is owned by the host's
// active window and runs its own message loop, during which the host's other windows are disabled;
// it follows the system's font, the screen's DPI and the visual styles.
#ifndef ARD_WINDOWS_DIALOGS_MODAL_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_MODAL_WINDOW_H_

#include <memory>
#include <optional>
#include <span>

#include "windows/dialogs/dialog_window.h"
#include "windows/dialogs/metrics.h"

namespace ard::windows {

// The distances that Windows dialogs keep, in dialog units.
inline constexpr int kMargin = 7;
inline constexpr int kGap = 4;
inline constexpr int kButtonWidth = 50;
inline constexpr int kButtonHeight = 14;
inline constexpr int kEditHeight = 12;

class ModalWindow : protected DialogWindow {
 public:
  // Shows the window and returns once Finish has been called. When the window goes any other way
  // (its owner is destroyed, the host's thread is told to quit), CloseBox is called first.
  // Throws Error when the window cannot be created.
  void Run(HINSTANCE module);

 protected:
  enum class Border { kFixed, kResizable };

  explicit ModalWindow(Border border) : border_(border) {}

  // What the derived window adds, in the order in which it is called. Sizes are those of the
  // client area, in pixels.
  virtual const wchar_t* Caption() const = 0;
  virtual void CreateControls(HINSTANCE module) = 0;
  virtual void MetricsChanged() {}  // the controls have got their font
  virtual SIZE InitialSize() const = 0;
  virtual SIZE MinimumSize() const { return InitialSize(); }
  // Whether it opens in the middle of the screen that shows its owner, not of the owner.
  virtual bool OnScreen() const { return false; }
  virtual void Layout(SIZE client) = 0;
  virtual void Opened() {}  // the size is settled, the window about to be seen
  virtual HWND InitialFocus() const = 0;
  virtual void Command(int id) = 0;  // Enter arrives as IDOK, Esc as IDCANCEL
  virtual void CloseBox() = 0;
  virtual void Wheel(int /*delta*/) {}  // turned over the window or one of its buttons
  // A key that `control` is about to get; whether it was one for the window as a whole.
  virtual bool HandleKey(HWND /*control*/, WPARAM /*key*/) { return false; }
  // The loop has dealt with the message. Here, unlike in the midst of one, a window may be shown.
  virtual void Handled(const MSG& /*message*/) {}

  // Ends Run, from within any handler.
  void Finish();

  const Metrics& metrics() const { return *metrics_; }

  // Sets the focus as the Tab key does: text is selected as a whole.
  void Focus(HWND control) const;
  void LayoutClient();

  HWND AddButton(int id, const wchar_t* text);
  // Puts the buttons side by side into the lower right corner.
  void LayoutButtons(SIZE client, std::span<const HWND> buttons) const;

  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  void OpenNear(HWND owner);
  void Loop();
  void SetMetrics(UINT dpi);
  bool Translate(MSG& message);
  void LimitSize(MINMAXINFO& limits) const;

  Border border_;
  std::unique_ptr<Metrics> metrics_;
  HWND size_grip_ = nullptr;
  bool finished_ = false;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_MODAL_WINDOW_H_
