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

#include "accounts/customers.h"
#include "frame/error.h"
#include "products/products.h"
#include "settings/general.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"
#include "tests/core/temporary_folder.h"
#include "trace_report/command.h"
#include "trace_report/page.h"
#include "users/access_rights.h"
#include "users/messaging.h"

namespace ard::trace_report {
namespace {

using simulator::CompanyBuilder;
using testing::ScriptedEnvironment;

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

const std::string kMinute = "2026-11-21T09:30:";

// A trace with each kind of entry: in its file the minute of the times is left out, TABs are bars
// and what begins a sequence of a terminal's is "^".
std::string Written() {
  std::ifstream file(ARD_REPORT_TRACE);
  std::string text = "\xEF\xBB\xBF";
  for (std::string line; std::getline(file, line);) {
    text += kMinute + Replaced(Replaced(line, "|", "\t"), "^", "\x1B") + "\r\n";
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
  EXPECT_NE(page.find("<h1>&lt;odd> $calls$</h1>"), page.npos);
  EXPECT_NE(page.find("<div class=\"skip\">       1  Products.GetDesc  0x80004005 &lt;odd></div>"),
            page.npos);
  EXPECT_NE(page.find("[\"skip\",\"Products.GetDesc\",\"0x80004005 \\u003codd>\"]"), page.npos);
  EXPECT_NE(page.find("\"7\",\"3/4\",\"Messaging.LogonUser\",9000.0,\"answered\","
                      "\"(\\\"A\\\", ***)\",\"True\",1,[[\"message\",\"Host\",\"Nobody\"]]]"),
            page.npos);
  EXPECT_EQ(page.find("http"), page.npos) << "nothing comes from elsewhere";
}

TEST(ReportTest, NamesTheLinesThatItCannotRead) {
  const std::string time = "2026-11-21T09:30:00.125Z\t";
  Report report;
  for (const std::string& line :
       {std::string(), std::string("7\t1\tnote\ta\tb"),
        time + "7\t1\tcall\tA.B\t1.0 ms\tLong\t\t\t", time + "7\t1\tcall\tA.B\tnan us\tLong\t\t\t",
        time + "7\t1\tcall\tA.B\t1.0 us\tLong", time + "7\t1\tskip\tA.B\t5\ttext",
        time + "7\t1\tmessage\ttitle", time + "7\t1\tother\ta\tb", time + "x\t1\tnote\ta\tb",
        time + "7\t1-2\tnote\ta\tb", "x" + time + "7\t1\tnote\ta\tb\x01"}) {
    report.Add(line);
  }
  EXPECT_FALSE(report.is_trace());
  report.Add(time + "7\t1\tcall\tA.B\t1.0 us\tLong\tneutral\t\t\r");
  report.End();
  EXPECT_TRUE(report.is_trace());
  const std::string text = report.ToText();
  EXPECT_NE(
      text.find("\n  line 11: x2026-11-21T09:30:00.125Z\\x097\\x091\\x09note\\x09a\\x09b\\x01\n"),
      text.npos)
      << text;
  EXPECT_EQ(text.find("line 12"), text.npos) << text;
}

TEST(CommandTest, DoesWhatItIsTold) {
  const testing::TemporaryFolder folder;
  const std::filesystem::path trace = folder / "trace \u00e9.txt";
  std::ofstream(trace, std::ios::binary) << Written();
  std::ofstream(folder / "other.txt") << "no trace\n";
  std::ofstream(folder / "empty.txt");
  const std::string usage = "usage: trace_report [--html PAGE | --follow] FILE\n";
  const auto folders = [&](std::string text) {
    return Replaced(std::move(text), folder.string() + "/", "");
  };
  const auto run = [&](std::vector<std::filesystem::path> arguments,
                       const std::function<bool()>& wait = {}) {
    std::ostringstream out;
    std::ostringstream err;
    const int rc = RunCommand(arguments, out, err, wait);
    return std::to_string(rc) + "|" + folders(out.str()) + "|" + folders(err.str());
  };
  const auto starts = [](const std::string& text, const std::string& start) {
    return text.starts_with(start) ? start : text;
  };
  EXPECT_EQ(starts(run({trace}), "0|5 calls, "), "0|5 calls, ");
  EXPECT_EQ(starts(run({"--help", "x", "y"}), "0|" + usage), "0|" + usage);
  EXPECT_EQ(run({}), "2||" + usage);
  EXPECT_EQ(run({"-x", trace}), "2||trace_report: -x: It is not understood.\n" + usage);
  EXPECT_EQ(run({trace, trace}),
            "2||trace_report: trace \u00e9.txt: It is not understood.\n" + usage);
  EXPECT_EQ(run({"--html"}), "2||trace_report: --html: It is not understood.\n" + usage);
  EXPECT_EQ(run({"--follow", "--html", "x", trace}), "2||" + usage);
  EXPECT_EQ(run({folder / "nowhere"}), "1||trace_report: nowhere: No such file or directory\n");
  EXPECT_EQ(run({folder}), "1||trace_report: " + folder.string() + ": It is a folder.\n");
  for (const char* name : {"other.txt", "empty.txt"}) {
    EXPECT_EQ(run({folder / name}), "1||trace_report: " + std::string(name) +
                                        ": No line of it is an entry of a trace.\n");
  }
  EXPECT_EQ(run({"--html", folder / "nowhere" / "x", trace}),
            "1||trace_report: nowhere/x: No such file or directory\n");
  EXPECT_EQ(run({trace, "--html", folder / "page.html"}), "0||");
  std::stringstream page;
  page << std::ifstream(folder / "page.html").rdbuf();
  EXPECT_NE(page.str().find("<h1>trace \u00e9.txt</h1>"), std::string::npos);

  // The file grows, in the middle of a line, too; then it is begun anew.
  int waits = 0;
  const std::filesystem::path growing = folder / "growing.txt";
  std::ofstream(growing) << "1\ta\x1B\r\n2";
  EXPECT_EQ(run({"--follow", growing},
                [&] {
                  std::ofstream file(growing, ++waits == 2 ? std::ios::trunc : std::ios::app);
                  file << (waits == 1 ? "\tb\n3" : "4\n");
                  return waits < 3;
                }),
            "0|1  a\\x1B\n2  b\n4\n|");
}

struct Host {
  explicit Host(std::shared_ptr<simulator::Simulator> simulator) : engine(std::move(simulator)) {
    environment.trace().Attach([&](std::string_view line) { (trace += line) += '\n'; });
  }

  template <class Class>
  std::unique_ptr<Class> Make() {
    auto object = std::make_unique<Class>(environment);
    object->context().workspace = engine->workspace();
    object->context().engine = engine;
    object->context().database = database;
    return object;
  }
  void LogOn(const wchar_t* user, const wchar_t* password) {
    const auto messaging = Make<users::Messaging>();
    messaging->details().use_acc_rights = true;
    messaging->LogonUser(user, password);
  }

  const std::shared_ptr<simulator::Simulator> engine;
  const std::shared_ptr<host_database::OdbcConnection> database = testing::MembersDatabase();
  ScriptedEnvironment environment;
  std::string trace;
};

std::unique_ptr<simulator::Simulator> WithoutPrices() {
  const testing::TemporaryFolder folder;
  std::ofstream(folder / "StockData.table")
      << "STOCK_CODE:text(30)\tLAST_PURCHASE_PRICE:double\nBOLT\t20\n";
  return simulator::Simulator::Open(folder);
}

// Faults as customers meet them: how each is met, and what names its cause in the first ten lines
// of the trace, of the report and of the page.
const struct Fault {
  const char* name;
  void (*meet)(Host& host);
  const char* cause;
  std::unique_ptr<simulator::Simulator> (*engine)() = testing::MembersCompany;
} kFaults[] = {
    {"no selling price",
     [](Host& host) { host.Make<products::Products>()->GetSpecialPrice(L"BOLT", L"ABC001"); },
     "StockRecord.Fields(\"SALES_PRICE\")", WithoutPrices},
    {"a closed database",
     [](Host& host) {
       host.database->Close();
       host.LogOn(L"ANN", testing::kPassword);
     },
     "Recordset.Open(\"SELECT ID FROM AccessRights WHERE UserName='ANN'\")"},
    {"no pricing service",
     [](Host& host) { host.Make<products::Products>()->GetSpecialPrice(L"NUT", L"ABC001"); },
     "The engine offers none."},
    {"a wrong data path",
     [](Host& host) {
       host.environment.machine().held_files.insert(L"C:\\nowhere\\queue.dta");
       const auto messaging = host.Make<users::Messaging>();
       messaging->details().ard_data_path = L"C:\\nowhere";
       messaging->CheckForLogon();
     },
     "Environment.TryToRead(\"C:\\nowhere\\queue.dta\")"},
    {"no ControlData", [](Host& host) { host.Make<accounts::Customers>()->FastList(); },
     "ControlData.Open", [] { return CompanyBuilder().Without(L"ControlData").Build(); }},
    {"a user missing from the rights table", [](Host& host) { host.LogOn(L"EVE", L""); },
     "Refused: the user is not in the table AccessRights."},
    {"a product that is gone",
     [](Host& host) { host.Make<products::Products>()->GetSellPrice(L"BOLT "); },
     "StockIndex.Find"},
    {"an ini file that is read-only",
     [](Host& host) {
       host.environment.machine().ini_files_read_only = true;
       host.Make<settings::General>()->AddEntryToIniFile({}, L"C:\\Host", L"Host", L"", L"x.exe");
     },
     "Environment.WriteIni(\"veltrix.ini\")"},
    {"a right that is denied",
     [](Host& host) {
       host.Make<users::AccessRights>()->IsUserAllowedAccess(L"EVE", users::Access::kBankRecord,
                                                             false);
     },
     "AccessData.HasRight(\"BANK_RECORD\")"},
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
    Host host(fault.engine());
    fault.meet(host);
    Report report;
    Read(host.trace, report);
    for (const std::string& text : {host.trace, report.ToText(), ToPage(report, "trace")}) {
      EXPECT_NE(FirstTen(text).find(fault.cause), text.npos) << fault.name << ":\n"
                                                             << FirstTen(text);
    }
  }
}

}  // namespace
}  // namespace ard::trace_report
