#include <utility>

#include "settings/general.h"
#include "simulator/company.h"
#include "tests/core/company_test.h"

namespace ard::settings {
namespace {

using simulator::CompanyBuilder;
using testing::Texts;

class CompanySettingsTest : public testing::CompanyTest {
 protected:
  using Method = void (General::*)(TextArray) const noexcept;

  // What the method makes of an array with these bounds, whose elements are "-".
  Texts Fill(Method method, std::int32_t lower, std::int32_t upper) {
    Texts elements(static_cast<std::size_t>(upper - lower + 1), L"-");
    (general_.*method)({lower, elements});
    return elements;
  }
  // The decimals and formats when those of quantities are set to 7 and "-" before.
  std::wstring Decimals() {
    std::int16_t quantity = 7;
    std::int16_t unit = 7;
    std::wstring quantity_format = L"-";
    std::wstring unit_format;
    general_.GetDPSettings(quantity, unit, quantity_format, unit_format);
    return std::to_wstring(quantity) + L" " + quantity_format + L" " + std::to_wstring(unit) +
           L" " + unit_format;
  }

  General general_{environment_};
};

TEST_F(CompanySettingsTest, ListsNamesByTheBoundsOfTheArray) {
  CompanyBuilder company;
  for (const wchar_t* name : {L" Bolts ", L"Nuts"}) {
    company.Record(L"StockCategory", {{L"NAME", name}});
  }
  Open(company.Record(L"DepartmentData", L"NAME=Works"), general_);
  // A file that has just been opened stands on its first record, a number without a record leaves
  // it where it is, and indexes that no 16-bit number reaches are left alone.
  const struct {
    Method method;
    std::int32_t lower;
    std::int32_t upper;
    Texts first;
    std::wstring last;
  } cases[] = {
      {&General::GetCategories, 1, 100, {L"1   Bolts", L"2   Nuts", L"3   Nuts"}, L"100   Nuts"},
      {&General::GetCategories, 0, 99, {L"0   Bolts", L"1   Bolts", L"2   Nuts"}, L"99   Nuts"},
      {&General::GetCategories, -1, 1, {L"-1   Bolts", L"0   Bolts"}, L"1   Bolts"},
      {&General::GetCategories, 32767, 32768, {L"32767   Bolts"}, L"-"},
      {&General::GetDepartments, -2, 9, {L"-2   Works"}, L"9   Works"},
  };
  for (const auto& c : cases) {
    Texts all = Fill(c.method, c.lower, c.upper);
    EXPECT_EQ(all.back(), c.last);
    all.resize(c.first.size());
    EXPECT_EQ(all, c.first);
  }
  EXPECT_EQ(Fill(&General::GetCategories, 2, 1), Texts{});
}

TEST_F(CompanySettingsTest, TellsTaxCodesByTheirNumbers) {
  CompanyBuilder company;
  Open(company.Control(L"T1_RATE=17.5|T1_DESCRIPTION=Standard|T9_RATE=5.005|T99_RATE=-0.125"),
       general_);
  for (const auto& [lower, upper] : {std::pair(1, 100), {0, 9}, {-2, 1}}) {
    const Texts all = Fill(&General::GetTaxCodes, lower, upper);
    for (const auto& [code, label] : {std::pair(-1, L"-"),
                                      {0, L"T0   0.00"},
                                      {1, L"T1   17.50"},
                                      {9, L"T9   5.01"},
                                      {20, L"T20 0.00"},
                                      {99, L"T99 -0.13"},
                                      {100, L"-"}}) {
      if (code < lower || code > upper) continue;
      EXPECT_EQ(all[static_cast<std::size_t>(code - lower)], label) << lower;
    }
  }
  EXPECT_EQ(general_.GetVatRate(1), 17.5);
  EXPECT_EQ(Trimmed(general_.GetVatDesc(1)), L"Standard");
  for (const std::int16_t code : {std::int16_t{-1}, std::int16_t{100}}) {
    EXPECT_EQ(general_.GetVatRate(code), 0);
    EXPECT_EQ(general_.GetVatDesc(code), L"");
  }
}

// Whatever the engine has them as.
TEST_F(CompanySettingsTest, TellsTaxRatesOfOtherTypes) {
  CompanyBuilder company;
  Open(company, general_);
  engine_->company().Parse(L"ControlData",
                           "T1_RATE:text(4)\tT2_RATE:text(4)\tT3_RATE:long\n17.5\tnone\t5\n", "");
  EXPECT_EQ(Fill(&General::GetTaxCodes, 0, 4),
            (Texts{L"-", L"T1   17.50", L"T2   none", L"T3   5.00", L"-"}));
}

TEST_F(CompanySettingsTest, TellsDecimalsAndTheirFormats) {
  const std::pair<int, const wchar_t*> cases[] = {
      {0, L"0 0. 3 0.000"}, {2, L"2 0.00 3 0.000"}, {-1, L"-1 - 3 0.000"}};
  for (const auto& [decimals, shown] : cases) {
    CompanyBuilder company;
    company.Setup({{L"STOCK_QTYDP", static_cast<std::int16_t>(decimals)},
                   {L"STOCK_UNITDP", std::int16_t{3}}});
    Open(company, general_);
    EXPECT_EQ(Decimals(), shown);
  }
  CompanyBuilder company;
  Open(company.Without(L"SetupData").Without(L"ControlData"), general_);
  EXPECT_EQ(Decimals(), L"4 0.0000 4 0.0000");
  EXPECT_EQ(Fill(&General::GetCategories, 0, 1), (Texts{L"-", L"-"}));
  EXPECT_EQ(Fill(&General::GetTaxCodes, 0, 1), (Texts{L"-", L"-"}));
}

}  // namespace
}  // namespace ard::settings
