#include "windows/dialogs/contrast.h"

#include <algorithm>
#include <cmath>

namespace ard::windows {
namespace {

double Luminance(COLORREF color) {
  const auto linear = [](int value) {
    const double v = value / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(GetRValue(color)) + 0.7152 * linear(GetGValue(color)) +
         0.0722 * linear(GetBValue(color));
}

}  // namespace

double Contrast(COLORREF a, COLORREF b) {
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

COLORREF Readable(COLORREF color, COLORREF other, double least) {
  if (Contrast(color, other) >= least) return color;
  constexpr COLORREF kBlack = 0;
  constexpr COLORREF kWhite = 0xFFFFFF;
  const int to = Contrast(kBlack, other) > Contrast(kWhite, other) ? 0 : 255;
  constexpr int kSteps = 32;
  COLORREF mixed = color;
  for (int i = 1; i <= kSteps && Contrast(mixed, other) < kLegible; ++i) {
    const auto mix = [&](int value) { return (value * (kSteps - i) + to * i) / kSteps; };
    mixed = RGB(mix(GetRValue(color)), mix(GetGValue(color)), mix(GetBValue(color)));
  }
  return mixed;
}

}  // namespace ard::windows
