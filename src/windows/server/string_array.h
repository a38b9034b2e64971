// Arrays of strings that hosts dimension and pass by reference.
#ifndef ARD_WINDOWS_SERVER_STRING_ARRAY_H_
#define ARD_WINDOWS_SERVER_STRING_ARRAY_H_

#include <windows.h>
// After windows.h.
#include <oleauto.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/text_array.h"
#include "windows/engine/com.h"

namespace ard::windows {

// The elements of an automation array, from the first to the last, while it is locked. None at all
// when there is no array, or one of something else or of more than one dimension.
template <class Element>
class ArrayElements {
 public:
  explicit ArrayElements(SAFEARRAY* array) {
    void* data = nullptr;
    if (!array || array->cDims != 1 || !Holds(*array)) return;
    if (FAILED(SafeArrayAccessData(array, &data))) return;
    array_ = array;
    data_ = static_cast<Element*>(data);
  }
  ArrayElements(const ArrayElements&) = delete;
  ArrayElements& operator=(const ArrayElements&) = delete;
  ~ArrayElements() {
    if (array_) SafeArrayUnaccessData(array_);
  }

  LONG lower_bound() const { return array_ ? array_->rgsabound[0].lLbound : 0; }
  std::size_t size() const { return data_ ? array_->rgsabound[0].cElements : 0; }
  Element* begin() const { return data_; }
  Element* end() const { return data_ + size(); }

 private:
  // A host may call an array what it is not. One that does not know what it holds goes by the size.
  static bool Holds(SAFEARRAY& array) {
    VARTYPE vt = std::is_same_v<Element, BSTR> ? VT_BSTR : VT_VARIANT;
    const VARTYPE wanted = vt;
    SafeArrayGetVartype(&array, &vt);
    return vt == wanted && array.cbElements == sizeof(Element);
  }

  SAFEARRAY* array_ = nullptr;
  Element* data_ = nullptr;
};

// The strings of an array for a method of a portable class, which puts its texts into them. One
// that is the same already, or that there is no memory for, stays as it is.
inline TextArray TextsOf(const ArrayElements<BSTR>& strings) {
  return {strings.lower_bound(), strings.size(), strings.begin(),
          [](const void* elements, std::size_t place) {
            return View(static_cast<const BSTR*>(elements)[place]);
          },
          [](void* elements, std::size_t place, std::wstring_view front, std::wstring_view back) {
            BSTR& element = static_cast<BSTR*>(elements)[place];
            const std::size_t size = front.size() + back.size();
            const std::wstring_view was = View(element);
            if (was.size() == size && IsSame(was.substr(0, front.size()), front) &&
                IsSame(was.substr(front.size()), back)) {
              return;
            }
            const BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(size));
            if (!text) return;
            std::copy(back.begin(), back.end(), std::copy(front.begin(), front.end(), text));
            SysFreeString(std::exchange(element, text));
          }};
}

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_STRING_ARRAY_H_
