#include "settings/general.h"
#include "tests/core/company_test.h"

namespace ard::settings {
namespace {

using testing::Texts;

constexpr const wchar_t* kFile = L"veltrix.ini";
constexpr const wchar_t* kSection = L"CorloAddIns";

class AccountsProgramTest : public ::testing::Test {
 protected:
  AccountsProgramTest() { general_.context().app_name = L"Manufacturing"; }

  testing::ScriptedEnvironment::Machine& machine() { return environment_.machine(); }
  // The add-in list starts with these entries.
  void Fill(const Texts& entries) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      machine().ini_files.Write(kFile, kSection, L"AddIn" + std::to_wstring(i + 1), entries[i]);
    }
  }
  // The first `count` entries.
  Texts Entries(std::size_t count) {
    Texts entries;
    for (std::size_t i = 1; i <= count; ++i) {
      entries.push_back(machine().ini_files.Read(kFile, kSection, L"addin" + std::to_wstring(i)));
    }
    return entries;
  }
  bool Add(Texts check_items = {L"manuf.exe"}, std::int32_t lower_bound = 0) {
    return general_.AddEntryToIniFile({lower_bound, check_items}, L"C:\\Program Files\\Manuf",
                                      L"Manufacturing", L"manuf.bmp", L"manuf.exe");
  }
  void Answer(std::vector<Choice> choices) {
    for (const Choice choice : choices) environment_.AnswerChoice([=] { return choice; });
  }

  const std::wstring entry_ = L"Manufacturing,C:\\Progra~1,manuf.bmp,manuf.exe";
  testing::ScriptedEnvironment environment_;
  General general_{environment_};
};

TEST_F(AccountsProgramTest, AnEntryReplacesThoseOfTheSameHost) {
  const std::wstring old = L"Old,C:\\OLD,old.bmp,MANUF.EXE";
  const std::wstring other = L"Other,C:\\OTHER,other.bmp,other.exe";
  // The buffer holds 254 characters.
  const std::wstring longest = std::wstring(245, L'x') + L"manuf.exe";
  const Texts usual = {L"manuf.exe"};
  const Texts both = {L"other.exe", L"manuf.exe"};
  Texts fifty(50, other);
  Texts fifty_one = fifty;
  fifty_one.push_back(entry_);
  fifty_one.push_back(L"");
  const struct {
    const char* name;
    Texts before;
    Texts check_items;
    Texts after;
    std::int32_t lower_bound = 0;
  } cases[] = {
      {"no section", {}, usual, {entry_, L""}},
      {"none matches", {other, other}, usual, {other, other, entry_, L""}},
      {"one matches", {other, old}, usual, {other, entry_, L""}},
      {"several match", {old, other, old, old}, {L" manuf.EXE "}, {entry_, other, L"", L""}},
      {"blank items match nothing", {other}, {L"", L"  "}, {other, entry_, L""}},
      {"any item matches", {other, old}, {L"z", L"OTHER.exe"}, {entry_, old, L""}},
      {"the list ends at an empty entry", {L"", old}, usual, {entry_, old}},
      {"no items", {old}, {}, {old, entry_}},
      {"items below index 0", {other, old}, both, {other, entry_}, -1},
      {"items from index 1 on", {other, old}, both, {entry_, L""}, 1},
      {"fifty", fifty, usual, fifty_one},
      {"fifty and our own", fifty_one, usual, fifty_one},
      {"the longest", {longest}, usual, {entry_}},
      {"one of 255 characters", {L"x" + longest}, usual, {(L"x" + longest).substr(0, 254), entry_}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    machine().ini_files = {};
    Fill(c.before);
    EXPECT_TRUE(Add(c.check_items, c.lower_bound));
    EXPECT_EQ(Entries(c.after.size()), c.after);
  }
}

TEST_F(AccountsProgramTest, AStepThatFailsIsPutToTheUser) {
  const std::wstring old = L"Old,C:\\OLD,old.bmp,manuf.exe";
  Fill({old});
  machine().ini_files_read_only = true;
  EXPECT_FALSE(Add());
  EXPECT_EQ(environment_.TakeMessages().size(), 1u);

  // Once for clearing the old entry, and the list goes on; once for the new one.
  Answer({Choice::kRetry, Choice::kIgnore, Choice::kIgnore});
  EXPECT_TRUE(Add());
  EXPECT_EQ(environment_.TakeMessages().size(), 3u);
  EXPECT_EQ(Entries(2), (Texts{old, L""}));
  environment_.AnswerChoice([&] {
    machine().ini_files_read_only = false;
    return Choice::kRetry;
  });
  EXPECT_TRUE(Add());
  EXPECT_EQ(environment_.TakeMessages().size(), 1u);
  EXPECT_EQ(Entries(1), Texts{entry_});
}

TEST_F(AccountsProgramTest, AListThatCannotBeReadKeepsItsEntries) {
  simulator::FaultPlan plan;
  environment_.Obey(plan);
  for (std::int64_t n = 1; n <= 8; ++n) {
    Fill({L"Other,C:\\OTHER,other.bmp,other.exe", L""});
    plan.FailFrom(n, false);
    Answer({Choice::kIgnore});
    Add();
    EXPECT_TRUE(Entries(1)[0].starts_with(L"Other")) << n;
  }
}

TEST_F(AccountsProgramTest, APathWithoutAShortFormIsWrittenAsItIs) {
  machine().has_short_paths = false;
  EXPECT_TRUE(Add());
  EXPECT_EQ(Entries(1), Texts{L"Manufacturing,C:\\Program Files\\Manuf,manuf.bmp,manuf.exe"});
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
}

TEST_F(AccountsProgramTest, ReadsTheSettingsOfTheKeys) {
  const struct {
    const wchar_t* value;
    bool hides;
    const wchar_t* program;
  } cases[] = {{L" 1 ", true, L"1"}, {L"10", false, L"10"}, {L"   ", false, L"CONTROL.EXE"}};
  EXPECT_FALSE(general_.IsF12Hide());
  EXPECT_EQ(general_.GetF11Program(), L"CONTROL.EXE");
  for (const auto& c : cases) {
    machine().ini_files.Write(kFile, L"ARDN", L"HideOnF12", c.value);
    machine().ini_files.Write(kFile, L"ARDN", L"F11", c.value);
    EXPECT_EQ(general_.IsF12Hide(), c.hides) << c.value;
    EXPECT_EQ(general_.GetF11Program(), c.program) << c.value;
  }
}

TEST_F(AccountsProgramTest, DataWhoseQueueCannotBeOpenedIsExclusive) {
  machine().held_files = {L"C:\\Held\\queue.dta", L"\\queue.dta", L"\\\\s\\d \\queue.dta"};
  for (const auto& [path, exclusive] :
       {std::pair(L"C:\\Data", false), {L" C:\\Held\\", true}, {L"", true}, {L"\\\\s\\d ", true}}) {
    EXPECT_EQ(general_.IsArdExclusive(path), exclusive) << path;
  }
}

TEST_F(AccountsProgramTest, TheShortcutStartsTheInstalledLauncher) {
  const auto create = [&](std::int16_t version, const wchar_t* accounts = L"C:\\Acc\\",
                          const wchar_t* host = L"C:\\Host\\") {
    return general_.CreateAccountsShortcut(77, accounts, host, version);
  };
  machine().settings = {{L"LauncherFolder", L"Ard\\Launch"},
                        {L"LauncherFile", L"go.exe"},
                        {L"LauncherName", L"Ardenic Desktop"},
                        {L"Installation13", L"{13}"}};
  std::string traced;
  environment_.trace().Attach([&](std::string_view line) { traced += line; });
  EXPECT_EQ(create(12), L"") << "it is not installed";
  EXPECT_NE(traced.find("\tThe machine has no setting Installation12."), traced.npos) << traced;
  environment_.trace().Attach(nullptr);
  EXPECT_TRUE(machine().shortcuts.empty());
  machine().settings[L"Installation12"] = L"{12}";
  for (const auto& [version, arguments] :
       {std::pair(12, L" {12}"), std::pair(13, L" {13}"), std::pair(14, L" {13}")}) {
    EXPECT_EQ(create(static_cast<std::int16_t>(version)), L"C:\\Host\\RunAccounts.lnk");
    const Shortcut& made = machine().shortcuts.back();
    EXPECT_EQ(
        (Texts{made.file, made.target, made.arguments, made.working_folder, made.description}),
        (Texts{L"C:\\Host\\RunAccounts.lnk", L"C:\\Common77\\Ard\\Launch\\go.exe", arguments,
               L"C:\\Acc", L"Ardenic Desktop"}));
  }
  EXPECT_EQ(create(12, L"C:\\Acc\\\\", L"D:"), L"D:\\RunAccounts.lnk");
  EXPECT_EQ(machine().shortcuts.back().working_folder, L"C:\\Acc\\");
}

}  // namespace
}  // namespace ard::settings
