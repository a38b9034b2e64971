// The host's database behind an ADO connection, used through late-bound automation.
#ifndef ARD_WINDOWS_DATABASE_ADO_H_
#define ARD_WINDOWS_DATABASE_ADO_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <memory>

#include "database/seam.h"

namespace ard::windows {

// The connection that the host has opened, behind the seam; null for a null one. Recordsets are
// objects of the registered class "ADODB.Recordset"; static ones have a client cursor, without
// which ADO neither filters nor sorts. Operations throw Error with ADO's number and text.
std::shared_ptr<database::Connection> WrapConnection(IDispatch* connection);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DATABASE_ADO_H_
