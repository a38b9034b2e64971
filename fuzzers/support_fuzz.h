// What the fuzzers share: values made of the fuzzer's bytes, and properties that have to hold.
#ifndef ARD_FUZZERS_SUPPORT_FUZZ_H_
#define ARD_FUZZERS_SUPPORT_FUZZ_H_

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <type_traits>

#include "frame/text.h"

namespace ard::fuzz {

template <class T>
void PrintDetail(const T& detail) {
  if constexpr (std::is_arithmetic_v<T>) {
    std::fprintf(stderr, "  %.17g\n", static_cast<double>(detail));
  } else if constexpr (std::is_convertible_v<T, std::string_view>) {
    std::fprintf(stderr, "  \"%s\"\n", std::string(detail).c_str());
  } else {
    std::fprintf(stderr, "  \"%s\"\n", ToUtf8(detail).c_str());
  }
}

// Ends the process, as a finding, when the property does not hold.
template <class... Details>
void Require(bool holds, const char* property, const Details&... details) {
  if (holds) return;
  std::fprintf(stderr, "Not so: %s\n", property);
  (PrintDetail(details), ...);
  std::abort();
}

class Input : public FuzzedDataProvider {
 public:
  using FuzzedDataProvider::FuzzedDataProvider;

  // From 0 to `last`.
  template <class T = std::size_t>
  T UpTo(T last) {
    return ConsumeIntegralInRange<T>(0, last);
  }
  // At most `longest` characters of the alphabet.
  std::wstring Text(std::size_t longest, std::wstring_view alphabet) {
    std::wstring text(UpTo(longest), L' ');
    for (wchar_t& c : text) c = alphabet[UpTo(alphabet.size() - 1)];
    return text;
  }
  // Text of any kind.
  std::wstring AnyText(std::size_t longest) {
    return FromUtf8(ConsumeBytesAsString(UpTo(longest)));
  }
};

}  // namespace ard::fuzz

#endif  // ARD_FUZZERS_SUPPORT_FUZZ_H_
