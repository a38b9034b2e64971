// Sessions at the prompt (sessions/*.txt): a small company, what it is asked, and word for word
// what it answers and shows, with the notes and the skipped steps of the trace. With ARD_SESSIONS,
// a folder, they are written there anew, to be read before they take the place of the others. Lines
// of a session that are not the prompt's:
//
//   @Customer ABC001 NAME=ABC Ltd|BALANCE=10    adds to a new company; and @Supplier, @Nominal,
//                                               @Bank, @Product; @Record, with a table; @Setup;
//                                               @Control; @Without, a table that is not there, the
//                                               Workspace, the Database or the Engine
//   @Columns AccessData NAME:text(30)|A:double  in place of a table's standard ones
//   @SQL INSERT INTO ...                        of the host's database
//   @Ini CorloAddIns AddIn1=x                   in the ini file; or @Set, below the registry path
//   @User Bob                                   of the machine; nobody without a name
//   @Show AccessData NAME|BANK_RECORD           fields of all records; or of the ini file or the
//                                               registry; or @Show SELECT ...
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console/prompt.h"
#include "frame/error.h"
#include "frame/text.h"
#include "host_database/odbc_connection.h"
#include "simulator/company.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/temporary_folder.h"

namespace ard::testing {
namespace {

using host_database::OdbcConnection;
using Lines = std::vector<std::string>;

std::string WithoutEnd(std::string line) {
  line.erase(line.find_last_not_of(" \r") + 1);
  return line;
}

// What is typed in a line of a session.
std::optional<std::string> Typed(const std::string& line) {
  static const std::regex typed(
      R"((?:.*\(\? helps\) ?|Abort, Retry or Ignore\? ?|\[\?\] .*\.(?: |$))(.*)|)"
      R"((\? .*|\w+\.\w+ = .*|help.*|'.*))");
  std::smatch match;
  if (!std::regex_match(line, match, typed)) return std::nullopt;
  return match[1].matched ? match[1] : match[2];
}

class Session {
 public:
  // Works in a folder of its own, with one of accounts data that nobody holds.
  Session() {
    std::filesystem::create_directory(folder_ / "company");
    std::ofstream(folder_ / "company" / "queue.dta");
    std::filesystem::current_path(folder_);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() { std::filesystem::current_path(before_); }

  // Everything up to the next company.
  std::string Play(const Lines& lines) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto typed = Typed(lines[i]);
      if (!typed || lines[i][0] == '\'') {
        text_ += lines[i] + '\n';
        if (lines[i].starts_with("@Show ")) {
          text_ += Shown(FromUtf8(lines[i].substr(6)));
          while (i + 1 < lines.size() && lines[i + 1].starts_with("  ")) ++i;
        } else if (lines[i].starts_with('@')) {
          try {
            Add(FromUtf8(lines[i].substr(1)));
          } catch (const Error& error) {
            ADD_FAILURE() << lines[i] << "\n" << ToUtf8(error.text());
          }
        }
        continue;
      }
      // A line at the prompt, and those in the dialogs that it opens.
      Lines input = {*typed};
      // Of a member, help begins with how it is typed.
      const bool of_member = typed->starts_with("help ") && typed->find('.') != std::string::npos;
      if (of_member && i + 1 < lines.size() && EndsAnswer(lines[i + 1])) ++i;
      for (; i + 1 < lines.size() && !EndsAnswer(lines[i + 1]); ++i) {
        if (const auto answer = Typed(lines[i + 1])) input.push_back(*answer);
      }
      if (lines[i].empty()) --i;  // between two companies
      Ask(input);
    }
    return text_;
  }

 private:
  static bool EndsAnswer(const std::string& line) {
    return line.starts_with('@') || line.starts_with('\'') || Typed(line) == line;
  }

  // The prompt, once the company is complete.
  console::Prompt& Opened() {
    if (prompt_) return *prompt_;
    engine_ = company_.Build();
    prompt_ = std::make_unique<console::Prompt>(
        in_, out_,
        console::Stores{without_.contains(L"Workspace") ? nullptr : engine_->workspace(),
                        without_.contains(L"Database") ? nullptr : database_,
                        without_.contains(L"Engine") ? nullptr : engine_, L"company"});
    prompt_->environment().trace().Attach([this](std::string_view line) {
      static const std::regex told("[^\t]*\t[^\t]*\t[^\t]*\t(note|skip)\t([^\t]*)\t(.*)");
      std::match_results<std::string_view::const_iterator> match;
      if (!std::regex_match(line.begin(), line.end(), match, told)) return;
      out_ << std::regex_replace(match.format("$1 $2: $3"), std::regex("\t"), " ") << '\n';
    });
    return *prompt_;
  }

  void Ask(const Lines& input) {
    console::Prompt& prompt = Opened();
    std::string text;
    for (const std::string& line : input) text += line + '\n';
    in_ = std::stringstream(text);
    out_ = std::stringstream();
    prompt.Run(false);
    EXPECT_EQ(engine_->counters().open_files, 0) << text;
    EXPECT_EQ(database_->open_recordsets(), 0) << text;
    // It is not repeated.
    if (input.front().starts_with("help")) text_ += input.front() + '\n';
    // What is typed stands there with its passwords.
    auto next = input.begin();
    for (std::string line; std::getline(out_, line); text_ += line + '\n') {
      line = WithoutEnd(line);
      const auto typed = Typed(line);
      if (!typed || next == input.end()) continue;
      if (*typed != WithoutEnd(ToUtf8(console::WithoutPassword(FromUtf8(*next))))) continue;
      line.replace(line.size() - typed->size(), typed->size(), *next++);
    }
  }

  void Add(std::wstring_view line) {
    std::wstring_view rest = line;
    const std::wstring_view kind = simulator::TakeUpTo(L' ', rest);
    if (kind == L"SQL") return database_->Execute(std::wstring(rest));
    if (kind == L"User") return void(setenv("USER", ToUtf8(rest).c_str(), 1));
    if (kind == L"Set" || kind == L"Ini") {
      const std::wstring_view section = simulator::TakeUpTo(L' ', rest);
      const std::wstring_view setting = simulator::TakeUpTo(L'=', rest);
      ard::Environment& machine = Opened().environment();
      return kind == L"Set" ? machine.SaveSetting(kRegistryPath, section, setting, rest)
                            : machine.WriteIni(kIniFile, section, setting, rest);
    }
    const bool is_store = rest == L"Workspace" || rest == L"Database" || rest == L"Engine";
    if (kind == L"Without" && is_store) return void(without_.emplace(rest));
    company_.Line(line);
  }

  std::string Shown(const std::wstring& what) {
    std::wstring text;
    if (what.starts_with(L"SELECT ")) {
      const auto rows =
          database_->OpenRecordset(what, database::Cursor::kForwardOnly, database::Lock::kReadOnly);
      for (; !rows->Eof(); rows->MoveNext()) text += L"  " + rows->GetValue(0).ToText() + L"\n";
      return ToUtf8(text);
    }
    ard::Environment& machine = Opened().environment();
    const std::wstring of = what.substr(0, what.find(L' '));
    const simulator::Table* const table = engine_->company().Find(of);
    for (std::int32_t record = 1; record <= (table ? table->size() : 1); ++record) {
      std::wstringstream fields(what.substr(what.find(L' ') + 1));
      text += L"  ";
      for (std::wstring field; std::getline(fields, field, L'|'); text += L'|') {
        text += table ? table->Cell(record, table->columns().Require(field)).ToText()
                : of.find(L'\\') != of.npos ? machine.GetSetting(kRegistryPath, of, field, L"-")
                                            : machine.ReadIni(kIniFile, of, field);
      }
      text += L'\n';
    }
    return ToUtf8(text);
  }

  static constexpr std::wstring_view kIniFile = L"veltrix.ini";
  static constexpr std::wstring_view kRegistryPath = L"Manufacturing Demo";

  const std::filesystem::path before_ = std::filesystem::current_path();
  const TemporaryFolder folder_;
  std::string text_;
  std::stringstream in_, out_;
  std::unique_ptr<console::Prompt> prompt_;
  simulator::CompanyBuilder company_;
  std::set<std::wstring> without_;
  std::shared_ptr<simulator::Simulator> engine_;
  std::shared_ptr<OdbcConnection> database_ =
      std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
};

const std::regex kOfCompany("^@(?!(Show|Set|Ini|User)\\b)");

class SessionsTest : public ::testing::TestWithParam<std::string> {};

TEST_P(SessionsTest, AnswersWhatIsWrittenDown) {
  const std::string name = GetParam() + ".txt";
  std::ifstream file(std::filesystem::path(ARD_SESSIONS) / name);
  std::vector<Lines> companies(1);
  std::string expected;
  bool builds = true;
  for (std::string line; std::getline(file, line); expected += line + '\n') {
    if (std::regex_search(line, kOfCompany)) {
      if (!std::exchange(builds, true)) companies.emplace_back();
    } else if (Typed(line) && line[0] != '\'') {
      builds = false;
    }
    companies.back().push_back(line);
  }
  std::string all;
  for (const Lines& lines : companies) all += Session().Play(lines);

  if (const char* const folder = std::getenv("ARD_SESSIONS")) {
    std::ofstream(std::filesystem::path(folder) / name) << all;
  }
  std::istringstream wanted(expected), told(all);
  std::string want, tell;
  for (int number = 1; wanted && told && want == tell; ++number) {
    if (!std::getline(wanted, want)) want = "(the end)";
    if (!std::getline(told, tell)) tell = "(the end)";
    EXPECT_EQ(want, tell) << name << ":" << number;
  }
}

std::vector<std::string> Names() {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(ARD_SESSIONS)) {
    names.push_back(file.path().stem().string());
  }
  return names;
}

INSTANTIATE_TEST_SUITE_P(All, SessionsTest, ::testing::ValuesIn(Names()),
                         [](const auto& named) { return named.param; });

}  // namespace
}  // namespace ard::testing
