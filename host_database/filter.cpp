#include "host_database/filter.h"

#include <cstddef>

#include "frame/text.h"
#include "host_database/ado_error.h"

namespace ard::host_database {
namespace {

// Takes the parts of a text off its front, one after the other.
class Parser {
 public:
  explicit Parser(std::wstring_view text) : text_(text), rest_(Trimmed(text)) {}

  [[noreturn]] void Refuse() const {
    Throw(AdoError::kInvalidArgument,
          std::wstring(L"This is no filter or sort order: ").append(text_.substr(0, 100)));
  }

  bool at_end() const { return rest_.empty(); }

  std::wstring FieldName() {
    if (TakeSign(L'[')) {
      const std::size_t end = rest_.find(L']');
      if (end == rest_.npos || end == 0) Refuse();
      return Take(end, 1);
    }
    const std::wstring name = Take(rest_.find_first_of(L" ='[]"), 0);
    if (name.empty()) Refuse();
    return name;
  }

  bool TakeSign(wchar_t sign) {
    if (!rest_.starts_with(sign)) return false;
    Take(1, 0);
    return true;
  }

  bool TakeWord(std::wstring_view word) {
    if (!EqualsIgnoreCase(rest_.substr(0, rest_.find_first_of(L" '")), word)) return false;
    Take(word.size(), 0);
    return true;
  }

  std::wstring Literal() {
    if (!rest_.starts_with(L'\'')) Refuse();
    std::wstring literal;
    for (;;) {
      rest_.remove_prefix(1);
      const std::size_t quote = rest_.find(L'\'');
      if (quote == rest_.npos) Refuse();
      literal.append(rest_, 0, quote);
      rest_.remove_prefix(quote + 1);
      if (!rest_.starts_with(L'\'')) break;
      literal += L'\'';
    }
    rest_ = Trimmed(rest_);
    return literal;
  }

 private:
  // The first `count` characters; as many as `closing` more are dropped, blanks after them too.
  std::wstring Take(std::size_t count, std::size_t closing) {
    const std::wstring taken(rest_.substr(0, count));
    rest_ = Trimmed(rest_.substr(taken.size() + closing));
    return taken;
  }

  std::wstring_view text_;
  std::wstring_view rest_;
};

// Whether a text fits a pattern. A run of any characters is tried from its shortest; only the last
// run met so far has to be tried again, so the effort is at most the product of the two lengths.
bool Matches(std::wstring_view text, std::wstring_view pattern) {
  constexpr std::size_t kNone = std::wstring_view::npos;
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t run = kNone;  // where the pattern goes on after the last run
  std::size_t run_end = 0;  // where the text does
  while (t < text.size()) {
    const wchar_t expected = p < pattern.size() ? pattern[p] : L'\0';
    if (expected == L'%' || expected == L'*') {
      run = ++p;
      run_end = t;
    } else if (p < pattern.size() &&
               (expected == L'_' || expected == L'?' || expected == text[t])) {
      ++p;
      ++t;
    } else if (run != kNone) {
      p = run;
      t = ++run_end;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L"%*", p) == kNone;
}

}  // namespace

Filter::Filter(std::wstring_view text) {
  Parser parser(text);
  field_ = parser.FieldName();
  is_pattern_ = parser.TakeWord(L"Like");
  if (!is_pattern_ && !parser.TakeSign(L'=')) parser.Refuse();
  literal_ = UpperCase(parser.Literal());
  if (!parser.at_end()) parser.Refuse();
}

bool Filter::Passes(const Value& value) const {
  if (value.is_null()) return false;
  const std::wstring text = UpperCase(value.ToText());
  return is_pattern_ ? Matches(text, literal_) : text == literal_;
}

SortOrder::SortOrder(std::wstring_view text) {
  Parser parser(text);
  field = parser.FieldName();
  descending = parser.TakeWord(L"DESC");
  if (!descending) parser.TakeWord(L"ASC");
  if (!parser.at_end()) parser.Refuse();
}

}  // namespace ard::host_database
