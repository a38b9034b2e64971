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
  General general_{environment_};
};

TEST_F(CompanySettingsTest, WhatNo16BitIndexReachesIsLeftAlone) {
  CompanyBuilder company;
  Open(company.Record(L"StockCategory", L"NAME=Bolts"), general_);
  EXPECT_EQ(Fill(&General::GetCategories, 32767, 32768), (Texts{L"32767   Bolts", L"-"}));
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

}  // namespace
}  // namespace ard::settings
