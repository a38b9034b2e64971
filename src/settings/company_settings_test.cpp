#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "settings/general.h"
#include "simulator/testing/company_builder.h"
#include "testing/scripted_environment.h"

namespace ard::settings {
namespace {

using simulator::CompanyBuilder;

class CompanySettingsTest : public ::testing::Test {
 protected:
  void Open(CompanyBuilder& company) {
    engine_ = company.Build();
    general_.context().workspace = engine_->workspace();
  }
  void TearDown() override {
    if (!engine_) return;
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }
  // What the method makes of an array with these bounds, whose elements are "-".
  std::vector<std::wstring> Fill(void (General::*method)(TextArray) const noexcept,
                                 std::int32_t lower, std::int32_t upper) {
    std::vector<std::wstring> elements(static_cast<std::size_t>(upper - lower + 1), L"-");
    (general_.*method)({lower, elements});
    return elements;
  }

  testing::ScriptedEnvironment environment_;
  std::unique_ptr<simulator::Simulator> engine_;
  General general_{environment_};
};

using Texts = std::vector<std::wstring>;

TEST_F(CompanySettingsTest, ListsNamesByTheBoundsOfTheArray) {
  CompanyBuilder company;
  for (const wchar_t* name : {L" Bolts ", L"Nuts"})
    company.Record(L"StockCategory", {{L"NAME", name}});
  company.Record(L"DepartmentData", {{L"NAME", L"Works"}});
  Open(company);
  EXPECT_EQ(Fill(&General::GetCategories, 1, 4),
            (Texts{L"1   Bolts", L"2   Nuts", L"3   Nuts", L"4   Nuts"}));
  // A file that has just been opened stands on its first record.
  EXPECT_EQ(Fill(&General::GetCategories, -1, 1),
            (Texts{L"-1   Bolts", L"0   Bolts", L"1   Bolts"}));
  EXPECT_EQ(Fill(&General::GetDepartments, 1, 1), Texts{L"1   Works"});
  EXPECT_EQ(Fill(&General::GetCategories, 2, 1), Texts{});
  // Indexes that no 16-bit number reaches are left alone.
  EXPECT_EQ(Fill(&General::GetCategories, 32767, 32768), (Texts{L"32767   Bolts", L"-"}));
}

TEST_F(CompanySettingsTest, ListsTaxCodesByTheirNumbers) {
  CompanyBuilder company;
  company.Control({{L"T1_RATE", 17.5}, {L"T9_RATE", 5.005}, {L"T99_RATE", -0.125}});
  Open(company);
  const auto all = Fill(&General::GetTaxCodes, 0, 99);
  EXPECT_EQ(all[0], L"T0   0.00");
  EXPECT_EQ(all[1], L"T1   17.50");
  EXPECT_EQ(all[9], L"T9   5.01");
  EXPECT_EQ(all[20], L"T20 0.00");
  EXPECT_EQ(all[99], L"T99 -0.13");
  const auto from_one = Fill(&General::GetTaxCodes, 1, 100);
  EXPECT_EQ(from_one[0], L"T1   17.50");
  EXPECT_EQ(from_one[98], L"T99 -0.13");
  EXPECT_EQ(from_one[99], L"-");
  EXPECT_EQ(Fill(&General::GetTaxCodes, 0, 9).back(), L"T9   5.01");
  EXPECT_EQ(Fill(&General::GetTaxCodes, -2, 1), (Texts{L"-", L"-", L"T0   0.00", L"T1   17.50"}));
}

TEST_F(CompanySettingsTest, TellsOneTaxCode) {
  CompanyBuilder company;
  company.Control({{L"T17_RATE", 17.5}, {L"T17_DESCRIPTION", L"Standard"}});
  Open(company);
  EXPECT_EQ(general_.GetVatRate(17), 17.5);
  EXPECT_EQ(Trimmed(general_.GetVatDesc(17)), L"Standard");
  for (const std::int16_t code : {std::int16_t{-1}, std::int16_t{100}}) {
    EXPECT_EQ(general_.GetVatRate(code), 0);
    EXPECT_EQ(general_.GetVatDesc(code), L"");
  }
}

TEST_F(CompanySettingsTest, TellsDecimalsAndTheirFormats) {
  const struct {
    std::int16_t decimals;
    std::wstring format;
  } cases[] = {{0, L"0."}, {2, L"0.00"}, {-1, L"as it was"}};
  for (const auto& c : cases) {
    CompanyBuilder company;
    company.Setup({{L"STOCK_QTYDP", c.decimals}, {L"STOCK_UNITDP", std::int16_t{3}}});
    Open(company);
    std::int16_t quantity = 7;
    std::int16_t unit = 7;
    std::wstring quantity_format = L"as it was";
    std::wstring unit_format;
    general_.GetDPSettings(quantity, unit, quantity_format, unit_format);
    EXPECT_EQ(quantity, c.decimals);
    EXPECT_EQ(quantity_format, c.format);
    EXPECT_EQ(unit, 3);
    EXPECT_EQ(unit_format, L"0.000");
  }
}

TEST_F(CompanySettingsTest, WithoutFilesArraysAreLeftAloneAndFourDecimalsUsual) {
  CompanyBuilder company;
  for (const wchar_t* table : {L"SetupData", L"ControlData"}) company.Without(table);
  Open(company);
  for (const auto method :
       {&General::GetCategories, &General::GetDepartments, &General::GetTaxCodes}) {
    EXPECT_EQ(Fill(method, 0, 1), (Texts{L"-", L"-"}));
  }
  std::int16_t quantity = 7;
  std::int16_t unit = 7;
  std::wstring formats[2];
  general_.GetDPSettings(quantity, unit, formats[0], formats[1]);
  EXPECT_EQ(quantity, 4);
  EXPECT_EQ(unit, 4);
  EXPECT_EQ(formats[0], L"0.0000");
  EXPECT_EQ(formats[1], L"0.0000");
  EXPECT_EQ(general_.GetVatRate(1), 0);
  EXPECT_EQ(general_.GetVatDesc(1), L"");
}

}  // namespace
}  // namespace ard::settings
