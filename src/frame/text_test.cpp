#include "frame/text.h"

#include <gtest/gtest.h>

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
  const std::wstring text = std::wstring(L"a\0é\x20AC", 4) + L"\U0001F600";
  EXPECT_EQ(ToUtf8(text), std::string("a\0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", 11));
  EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
}

TEST(TextTest, MalformedTextBecomesReplacementCharacters) {
  const struct {
    std::string bytes;
    std::wstring text;
  } cases[] = {{"\x80", L"\xFFFD"},           {"a\xC3", L"a\xFFFD"},
               {"\xC3(", L"\xFFFD("},         {"\xC0\x80", L"\xFFFD\xFFFD"},
               {"\xED\xA0\x80", L"\xFFFD"},   {"\xF4\x90\x80\x80", L"\xFFFD"},
               {"\xFF\xFE", L"\xFFFD\xFFFD"}, {"\xE0\x80\x80", L"\xFFFD"}};
  for (const auto& c : cases) EXPECT_EQ(FromUtf8(c.bytes), c.text);
  EXPECT_EQ(ToUtf8(std::wstring(1, wchar_t{0xD800})), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace ard
