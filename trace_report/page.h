// A trace as a page for a browser: self-contained, in one file.
#ifndef ARD_TRACE_REPORT_PAGE_H_
#define ARD_TRACE_REPORT_PAGE_H_

#include <string>
#include <string_view>

#include "trace_report/report.h"

namespace ard::trace_report {

// The report's findings, then all calls on a time line and in a table, to be filtered and searched.
std::string ToPage(const Report& report, std::string_view title);

}  // namespace ard::trace_report

#endif  // ARD_TRACE_REPORT_PAGE_H_
