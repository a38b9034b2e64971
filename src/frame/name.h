// The name of a member, an engine object, a field: mostly a literal, and then its length is known
// when it is compiled. A view would count it at every call, which the compiler cannot foresee.
#ifndef ARD_FRAME_NAME_H_
#define ARD_FRAME_NAME_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace ard {

class Name : public std::wstring_view {
 public:
  template <std::size_t n>
  constexpr Name(const wchar_t (&literal)[n]) : std::wstring_view(literal, n - 1) {}
  constexpr Name(std::wstring_view text) : std::wstring_view(text) {}
  Name(const std::wstring& text) : std::wstring_view(text) {}
};

}  // namespace ard

#endif  // ARD_FRAME_NAME_H_
