#include "frame/value.h"

#include <gtest/gtest.h>

#include <limits>

#include "frame/date.h"
#include "frame/error.h"

namespace ard {
namespace {

template <class Conversion>
std::int32_t ErrorOf(Conversion&& conversion) {
  try {
    conversion();
  } catch (const Error& error) {
    return error.number();
  }
  return 0;
}

TEST(ValueTest, RoundsHalfToEvenToIntegers) {
  for (const auto& [number, rounded] :
       {std::pair(0.5, 0), {1.5, 2}, {2.5, 2}, {-1.5, -2}, {32767.49, 32767}, {-32768.5, -32768}}) {
    EXPECT_EQ(Value(number).ToInteger(), rounded) << number;
    EXPECT_EQ(Value(number).ToLong(), rounded) << number;
  }
  EXPECT_EQ(Value(Currency{25000}).ToInteger(), 2);  // 2.5
  EXPECT_EQ(Value(L"1.5").ToInteger(), 2);
}

TEST(ValueTest, IntegersOverflow) {
  const double kNan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ErrorOf([] { Value(32767.5).ToInteger(); }), kErrorOverflow);
  EXPECT_EQ(ErrorOf([] { Value(std::int16_t{-1}).ToByte(); }), kErrorOverflow);
  EXPECT_EQ(ErrorOf([&] { Value(kNan).ToLong(); }), kErrorOverflow);
  EXPECT_EQ(ErrorOf([] { Value(1e15).ToCurrency(); }), kErrorOverflow);
}

TEST(ValueTest, EmptyIsNeutralAndNullAndObjectsConvertToNothing) {
  EXPECT_FALSE(Value().ToBoolean());
  EXPECT_EQ(Value().ToLong(), 0);
  EXPECT_EQ(Value().ToDouble(), 0);
  EXPECT_EQ(Value().ToText(), L"");
  EXPECT_EQ(Value().ToDate(), Date{});
  for (const Value& value : {Value(Null()), Value(std::make_shared<Object>())}) {
    EXPECT_EQ(ErrorOf([&] { value.ToBoolean(); }), kErrorTypeMismatch);
    EXPECT_EQ(ErrorOf([&] { value.ToLong(); }), kErrorTypeMismatch);
    EXPECT_EQ(ErrorOf([&] { value.ToDouble(); }), kErrorTypeMismatch);
    EXPECT_EQ(ErrorOf([&] { value.ToDate(); }), kErrorTypeMismatch);
    EXPECT_EQ(ErrorOf([&] { value.ToText(); }), kErrorTypeMismatch);
  }
}

TEST(ValueTest, TrueIsMinusOne) {
  EXPECT_EQ(Value(true).ToInteger(), -1);
  EXPECT_EQ(Value(true).ToByte(), 255);
  EXPECT_EQ(Value(true).ToDouble(), -1);
  EXPECT_EQ(Value(false).ToInteger(), 0);
  EXPECT_EQ(Value(false).ToByte(), 0);
  EXPECT_EQ(Value(false).ToDouble(), 0);
  EXPECT_TRUE(Value(std::int16_t{2}).ToBoolean());
  EXPECT_TRUE(Value(L" TRUE ").ToBoolean());
  EXPECT_FALSE(Value(L"false").ToBoolean());
  EXPECT_EQ(ErrorOf([] { Value(L"yes").ToBoolean(); }), kErrorTypeMismatch);
}

TEST(ValueTest, ReadsNumbersFromText) {
  const struct {
    const wchar_t* text;
    double number;
  } cases[] = {{L"  -3 ", -3},
               {L"1,234,567.25", 1234567.25},
               {L".5", 0.5},
               {L"1E+3", 1000},
               {L"+2e-1", 0.2}};
  for (const auto& c : cases) EXPECT_EQ(Value(c.text).ToDouble(), c.number) << c.text;
  const wchar_t* const no_numbers[] = {L"",    L"  ",  L"1x",     L"1 2", L"--1",
                                       L"nan", L"inf", L"0x1",    L".",   L"e5",
                                       L",1",  L"1e",  L"\x0663", L"1+1", L"1.5,0"};
  for (const auto* text : no_numbers) {
    EXPECT_EQ(ErrorOf([&] { Value(text).ToDouble(); }), kErrorTypeMismatch) << text;
  }
  EXPECT_EQ(ErrorOf([] { Value(std::wstring(L"1\0", 2)).ToDouble(); }), kErrorTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Value(L"1e999").ToDouble(); }), kErrorOverflow);
  EXPECT_EQ(Value(std::wstring(399, L'0')).ToDouble(), 0);
  EXPECT_EQ(ErrorOf([] { Value(std::wstring(400, L'0')).ToDouble(); }), kErrorTypeMismatch);
}

TEST(ValueTest, NumbersBecomeTextWithFifteenDigitsAtMost) {
  const struct {
    double number;
    const wchar_t* text;
  } cases[] = {{0.1, L"0.1"},
               {10.3 - 10.1, L"0.200000000000001"},
               {1e15, L"1E+15"},
               {1e-5, L"1E-05"},
               {-0.0, L"0"}};
  for (const auto& c : cases) EXPECT_EQ(Value(c.number).ToText(), c.text);
  EXPECT_EQ(Value(Currency{-12500}).ToText(), L"-1.25");
  EXPECT_EQ(Value(Currency{std::numeric_limits<std::int64_t>::min()}).ToText(),
            L"-922337203685477.5808");
}

TEST(ValueTest, CurrencyHasFourDecimals) {
  EXPECT_EQ(Value(0.00019).ToCurrency(), Currency{2});
  EXPECT_EQ(Value(0.00025).ToCurrency(), Currency{2});  // half to even
  EXPECT_EQ(Value(-922337203685477.5808).ToCurrency().units,
            std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(ErrorOf([] { Value(922337203685477.5808).ToCurrency(); }), kErrorOverflow);
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
    EXPECT_EQ(ErrorOf([&] { FormatIsoDate(Date{days}); }), kErrorOverflow) << days;
  }
}

}  // namespace
}  // namespace ard
