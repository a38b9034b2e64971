// The file that the trace goes to.
#ifndef ARD_WINDOWS_MACHINE_TRACE_FILE_H_
#define ARD_WINDOWS_MACHINE_TRACE_FILE_H_

#include <windows.h>

#include <cstdint>

#include "frame/trace.h"

namespace ard::windows {

// A file that has grown to this is renamed, with ".1" at its end, and a new one begun; the one that
// was kept before goes. Each process looks at the size after so many bytes of its own.
inline constexpr std::int64_t kTraceLimit = 64 << 20;
inline constexpr std::size_t kTraceStride = 64 << 10;

// Attaches the trace to the file that the environment variable ARDOBJECTS_TRACE names, or else the
// registry value of that name (a string, under Software\ArdObjects100 of the user, then of the
// machine); with detail when ARDOBJECTS_TRACE_DETAIL is "1" in one of these places. Lines are
// appended, each in one write, so that several processes may share the file. The debugger is told,
// once, of a file that cannot be opened. `module` is the library itself.
void AttachTraceFile(Trace& trace, HINSTANCE module);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_TRACE_FILE_H_
