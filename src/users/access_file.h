// AccessData: the users of the accounts product and their rights.
#ifndef ARD_USERS_ACCESS_FILE_H_
#define ARD_USERS_ACCESS_FILE_H_

#include <string_view>

#include "engine/handles.h"

namespace ard::users {

inline constexpr std::wstring_view kAccessData = L"AccessData";
inline constexpr std::wstring_view kName = L"NAME";

// Whether that is the supervisor, who may do everything and is looked up nowhere.
bool IsManager(std::wstring_view user);

inline constexpr std::wstring_view kNobodysName = L"Refused: nobody can have that name.";

// Whether a user can have that name: it is not blank, and not a pattern that stands for others.
bool IsUserName(std::wstring_view user);

// Makes the user's record the current one. Names are stored padded with blanks: the name is looked
// for in upper case, in lower case and as given, and at last among all records without regard to
// case. False when there is none, when the length to pad to cannot be read, or the file is not
// open.
bool FindUser(engine::DataFile& access, std::wstring_view user);

// Whether the right in `field` of the current record gives access. What cannot be read gives none.
bool HasRight(engine::DataFile& access, Name field);

// Whether the first user whose name begins so has that right, or nobody's does.
bool HasPurchaseOrderAccess(const Context& context, std::wstring_view user);

}  // namespace ard::users

#endif  // ARD_USERS_ACCESS_FILE_H_
