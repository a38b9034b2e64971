#include "frame/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <span>

namespace ard {
namespace {

constexpr bool kUtf16 = sizeof(wchar_t) == 2;
constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }
constexpr bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// Takes the next code point off `text`: a pair of surrogates is one, whatever the size of a
// character; a lone one comes back as it is.
char32_t Next(std::wstring_view& text) {
  const auto first = static_cast<char32_t>(text[0]);
  if (text.size() > 1 && IsHighSurrogate(first) && IsLowSurrogate(static_cast<char32_t>(text[1]))) {
    const auto low = static_cast<char32_t>(text[1]);
    text.remove_prefix(2);
    return 0x10000 + ((first - 0xD800) << 10) + (low - 0xDC00);
  }
  text.remove_prefix(1);
  return first;
}

void Append(std::wstring& text, char32_t code_point) {
  if (kUtf16 && code_point >= 0x10000) {
    const char32_t offset = code_point - 0x10000;
    text.push_back(static_cast<wchar_t>(0xD800 + (offset >> 10)));
    text.push_back(static_cast<wchar_t>(0xDC00 + (offset & 0x3FF)));
  } else {
    text.push_back(static_cast<wchar_t>(code_point));
  }
}

struct CaseRun {
  char32_t first;
  char32_t last;
  std::uint32_t step;
  std::int32_t delta;
};

constexpr CaseRun kCaseRuns[] = {
#include "frame/case_table.inc"
};
constexpr CaseRun kLowerCaseRuns[] = {
#include "frame/lower_case_table.inc"
};

char32_t Mapped(std::span<const CaseRun> runs, char32_t code_point) {
  const auto run = std::lower_bound(runs.begin(), runs.end(), code_point,
                                    [](const CaseRun& r, char32_t c) { return r.last < c; });
  if (run == runs.end() || code_point < run->first || (code_point - run->first) % run->step != 0) {
    return code_point;
  }
  return static_cast<char32_t>(static_cast<std::int32_t>(code_point) + run->delta);
}

}  // namespace

std::wstring_view Trimmed(std::wstring_view text) {
  // Stored texts are mostly padding: several blanks are compared at once.
  constexpr wchar_t kBlanks[] = {L' ', L' ', L' ', L' '};
  constexpr std::size_t kCount = std::size(kBlanks);
  while (text.size() >= kCount &&
         std::memcmp(text.data() + text.size() - kCount, kBlanks, sizeof kBlanks) == 0) {
    text.remove_suffix(kCount);
  }
  const std::size_t first = text.find_first_not_of(L' ');
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

void TrimBlanks(std::wstring& text) {
  const std::wstring_view kept = Trimmed(text);
  const auto start = static_cast<std::size_t>(kept.empty() ? 0 : kept.data() - text.data());
  text.erase(start + kept.size());
  text.erase(0, start);
}

char32_t UpperCase(char32_t code_point) {
  if (code_point < 0x80) {
    return code_point >= U'a' && code_point <= U'z' ? code_point - 0x20 : code_point;
  }
  return Mapped(kCaseRuns, code_point);
}

std::wstring UpperCase(std::wstring_view text) {
  std::wstring upper;
  upper.reserve(text.size());
  while (!text.empty()) Append(upper, UpperCase(Next(text)));
  return upper;
}

std::wstring LowerCase(std::wstring_view text) {
  std::wstring lower;
  lower.reserve(text.size());
  while (!text.empty()) {
    const char32_t c = Next(text);
    const bool is_upper = c >= U'A' && c <= U'Z';
    Append(lower, c >= 0x80 ? Mapped(kLowerCaseRuns, c) : is_upper ? c + 0x20 : c);
  }
  return lower;
}

std::weak_ordering CompareIgnoreCase(std::wstring_view a, std::wstring_view b) {
  while (!a.empty() && !b.empty()) {
    const char32_t x = UpperCase(Next(a));
    const char32_t y = UpperCase(Next(b));
    if (x != y) return x <=> y;
  }
  return !a.empty() <=> !b.empty();
}

bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) {
  return CompareIgnoreCase(a, b) == 0;
}

bool StartsWithIgnoreCase(std::wstring_view text, std::wstring_view prefix) {
  while (!prefix.empty()) {
    if (text.empty() || UpperCase(Next(text)) != UpperCase(Next(prefix))) return false;
  }
  return true;
}

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  const auto put = [&](char32_t bits) { bytes.push_back(static_cast<char>(bits)); };
  while (!text.empty()) {
    char32_t c = Next(text);
    if (IsSurrogate(c) || c > 0x10FFFF) c = kReplacement;
    if (c < 0x80) {
      put(c);
    } else if (c < 0x800) {
      put(0xC0 | c >> 6);
      put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      put(0xE0 | c >> 12);
      put(0x80 | (c >> 6 & 0x3F));
      put(0x80 | (c & 0x3F));
    } else {
      put(0xF0 | c >> 18);
      put(0x80 | (c >> 12 & 0x3F));
      put(0x80 | (c >> 6 & 0x3F));
      put(0x80 | (c & 0x3F));
    }
  }
  return bytes;
}

std::wstring FromUtf8(std::string_view text) {
  std::wstring units;
  units.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    const auto lead = static_cast<unsigned char>(text[i++]);
    if (lead < 0x80) {
      units.push_back(static_cast<wchar_t>(lead));
      continue;
    }
    const int more = lead >= 0xF0 && lead < 0xF5   ? 3
                     : lead >= 0xE0 && lead < 0xF0 ? 2
                     : lead >= 0xC2 && lead < 0xE0 ? 1
                                                   : 0;
    char32_t c = lead & (0x3FU >> more);
    int taken = 0;
    while (taken < more && i < text.size() && (text[i] & 0xC0) == 0x80) {
      c = c << 6 | (static_cast<unsigned char>(text[i++]) & 0x3FU);
      ++taken;
    }
    constexpr char32_t kSmallest[] = {0x80, 0x800, 0x10000};
    const bool valid =
        more > 0 && taken == more && c >= kSmallest[more - 1] && c <= 0x10FFFF && !IsSurrogate(c);
    Append(units, valid ? c : kReplacement);
  }
  return units;
}

}  // namespace ard
