#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/general.h"
#include "testing/scripted_environment.h"

namespace ard::settings {
namespace {

using Texts = std::vector<std::wstring>;

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
  Texts Entries(int count) {
    Texts entries;
    for (int i = 1; i <= count; ++i) {
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
  const struct {
    const char* name;
    Texts before;
    Texts check_items;
    Texts after;
  } cases[] = {
      {"no section", {}, {L"manuf.exe"}, {entry_, L""}},
      {"none matches", {other, other}, {L"manuf.exe"}, {other, other, entry_, L""}},
      {"one matches", {other, old}, {L"manuf.exe"}, {other, entry_, L""}},
      {"several match", {old, other, old, old}, {L" manuf.EXE "}, {entry_, other, L"", L""}},
      {"blank items match nothing", {other}, {L"", L"  "}, {other, entry_, L""}},
      {"any item matches", {other, old}, {L"z", L"OTHER.exe"}, {entry_, old, L""}},
      {"the list ends at an empty entry", {L"", old}, {L"manuf.exe"}, {entry_, old}},
      {"no items", {old}, {}, {old, entry_}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    machine().ini_files = {};
    Fill(c.before);
    EXPECT_TRUE(Add(c.check_items));
    EXPECT_EQ(Entries(static_cast<int>(c.after.size())), c.after);
  }
  // Items below index 0 do not count.
  machine().ini_files = {};
  Fill({other, old});
  EXPECT_TRUE(Add({L"other.exe", L"manuf.exe"}, /*lower_bound=*/-1));
  EXPECT_EQ(Entries(2), (Texts{other, entry_}));
  EXPECT_TRUE(Add({L"manuf.exe", L"other.exe"}, /*lower_bound=*/1));
  EXPECT_EQ(Entries(2), (Texts{entry_, L""}));

  machine().ini_files = {};
  Fill(Texts(50, other));
  EXPECT_TRUE(Add());
  EXPECT_EQ(Entries(51).back(), entry_);
  EXPECT_TRUE(Add()) << "again";
  EXPECT_EQ(Entries(52)[50], entry_);
  EXPECT_EQ(Entries(52)[51], L"");
}

TEST_F(AccountsProgramTest, OnlyWhatTheBufferHoldsIsLookedAt) {
  for (const auto& [length, matches] : {std::pair(254, true), std::pair(255, false)}) {
    machine().ini_files = {};
    Fill({std::wstring(static_cast<std::size_t>(length) - 9, L'x') + L"manuf.exe"});
    EXPECT_TRUE(Add());
    EXPECT_EQ(Entries(1)[0] == entry_, matches) << length;
  }
}

TEST_F(AccountsProgramTest, AStepThatFailsIsPutToTheUser) {
  Fill({L"Old,C:\\OLD,old.bmp,manuf.exe"});
  machine().ini_files_read_only = true;
  EXPECT_FALSE(Add());
  EXPECT_EQ(environment_.messages(),
            (std::vector<testing::Message>{
                {Icon::kExclamation,
                 L"An error occurred whilst making an entry to the 'veltrix.ini' file.  The error "
                 L"reported is:\r\n\r\nError Number: 5\r\nDescription: Access denied.\r\n\r\nWhat "
                 L"do you want to do?",
                 L"Manufacturing"}}));

  // Once for clearing the old entry, and the list goes on; once for the new one.
  Answer({Choice::kRetry, Choice::kIgnore, Choice::kIgnore});
  EXPECT_TRUE(Add());
  EXPECT_EQ(environment_.messages().size(), 4u);
  EXPECT_EQ(Entries(2), (Texts{L"Old,C:\\OLD,old.bmp,manuf.exe", L""}));

  Answer({Choice::kIgnore, Choice::kAbort});
  EXPECT_FALSE(Add());
  EXPECT_EQ(environment_.messages().size(), 6u);

  environment_.AnswerChoice([&] {
    machine().ini_files_read_only = false;
    return Choice::kRetry;
  });
  EXPECT_TRUE(Add());
  EXPECT_EQ(environment_.messages().size(), 7u);
  EXPECT_EQ(Entries(1), Texts{entry_});
}

TEST_F(AccountsProgramTest, ReadsTheSettingsOfTheKeys) {
  const struct {
    const wchar_t* value;
    bool hides;
    const wchar_t* program;
  } cases[] = {{L"", false, L"CONTROL.EXE"},
               {L" 1 ", true, L"1"},
               {L"Yes", false, L"Yes"},
               {L"10", false, L"10"},
               {L"   ", false, L"CONTROL.EXE"}};
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
  const struct {
    const wchar_t* path;
    bool exclusive;
  } cases[] = {{L"C:\\Data", false}, {L"C:\\Held", true}, {L"C:\\Held\\", true},
               {L" C:\\Held", true}, {L"", true},         {L"\\\\s\\d ", true}};
  for (const auto& c : cases) EXPECT_EQ(general_.IsArdExclusive(c.path), c.exclusive) << c.path;
}

TEST_F(AccountsProgramTest, TheShortcutStartsTheInstalledLauncher) {
  const auto create = [&](std::int16_t version, const wchar_t* accounts = L"C:\\Acc\\",
                          const wchar_t* host = L"C:\\Host\\") {
    return general_.CreateAccountsShortcut(77, accounts, host, version);
  };
  EXPECT_EQ(create(12), L"") << "nothing is installed";
  machine().settings = {{L"LauncherFolder", L"Ard\\Launch"},
                        {L"LauncherFile", L"go.exe"},
                        {L"LauncherName", L"Ardenic Desktop"},
                        {L"Installation13", L"{13}"}};
  EXPECT_EQ(create(12), L"");
  EXPECT_TRUE(machine().shortcuts.empty());
  machine().settings[L"Installation12"] = L"{12}";
  const std::pair<std::int16_t, const wchar_t*> versions[] = {
      {std::int16_t{12}, L" {12}"}, {std::int16_t{13}, L" {13}"}, {std::int16_t{14}, L" {13}"}};
  for (const auto& [version, arguments] : versions) {
    EXPECT_EQ(create(version), L"C:\\Host\\RunAccounts.lnk");
    const Shortcut& shortcut = machine().shortcuts.back();
    EXPECT_EQ(shortcut.file, L"C:\\Host\\RunAccounts.lnk");
    EXPECT_EQ(shortcut.target, L"C:\\Common77\\Ard\\Launch\\go.exe");
    EXPECT_EQ(shortcut.arguments, arguments);
    EXPECT_EQ(shortcut.working_folder, L"C:\\Acc");
    EXPECT_EQ(shortcut.description, L"Ardenic Desktop");
  }
  EXPECT_EQ(create(12, L"C:\\Acc\\\\", L"D:"), L"D:\\RunAccounts.lnk");
  EXPECT_EQ(machine().shortcuts.back().working_folder, L"C:\\Acc\\");
}

}  // namespace
}  // namespace ard::settings
