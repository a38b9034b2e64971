#include "frame/text.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace ard {
namespace {

TEST(TextTest, TrimsBlanksOnly) {
  const struct {
    std::wstring text;
    std::wstring trimmed;
  } cases[] = {{L"  ab c  ", L"ab c"},   {L"", L""},
               {L"    ", L""},           {L"\tab\n ", L"\tab\n"},
               {L"\x00A0x", L"\x00A0x"}, {std::wstring(L" \0 ", 3), std::wstring(L"\0", 1)}};
  for (const auto& c : cases) {
    EXPECT_EQ(Trimmed(c.text), c.trimmed);
    std::wstring in_place = c.text;
    Trim(in_place);
    EXPECT_EQ(in_place, c.trimmed);
  }
}

TEST(TextTest, ChangesCaseBySimpleMapping) {
  EXPECT_EQ(UpperCase(std::wstring_view(L"abz {é\x00FF\x00DF\x0131\x01C6")),
            L"ABZ {É\x0178\x00DFI\x01C4");
  EXPECT_EQ(UpperCase(std::wstring_view(L"\x0435\x0451\x03C2\x0561")), L"\x0415\x0401\x03A3\x0531");
  EXPECT_EQ(UpperCase(std::wstring_view(L"\U00010428")), L"\U00010400");  // beyond the basic plane
  EXPECT_EQ(LowerCase(L"ABZ [É\x0178\x0130\x01C4\x0398\x039C"), L"abz [éÿi\x01C6\x03B8\x03BC");
  EXPECT_EQ(LowerCase(L"\U00010400 ß"), L"\U00010428 ß");
}

TEST(TextTest, ComparesWithoutCase) {
  EXPECT_TRUE(EqualsIgnoreCase(L"café", L"CAFÉ"));
  EXPECT_FALSE(EqualsIgnoreCase(L"cafe", L"café"));
  EXPECT_TRUE(CompareIgnoreCase(L"a_", L"aB") > 0);  // upper case decides: '_' is above 'B'
  EXPECT_TRUE(StartsWithIgnoreCase(L"Abc001", L"aBC"));
}

TEST(TextTest, Utf8RoundTrip) {
  // The first and the last character of each length.
  const std::wstring text =
      std::wstring(L"a\0\x7F\x80\x7FF\x800\xFFFF", 7) + L"\U00010000\U0010FFFF";
  const std::string bytes(
      "a\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", 21);
  EXPECT_EQ(ToUtf8(text), bytes);
  EXPECT_EQ(FromUtf8(bytes), text);
}

TEST(TextTest, PairsOfSurrogatesAreOneCharacterAndLoneOnesNone) {
  for (const auto& [units, bytes] : {std::pair(std::vector{0xD800, 0xDC00}, "\xF0\x90\x80\x80"),
                                     {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
                                     {{0xD801, 0xDC29}, "\xF0\x90\x90\xA9"},
                                     {{0xD7FF, 0xDC00}, "\xED\x9F\xBF\xEF\xBF\xBD"},
                                     {{0xD800, 0xE000}, "\xEF\xBF\xBD\xEE\x80\x80"},
                                     {{0xDC00, 0xD800}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
                                     {{0xD800, 0xDBFF}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
                                     {{0xDFFF}, "\xEF\xBF\xBD"}}) {
    EXPECT_EQ(ToUtf8(std::wstring(units.begin(), units.end())), bytes);
  }
  const wchar_t pair[] = {0xD800, 0xDC00};
  EXPECT_EQ(ToUtf8({pair, 1}), "\xEF\xBF\xBD") << "what follows is not of the text";
}

TEST(TextTest, MalformedTextBecomesReplacementCharacters) {
  const struct {
    std::string bytes;
    std::wstring text;
  } cases[] = {{"\x80", L"\xFFFD"},
               {"a\xC3", L"a\xFFFD"},
               {"\xC3(", L"\xFFFD("},
               {"\xC1\xBF", L"\xFFFD\xFFFD"},
               {"\xED\x9F\xBF\xED\xA0\x80", L"\xD7FF\xFFFD"},
               {"\xED\xBF\xBF\xEE\x80\x80", L"\xFFFD\xE000"},
               {"\xF4\x90\x80\x80", L"\xFFFD"},
               {"\xF5\x80", L"\xFFFD\xFFFD"},
               {"\xE0\x9F\xBF", L"\xFFFD"},
               {"\xF0\x8F\xBF\xBF", L"\xFFFD"}};
  for (const auto& c : cases) EXPECT_EQ(FromUtf8(c.bytes), c.text);
}

}  // namespace
}  // namespace ard
