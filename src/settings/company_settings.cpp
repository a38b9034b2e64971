#include <algorithm>
#include <limits>

#include "engine/handles.h"
#include "frame/decimal.h"
#include "frame/error.h"
#include "settings/general.h"

namespace ard::settings {
namespace {

using engine::DataFile;
using engine::Mode;

constexpr std::int16_t kUsualDecimals = 4;
constexpr int kTaxCodes = 100;
constexpr int kRateDecimals = 2;

// Gives each element the name of the record whose number is its index.
void ListNames(const Context& context, std::wstring_view data_file, const TextArray& list) {
  DataFile file(context, data_file);
  if (!file.Open(Mode::kQuery)) return;
  using Counter = std::numeric_limits<std::int16_t>;
  const std::int64_t last = std::min<std::int64_t>(list.upper_bound(), Counter::max());
  for (std::int64_t n = std::max<std::int64_t>(list.lower_bound, Counter::min()); n <= last; ++n) {
    file.Read(static_cast<std::int32_t>(n));
    std::wstring name;
    if (!file.Get(L"NAME", name, engine::kTrimmed)) continue;
    *list.Find(n) = std::to_wstring(n) + L"   " + name;
  }
}

// The format of numbers with so many decimals, as the formatter has it; a negative count has none.
void MakeFormat(std::int16_t decimals, std::wstring& format) {
  if (decimals >= 0) format = FormatFixed(0, decimals);
}

std::wstring TaxField(int code, std::wstring_view what) {
  return L"T" + std::to_wstring(code) + std::wstring(what);
}

// A text that is no number stays what it is.
std::wstring FormattedRate(const std::wstring& rate) {
  try {
    return FormatFixed(Value(rate).ToDouble(), kRateDecimals);
  } catch (const Error&) {
    return rate;
  }
}

// The fields of tax codes.
class TaxFile {
 public:
  explicit TaxFile(const Context& context) : control_(context, L"ControlData") {
    open_ = control_.Open(Mode::kQuery);
    if (open_) control_.Read(1);
  }
  template <class T>
  bool Get(int code, std::wstring_view what, T& out) {
    return open_ && control_.Get(TaxField(code, what), out);
  }

 private:
  DataFile control_;
  bool open_ = false;
};

}  // namespace

void General::GetCategories(TextArray cat_list) const noexcept {
  Run(L"GetCategories", [&] { ListNames(context(), L"StockCategory", cat_list); });
}

void General::GetDepartments(TextArray dept_list) const noexcept {
  Run(L"GetDepartments", [&] { ListNames(context(), L"DepartmentData", dept_list); });
}

void General::GetDPSettings(std::int16_t& qty_dp, std::int16_t& unit_dp, std::wstring& qty_format,
                            std::wstring& unit_format) const noexcept {
  Run(L"GetDPSettings", [&] {
    DataFile setup(context(), L"SetupData");
    if (setup.Open(Mode::kQuery)) {
      setup.Read(1);
      setup.Get(L"STOCK_QTYDP", qty_dp);
      setup.Get(L"STOCK_UNITDP", unit_dp);
    } else {
      qty_dp = unit_dp = kUsualDecimals;
    }
    MakeFormat(qty_dp, qty_format);
    MakeFormat(unit_dp, unit_format);
  });
}

void General::GetTaxCodes(TextArray tax_code_list) const noexcept {
  Run(L"GetTaxCodes", [&] {
    TaxFile taxes(context());
    for (int code = 0; code < kTaxCodes; ++code) {
      std::wstring* const element = tax_code_list.Find(code);
      std::wstring rate;
      if (!element || !taxes.Get(code, L"_RATE", rate)) continue;
      // The shorter labels are padded more: that is how they are published.
      *element = TaxField(code, code < 10 ? L"   " : L" ") + FormattedRate(rate);
    }
  });
}

double General::GetVatRate(std::int16_t vat_code) const noexcept {
  return Call<double>(L"GetVatRate",
                      [&](double& rate) { TaxFile(context()).Get(vat_code, L"_RATE", rate); });
}

std::wstring General::GetVatDesc(std::int16_t vat_code) const noexcept {
  return Call<std::wstring>(L"GetVatDesc", [&](std::wstring& description) {
    TaxFile(context()).Get(vat_code, L"_DESCRIPTION", description);
  });
}

}  // namespace ard::settings
