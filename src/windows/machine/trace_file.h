// The file that the trace goes to.
#ifndef ARD_WINDOWS_MACHINE_TRACE_FILE_H_
#define ARD_WINDOWS_MACHINE_TRACE_FILE_H_

#include "frame/trace.h"

namespace ard::windows {

// Opens the file that the environment variable ARDOBJECTS_TRACE names, or else the registry value
// of that name (a string, under Software\ArdObjects100 of the user, then of the machine). Lines are
// appended, each in one write, so that several processes may share the file. An empty sink when no
// file is named or it cannot be opened.
Trace::Sink OpenTraceFile();

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_TRACE_FILE_H_
