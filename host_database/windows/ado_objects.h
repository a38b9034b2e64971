// As much of ADO's Connection and Recordset as the library and the hosts in this project use, over
// OdbcConnection, for private Wine prefixes: Wine's own ADO cannot be used late-bound. They take
// over the names "ADODB.Connection" and "ADODB.Recordset", so they are never for a real Windows
// machine, and refuse to be registered there.
//
// A recordset without a client cursor (CursorLocation = 3) is forward-only, whatever is asked for.
// Beyond ADO, a connection tells in OpenRecordsets how many recordsets are neither closed nor
// released, in Operations how much has been asked of them, and FailFrom(n, persist) makes operation
// n from now fail, with `persist` all after it too.
#ifndef ARD_HOST_DATABASE_WINDOWS_ADO_OBJECTS_H_
#define ARD_HOST_DATABASE_WINDOWS_ADO_OBJECTS_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include "windows/engine/com.h"

namespace ard::host_database {

windows::ComPtr<IDispatch> CreateConnectionObject();
windows::ComPtr<IDispatch> CreateRecordsetObject();

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_WINDOWS_ADO_OBJECTS_H_
