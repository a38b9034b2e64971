// The programs of hosts: their argument is the folder of the demo company.
#include "tests/windows/host.h"
// After windows.h.
#include <gtest/gtest.h>
#include <ole2.h>

int wmain(int count, wchar_t** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  ard::windows::testing::company_folder = arguments[1];
  OleInitialize(nullptr);
  const int result = RUN_ALL_TESTS();
  OleUninitialize();
  return result;
}
