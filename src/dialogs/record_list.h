// The simple select dialog over the records of a file: rows in the file's own order, none skipped.
#ifndef ARD_DIALOGS_RECORD_LIST_H_
#define ARD_DIALOGS_RECORD_LIST_H_

#include <span>
#include <string>
#include <utility>

#include "dialogs/indexed_file.h"
#include "dialogs/select_dialog.h"
#include "engine/handles.h"

namespace ard::dialogs {

// Adds the columns of `file`, and a row for the current record of `records`, a handle of an object
// with fields; then one for each further record for which `next()` is true. A record without a key
// that can be read yields no row.
template <class Records, class Next>
void AddRecords(SelectRecordDialog& dialog, Records& records, const ListedFile& file, Next&& next) {
  const std::span<const FieldColumn> columns = file.columns;
  DescribeList(file, dialog.list());
  do {
    engine::TextPart cell;
    if (!records.Get(columns.front().field, cell)) continue;
    std::wstring text = std::move(cell.text);
    text.reserve(kRowLength);
    for (const FieldColumn& column : columns.subspan(1)) {
      cell.text.clear();
      records.Get(column.field, cell);
      text.append(1, L'\t').append(cell.text);
    }
    dialog.AddRow(std::move(text));
  } while (next());
}

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_RECORD_LIST_H_
