// The measures of a dialog: the system's message font at a DPI, and the dialog units that follow
// from that font. Every size of a window comes from here, so that it fits whatever the screen.
#ifndef ARD_WINDOWS_DIALOGS_METRICS_H_
#define ARD_WINDOWS_DIALOGS_METRICS_H_

#include <windows.h>

namespace ard::windows {

// The DPI at which the system shows `window`; the screen's where windows have none of their own.
UINT DpiOf(HWND window);

inline constexpr int kTwipsPerInch = 1440;

class Metrics {
 public:
  // At less than 100 %, distances are smaller than they should be, and in the end the font, too.
  Metrics(UINT dpi, int percent);
  Metrics(const Metrics&) = delete;
  Metrics& operator=(const Metrics&) = delete;
  ~Metrics();

  UINT dpi() const { return dpi_; }
  bool is_small() const { return distance_ < 100; }
  HFONT font() const { return font_; }

  // Dialog units, and a number of average characters, in pixels.
  int X(int units) const { return MulDiv(units, base_width_ * distance_, 4 * 100); }
  int Y(int units) const { return MulDiv(units, base_height_ * distance_, 8 * 100); }
  int Characters(int count) const { return count * base_width_; }
  // Of a box for one line of text: as high as the edit control needs it to have the text in the
  // middle, where all other controls have theirs.
  int BoxHeight() const;

  // Of the control's text, broken into lines of that width. The mark of a mnemonic takes no room.
  SIZE TextSize(HWND control, int width = kNoLimit) const;

 private:
  static constexpr int kNoLimit = 0x7FFF;

  UINT dpi_;
  int distance_;  // of those that go with the font, in percent
  HFONT font_;
  int base_width_;
  int base_height_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_METRICS_H_
