#include "trace_report/report.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>

#include "frame/error.h"
#include "frame/trace.h"

namespace ard::trace_report {
namespace {

using std::chrono::microseconds;

// The times of the entries are the clock's: all alike here.
std::string WithoutTimes(std::string text) {
  for (std::size_t z = 0; (z = text.find("Z  ", z)) != text.npos; ++z) {
    text.replace(z - 23, 24, 24, '-');
  }
  return text;
}

// Written by the trace itself, so that the two cannot drift apart.
TEST(ReportTest, SumsUpWhatTheTraceWrites) {
  Report report;
  Trace trace;
  trace.Attach([&](std::string_view line) { report.Add(std::string(line) + '\r'); });
  for (int call = 1; call <= 11; ++call) {
    trace.Called(L"Customers", L"IsValid", L"Boolean", microseconds(100 * call));
  }
  trace.Called(L"Products", L"List", L"String", microseconds(7000));
  trace.Called(L"Messaging", L"PutLogon", L"", {});
  trace.Skipped({L"Setup", L"Open"}, kErrorFailed, L"");
  for (int skip = 0; skip < 2; ++skip) {
    trace.Skipped({L"SalesRecord", L"Fields", L"NAME"}, kErrorUnknownName, L"No such field.");
  }
  trace.Noted({L"Pricing", L"CreateRecordObject"}, L"The engine offers none.");
  trace.Shown(L"Orders \u00e9", L"Account is on hold.");
  EXPECT_EQ(WithoutTimes(report.ToText()),
            "18 entries\n"
            "\n"
            "Calls\n"
            "   count    total ms     mean us  member\n"
            "       1         7.0      7000.0  Products.List\n"
            "      11         6.6       600.0  Customers.IsValid\n"
            "       1         0.0         0.0  Messaging.PutLogon\n"
            "\n"
            "Slowest calls\n"
            "          us  time                      member\n"
            "      7000.0  ------------------------  Products.List\n"
            "      1100.0  ------------------------  Customers.IsValid\n"
            "      1000.0  ------------------------  Customers.IsValid\n"
            "       900.0  ------------------------  Customers.IsValid\n"
            "       800.0  ------------------------  Customers.IsValid\n"
            "       700.0  ------------------------  Customers.IsValid\n"
            "       600.0  ------------------------  Customers.IsValid\n"
            "       500.0  ------------------------  Customers.IsValid\n"
            "       400.0  ------------------------  Customers.IsValid\n"
            "       300.0  ------------------------  Customers.IsValid\n"
            "\n"
            "Failed steps\n"
            "       2  0x80020006  SalesRecord.Fields(\"NAME\")  No such field.\n"
            "       1  0x80004005  Setup.Open  \n"
            "\n"
            "Notes\n"
            "       1  Pricing.CreateRecordObject  The engine offers none.\n"
            "\n"
            "Messages shown\n"
            "       1  Orders \xC3\xA9: Account is on hold.\n");
}

TEST(ReportTest, NamesTheLinesThatItCannotRead) {
  const std::string time = "2026-11-21T09:30:00.125Z\t";
  Report report;
  EXPECT_TRUE(report.is_trace()) << "nothing has happened";
  for (const std::string& line :
       {std::string(), std::string("call\tA.B\t1.0 us\tLong"), time + "call\tA.B\t1.0 ms\tLong",
        time + "call\tA.B\tx us\tLong", time + "call\tA.B\tnan us\tLong",
        time + "call\tA.B\t1.0 us", time + "skip\tA.B\t5\ttext", time + "message\ttitle",
        time + "other\ta\tb\tc", "x" + time + "message\ttitle\ttext"}) {
    report.Add(line);
  }
  EXPECT_FALSE(report.is_trace());
  report.Add(time + "call\tA.B\t1.0 us\tLong");
  EXPECT_TRUE(report.is_trace());
  const std::string text = report.ToText();
  EXPECT_NE(text.find("\n  line 10: x2026"), text.npos) << text;
  EXPECT_EQ(text.find("line 11"), text.npos) << text;
}

}  // namespace
}  // namespace ard::trace_report
