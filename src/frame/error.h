// The one error that the seams throw: the abstract engine, database and machine report a failing
// operation with it, and the guarded handles turn it into a skipped step.
#ifndef ARD_FRAME_ERROR_H_
#define ARD_FRAME_ERROR_H_

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace ard {

// Automation error codes that the library itself knows.
inline constexpr std::int32_t kErrorTypeMismatch = static_cast<std::int32_t>(0x80020005);
inline constexpr std::int32_t kErrorOverflow = static_cast<std::int32_t>(0x8002000A);
inline constexpr std::int32_t kErrorNoMember = static_cast<std::int32_t>(0x80020003);
inline constexpr std::int32_t kErrorUnknownName = static_cast<std::int32_t>(0x80020006);
inline constexpr std::int32_t kErrorOutOfMemory = static_cast<std::int32_t>(0x8007000E);
// Null where a value is needed, as hosts' own languages have it.
inline constexpr std::int32_t kErrorNull = static_cast<std::int32_t>(0x800A005E);
inline constexpr std::int32_t kErrorNoFile = static_cast<std::int32_t>(0x80070002);
inline constexpr std::int32_t kErrorNoPath = static_cast<std::int32_t>(0x80070003);
inline constexpr std::int32_t kErrorFailed = static_cast<std::int32_t>(0x80004005);

class Error : public std::exception {
 public:
  Error(std::int32_t number, std::wstring text) : number_(number), text_(std::move(text)) {}

  // The automation error code (an HRESULT) and its description.
  std::int32_t number() const { return number_; }
  const std::wstring& text() const { return text_; }
  const char* what() const noexcept override { return "ard::Error"; }

 private:
  std::int32_t number_;
  std::wstring text_;
};

}  // namespace ard

#endif  // ARD_FRAME_ERROR_H_
