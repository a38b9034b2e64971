// Arrays of strings that hosts dimension and pass by reference.
#ifndef ARD_WINDOWS_SERVER_STRING_ARRAY_H_
#define ARD_WINDOWS_SERVER_STRING_ARRAY_H_

#include <windows.h>
// After windows.h.
#include <oleauto.h>

#include <string>
#include <vector>

#include "frame/text_array.h"

namespace ard::windows {

// The elements of an automation array, from the first to the last, while it is locked. None at all
// when there is no array, or when it has more than one dimension.
template <class Element>
class ArrayElements {
 public:
  explicit ArrayElements(SAFEARRAY* array) {
    void* data = nullptr;
    if (!array || array->cDims != 1 || FAILED(SafeArrayAccessData(array, &data))) return;
    array_ = array;
    data_ = static_cast<Element*>(data);
  }
  ArrayElements(const ArrayElements&) = delete;
  ArrayElements& operator=(const ArrayElements&) = delete;
  ~ArrayElements() {
    if (array_) SafeArrayUnaccessData(array_);
  }

  LONG lower_bound() const { return array_ ? array_->rgsabound[0].lLbound : 0; }
  std::size_t size() const { return array_ ? array_->rgsabound[0].cElements : 0; }
  Element* begin() const { return data_; }
  Element* end() const { return data_ + size(); }

 private:
  SAFEARRAY* array_ = nullptr;
  Element* data_ = nullptr;
};

// The strings of an array for a method of a portable class: they start as what the host has passed,
// and those that have changed replace the host's when this goes.
class StringArrayArgument {
 public:
  // When there is no memory for them, the method is given none, and the host keeps what it has.
  explicit StringArrayArgument(SAFEARRAY* array) noexcept;
  StringArrayArgument(const StringArrayArgument&) = delete;
  StringArrayArgument& operator=(const StringArrayArgument&) = delete;
  ~StringArrayArgument();

  TextArray value() { return {elements_.lower_bound(), texts_}; }

 private:
  ArrayElements<BSTR> elements_;
  std::vector<std::wstring> texts_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_STRING_ARRAY_H_
