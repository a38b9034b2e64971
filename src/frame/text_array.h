// An array of strings that the host has dimensioned: the library reads and fills its elements and
// never resizes it.
#ifndef ARD_FRAME_TEXT_ARRAY_H_
#define ARD_FRAME_TEXT_ARRAY_H_

#include <cstdint>
#include <span>
#include <string>

namespace ard {

struct TextArray {
  std::int32_t lower_bound = 0;
  std::span<std::wstring> elements;

  // Below the lower bound when there are no elements.
  std::int64_t upper_bound() const {
    return std::int64_t{lower_bound} + static_cast<std::int64_t>(elements.size()) - 1;
  }
  // The element with that index; null outside the bounds.
  std::wstring* Find(std::int64_t index) const {
    if (index < lower_bound || index > upper_bound()) return nullptr;
    return &elements[static_cast<std::size_t>(index - lower_bound)];
  }
};

}  // namespace ard

#endif  // ARD_FRAME_TEXT_ARRAY_H_
