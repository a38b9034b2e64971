// A text with a number in it, such as the field name "T12_RATE": put together in place, for texts
// of which there are a hundred.
#ifndef ARD_FRAME_NUMBERED_TEXT_H_
#define ARD_FRAME_NUMBERED_TEXT_H_

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ard {

// `before` and `after` are the sizes of the literals around the number.
template <std::size_t before, std::size_t after>
class NumberedText {
 public:
  NumberedText(const wchar_t (&front)[before], const wchar_t (&back)[after]) : back_(back) {
    std::copy_n(front, before - 1, text_);
  }
  NumberedText(const NumberedText&) = delete;
  NumberedText& operator=(const NumberedText&) = delete;

  // The text with that number, until the next call.
  std::wstring_view With(std::int16_t number) {
    char digits[kDigits];
    const char* const end = std::to_chars(digits, digits + kDigits, number).ptr;
    wchar_t* at = std::copy(static_cast<const char*>(digits), end, text_ + before - 1);
    at = std::copy_n(back_, after - 1, at);
    return {text_, at};
  }

 private:
  static constexpr std::size_t kDigits = 6;  // and a sign

  const wchar_t* back_;
  wchar_t text_[before - 1 + kDigits + after - 1];
};

}  // namespace ard

#endif  // ARD_FRAME_NUMBERED_TEXT_H_
