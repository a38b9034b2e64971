// The layout that all windows share: lines of controls side by side, each as high as its boxes,
// with all texts on one line.
#ifndef ARD_WINDOWS_DIALOGS_LAYOUT_H_
#define ARD_WINDOWS_DIALOGS_LAYOUT_H_

#include <windows.h>

#include <utility>
#include <vector>

#include "windows/dialogs/metrics.h"

namespace ard::windows {

// The distances that Windows dialogs keep, in dialog units.
inline constexpr int kMargin = 7;
inline constexpr int kGap = 4;
inline constexpr int kButtonWidth = 50;

// Collects where the children of a window go, and moves them in one step when it ends. What they
// showed is not copied along: another of them may have been drawn over it meanwhile.
class Placement {
 public:
  Placement() = default;
  Placement(const Placement&) = delete;
  Placement& operator=(const Placement&) = delete;
  ~Placement();

  void Put(HWND window, const RECT& place);

 private:
  HDWP step_ = BeginDeferWindowPos(16);
};

// A control of a line. A width is in dialog units, the least one for a control that `grows`: it
// shares what the line leaves with its like. Without a control, there is room.
struct Part {
  HWND control;
  int width;
  bool grows = false;
};
inline constexpr int kLabelWidth = -1;  // that of the widest text of such a part, within reason
inline constexpr int kOwnWidth = -2;    // that of its own text

// How high a line is; any other height is in dialog units.
inline constexpr int kBox = 0;       // with one line of text in the middle
inline constexpr int kWrapped = -1;  // as its only text needs, broken into lines
inline constexpr int kRule = -2;     // of a line drawn across
inline constexpr int kButtons = 14;  // the system's height of a button, where there is no box

class Lines {
 public:
  void Add(std::vector<Part> parts, int height = kBox, int gap_below = kGap) {
    lines_.push_back({std::move(parts), height, gap_below});
  }
  // The least room that they need, with the gap below the last one; `width` is what they will get.
  int Width(const Metrics& metrics) const;
  int Height(const Metrics& metrics, int width) const;
  // Puts them side by side from the top of `area`, of which what is left remains.
  void Put(Placement& placement, const Metrics& metrics, RECT& area) const;

 private:
  struct Line {
    std::vector<Part> parts;
    int height;
    int gap_below;
  };

  int WidthOf(const Metrics& metrics, const Part& part) const;
  int WidthOf(const Metrics& metrics, const Line& line) const;
  static int HeightOf(const Metrics& metrics, const Line& line, int width);

  std::vector<Line> lines_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_LAYOUT_H_
