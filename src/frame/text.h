// Text: automation strings as std::wstring (UTF-16 code units on Windows, code points elsewhere).
// Trimming removes blanks (U+0020) only; letters are compared and changed by the simple
// Unicode case mapping, the same on every machine and in every locale.
#ifndef ARD_FRAME_TEXT_H_
#define ARD_FRAME_TEXT_H_

#include <compare>
#include <string>
#include <string_view>

namespace ard {

std::wstring_view Trimmed(std::wstring_view text);
void TrimBlanks(std::wstring& text);
// Most texts have none to begin or end with.
inline void Trim(std::wstring& text) {
  if (!text.empty() && (text.front() == L' ' || text.back() == L' ')) TrimBlanks(text);
}

char32_t UpperCase(char32_t code_point);
std::wstring UpperCase(std::wstring_view text);
std::wstring LowerCase(std::wstring_view text);

// Code-point order of the upper-cased texts.
std::weak_ordering CompareIgnoreCase(std::wstring_view a, std::wstring_view b);
bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b);
bool StartsWithIgnoreCase(std::wstring_view text, std::wstring_view prefix);

// UTF-8 for files and consoles. Malformed input becomes U+FFFD, so any text survives a trip to a
// file as readable text.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

}  // namespace ard

#endif  // ARD_FRAME_TEXT_H_
