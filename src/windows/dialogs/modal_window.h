// ModalWindow: what every dialog window of the library has in common. It is owned by the host's
// active window and runs its own message loop, during which the host's other windows are disabled;
// it follows the system's font, the screen's DPI and the visual styles.
#ifndef ARD_WINDOWS_DIALOGS_MODAL_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_MODAL_WINDOW_H_

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "windows/dialogs/dialog_window.h"
#include "windows/dialogs/layout.h"
#include "windows/dialogs/metrics.h"

namespace ard::windows {

class PagedList;

class ModalWindow : protected DialogWindow {
 public:
  // Shows the window and returns once Finish has been called. When the window goes any other way
  // (its owner is destroyed, the host's thread is told to quit), CloseBox is called first.
  // Throws Error when the window cannot be created.
  void Run(HINSTANCE module);

 protected:
  enum class Border { kFixed, kResizable };

  explicit ModalWindow(Border border);
  ~ModalWindow() override;

  // The parts of Run, for a window that stands beside a task: what has been done in it is answered
  // by AnswerPending, time and again.
  void Open(HINSTANCE module);
  void AnswerPending();
  void Close();

  // What the derived window adds, in the order in which it is called. It is made of lines at its
  // head, lines at its foot, and between them a body, if there is one. Sizes are in pixels.
  virtual const wchar_t* Caption() const = 0;
  virtual void CreateControls(HINSTANCE module) = 0;
  // The lists that it has got.
  virtual std::vector<PagedList*> Lists() { return {}; }
  // Where its place, its size and the widths of its columns are kept; null when they are not.
  virtual std::wstring* Kept() { return nullptr; }
  // The size of the body when the window opens, and the least one.
  virtual SIZE BodySize() const { return {}; }
  virtual SIZE LeastBodySize() const { return BodySize(); }
  // The width in which the window opens; 0 for one that suits its parts.
  virtual int OpeningWidth() const { return 0; }
  // Whether it opens in the middle of the screen that shows its owner, not of the owner.
  virtual bool OnScreen() const { return false; }
  virtual void PutBody(Placement& /*placement*/, const RECT& /*area*/) {}
  virtual void Placed() {}  // all controls are where they belong
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
  // Of the client area at its narrowest.
  int LeastWidth() const { return static_cast<int>(SizeAround(LeastBodySize()).cx); }
  Lines& head() { return head_; }
  Lines& foot() { return foot_; }

  // Sets the focus as the Tab key does: text is selected as a whole.
  void Focus(HWND control) const;
  void LayoutClient();

  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  class Modality;

  void OpenNear(HWND owner);
  bool Recall();
  std::wstring Present();
  void Loop();
  void Deal(MSG& message);
  // With a body at its least, the window then has room in the work area.
  void SetMetrics(UINT dpi, const RECT& work);
  // In the work area, as near to that middle and size as the area and the controls allow.
  void PlaceWithin(const RECT& work, POINT middle, SIZE size);
  void Refit();  // something that it was fitted to has changed
  bool Translate(MSG& message);
  // Of the client area.
  SIZE SizeAround(SIZE body) const;
  SIZE LeastSize() const;  // with the frame
  void LimitSize(MINMAXINFO& limits) const;

  Border border_;
  Lines head_;
  Lines foot_;
  std::unique_ptr<Metrics> metrics_;
  std::unique_ptr<Modality> modality_;
  HWND host_focus_ = nullptr;
  HWND size_grip_ = nullptr;
  std::wstring opened_;  // how it was then
  bool finished_ = false;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_MODAL_WINDOW_H_
