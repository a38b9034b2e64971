// The search of the product dialog: any text filters the list as a plain matcher does, or leaves it
// as it was.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/product_dialog.h"
#include "frame/error.h"
#include "fuzzers/support_fuzz.h"
#include "host_database/filter.h"
#include "host_database/odbc_connection.h"
#include "products/products.h"
#include "simulator/testing/company_builder.h"
#include "testing/scripted_environment.h"

namespace ard::fuzz {
namespace {

using dialogs::ProductDialog;
using host_database::Filter;
using host_database::OdbcConnection;

constexpr std::wstring_view kAlphabet = L"aAbB1 %_*?'[]\u00E9\u00C9";

std::wstring Quoted(const std::wstring& text) {
  std::wstring quoted = L"'";
  for (const wchar_t c : text) quoted.append(c == L'\'' ? 2 : 1, c);
  return quoted + L"'";
}

// Whether `text` is like `pattern`, both in upper case: one row of a table for each character.
bool IsLike(const std::wstring& text, const std::wstring& pattern) {
  std::vector<bool> fits(text.size() + 1);  // for each beginning of the text
  fits[0] = true;
  for (const wchar_t c : pattern) {
    const bool run = c == L'%' || c == L'*';
    for (std::size_t i = text.size() + 1; i-- > 0;) {
      if (run) {
        fits[i] = std::find(fits.begin(), fits.begin() + static_cast<int>(i) + 1, true) <
                  fits.begin() + static_cast<int>(i) + 1;
      } else {
        fits[i] = i > 0 && fits[i - 1] && (c == L'_' || c == L'?' || c == text[i - 1]);
      }
    }
  }
  return fits[text.size()];
}

void CheckFilter(Input& input) {
  const std::wstring text = input.Text(16, kAlphabet);
  const std::wstring pattern = input.Text(12, kAlphabet);
  Require(Filter(L"[Code] Like " + Quoted(pattern)).Passes(text) ==
              IsLike(UpperCase(text), UpperCase(pattern)),
          "a pattern lets through what is like it", text, pattern);
  Require(
      Filter(L"Code=" + Quoted(pattern)).Passes(text) == (UpperCase(text) == UpperCase(pattern)),
      "an equation lets through what is equal", text, pattern);

  const std::wstring any =
      input.ConsumeBool() ? input.Text(40, L"[]'=Like DESC%abx") : input.AnyText(80);
  try {
    const Filter filter(any);
    Require(!filter.field().empty() && any.find(filter.field()) != any.npos, "a filter has a field",
            any);
    Require(!filter.Passes(Null()), "Null never passes", any);
    filter.Passes(text);
  } catch (const Error& error) {
    Require(!error.text().empty(), "a refusal says why", any);
  }
  try {
    const host_database::SortOrder order(any);
    Require(any.find(order.field) != any.npos, "an order has a field", any);
  } catch (const Error& error) {
    Require(!error.text().empty(), "a refusal says why", any);
  }
}

// What a literal says between its quotes; nothing when a quote in it stands alone.
std::optional<std::wstring> Unquoted(const std::wstring& literal) {
  std::wstring text;
  for (std::size_t i = 0; i < literal.size(); ++i) {
    if (literal[i] == L'\'' && (++i == literal.size() || literal[i] != L'\'')) return std::nullopt;
    text += literal[i];
  }
  return text;
}

struct Product {
  std::optional<std::wstring> cells[2];
  std::wstring Text(std::size_t field) const { return cells[field].value_or(L""); }
};

// The products that the host's database has, in the order of their codes.
struct Products {
  std::shared_ptr<OdbcConnection> database =
      std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  std::vector<Product> all;

  Products() {
    database->Execute(L"CREATE TABLE ProdInfoStockFields (StockCode TEXT, Description TEXT)");
    const wchar_t* const texts[] = {
        L"",       L" ",     L"%",    L"%a",  L"''",   L"'b'",    L"*1*",    L"1",   L"1 a",
        L"A1",     L"AA",    L"AB%1", L"A_B", L"B",    L"[AB]",   L"_",      L"a 1", L"a1b",
        L"aaaaab", L"ab''1", L"b?",   L"ba1", L"bbab", L"\u00C9", L"\u00E9a"};
    constexpr std::size_t kCount = std::size(texts);
    for (std::size_t i = 0; i < kCount; ++i) {
      Product product{{texts[i], texts[i * 7 % kCount]}};
      if (i % 6 == 5) product.cells[1].reset();
      const std::wstring description = product.cells[1] ? Quoted(*product.cells[1]) : L"NULL";
      database->Execute(L"INSERT INTO ProdInfoStockFields VALUES (" + Quoted(texts[i]) + L"," +
                        description + L")");
      all.push_back(product);
    }
  }
};

// What the dialog is to show.
class Model {
 public:
  explicit Model(const std::vector<Product>& all) : all_(all) {}

  void Search(std::size_t field, std::wstring text) {
    if (text.empty() || std::wstring_view(L"%_*?").find(text.back()) == std::wstring_view::npos) {
      text += L'%';
    }
    if (const auto pattern = Unquoted(text)) pattern_ = {field, UpperCase(*pattern)};
  }
  void Clear() { pattern_ = {}; }
  void Sort(std::size_t field) {
    descending_ = field == sorted_by_ && !descending_;
    sorted_by_ = field;
  }
  std::vector<std::wstring> Rows() const {
    std::vector<Product> rows;
    for (const Product& product : all_) {
      const auto& cell = product.cells[pattern_.first];
      if (pattern_.second.empty() || (cell && IsLike(UpperCase(*cell), pattern_.second))) {
        rows.push_back(product);
      }
    }
    if (sorted_by_ < 2) {
      std::stable_sort(rows.begin(), rows.end(), [&](const Product& a, const Product& b) {
        const auto key = [&](const Product& product) {
          return std::pair(product.cells[sorted_by_].has_value(),
                           UpperCase(product.Text(sorted_by_)));
        };
        return descending_ ? key(b) < key(a) : key(a) < key(b);
      });
    }
    std::vector<std::wstring> texts;
    for (const Product& row : rows) texts.push_back(row.Text(0) + L'\t' + row.Text(1));
    return texts;
  }

 private:
  const std::vector<Product>& all_;
  std::pair<std::size_t, std::wstring> pattern_;  // none when empty
  std::size_t sorted_by_ = 2;
  bool descending_ = false;
};

std::vector<std::wstring> Shown(dialogs::ListModel& list, std::int32_t page_size) {
  list.SetPageSize(page_size);
  std::vector<std::wstring> texts;
  for (std::int32_t top = 1; top <= list.row_count(); top += page_size) {
    list.ScrollTo(top);
    for (const dialogs::Row& row : list.rows()) {
      if (row.position >= top) texts.push_back(row.text);
    }
  }
  return texts;
}

void CheckDialog(Input& input) {
  static const Products products;
  static const auto engine = simulator::CompanyBuilder().Product(L"A1").Build();
  testing::ScriptedEnvironment environment;
  products::Products object(environment);
  object.context().workspace = engine->workspace();
  object.context().database = products.database;
  const std::wstring criteria = input.Text(6, kAlphabet);
  std::wstring picked;
  environment.AnswerProducts([&](ProductDialog& dialog) {
    Model model(products.all);
    if (!Trimmed(criteria).empty()) model.Search(0, criteria + L'%');
    const auto field = [&] { return static_cast<std::size_t>(dialog.search_field()); };
    dialog.TabClick(ProductDialog::Tab::kProductInfo);
    do {
      switch (input.UpTo(5)) {
        case 0:
          dialog.SearchTextChange(input.Text(8, kAlphabet));
          break;
        case 1:
          dialog.SearchClick();
          model.Search(field(), dialog.search_text());
          break;
        case 2:
          dialog.SearchFieldChange(static_cast<ProductDialog::SearchField>(input.UpTo(1)));
          if (Trimmed(dialog.search_text()).empty()) {
            model.Clear();
          } else {
            model.Search(field(), dialog.search_text());
          }
          break;
        case 3:
          dialog.ClearClick();
          Require(dialog.search_text().empty(), "a cleared search has no text");
          model.Clear();
          break;
        case 4: {
          const auto column = input.UpTo<std::size_t>(2);
          dialog.ColumnClick(column);
          if (column < 2) model.Sort(column);
          break;
        }
        default:
          dialog.SearchTextChange(input.AnyText(40));
      }
      const std::vector<std::wstring> rows = model.Rows();
      dialogs::ListModel& list = dialog.list();
      Require(list.row_count() == static_cast<std::int32_t>(rows.size()), "as many rows",
              dialog.search_text(), list.row_count(), rows.size());
      Require(Shown(list, input.UpTo(30) + 1) == rows, "the rows that are like it",
              dialog.search_text());
    } while (input.remaining_bytes() > 0);
    dialog.list().SelectItem(input.UpTo(3));
    if (dialog.list().selected()) picked = Trimmed(dialog.list().selected()->Cell(1));
    dialog.Ok();
  });
  Require(object.List(criteria) == picked, "the code that is picked", picked);
  Require(environment.messages().empty(), "no message", criteria);
  Require(products.database->open_recordsets() == 0 && engine->counters().living_objects == 0 &&
              engine->counters().open_files == 0,
          "nothing is left open", criteria);
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ard::fuzz;
  Input input(data, size);
  if (input.ConsumeBool()) {
    CheckFilter(input);
  } else {
    CheckDialog(input);
  }
  return 0;
}
