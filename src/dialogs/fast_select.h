// The fast-select dialogs: the user picks one record of an engine file, shown in index order.
#ifndef ARD_DIALOGS_FAST_SELECT_H_
#define ARD_DIALOGS_FAST_SELECT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/select_dialog.h"
#include "engine/handles.h"
#include "frame/context.h"

namespace ard::dialogs {

// What tells one fast-select form from another.
struct FastSelectForm {
  enum class Ok { kAnyRow, kPostingAccountsOnly };
  enum class Fill { kPaged, kFirstTwelve };

  std::wstring_view name;
  std::wstring_view caption;
  std::wstring_view data_file;
  std::wstring_view index_file;
  std::wstring_view count_field;  // of ControlData
  bool red_rows;                  // for accounts over their credit limit
  Ok ok;
  Fill fill;
};

extern const FastSelectForm kFastSelectCust;
extern const FastSelectForm kFastSelectSupp;
extern const FastSelectForm kFastSelectNom;
extern const FastSelectForm kFastSelectBank;

// A limit of 0 means no limit; a balance equal to the limit is not over it. Amounts are compared
// as currency, so that the noise of a double never makes an account red.
bool IsOverCreditLimit(Currency balance, Currency limit);

class FastSelectDialog : private RowSource, public SelectDialog {
 public:
  FastSelectDialog(const Context& context, const FastSelectForm& form);

  // Opens both files and sets the list up with `row_count` positions; reads no record of a paged
  // form.
  void Load(std::int32_t row_count);
  // Positions the list on the first account whose reference matches `criteria` (a trailing "*"
  // matches any ending).
  void PositionOn(std::wstring_view criteria);

 protected:
  bool Accepts(const Row& row) override;
  void TypeAhead(wchar_t key) override;

 private:
  void LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override;
  void FillFirstTwelve();
  // Makes the record of the index's current entry current in the data file.
  bool ReadCurrentEntry();
  // Of the data file's current record.
  std::wstring RowText();
  bool OverLimit();
  // The position in the list of the account with that reference; 0 when there is none.
  std::int32_t FindPosition(std::wstring_view account_ref);

  const Context& context_;
  const FastSelectForm& spec_;
  RowsInMemory filled_;  // the rows of a form that is not paged
  engine::DataFile data_file_;
  engine::Index index_file_;
  engine::Column<engine::DataFile> account_ref_{data_file_, L"ACCOUNT_REF"};
  engine::Column<engine::DataFile> name_{data_file_, L"NAME"};
  engine::Column<engine::DataFile> deleted_{data_file_, L"DELETED_FLAG"};
  engine::Column<engine::DataFile> balance_{data_file_, L"BALANCE"};
  engine::Column<engine::DataFile> credit_limit_{data_file_, L"CREDIT_LIMIT"};
};

// Shows the form modally. Returns the row that the user confirmed, nothing when they cancelled.
// With `criteria`, the list is positioned on them first. Nothing is open when it returns.
std::optional<Row> FastSelect(const Context& context, const FastSelectForm& form,
                              std::optional<std::wstring_view> criteria = std::nullopt);

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_FAST_SELECT_H_
