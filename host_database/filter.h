// The two small languages of a recordset: what its Filter and its Sort are set to. A text that is
// neither throws Error (ADO's 3001), however odd it is.
#ifndef ARD_HOST_DATABASE_FILTER_H_
#define ARD_HOST_DATABASE_FILTER_H_

#include <string>
#include <string_view>

#include "frame/value.h"

namespace ard::host_database {

// One condition: "[Stock Code] Like 'AB%'" or "StockCode = 'AB1'". A field name may stand in
// brackets, and two quotes in the literal are one. Case does not count. In a Like pattern % and *
// stand for any run of characters, _ and ? for any one.
class Filter {
 public:
  explicit Filter(std::wstring_view text);

  const std::wstring& field() const { return field_; }
  // Null never passes.
  bool Passes(const Value& value) const;

 private:
  std::wstring field_;
  bool is_pattern_ = false;
  std::wstring literal_;  // in upper case
};

// "StockCode", "[Stock Code] ASC" or "StockCode DESC".
struct SortOrder {
  explicit SortOrder(std::wstring_view text);

  std::wstring field;
  bool descending = false;
};

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_FILTER_H_
