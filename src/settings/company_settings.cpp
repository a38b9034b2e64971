#include <algorithm>
#include <limits>
#include <utility>

#include "engine/handles.h"
#include "frame/decimal.h"
#include "frame/numbered_text.h"
#include "settings/general.h"

namespace ard::settings {
namespace {

using engine::DataFile;
using engine::Mode;

constexpr std::int16_t kUsualDecimals = 4;
constexpr std::int64_t kLastTaxCode = 99;
constexpr int kRateDecimals = 2;

// Gives each element the name of the record whose number is its index.
void ListNames(const Context& context, Name data_file, const TextArray& list) {
  DataFile file(context, data_file);
  if (!file.Open(Mode::kQuery)) return;
  using Counter = std::numeric_limits<std::int16_t>;
  NumberedText label(L"", L"   ");
  engine::TextPart name;
  bool is_known = false;  // that of the record read last
  const std::int64_t last = std::min<std::int64_t>(list.upper_bound(), Counter::max());
  for (std::int64_t n = std::max<std::int64_t>(list.lower_bound(), Counter::min()); n <= last;
       ++n) {
    // Where there is no record the name read last stays, whatever the engine's fields hold then.
    const bool is_there = file.Read(static_cast<std::int32_t>(n));
    if (is_there || !is_known) {
      const bool has_name = file.Get(L"NAME", name);
      is_known = is_there && has_name;
      if (!has_name) continue;
    }
    list.Put(n, label.With(static_cast<std::int16_t>(n)), name.text);
  }
}

// The format of numbers with so many decimals; a negative count has none. Without the memory for
// all of it there is none either.
void MakeFormat(std::int16_t decimals, std::wstring& format) {
  if (decimals < 0) return;
  format.assign(std::size_t{2} + static_cast<std::size_t>(decimals), L'0');
  format[1] = L'.';
}

// The rate of a tax code as it stands in the list.
struct ListedRate {
  Trace& trace;
  std::wstring text = {};
  std::wstring_view field = {};  // that it is read from
};

void Convert(Value&& value, ListedRate& listed) {
  listed.text.clear();
  if (const double* const rate = std::get_if<double>(&value.storage())) {
    return AppendFixed(listed.text, *rate, kRateDecimals);
  }
  // A text that is no number stays what it is, and there is none of Null.
  if (value.is_null()) return;
  listed.text = std::move(value).ToText();
  Attempt(listed.trace, {L"General", L"FormatRate", listed.field},
          [&] { listed.text = FormatFixed(Value(listed.text).ToDouble(), kRateDecimals); });
}

// The fields of tax codes.
struct TaxFile : DataFile {
  explicit TaxFile(const Context& context) : DataFile(context, L"ControlData") {
    Open(Mode::kQuery);
    Read(1);
  }
};

}  // namespace

void General::GetCategories(TextArray cat_list) const noexcept {
  Run(L"GetCategories", {Output(cat_list)},
      [&] { ListNames(context(), L"StockCategory", cat_list); });
}

void General::GetDepartments(TextArray dept_list) const noexcept {
  Run(L"GetDepartments", {Output(dept_list)},
      [&] { ListNames(context(), L"DepartmentData", dept_list); });
}

void General::GetDPSettings(std::int16_t& qty_dp, std::int16_t& unit_dp, std::wstring& qty_format,
                            std::wstring& unit_format) const noexcept {
  Run(L"GetDPSettings", {Output(qty_dp), Output(unit_dp), Output(qty_format), Output(unit_format)},
      [&] {
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
  Run(L"GetTaxCodes", {Output(tax_code_list)}, [&] {
    TaxFile taxes(context());
    NumberedText field(L"T", L"_RATE");
    // The shorter labels are padded more: that is how they are published.
    NumberedText short_label(L"T", L"   ");
    NumberedText long_label(L"T", L" ");
    ListedRate rate{context().trace()};
    const std::int64_t last = std::min(tax_code_list.upper_bound(), kLastTaxCode);
    for (auto n = std::max<std::int64_t>(tax_code_list.lower_bound(), 0); n <= last; ++n) {
      const auto code = static_cast<std::int16_t>(n);
      rate.field = field.With(code);
      if (!taxes.Get(rate.field, rate)) continue;
      tax_code_list.Put(n, code < 10 ? short_label.With(code) : long_label.With(code), rate.text);
    }
  });
}

double General::GetVatRate(std::int16_t vat_code) const noexcept {
  return Call<double>(L"GetVatRate", {vat_code}, [&](double& rate) {
    TaxFile(context()).Get(NumberedText(L"T", L"_RATE").With(vat_code), rate);
  });
}

std::wstring General::GetVatDesc(std::int16_t vat_code) const noexcept {
  return Call<std::wstring>(L"GetVatDesc", {vat_code}, [&](std::wstring& description) {
    TaxFile(context()).Get(NumberedText(L"T", L"_DESCRIPTION").With(vat_code), description);
  });
}

}  // namespace ard::settings
