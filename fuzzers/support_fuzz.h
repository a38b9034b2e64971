// What the fuzzers share: values made of the fuzzer's bytes, and properties that have to hold.
#ifndef ARD_FUZZERS_SUPPORT_FUZZ_H_
#define ARD_FUZZERS_SUPPORT_FUZZ_H_

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "frame/text.h"

namespace ard::fuzz {

inline void Print(double detail) { std::fprintf(stderr, "  %.17g\n", detail); }
inline void Print(const std::string& detail) { std::fprintf(stderr, "  %s\n", detail.c_str()); }
inline void Print(const std::wstring& detail) { Print(ToUtf8(detail)); }

// Ends the process, as a finding, when the property does not hold.
template <class... Details>
void Require(bool holds, const char* property, const Details&... details) {
  if (holds) return;
  std::fprintf(stderr, "Not so: %s\n", property);
  (Print(details), ...);
  std::abort();
}

class Input : public FuzzedDataProvider {
 public:
  using FuzzedDataProvider::FuzzedDataProvider;

  // From 0 to `last`.
  template <class T>
  T UpTo(T last) {
    return ConsumeIntegralInRange<T>(0, last);
  }
  bool OneIn(int chances) { return UpTo(chances - 1) == 0; }
  // At most `longest` characters of the alphabet.
  std::wstring Text(std::size_t longest, std::wstring_view alphabet) {
    std::wstring text(UpTo(longest), L' ');
    for (wchar_t& c : text) c = alphabet[UpTo(alphabet.size() - 1)];
    return text;
  }
  std::wstring AnyText(std::size_t longest) {
    return FromUtf8(ConsumeBytesAsString(UpTo(longest)));
  }
};

}  // namespace ard::fuzz

#endif  // ARD_FUZZERS_SUPPORT_FUZZ_H_
