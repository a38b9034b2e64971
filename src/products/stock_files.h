// The stock file as the product queries look it up: by its index, then by record number.
#ifndef ARD_PRODUCTS_STOCK_FILES_H_
#define ARD_PRODUCTS_STOCK_FILES_H_

#include <string_view>

#include "engine/handles.h"

namespace ard::products {

class StockFiles {
 public:
  explicit StockFiles(const Context& context)
      : index_(context, L"StockIndex"), data_(context, L"StockData") {
    index_.Open(engine::Mode::kQuery);
    data_.Open(engine::Mode::kQuery);
  }
  // The index goes first.
  ~StockFiles() { index_.Close(); }

  // Makes the record of the stock code, taken exactly as given, current. False when there is none,
  // or when it cannot be read.
  [[gnu::always_inline]] bool Find(std::wstring_view stock_code) {
    return engine::ReadKey(index_, data_, stock_code);
  }
  // Whether the code is in the index; no record is read.
  bool Has(std::wstring_view stock_code) { return index_.FindKey(stock_code); }

  // Reads a field of the current record.
  template <class T>
  bool Get(Name field, T& out) {
    return data_.Get(field, out);
  }

 private:
  engine::Index index_;
  engine::DataFile data_;
};

}  // namespace ard::products

#endif  // ARD_PRODUCTS_STOCK_FILES_H_
