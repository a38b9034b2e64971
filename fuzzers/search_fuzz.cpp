// The search of the product dialog: any text filters the list as a plain matcher does, or leaves it
// as it was.
#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>
#include <optional>
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

bool IsLike(const std::wstring& text, const std::wstring& pattern) {
  std::vector<bool> fits(text.size() + 1);  // for each beginning of the text
  fits[0] = true;
  for (const wchar_t c : UpperCase(pattern)) {
    std::vector<bool> next(fits.size());
    for (std::size_t i = 0; i < fits.size(); ++i) {
      if (c == L'%' || c == L'*') {
        next[i] = fits[i] || (i > 0 && next[i - 1]);
      } else {
        next[i] = i > 0 && fits[i - 1] && (c == L'_' || c == L'?' || c == UpperCase(text)[i - 1]);
      }
    }
    fits = next;
  }
  return fits.back();
}

void CheckFilter(Input& input) {
  const std::wstring text = input.Text(16, kAlphabet);
  const std::wstring pattern = input.Text(12, kAlphabet);
  Require(Filter(L"[Code] Like " + Quoted(pattern)).Passes(text) == IsLike(text, pattern),
          "a pattern lets through what is like it", text, pattern);
  Require(
      Filter(L"Code=" + Quoted(pattern)).Passes(text) == (UpperCase(text) == UpperCase(pattern)),
      "an equation lets through what is equal", text, pattern);
  const std::wstring any = input.OneIn(2) ? input.AnyText(80) : input.Text(40, L"[]'=Like ESC%abx");
  try {
    const host_database::SortOrder order(any);
    Require(!order.field.empty() && any.find(order.field) != any.npos, "an order has a field", any);
    const Filter filter(any);
    Require(!filter.Passes(Null()), "Null never passes", any);
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

// A product of the host's database: its code, and a description or none.
using Product = std::array<std::optional<std::wstring>, 2>;

// What the dialog is to show.
class Model {
 public:
  explicit Model(const std::vector<Product>& all) : all_(all) {}

  void Search(std::size_t field, std::wstring text) {
    if (text.empty() || !std::wcschr(L"%_*?", text.back())) text += L'%';
    if (const auto pattern = Unquoted(text)) pattern_ = pattern, field_ = field;
  }
  void Clear() { pattern_.reset(); }
  void Sort(std::size_t field) {
    descending_ = field == sorted_by_ && !descending_;
    sorted_by_ = field;
  }
  std::vector<std::wstring> Rows() const {
    std::vector<Product> rows = all_;
    std::erase_if(rows, [&](const Product& product) {
      return pattern_ && !(product[field_] && IsLike(*product[field_], *pattern_));
    });
    std::stable_sort(rows.begin(), rows.end(), [&](const Product& a, const Product& b) {
      if (!sorted_by_) return false;
      const auto key = [&](const Product& p) {
        return p[*sorted_by_] ? std::optional(UpperCase(*p[*sorted_by_])) : std::nullopt;
      };
      return descending_ ? key(b) < key(a) : key(a) < key(b);
    });
    std::vector<std::wstring> texts;
    for (const Product& p : rows) texts.push_back(*p[0] + L'\t' + p[1].value_or(L""));
    return texts;
  }

 private:
  const std::vector<Product>& all_;
  std::optional<std::wstring> pattern_;
  std::size_t field_ = 0;
  std::optional<std::size_t> sorted_by_;
  bool descending_ = false;
};

// The products that the host's database has, in the order of their codes, and a stock ledger.
struct Fixture {
  std::unique_ptr<simulator::Simulator> engine = simulator::CompanyBuilder().Product(L"A1").Build();
  std::shared_ptr<OdbcConnection> database =
      std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  std::vector<Product> products;

  Fixture() {
    database->Execute(L"CREATE TABLE ProdInfoStockFields (StockCode TEXT, Description TEXT)");
    const wchar_t* const texts[] = {L"",    L" ",      L"%",      L"%a", L"''",   L"'b'",    L"*1*",
                                    L"1",   L"1 a",    L"A1",     L"AA", L"A_B",  L"[AB]",   L"_",
                                    L"a 1", L"aaaaab", L"ab''%1", L"b?", L"bbab", L"\u00E9A"};
    for (std::size_t i = 0; i < std::size(texts); ++i) {
      const wchar_t* const description = texts[i * 7 % std::size(texts)];
      products.push_back({texts[i], i % 6 == 5 ? std::nullopt : std::optional(description)});
      database->Execute(L"INSERT INTO ProdInfoStockFields VALUES (" + Quoted(texts[i]) + L"," +
                        (i % 6 == 5 ? L"NULL" : Quoted(description)) + L")");
    }
  }
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

// Does something in the dialog, and the same to the model.
void Act(Input& input, ProductDialog& dialog, Model& model) {
  const auto search = [&] {
    model.Search(static_cast<std::size_t>(dialog.search_field()), dialog.search_text());
  };
  switch (input.UpTo(5)) {
    case 0:
      dialog.SearchTextChange(input.Text(8, kAlphabet));
      break;
    case 1:
      dialog.SearchTextChange(input.AnyText(40));
      break;
    case 2:
      dialog.SearchClick();
      search();
      break;
    case 3: {
      const bool is_blank = Trimmed(dialog.search_text()).empty();
      dialog.SearchFieldChange(static_cast<ProductDialog::SearchField>(input.UpTo(1)));
      is_blank ? model.Clear() : search();
      break;
    }
    case 4:
      dialog.ClearClick();
      model.Clear();
      break;
    default: {
      const auto column = input.UpTo<std::size_t>(2);
      dialog.ColumnClick(column);
      if (column < 2) model.Sort(column);
    }
  }
}

void CheckDialog(Input& input) {
  static const Fixture fixture;
  testing::ScriptedEnvironment environment;
  products::Products object(environment);
  object.context().workspace = fixture.engine->workspace();
  object.context().database = fixture.database;
  const std::wstring criteria = input.Text(6, kAlphabet);
  std::wstring picked;
  environment.AnswerProducts([&](ProductDialog& dialog) {
    Model model(fixture.products);
    if (!Trimmed(criteria).empty()) model.Search(0, criteria + L'%');
    dialog.TabClick(ProductDialog::Tab::kProductInfo);
    do {
      const std::vector<std::wstring> rows = model.Rows();
      Require(Shown(dialog.list(), input.UpTo(30) + 1) == rows, "the rows that are like it",
              dialog.search_text());
      Act(input, dialog, model);
    } while (input.remaining_bytes() > 0);
    dialog.list().SelectItem(input.UpTo(3));
    if (dialog.list().selected()) picked = Trimmed(dialog.list().selected()->Cell(1));
    dialog.Ok();
  });
  Require(object.List(criteria) == picked, "the code that is picked", picked);
  const simulator::Counters counters = fixture.engine->counters();
  Require(environment.messages().empty() && fixture.database->open_recordsets() == 0 &&
              counters.living_objects == 0 && counters.open_files == 0,
          "no message, and nothing is left open", criteria);
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ard::fuzz::Input input(data, size);
  input.OneIn(2) ? ard::fuzz::CheckFilter(input) : ard::fuzz::CheckDialog(input);
  return 0;
}
