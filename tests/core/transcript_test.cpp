// What each member asks of the engine, in its order, what it shows, leaves behind and answers when
// nothing fails: word for word as in tests/core/transcript.txt. With ARD_TRANSCRIPT, a file, it is
// written there anew, to be read before it takes the place of the other.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include "tests/core/members.h"
#include "tests/core/recording_workspace.h"

namespace ard::testing {
namespace {

// "SalesRecord: Create; ACCOUNT_REF = "ABC"; Find(False); NAME": a line for each object in turn,
// with those of the trace between them. Of the fields, their values are told; and of a walk through
// all of them, what is written.
std::wstring Told(const std::vector<std::wstring>& operations) {
  std::wstring text, of;
  for (std::wstring line : operations) {
    if (line.starts_with(L"\n")) {
      text += line;  // of the trace
      of.clear();
      continue;
    }
    const std::wstring_view kCreate = L"Workspace.CreateRecordObject(\"";
    const std::size_t fields = line.find(L".Fields");
    if (line.starts_with(kCreate)) {
      line = line.substr(kCreate.size(), line.size() - kCreate.size() - 2) + L".Create";
    } else if (fields != line.npos) {
      const std::size_t value = line.find(L").Value");
      const bool by_name = line.find(L"(\"") == fields + 7;
      if (value == line.npos || (!by_name && line.find(L" = ", value) == line.npos)) continue;
      line.erase(value - by_name, 7u + by_name).erase(fields + 1, 7u + by_name);
    }
    const std::size_t dot = line.find(line.starts_with(L"StockRecord.Transactions.") ? L'T' : L'.');
    const std::wstring object = line.substr(0, dot);
    text += (of == object ? L"; " : L"\n  " + object + L": ") + line.substr(dot + 1);
    of = object;
  }
  return text;
}

// A line of the trace without time and duration.
std::wstring Timeless(std::string_view line) {
  std::wstring text;
  std::wstringstream cells(FromUtf8(line.substr(line.find('\t') + 1)));
  for (std::wstring cell; std::getline(cells, cell, L'\t');) {
    if (!cell.ends_with(L" us")) text += L" " + cell;
  }
  return L"\n  trace:" + text;
}

// The host's database, of which what is opened is told.
class Database : public host_database::OdbcConnection {
 public:
  explicit Database(Recording& recording)
      : OdbcConnection(kMembersConnection), recording_(recording) {
    for (const std::wstring& command : MembersDatabaseCommands()) Execute(command);
  }
  std::unique_ptr<database::RecordsetObject> Open(std::wstring_view command,
                                                  database::Cursor cursor,
                                                  database::Lock lock) override {
    recording_.operations.push_back(
        L"Database." + std::wstring(command) +
        (cursor == database::Cursor::kStatic ? L", static" : L", forward only") +
        (lock == database::Lock::kOptimistic ? L", optimistic" : L", read-only"));
    return OdbcConnection::Open(command, cursor, lock);
  }

 private:
  Recording& recording_;
};

std::wstring Transcript(const Member& member) {
  const std::shared_ptr<simulator::Simulator> engine = MembersCompany();
  ScriptedEnvironment environment;
  std::wstring shown;
  if (member.script) {
    environment.Answer([&](dialogs::SelectDialog& dialog) {
      member.script(dialog);
      for (const dialogs::Row& row : dialog.list().rows()) {
        shown += L"\n  row: " + dialog.list().Spoken(row);
        if (dialog.list().IsSelected(row)) shown += L" <";
      }
    });
  }
  ScriptedEnvironment::Machine& machine = environment.machine();
  machine.input = L"Asked";
  Recording recording;
  Trace::Origin origin;
  origin.detail = true;
  environment.trace().Attach(
      [&](std::string_view line) { recording.operations.push_back(Timeless(line)); }, origin);
  Context context(environment);
  context.workspace = Recorded(engine->workspace(), recording);
  context.engine = engine;
  context.database = std::make_shared<Database>(recording);
  context.app_name = L"Manufacturing";
  context.registry_path = L"Host";
  std::wstring answer;
  member.bind(context)(&answer);

  std::wstring text = L"\n" + Told(recording.operations);
  text += L"\n  operations: " + std::to_wstring(engine->operations());
  for (const std::wstring& caption : machine.captions) text += L"\n  dialog: " + caption;
  text += shown;
  for (const std::wstring& title : machine.progress) text += L"\n  progress: " + title;
  for (const std::wstring& question : machine.questions) text += L"\n  asks: " + question;
  for (const std::wstring& message : environment.TakeMessages()) text += L"\n  says: " + message;
  for (const auto& [name, value] : machine.user_settings) {
    text += L"\n  setting: " + name + L" = " + value;
  }
  for (const std::wstring& page : machine.help_pages) text += L"\n  help: " + page;
  for (const Shortcut& made : machine.shortcuts) {
    text += L"\n  shortcut: " + made.file + L", " + made.target + L", " + made.arguments + L", " +
            made.working_folder + L", " + made.description;
  }
  for (std::size_t end; (end = text.find(L"\r\n")) != text.npos;) text.replace(end, 2, L"/");
  return text.substr(1) + L"\n  = \"" + answer + L"\"\n";
}

TEST(TranscriptTest, EveryMemberDoesWhatIsWrittenDown) {
  std::map<std::string, std::string> expected;
  std::ifstream file(ARD_TRANSCRIPT);
  std::string name;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != ' ' && line[0] != '\t') name = line;
    if (line != name) expected[name] += line + '\n';
  }
  const char* const anew = std::getenv("ARD_TRANSCRIPT");
  std::ofstream written(anew ? anew : "/dev/null");
  for (const Member& member : Members()) {
    const std::string told = ToUtf8(Transcript(member));
    written << ToUtf8(member.name) << told;
    EXPECT_EQ("\n" + expected[ToUtf8(member.name)], told) << ToUtf8(member.name);
    expected.erase(ToUtf8(member.name));
  }
  EXPECT_TRUE(expected.empty()) << expected.begin()->first << " is no member";
}

}  // namespace
}  // namespace ard::testing
