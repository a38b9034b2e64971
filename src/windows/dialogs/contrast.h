// How well a text can be told from what it stands on.
#ifndef ARD_WINDOWS_DIALOGS_CONTRAST_H_
#define ARD_WINDOWS_DIALOGS_CONTRAST_H_

#include <windows.h>

namespace ard::windows {

// Ratios of luminance, from 1 to 21, as accessibility guidelines have them.
inline constexpr double kVisible = 3;
inline constexpr double kLegible = 4.5;
double Contrast(COLORREF a, COLORREF b);

// `color` itself, if its contrast to `other` is at least `least`; or else it is darkened or
// lightened until it is legible.
COLORREF Readable(COLORREF color, COLORREF other, double least);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_CONTRAST_H_
