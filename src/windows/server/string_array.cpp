#include "windows/server/string_array.h"

#include <new>

#include "windows/engine/com.h"

namespace ard::windows {

StringArrayArgument::StringArrayArgument(SAFEARRAY* array) noexcept : elements_(array) {
  try {
    texts_.reserve(elements_.size());
    for (const BSTR text : elements_) texts_.emplace_back(View(text));
  } catch (const std::bad_alloc&) {
    texts_.clear();
  }
}

StringArrayArgument::~StringArrayArgument() {
  BSTR* element = elements_.begin();
  for (const std::wstring& text : texts_) {
    if (text != View(*element)) {
      SysReAllocStringLen(element, text.data(), static_cast<UINT>(text.size()));
    }
    ++element;
  }
}

}  // namespace ard::windows
