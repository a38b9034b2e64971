// The command: what it does with its arguments.
#ifndef ARD_TRACE_REPORT_COMMAND_H_
#define ARD_TRACE_REPORT_COMMAND_H_

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <vector>

namespace ard::trace_report {

// Gives the command's exit code. One that follows a file goes on for as long as `wait`, which it
// calls when there is nothing more to read, answers True.
int RunCommand(const std::vector<std::filesystem::path>& arguments, std::ostream& out,
               std::ostream& err, const std::function<bool()>& wait);

}  // namespace ard::trace_report

#endif  // ARD_TRACE_REPORT_COMMAND_H_
