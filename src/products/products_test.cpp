#include "products/products.h"

#include "tests/core/company_test.h"

namespace ard::products {
namespace {

class ProductsTest : public testing::CompanyTest {};

TEST_F(ProductsTest, ASetUpThatCannotBeReadHasNoDefaults) {
  simulator::CompanyBuilder builder;
  Products products(environment_);
  Open(builder.Setup(L"STOCK_CATEGORY=4"), products);
  std::string categories;
  // No set-up, not opened, not read; nothing fails.
  for (const std::int64_t failing : {2, 3, 4, 0}) {
    const std::wstring code = L"NEW" + std::to_wstring(failing);
    engine_->faults().FailFrom(failing, false);
    products.CreateNewProduct(code, L"New");
    EXPECT_TRUE(products.IsValid(code));
    categories += std::to_string(products.GetCategory(code));
  }
  EXPECT_EQ(categories, "0004");
}

}  // namespace
}  // namespace ard::products
