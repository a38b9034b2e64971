#include "trace_report/report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"
#include "tests/core/temporary_folder.h"
#include "trace_report/command.h"
#include "trace_report/page.h"

namespace ard::trace_report {
namespace {

namespace fs = std::filesystem;
using simulator::CompanyBuilder;

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

const std::string kMinute = "2026-11-21T09:30:";

// A trace with each kind of entry, and lines that are none: in its file the minute of the times is
// "@", TABs are bars and what begins a sequence of a terminal's is "^".
std::string Written() {
  std::ifstream file(ARD_REPORT_TRACE);
  std::string text = "\xEF\xBB\xBF";
  for (std::string line; std::getline(file, line);) {
    line = Replaced(Replaced(line, "|", "\t"), "^", "\x1B");
    text += Replaced(line, "@", kMinute) + "\r\n";
  }
  return text;
}

void Read(const std::string& text, Report& report) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    report.Add(std::string_view(text).substr(at, end - at));
    at = end + 1;
  }
  report.End();
}

TEST(ReportTest, SumsATraceUp) {
  Report report;
  Read(Written(), report);
  std::ostringstream expected;
  expected << std::ifstream(ARD_REPORT).rdbuf();
  EXPECT_EQ(Replaced(report.ToText(), kMinute, ":"), expected.str());

  const std::string page = ToPage(report, "<odd> $calls$");
  for (const char* part :
       {"<h1>&lt;odd> $calls$</h1>",
        "<div class=\"skip\">       1  Products.GetDesc  0x80004005 &lt;odd></div>",
        "[\"skip\",\"Products.GetDesc\",\"0x80004005 \\u003codd>\"]",
        "\"7\",\"3/4\",\"Messaging.LogonUser\",9000.0,\"answered\","
        "\"(\\\"A\\\", ***)\",\"True\",1,[[\"message\",\"Host\",\"Nobody\"]]]"}) {
    EXPECT_NE(page.find(part), page.npos) << part;
  }
  EXPECT_EQ(page.find("http"), page.npos) << "nothing comes from elsewhere";
}

TEST(CommandTest, DoesWhatItIsTold) {
  const testing::TemporaryFolder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder);
  const char* const name = "a trac\u00e9.txt";
  std::ofstream(name, std::ios::binary) << Written();
  std::ofstream("other.txt") << "no trace\n";
  std::ofstream("empty.txt");
  const auto run = [](const std::vector<fs::path>& arguments,
                      const std::function<bool()>& wait = {}) {
    std::ostringstream out;
    std::ostringstream err;
    const int rc = RunCommand(arguments, out, err, wait);
    return std::to_string(rc) + "|" + out.str() + "|" + err.str();
  };
  const std::string usage = "usage: trace_report [--html PAGE | --follow] FILE\n";
  EXPECT_TRUE(run({name}).starts_with("0|5 calls, "));
  EXPECT_TRUE(run({"--help", "x", "y"}).starts_with("0|" + usage));
  EXPECT_EQ(run({}), "2||" + usage);
  EXPECT_EQ(run({"--follow", "--html", "x", name}), "2||" + usage);
  const struct {
    std::vector<fs::path> arguments;
    std::string says;
  } cases[] = {
      {{"-x", name}, "2||trace_report: -x: It is not understood.\n" + usage},
      {{name, name}, "2||trace_report: a trac\u00e9.txt: It is not understood.\n" + usage},
      {{"--html"}, "2||trace_report: --html: It is not understood.\n" + usage},
      {{"nowhere"}, "1||trace_report: nowhere: No such file or directory\n"},
      {{"."}, "1||trace_report: .: It is a folder.\n"},
      {{"other.txt"}, "1||trace_report: other.txt: No line of it is an entry of a trace.\n"},
      {{"empty.txt"}, "1||trace_report: empty.txt: No line of it is an entry of a trace.\n"},
      {{"--html", "no/x", name}, "1||trace_report: no/x: No such file or directory\n"},
      {{name, "--html", "page.html"}, "0||"},
      {{name, "--html", "page.html"}, "0||"},
      {{name, "--html", name},
       "1||trace_report: a trac\u00e9.txt: It is there already, and no page.\n"},
      {{"--follow", "empty.txt"},
       "1||trace_report: empty.txt: There is not enough memory for it.\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.arguments, []() -> bool { throw std::bad_alloc(); }), c.says);
  }
  std::ostream closed(nullptr);
  std::ostringstream err;
  EXPECT_EQ(RunCommand({name}, closed, err, {}), 1);
  std::stringstream page;
  page << std::ifstream("page.html").rdbuf();
  EXPECT_NE(page.str().find("<h1>a trac\u00e9.txt</h1>"), std::string::npos);

  // The file grows, in the middle of a line, too; then it is begun anew.
  int waits = 0;
  std::ofstream("growing.txt") << "1\ta\x1B\r\n2";
  EXPECT_EQ(run({"--follow", "growing.txt"},
                [&] {
                  std::ofstream file("growing.txt", ++waits == 2 ? std::ios::trunc : std::ios::app);
                  file << (waits == 1 ? "\tb\n3" : "4\n");
                  return waits < 3;
                }),
            "0|1  a\\x1B\n2  b\n4\n|");
  fs::current_path(before);
}

// Faults as customers meet them: the member that meets each, and what names its cause in the first
// ten lines of the trace, of the report and of the page.
const struct Fault {
  const wchar_t* member;
  const char* cause;
  std::unique_ptr<simulator::Simulator> (*engine)() = testing::MembersCompany;
  bool has_database = true;
} kFaults[] = {
    {L"Products.GetSpecialPrice", "StockRecord.Fields(\"SALES_PRICE\")",
     [] {
       CompanyBuilder company;
       return company.Columns(L"StockData", L"STOCK_CODE:text(30)").Product(L"BOLT").Build();
     }},
    {L"Products.GetSpecialPrice", "The engine offers none."},
    {L"Products.GetSellPrice", "StockIndex.Find", [] { return CompanyBuilder().Build(); }},
    {L"Messaging.LogonUser", "Recordset.Open(\"SELECT ID FROM AccessRights WHERE UserName='ANN'\")",
     testing::MembersCompany, false},
    {L"Messaging.LogonUser, not in the table",
     "Refused: the user is not in the table AccessRights."},
    {L"Messaging.CheckForLogon, held", "Environment.TryToRead(\"\\queue.dta\")"},
    {L"Customers.FastList, cancelled", "ControlData.Open",
     [] { return CompanyBuilder().Without(L"ControlData").Build(); }},
    {L"General.AddEntryToIniFile, read-only", "Environment.WriteIni(\"veltrix.ini\")"},
    {L"cAccessRights.IsUserAllowedAccess", "AccessData.HasRight(\"BANK_RECORD\")"},
};

// Without its tags, the first ten lines of what a page shows.
std::string FirstTen(std::string text) {
  if (const std::size_t findings = text.find("<section"); findings != text.npos) {
    text = Replaced(text.substr(text.find('\n', findings) + 1), "&lt;", "<");
  }
  std::size_t end = 0;
  for (int line = 0; line < 10 && end < text.size(); ++line) end = text.find('\n', end) + 1;
  return text.substr(0, end);
}

TEST(FaultTest, TheFirstTenLinesNameTheCause) {
  for (const Fault& fault : kFaults) {
    testing::ScriptedEnvironment environment;
    std::string trace;
    environment.trace().Attach([&](std::string_view line) { (trace += line) += '\n'; });
    const std::shared_ptr<simulator::Simulator> engine = fault.engine();
    Context context(environment);
    context.workspace = engine->workspace();
    context.engine = engine;
    const auto database = testing::MembersDatabase();
    if (!fault.has_database) database->Close();
    context.database = database;
    const auto member = std::ranges::find(testing::Members(), fault.member, &testing::Member::name);
    ASSERT_NE(member, testing::Members().end());
    member->bind(context)(nullptr);
    Report report;
    Read(trace, report);
    for (const std::string& text : {trace, report.ToText(), ToPage(report, "trace")}) {
      EXPECT_NE(FirstTen(text).find(fault.cause), text.npos) << FirstTen(text);
    }
  }
}

}  // namespace
}  // namespace ard::trace_report
