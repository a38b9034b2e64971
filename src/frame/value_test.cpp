#include "frame/value.h"

#include <gtest/gtest.h>

#include <limits>

#include "frame/date.h"
#include "frame/error.h"
#include "frame/text.h"

namespace ard {
namespace {

// What a conversion gives, as text: "~" for a type mismatch, "^" for an overflow, "!" for Null.
template <class Conversion>
std::wstring Told(Conversion convert) {
  try {
    return Value(convert()).ToText();
  } catch (const Error& error) {
    return error.number() == kErrorTypeMismatch ? L"~"
           : error.number() == kErrorOverflow   ? L"^"
           : error.number() == kErrorNull       ? L"!"
                                                : L"?";
  }
}

// To a Boolean, a Byte, an Integer, a Long, a Double, a Currency, a Date, a String.
std::wstring All(const Value& value) {
  return Told([&] { return value.ToBoolean(); }) + L'|' + Told([&] { return value.ToByte(); }) +
         L'|' + Told([&] { return value.ToInteger(); }) + L'|' +
         Told([&] { return value.ToLong(); }) + L'|' + Told([&] { return value.ToDouble(); }) +
         L'|' + Told([&] { return value.ToCurrency(); }) + L'|' +
         Told([&] { return value.ToDate(); }) + L'|' + Told([&] { return value.ToText(); });
}

TEST(ValueTest, ConvertsToAnyTypeOrSaysThatItDoesNot) {
  const auto kNan = std::numeric_limits<double>::quiet_NaN();
  const Currency least{std::numeric_limits<std::int64_t>::min()};
  const std::pair<Value, const wchar_t*> cases[] = {
      {{}, L"False|0|0|0|0|0|1899-12-30|"},
      {Null(), L"!|!|!|!|!|!|!|!"},
      {std::make_shared<Object>(), L"~|~|~|~|~|~|~|~"},
      {true, L"True|255|-1|-1|-1|-1|1899-12-29|True"},
      {false, L"False|0|0|0|0|0|1899-12-30|False"},
      {std::int16_t{2}, L"True|2|2|2|2|2|1900-01-01|2"},
      {std::uint8_t{7}, L"True|7|7|7|7|7|1900-01-06|7"},
      {70000, L"True|^|^|70000|70000|70000|2091-08-25|70000"},
      {Date{2.5}, L"True|2|2|2|2.5|2.5|1900-01-01 12:00:00|1900-01-01 12:00:00"},
      {std::int16_t{-1}, L"True|^|-1|-1|-1|-1|1899-12-29|-1"},
      // Halves go to the even side.
      {0.5, L"True|0|0|0|0.5|0.5|1899-12-30 12:00:00|0.5"},
      {1.5, L"True|2|2|2|1.5|1.5|1899-12-31 12:00:00|1.5"},
      {2.5, L"True|2|2|2|2.5|2.5|1900-01-01 12:00:00|2.5"},
      {-1.5, L"True|^|-2|-2|-1.5|-1.5|1899-12-29 12:00:00|-1.5"},
      {255.5, L"True|^|256|256|255.5|255.5|1900-09-11 12:00:00|255.5"},
      {32767.49, L"True|^|32767|32767|32767.49|32767.49|1989-09-16 11:45:36|32767.49"},
      {32767.5, L"True|^|^|32768|32767.5|32767.5|1989-09-16 12:00:00|32767.5"},
      {-32768.5, L"True|^|-32768|-32768|-32768.5|-32768.5|1810-04-13 12:00:00|-32768.5"},
      {0.00019, L"True|0|0|0|0.00019|0.0002|1899-12-30 00:00:16|0.00019"},
      {0.00025, L"True|0|0|0|0.00025|0.0002|1899-12-30 00:00:22|0.00025"},
      // With fifteen digits at most.
      {0.1, L"True|0|0|0|0.1|0.1|1899-12-30 02:24:00|0.1"},
      {10.3 - 10.1, L"True|0|0|0|0.200000000000001|0.2|1899-12-30 04:48:00|0.200000000000001"},
      {1e-5, L"True|0|0|0|1E-05|0|1899-12-30 00:00:01|1E-05"},
      {-0.0, L"False|0|0|0|0|0|1899-12-30|0"},
      {1e15, L"True|^|^|^|1E+15|^|^|1E+15"},
      {922337203685477.5808, L"True|^|^|^|922337203685478|^|^|922337203685478"},
      {-922337203685477.5808,
       L"True|^|^|^|-922337203685478|-922337203685477.5808|^|-922337203685478"},
      {kNan, L"True|^|^|^|nan|^|^|nan"},
      {Currency{25000}, L"True|2|2|2|2.5|2.5|1900-01-01 12:00:00|2.5"},
      {Currency{-12500}, L"True|^|-1|-1|-1.25|-1.25|1899-12-29 06:00:00|-1.25"},
      {least, L"True|^|^|^|-922337203685478|-922337203685477.5808|^|-922337203685477.5808"},
      {L" TRUE ", L"True|~|~|~|~|~|~| TRUE "},
      {L"false", L"False|~|~|~|~|~|~|false"},
      {L"yes", L"~|~|~|~|~|~|~|yes"},
      {L" 2006-10-13", L"~|~|~|~|~|~|2006-10-13| 2006-10-13"},
      {L"  -3 ", L"True|^|-3|-3|-3|-3|1899-12-27|  -3 "},
      {L"1,234,567.25", L"True|^|^|1234567|1234567.25|1234567.25|5280-02-15 06:00:00|1,234,567.25"},
      {L".5", L"True|0|0|0|0.5|0.5|1899-12-30 12:00:00|.5"},
      {L"1E+3", L"True|^|1000|1000|1000|1000|1902-09-26|1E+3"},
      {L"+2e-1", L"True|0|0|0|0.2|0.2|1899-12-30 04:48:00|+2e-1"},
      {L"1e999", L"^|^|^|^|^|^|^|1e999"},
  };
  for (const auto& [value, told] : cases) EXPECT_EQ(ToUtf8(All(value)), ToUtf8(told));
  for (const std::wstring text : {L"", L"  ", L"1x", L"1 2", L"--1", L"nan", L"inf", L"0x1", L".",
                                  L"e5", L",1", L"1e", L"\x0663", L"1+1", L"1.5,0"}) {
    EXPECT_EQ(Told([&] { return Value(text).ToDouble(); }), L"~") << text;
  }
  EXPECT_EQ(Told([] { return Value(std::wstring(L"1\0", 2)).ToDouble(); }), L"~");
  EXPECT_EQ(Value(std::wstring(399, L'0')).ToDouble(), 0);
  EXPECT_EQ(Told([] { return Value(std::wstring(400, L'0')).ToDouble(); }), L"~");
}

TEST(DateTest, TextIsIsoAndComesBack) {
  const struct {
    double days;
    const wchar_t* text;
  } cases[] = {{0, L"1899-12-30"},
               {39003.5, L"2006-10-13 12:00:00"},
               {-1.25, L"1899-12-29 06:00:00"},
               {86399.0 / 86400, L"1899-12-30 23:59:59"},
               {-657434, L"0100-01-01"},
               {2958465, L"9999-12-31"}};
  for (const auto& c : cases) {
    EXPECT_EQ(Value(Date{c.days}).ToText(), c.text);
    EXPECT_EQ(Value(c.text).ToDate(), Date{c.days}) << c.text;
  }
  EXPECT_EQ(FormatIsoDate(Date{0.9999999}), L"1899-12-31");
  for (const auto* text :
       {L"2006-02-30", L"2006-13-01", L"2006-1-1", L"2006/10-13", L"2006-10/13", L"200:-10-13",
        L"2006-10-1/", L"2006-10-13x", L"2006-10-13 24:00:00", L"2006-10-13 23:60:00",
        L"2006-10-13 23:59:60", L"2006-10-13 23.59:59", L"2006-10-13 23:59.59", L"2006-10-13 23:59",
        L"2006-10-13 23:59:5", L"2006-10-13 x3:59:59", L"2006-10-13 23:x9:59",
        L"2006-10-13 23:59:x9", L"0099-12-31"}) {
    EXPECT_EQ(ParseIsoDate(text), std::nullopt) << text;
  }
  for (const double days : {-657435.0, 2958466.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(Told([&] { return FormatIsoDate(Date{days}); }), L"^") << days;
    EXPECT_THROW(Value(Date{days}).ToDate(), Error) << days;
  }
}

}  // namespace
}  // namespace ard
