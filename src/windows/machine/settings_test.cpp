#include "windows/machine/settings.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "frame/error.h"

namespace ard::windows {
namespace {

constexpr wchar_t kApplication[] = L"ArdObjects settings test";
constexpr wchar_t kKey[] = L"Software\\VB and VBA Program Settings\\ArdObjects settings test";

class SettingsTest : public ::testing::Test {
 protected:
  void SetUp() override { TearDown(); }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kKey); }

  // Writes a value of any type below the application's key.
  static void Write(const wchar_t* name, DWORD type, const void* data, DWORD bytes) {
    const std::wstring key = std::wstring(kKey) + L"\\Options\\Search";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), name, type, data, bytes), 0);
  }
};

TEST_F(SettingsTest, WhatIsSavedIsFoundByAnyWayOfWritingTheSection) {
  SaveUserSetting(kApplication, L"\\Options\\Search\\", L"Tab", L"%OS% \u00e9");
  SaveUserSetting(kApplication, L"", L"Tab", L"of the application");
  SaveUserSetting(L"", std::wstring(kApplication) + L"\\Options", L"Tab", L"");
  struct Case {
    const wchar_t* application;
    const wchar_t* section;
    const wchar_t* text;
  };
  const Case cases[] = {
      {kApplication, L"Options\\Search", L"%OS% \u00e9"},
      {kApplication, L"\\options\\SEARCH\\", L"%OS% \u00e9"},
      {kApplication, L"", L"of the application"},
      {kApplication, L"\\", L"of the application"},
      {kApplication, L"Options", L""},
      {kApplication, L"Options\\Other", L"otherwise"},
      {L"ArdObjects other test", L"Options\\Search", L"otherwise"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetUserSetting(c.application, c.section, L"Tab", L"otherwise"), c.text) << c.section;
  }
  EXPECT_EQ(GetUserSetting(kApplication, L"Options\\Search", L"Field", L"1"), L"1");
}

TEST_F(SettingsTest, OnlyTextCounts) {
  const DWORD number = 2;
  Write(L"Number", REG_DWORD, &number, sizeof(number));
  const wchar_t with_variable[] = L"<%OS%>";
  Write(L"Expanded", REG_EXPAND_SZ, with_variable, sizeof(with_variable));
  // Some programs leave out the zero at the end.
  Write(L"Unended", REG_SZ, with_variable, 2);
  EXPECT_EQ(GetUserSetting(kApplication, L"Options\\Search", L"Number", L"none"), L"none");
  EXPECT_EQ(GetUserSetting(kApplication, L"Options\\Search", L"Expanded", L""), L"<Windows_NT>");
  EXPECT_EQ(GetUserSetting(kApplication, L"Options\\Search", L"Unended", L""), L"<");
}

TEST_F(SettingsTest, WhatTheSystemRefusesIsAnError) {
  const std::wstring too_long(300, L'k');  // a key's name has at most 255 characters
  EXPECT_THROW(SaveUserSetting(kApplication, too_long, L"Tab", L"1"), Error);
}

}  // namespace
}  // namespace ard::windows
