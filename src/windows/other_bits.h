// Classes that are there for programs of the other bits only: for those of 32 where this one
// has 64.
#ifndef ARD_WINDOWS_OTHER_BITS_H_
#define ARD_WINDOWS_OTHER_BITS_H_

#include <string>
#include <string_view>

namespace ard::windows {

// Says so, in a sentence, of the class with the programmatic identifier; "" of any other.
std::wstring OtherBitsOnly(const std::wstring& prog_id);

// The first class that this can be said of whose programmatic identifier begins so; "" when there
// is none. Looks at all that are registered, which takes a while.
std::wstring FirstOfOtherBits(std::wstring_view beginning);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_OTHER_BITS_H_
