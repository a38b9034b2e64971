// The rows of an engine file in the order of its index, a page at a time: what the paged lists of
// the selection dialogs show.
#ifndef ARD_DIALOGS_INDEXED_FILE_H_
#define ARD_DIALOGS_INDEXED_FILE_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/list_model.h"
#include "engine/handles.h"
#include "frame/context.h"

namespace ard::dialogs {

// A column of the list, and the field that it shows.
struct FieldColumn {
  const wchar_t* header;
  int width;  // in average characters
  std::wstring_view field;
  bool number = false;  // not text
};

// What tells one listed file from another.
struct ListedFile {
  std::wstring_view data_file;
  std::wstring_view index_file;
  std::wstring_view count_field;         // of ControlData
  std::span<const FieldColumn> columns;  // the first one shows the key
  std::wstring_view records;             // what they are, in the plural
  // Whether the file's current record has a red row; null when none has.
  bool (*is_red)(engine::DataFile& data_file) = nullptr;
};

// The number of records of the file by ControlData, in one read; nothing when it cannot be told.
std::optional<std::int32_t> RecordCount(const Context& context, const ListedFile& file);

// The columns of the list, and what it is called.
void DescribeList(const ListedFile& file, ListModel& list);

class IndexedFile : public RowSource {
 public:
  IndexedFile(const Context& context, const ListedFile& file);
  // The data file goes first.
  ~IndexedFile() override { data_file_.Close(); }

  // Opens both files for the list, and goes on whatever they answer, or if it is not known how many
  // records there are; reads no record.
  void Open(ListModel& list, std::optional<std::int32_t> row_count);

  // Deleted records yield no row.
  bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override;
  // The first rows of the file, deleted ones too.
  std::vector<std::wstring> FirstRows(std::int32_t count);

  // Makes the record with that key current in the data file; false when there is none.
  bool ReadKey(std::wstring_view key) { return engine::ReadKey(index_file_, data_file_, key); }
  engine::DataFile& data_file() { return data_file_; }

  // Selects the first row whose key starts with the upper-cased character.
  void TypeAhead(wchar_t key, ListModel& list);
  // Positions the list on the first record whose key matches `criteria` (a trailing "*" matches
  // any ending), so that it ends up on top of the page.
  void PositionOn(std::wstring_view criteria, ListModel& list);

 private:
  std::wstring_view key_field() const { return file_.columns.front().field; }
  // Of the data file's current record.
  std::wstring RowText();
  // The position in the list of that key; 0 when there is none.
  std::int32_t FindPosition(const Value& key);

  const Context& context_;
  const ListedFile& file_;
  engine::DataFile data_file_;
  engine::Index index_file_;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_INDEXED_FILE_H_
