#include "windows/engine/variant.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <limits>
#include <string>

#include "frame/decimal.h"

namespace ard::windows {
namespace {

template <class T>
VARIANT Variant(VARTYPE type, T VARIANT::*member, T content) {
  VARIANT variant{};
  variant.vt = type;
  variant.*member = content;
  return variant;
}

// Those that Value has itself, below.
TEST(FromVariant, TakesEveryTypeOfValue) {
  const Bstr text(std::wstring_view(L"a\0b", 3));
  BSTR referenced_text = text.get();
  LONG number = -7;
  VARIANT_BOOL yes = VARIANT_TRUE;
  VARIANT decimal{};
  decimal.decVal.Lo32 = 12345;
  decimal.decVal.scale = 3;
  decimal.decVal.sign = DECIMAL_NEG;
  decimal.vt = VT_DECIMAL;
  VARIANT long_decimal = decimal;
  long_decimal.decVal.Lo64 = 12345678901234567;
  long_decimal.decVal.scale = 1;
  VARIANT inner = Variant(VT_BYREF | VT_I4, &VARIANT::plVal, &number);
  const struct {
    const char* what;
    VARIANT variant;
    Value value;
  } cases[] = {
      {"any true", Variant<VARIANT_BOOL>(VT_BOOL, &VARIANT::boolVal, 1), true},
      {"signed byte", Variant<CHAR>(VT_I1, &VARIANT::cVal, -128), std::int16_t{-128}},
      {"UI2", Variant<USHORT>(VT_UI2, &VARIANT::uiVal, 65535), 65535},
      {"UI4", Variant<ULONG>(VT_UI4, &VARIANT::ulVal, 4294967295U), 4294967295.0},
      {"INT", Variant<INT>(VT_INT, &VARIANT::intVal, -1), -1},
      {"UINT", Variant<UINT>(VT_UINT, &VARIANT::uintVal, 4294967295U), 4294967295.0},
      {"no object", Variant<IUnknown*>(VT_UNKNOWN, &VARIANT::punkVal, nullptr),
       std::shared_ptr<Object>()},
      {"I8", Variant<LONGLONG>(VT_I8, &VARIANT::llVal, -5000000000), -5e9},
      {"UI8", Variant<ULONGLONG>(VT_UI8, &VARIANT::ullVal, 10000000000000000001U),
       L"10000000000000000001"},
      {"R4", Variant<FLOAT>(VT_R4, &VARIANT::fltVal, 0.5F), 0.5},
      {"decimal", decimal, -12.345},
      {"decimal of many digits", long_decimal, L"-1234567890123456.7"},
      {"null text", Variant<BSTR>(VT_BSTR, &VARIANT::bstrVal, nullptr), L""},
      {"number by reference", inner, -7},
      {"Boolean by reference", Variant(VT_BYREF | VT_BOOL, &VARIANT::pboolVal, &yes), true},
      {"text by reference", Variant(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &referenced_text),
       std::wstring(L"a\0b", 3)},
      {"reference in a variant by reference",
       Variant(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &inner), -7},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(FromVariant(test.variant), test.value) << test.what;
  }
}

TEST(FromVariant, RefusesWhatIsNoValue) {
  VARIANT array{};
  array.vt = VT_ARRAY | VT_VARIANT;
  const VARIANT missing = Variant<SCODE>(VT_ERROR, &VARIANT::scode, DISP_E_PARAMNOTFOUND);
  const VARIANT array_in_variant = Variant(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &array);
  for (const VARIANT& variant : {array, missing, array_in_variant}) {
    EXPECT_THROW(FromVariant(variant), Error) << variant.vt;
  }
}

TEST(ToVariant, IsTheInverseOfFromVariantAndRefusesForeignObjects) {
  for (const Value& value : std::initializer_list<Value>{
           Value(), Null(), true, false, std::uint8_t{255}, std::int16_t{-3},
           std::numeric_limits<std::int32_t>::min(), -0.5, Currency{-1}, Date{36526.25}, L"",
           std::wstring(L"a\0b", 3), std::shared_ptr<Object>()}) {
    EXPECT_EQ(FromVariant(ToVariant(value)), value) << value.storage().index();
  }
  EXPECT_THROW(ToVariant(std::make_shared<Object>()), Error);
}

// A host may have chosen the C library's, which the process shares.
TEST(Numbers, AreTheSameInEveryLocale) {
  ASSERT_TRUE(std::setlocale(LC_ALL, "German"));
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  EXPECT_EQ(Value(1234.5).ToText(), L"1234.5");
  EXPECT_EQ(Value(Currency{12345000}).ToText(), L"1234.5");
  EXPECT_EQ(Value(L"1,234.5").ToDouble(), 1234.5);
  EXPECT_EQ(FormatFixed(1234.5, 2), L"1234.50");
  EXPECT_EQ(FormatFixed(0x1p80, 1), L"1208925819614629174706176.0");
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace ard::windows
