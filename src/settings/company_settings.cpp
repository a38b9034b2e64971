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
constexpr std::int16_t kTaxCodes = 100;
constexpr int kRateDecimals = 2;
constexpr std::size_t kUsualLine = 80;

// Gives each element the name of the record whose number is its index.
void ListNames(const Context& context, Name data_file, const TextArray& list) {
  DataFile file(context, data_file);
  if (!file.Open(Mode::kQuery)) return;
  using Counter = std::numeric_limits<std::int16_t>;
  NumberedText label(L"", L"   ");
  std::wstring line;
  line.reserve(kUsualLine);
  const std::int64_t last = std::min<std::int64_t>(list.upper_bound(), Counter::max());
  for (std::int64_t n = std::max<std::int64_t>(list.lower_bound(), Counter::min()); n <= last;
       ++n) {
    file.Read(static_cast<std::int32_t>(n));
    if (!file.Get(L"NAME", line, engine::kTrimmed)) continue;
    list.Put(n, line.insert(0, label.With(static_cast<std::int16_t>(n))));
  }
}

// The format of numbers with so many decimals; a negative count has none. Without the memory for
// all of it there is none either.
void MakeFormat(std::int16_t decimals, std::wstring& format) {
  if (decimals < 0) return;
  format.assign(std::size_t{2} + static_cast<std::size_t>(decimals), L'0');
  format[1] = L'.';
}

// A tax code's line in the list: its label, and its rate.
struct TaxLine {
  Trace& trace;
  std::wstring_view label;
  std::wstring text;
};

void Convert(Value&& value, TaxLine& line) {
  if (const double* const rate = std::get_if<double>(&value.storage())) {
    line.text = line.label;
    AppendFixed(line.text, *rate, kRateDecimals);
    return;
  }
  // A text that is no number stays what it is.
  std::wstring text = std::move(value).ToText();
  double number = 0;
  if (Attempt(line.trace, {L"General", L"FormatRate"}, [&] { Convert(Value(text), number); })) {
    text = FormatFixed(number, kRateDecimals);
  }
  line.text = text.insert(0, line.label);
}

// The fields of tax codes.
class TaxFile {
 public:
  explicit TaxFile(const Context& context) : control_(context, L"ControlData") {
    open_ = control_.Open(Mode::kQuery);
    if (open_) control_.Read(1);
  }
  template <class T>
  bool Get(Name field, T& out) {
    return open_ && control_.Get(field, out);
  }

 private:
  DataFile control_;
  bool open_ = false;
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
    TaxLine line{context().trace(), {}, {}};
    line.text.reserve(kUsualLine);
    const std::int64_t last = std::min<std::int64_t>(tax_code_list.upper_bound(), kTaxCodes - 1);
    for (auto n = std::max<std::int64_t>(tax_code_list.lower_bound(), 0); n <= last; ++n) {
      const auto code = static_cast<std::int16_t>(n);
      line.label = code < 10 ? short_label.With(code) : long_label.With(code);
      if (taxes.Get(field.With(code), line)) tax_code_list.Put(n, line.text);
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
