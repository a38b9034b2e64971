#include <cmath>
#include <cwchar>
#include <iterator>
#include <memory>
#include <string>

#include "engine/blank_value.h"
#include "frame/decimal.h"
#include "frame/text.h"
#include "products/products.h"
#include "products/stock_record.h"

namespace ard::products {
namespace {

using engine::FieldType;
using engine::Mode;

// The fields of a new product that start with a value of the company's set-up.
struct Default {
  std::int32_t type;
  std::wstring_view stock_field;
  std::wstring_view setup_field;
};
constexpr Default kDefaults[] = {
    {FieldType::kInteger, L"STOCK_CAT", L"STOCK_CATEGORY"},
    {FieldType::kInteger, L"DEPT_NUMBER", L"STOCK_DEPARTMENT"},
    {FieldType::kInteger, L"TAX_CODE", L"STOCK_TAXCODE"},
    {FieldType::kText, L"NOMINAL_CODE", L"STOCK_NOMINAL"},
    {FieldType::kText, L"UNIT_OF_SALE", L"STOCK_UNITS"},
};

const Default* DefaultFor(std::int32_t type, engine::Field& field) {
  if (type != FieldType::kInteger && type != FieldType::kText) return nullptr;
  const std::wstring name = field.Name();
  for (const Default& entry : kDefaults) {
    if (entry.type == type && EqualsIgnoreCase(entry.stock_field, name)) return &entry;
  }
  return nullptr;
}

// Fills the fields of a new record with blank values, or with the defaults of `setup` (null for
// none).
void FillNewRecord(engine::Record& stock, engine::DataFile* setup) {
  stock.ForEachField([&](std::int32_t, engine::Field& field) {
    const std::int32_t type = field.Type();
    Value value = engine::BlankValue(type);
    if (value.is_empty()) return;
    const Default* entry = setup ? DefaultFor(type, field) : nullptr;
    // A default that cannot be read leaves its field as the engine has made it.
    if (entry && !setup->Get(entry->setup_field, value)) return;
    field.SetValue(value);
  });
}

// Engines from the tenth generation on offer a service that is to be told of a new product. It is
// a class of the accounts product that is not there to be called, so the step is only noted.
void NotePostSave(const Context& context) {
  const std::wstring generation = engine::EngineVersion(context).substr(0, 2);
  if (std::wcstol(generation.c_str(), nullptr, 10) > 9) {
    context.trace().Noted({L"Products", L"PostSave"},
                          L"This library does not have the engine's post-save service.");
  }
}

void Save(const Context& context, engine::Record& stock) {
  stock.SetExtraText(L"");
  stock.Update();
  NotePostSave(context);
}

std::wstring AskForDescription(const Context& context, std::wstring_view prod_code) {
  std::wstring answer;
  std::wstring prompt = L"Enter a description for item ";
  prompt += Trimmed(prod_code);
  prompt += L'.';
  if (Attempt(context.trace(), {L"Environment", L"InputBox"},
              [&] { answer = context.environment.InputBox(prompt, context.app_name); })) {
    context.trace().Shown(context.app_name, prompt);
  }
  return answer;
}

// What a copy does not carry over, in the order in which it is cleared: history, balances and every
// month's figures.
struct Reset {
  std::wstring_view field;
  enum class To { kZero, kNull } to = To::kZero;
};
constexpr Reset kResets[] = {
    {L"ASSEMBLY_LEVEL"},
    {L"LINK_LEVEL"},
    {L"STOCK_TAKE_DATE", Reset::To::kNull},
    {L"QTY_IN_STOCK"},
    {L"QTY_ALLOCATED"},
    {L"QTY_IN_STOCK"},  // a second time, as it has always been
    {L"QTY_LAST_ORDER"},
    {L"QTY_LAST_STOCK_TAKE"},
    {L"QTY_ON_ORDER"},
    {L"LAST_SALE_DATE", Reset::To::kNull},
    {L"LAST_PURCHASE_DATE", Reset::To::kNull},
    {L"LAST_PURCHASE_PRICE"},
    {L"NO_OF_TRAN"},
    {L"FIRST_TRAN"},
    {L"LAST_TRAN"},
};
constexpr std::wstring_view kMonthFamilies[] = {
    L"QTY_SOLD",       L"SALES", L"PRIOR_YR_COST",   L"PRIOR_YR_QTY_SOLD",
    L"PRIOR_YR_SALES", L"COST",  L"BUDGET_QTY_SOLD", L"BUDGET_SALES",
};
constexpr std::wstring_view kMonths[] = {
    L"_BF",   L"_FUTURE", L"_MTH1", L"_MTH10", L"_MTH11", L"_MTH12", L"_MTH2",
    L"_MTH3", L"_MTH4",   L"_MTH5", L"_MTH6",  L"_MTH7",  L"_MTH8",  L"_MTH9",
};

void ClearHistory(engine::Record& stock) {
  const Value zero = std::int16_t{0};
  std::unique_ptr<engine::Field> in_stock;
  for (const Reset& reset : kResets) {
    std::unique_ptr<engine::Field> other;
    stock.Set(reset.field, reset.field == L"QTY_IN_STOCK" ? in_stock : other,
              reset.to == Reset::To::kNull ? Value(Null{}) : zero);
  }
  std::wstring field;
  for (const std::wstring_view family : kMonthFamilies) {
    for (const std::wstring_view month : kMonths) {
      field = family;
      field += month;
      stock.Set(field, zero);
    }
  }
}

}  // namespace

std::wstring Products::CreateNewProduct(std::wstring_view prod_code,
                                        std::wstring_view prod_desc) const noexcept {
  return Call<std::wstring>(L"CreateNewProduct", {prod_code, prod_desc},
                            [&](std::wstring& description) {
                              engine::Record stock(context(), L"StockRecord");
                              if (!stock.exists())
                                return;  // nobody is asked for what cannot be kept
                              description = Trimmed(prod_desc);
                              if (description.empty())
                                description = Trimmed(AskForDescription(context(), prod_code));

                              {
                                engine::DataFile setup(context(), L"SetupData");
                                if (!setup.Open(Mode::kRead) || !setup.Read(1)) setup.Close();
                                if (!stock.AddNew()) return;
                                FillNewRecord(stock, &setup);
                              }
                              stock.Set(L"STOCK_CODE", Trimmed(prod_code));
                              stock.Set(L"DESCRIPTION", description);
                              Save(context(), stock);
                            });
}

bool Products::SaveNewProduct(std::wstring_view prod_code) const noexcept {
  return Call<bool>(L"SaveNewProduct", {prod_code}, [&](bool& saved) {
    engine::Record stock(context(), L"StockRecord");
    saved = stock.exists();
    if (!stock.AddNew()) return;
    FillNewRecord(stock, nullptr);
    stock.Set(L"STOCK_CODE", Trimmed(prod_code));
    Save(context(), stock);
  });
}

bool Products::CopyProduct(std::wstring_view exist_prod, std::wstring_view new_code,
                           std::wstring_view new_desc) const noexcept {
  return Call<bool>(L"CopyProduct", {exist_prod, new_code, new_desc}, [&](bool& copied) {
    engine::Record existing(context(), L"StockRecord");
    if (!FindProduct(existing, exist_prod)) return;
    copied = true;
    engine::Record copy(context(), L"StockRecord");
    if (!copy.AddNew()) return;
    copy.ForEachField([&](std::int32_t position, engine::Field& field) {
      field.CopyFrom(*existing.Item(position));
    });
    copy.Set(L"STOCK_CODE", Trimmed(new_code));
    copy.Set(L"DESCRIPTION", Trimmed(new_desc));
    ClearHistory(copy);
    copy.Update();
  });
}

bool Products::UpdateAllocQty(std::wstring_view prod_code, double qty) const noexcept {
  constexpr std::wstring_view kAllocate = L"UpdateAllocQty";
  return Call<bool>(kAllocate, {prod_code, qty}, [&](bool& allocated) {
    engine::Record stock(context(), L"StockRecord");
    if (!FindProduct(stock, prod_code)) return;
    stock.Get(L"IGNORE_STK_LVL_FLAG", allocated);
    if (allocated) return NoteDecision(kAllocate, L"True: the product keeps no stock levels.");
    double in_stock = 0;
    double so_far = 0;
    if (!stock.Get(L"QTY_IN_STOCK", in_stock) || !stock.Get(L"QTY_ALLOCATED", so_far)) return;
    const double sum = ExactSum(so_far, qty);
    if (!std::isfinite(sum)) return NoteDecision(kAllocate, L"False: that is no quantity.");
    if (!AtLeast(ExactDifference(in_stock, so_far), qty)) {
      return NoteDecision(kAllocate, L"False: there is less free stock.");
    }
    if (!stock.Edit() || !stock.Set(L"QTY_ALLOCATED", sum)) return;
    stock.Update();
    allocated = true;
  });
}

}  // namespace ard::products
