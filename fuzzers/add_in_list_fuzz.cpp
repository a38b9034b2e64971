// The entry in the accounts program's add-in list, against a plain statement of what it does.
#include <algorithm>
#include <vector>

#include "fuzzers/support_fuzz.h"
#include "settings/general.h"
#include "simulator/fault_plan.h"
#include "testing/scripted_environment.h"

namespace ard::fuzz {
namespace {

using Texts = std::vector<std::wstring>;

constexpr std::wstring_view kAlphabet = L"abAB ,.\u00E9\u00C9";

std::wstring Folded(std::wstring text) {
  for (wchar_t& c : text) c = c == L'A' ? L'a' : c == L'B' ? L'b' : c == L'\u00C9' ? L'\u00E9' : c;
  return text;
}

// A value as it is read.
std::wstring Read(const std::wstring& value) {
  return std::wstring(Trimmed(value).substr(0, Environment::kIniValueLength));
}

bool Matches(const std::wstring& value, const Texts& items) {
  return std::any_of(items.begin(), items.end(), [&](const std::wstring& item) {
    const std::wstring part(Trimmed(item));
    return !part.empty() && Folded(value).find(Folded(part)) != value.npos;
  });
}

// Up to the first empty entry, those that match are emptied; the first empty one then is the new.
Texts Registered(Texts list, const Texts& items, const std::wstring& entry) {
  list.emplace_back();
  const auto end = std::find(list.begin(), list.end(), L"");
  std::for_each(list.begin(), end, [&](auto& value) {
    if (Matches(value, items)) value.clear();
  });
  *std::find(list.begin(), list.end(), L"") = Read(entry);
  list.emplace_back();
  return list;
}

Texts AnyTexts(Input& input, int most, std::size_t longest) {
  Texts texts(static_cast<std::size_t>(input.UpTo(most)));
  for (std::wstring& text : texts) text = input.Text(longest, kAlphabet);
  return texts;
}

void Check(Input& input) {
  testing::ScriptedEnvironment environment;
  settings::General general(environment);
  simulator::IniFiles& files = environment.machine().ini_files;
  const auto key = [](std::size_t number) { return L"AddIn" + std::to_wstring(number); };
  constexpr const wchar_t* kFile = L"veltrix.ini";
  constexpr const wchar_t* kSection = L"CorloAddIns";

  Texts list = AnyTexts(input, 6, 12);
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (input.OneIn(10)) list[i].insert(0, 250, L'x');
    files.Write(kFile, kSection, key(i + 1), list[i]);
    list[i] = Read(list[i]);
  }
  files.Write(kFile, kSection, key(0), L"other");
  files.Write(kFile, L"ARDN", key(1), L"other");

  Texts items = AnyTexts(input, 4, 4);
  const int lower_bound = input.ConsumeIntegralInRange(-2, 2);
  const auto below = std::min<std::ptrdiff_t>(std::max(-lower_bound, 0), std::ssize(items));
  const Texts counted(items.begin() + below, items.end());
  const std::wstring path = input.Text(12, kAlphabet);
  const std::wstring exe = input.Text(12, kAlphabet);

  // At most one operation fails; what the user says to that. The first asks for the short path, and
  // the user for nothing.
  simulator::FaultPlan faults;
  const int failing = input.UpTo(40);
  faults.FailFrom(failing, false);
  const std::wstring written = failing == 1 ? path : path.substr(0, 9) + L"~1";
  const std::wstring entry = L"Host," + written + L",host.bmp," + exe;
  environment.Obey(faults);
  const auto choice = static_cast<Choice>(input.UpTo(2));
  environment.AnswerChoice([=] { return choice; });
  const bool done =
      general.AddEntryToIniFile({lower_bound, items}, path, L"Host", L"host.bmp", exe);
  const bool failed = faults.failed() > 0 && failing != 1;

  Require(environment.messages().size() == (failed ? 1 : 0), "a failure is told, and once");
  Require(done != (failed && choice == Choice::kAbort), "done unless aborted");
  Require(files.Read(kFile, kSection, key(0)) == L"other" &&
              files.Read(kFile, L"ARDN", key(1)) == L"other",
          "other keys stay");
  const Texts expected = Registered(list, counted, entry);
  list.resize(expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const std::wstring value = files.Read(kFile, kSection, key(i + 1));
    if (!failed || choice == Choice::kRetry) {
      Require(value == expected[i], "the list is as stated", value, expected[i]);
    } else {
      const bool is_free = list[i].empty() || Matches(list[i], counted);
      Require(value == list[i] || (is_free && (value.empty() || value.starts_with(L"Host,"))),
              "a step that is left out loses no entry", value, list[i]);
    }
  }
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ard::fuzz::Input input(data, size);
  ard::fuzz::Check(input);
  return 0;
}
