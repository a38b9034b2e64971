// The errors of ADO that hosts know by their number.
#ifndef ARD_HOST_DATABASE_ADO_ERROR_H_
#define ARD_HOST_DATABASE_ADO_ERROR_H_

#include <cstdint>
#include <string>

#include "frame/error.h"

namespace ard::host_database {

enum class AdoError : std::uint32_t {
  kRowIsDeleted = 0x80040E23,
  kInvalidArgument = 0x800A0BB9,  // 3001
  kNoCurrentRecord = 0x800A0BCD,  // 3021
  kNotSupported = 0x800A0CB3,     // 3251
  kItemNotFound = 0x800A0CC1,     // 3265
  kObjectClosed = 0x800A0E78,     // 3704
  kObjectOpen = 0x800A0E79,       // 3705
};

[[noreturn]] inline void Throw(AdoError error, std::wstring text) {
  throw Error(static_cast<std::int32_t>(error), std::move(text));
}

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_ADO_ERROR_H_
