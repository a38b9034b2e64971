// A list dialog over accounts that are made up as they are asked for, and its window.
#ifndef ARD_TESTS_WINDOWS_LEDGER_DIALOG_H_
#define ARD_TESTS_WINDOWS_LEDGER_DIALOG_H_

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "dialogs/select_dialog.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_test.h"

namespace ard::windows::testing {

inline constexpr wchar_t kTitle[] = L"Select Customer";
inline constexpr std::int32_t kMany = 10'000'000;
inline constexpr int kEveryRed = 4;
inline constexpr int kEveryDeleted = 7;

// Accounts "1", "2" ... made up as they are asked for. Position 4, 8 ... is red, 7, 14 ... deleted.
class Ledger : public dialogs::RowSource {
 public:
  int pages = 0;
  std::int32_t first = 0;
  std::int32_t last = 0;
  int repeated = 0;  // the very page that had been read before
  bool fails = false;
  bool has_gaps = true;  // of deleted accounts

  void LoadPage(std::int32_t from, std::int32_t to, std::vector<dialogs::Row>& rows) override {
    ++pages;
    if (from == first && to == last) ++repeated;
    first = last = 0;
    if (fails) throw std::bad_alloc();
    first = from;
    last = to;
    for (std::int32_t i = from; i <= to; ++i) {
      if (has_gaps && i % kEveryDeleted == 0) continue;
      // The engine pads its texts.
      rows.push_back({i, std::to_wstring(i) + L"   \tWWWW & Sons       ",
                      i % kEveryRed == 0 ? dialogs::kRed : dialogs::kDefaultColor});
    }
  }
};

class LedgerDialog : public Ledger, public dialogs::SelectDialog {
 public:
  explicit LedgerDialog(std::int32_t rows) : SelectDialog(L"frmTest", kTitle, *this) {
    list().AddColumn(L"A/C", 15);
    list().AddColumn(L"Name", 60);
    list().SetRowCount(rows);
    list().SelectItem(1);
  }

  std::wstring typed;

 protected:
  // A digit d goes to account d00.
  void TypeAhead(wchar_t key) override {
    typed += key;
    if (key >= L'1' && key <= L'9') list().SelectItem((key - L'0') * 100);
  }
};

class LedgerDialogTest : public WindowTest {
 protected:
  template <class Act>
  void Show(LedgerDialog& dialog, Act act) {
    WindowTest::Show(kTitle, dialog, [&](HWND window) { act(View(window)); });
    EXPECT_EQ(dialog.repeated, 0);
  }
  // In circumstances of its own: the host is left as it is.
  void ShowAsIs(LedgerDialog& dialog, const std::function<void()>& act) {
    host_.Drive(
        kTitle, [&] { environment_.Show(dialog); }, [&](HWND) { act(); });
    EXPECT_FALSE(dialog.visible());
  }
};

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_LEDGER_DIALOG_H_
