// The fast-select dialogs: the user picks one record of an engine file, shown in index order.
#ifndef ARD_DIALOGS_FAST_SELECT_H_
#define ARD_DIALOGS_FAST_SELECT_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/indexed_file.h"
#include "dialogs/select_dialog.h"
#include "frame/context.h"

namespace ard::dialogs {

// What tells one fast-select form from another.
struct FastSelectForm {
  enum class Ok { kAnyRow, kPostingAccountsOnly };
  enum class Fill { kPaged, kFirstTwelve };

  std::wstring_view name;
  std::wstring_view caption;
  ListedFile file;
  Ok ok = Ok::kAnyRow;
  Fill fill = Fill::kPaged;
};

class FastSelectDialog : private RowSource, public SelectDialog {
 public:
  FastSelectDialog(const Context& context, const FastSelectForm& form);

  // Opens both files and sets the list up with `row_count` positions, none when it is not known;
  // reads no record of a paged form.
  void Load(std::optional<std::int32_t> row_count);
  // Positions the list on the first account whose reference matches `criteria` (a trailing "*"
  // matches any ending).
  void PositionOn(std::wstring_view criteria) { file_.PositionOn(criteria, list()); }

 protected:
  bool Accepts(const Row& row) override;
  void TypeAhead(wchar_t key) override { file_.TypeAhead(key, list()); }

 private:
  bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override;

  const Context& context_;
  const FastSelectForm& spec_;
  RowsInMemory filled_;  // the rows of a form that is not paged
  IndexedFile file_;
};

// Shows the form modally. Returns the first cell, trimmed, of the row that the user confirmed; ""
// when they cancelled. With `criteria`, the list is positioned on them first. `check` gets the
// choice while the files are still open; nothing is open when this returns.
std::wstring FastSelect(const Context& context, const FastSelectForm& form,
                        std::optional<std::wstring_view> criteria = std::nullopt,
                        const std::function<void(const Row&)>& check = {});

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_FAST_SELECT_H_
