// The entry in the accounts program's add-in list, against a plain statement of what it does.
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "fuzzers/support_fuzz.h"
#include "settings/general.h"
#include "simulator/fault_plan.h"
#include "testing/scripted_environment.h"

namespace ard::fuzz {
namespace {

using Texts = std::vector<std::wstring>;

constexpr std::wstring_view kAlphabet = L"abAB ,.\u00E9\u00C9";
constexpr const wchar_t* kFile = L"veltrix.ini";

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

// The list up to its first empty entry, in which the entries of the items are emptied; the first
// empty one of all then is the new one.
void Register(Texts& list, const Texts& items, const std::wstring& entry) {
  list.emplace_back();
  for (std::wstring& value : list) {
    if (value.empty()) break;
    if (Matches(value, items)) value.clear();
  }
  *std::find(list.begin(), list.end(), std::wstring()) = Read(entry);
}

class Fixture {
 public:
  explicit Fixture(Input& input) : input_(input) {
    general_.context().app_name = L"Manufacturing";
    environment_.Obey(faults_);
    for (int count = input.UpTo(6); count > 0; --count) {
      std::wstring value = input.Text(12, kAlphabet);
      if (input.ConsumeProbability<float>() < 0.1F) value.insert(0, 250, L'x');
      Write(L"CorloAddIns", L"AddIn" + std::to_wstring(list_.size() + 1), value);
      list_.push_back(Read(value));
    }
    Write(L"ARDN", L"AddIn1", L"other");
    Write(L"CorloAddIns", L"AddIn", L"other");
    Write(L"CorloAddIns", L"AddIn0", L"other");
  }

  void Run() {
    Texts items;
    for (int count = input_.UpTo(4); count > 0; --count) {
      items.push_back(input_.Text(4, kAlphabet));
    }
    const auto lower_bound = input_.ConsumeIntegralInRange<std::int32_t>(-2, 2);
    const auto below = static_cast<std::size_t>(std::max(-lower_bound, 0));
    const std::wstring path = input_.Text(12, kAlphabet);
    const std::wstring exe = input_.Text(12, kAlphabet);
    const std::wstring entry = L"Host," + path.substr(0, 9) + L"~1,host.bmp," + exe;
    Texts expected = list_;
    const Texts counted(items.begin() + static_cast<int>(std::min(below, items.size())),
                        items.end());
    Register(expected, counted, entry);

    // At most one operation fails; what the user says to that.
    const auto fails_at = input_.UpTo<std::int64_t>(40);
    const auto choice = static_cast<Choice>(input_.UpTo(2));
    environment_.AnswerChoice([=] { return choice; });
    faults_.FailFrom(fails_at, false);
    const bool done =
        general_.AddEntryToIniFile({lower_bound, items}, path, L"Host", L"host.bmp", exe);
    const bool failed = faults_.failed() > 0;
    faults_.Reset();

    Require(environment_.messages().size() == (failed ? 1 : 0), "a failure is told, and once");
    Require(done != (failed && choice == Choice::kAbort), "done unless aborted");
    for (const auto& [key, value] : others_) {
      Require(environment_.ReadIni(kFile, key.first, key.second) == value, "other keys stay",
              value);
    }
    if (!failed || choice == Choice::kRetry) {
      for (std::size_t i = 0; i <= expected.size(); ++i) {
        const std::wstring value = Entry(i + 1);
        Require(value == (i < expected.size() ? expected[i] : L""), "the list is as stated", i,
                value);
      }
    } else {
      for (std::size_t i = 0; i < list_.size(); ++i) {
        const std::wstring value = Entry(i + 1);
        const bool is_free = list_[i].empty() || Matches(list_[i], counted);
        Require(value == list_[i] || (is_free && (value.empty() || value.starts_with(L"Host,"))),
                "a step that is left out loses no entry", i, value);
      }
    }
  }

 private:
  void Write(const std::wstring& section, const std::wstring& key, const std::wstring& value) {
    environment_.machine().ini_files.Write(kFile, section, key, value);
    if (value == L"other") others_[{section, key}] = value;
  }
  std::wstring Entry(std::size_t number) {
    return environment_.ReadIni(kFile, L"CorloAddIns", L"AddIn" + std::to_wstring(number));
  }

  Input& input_;
  simulator::FaultPlan faults_;
  testing::ScriptedEnvironment environment_;
  settings::General general_{environment_};
  Texts list_;
  std::map<std::pair<std::wstring, std::wstring>, std::wstring> others_;
};

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ard::fuzz::Input input(data, size);
  ard::fuzz::Fixture(input).Run();
  return 0;
}
