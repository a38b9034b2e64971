#include <algorithm>
#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "settings/general.h"

namespace ard::settings {
namespace {

constexpr std::wstring_view kIniFile = L"veltrix.ini";
constexpr std::wstring_view kAddInSection = L"CorloAddIns";
constexpr std::wstring_view kKeySection = L"ARDN";
constexpr std::wstring_view kHideKey = L"HideOnF12";
constexpr std::wstring_view kProgramKey = L"F11";

// Of who is logged on to the accounts data.
constexpr std::wstring_view kRegister = L"queue.dta";

constexpr std::wstring_view kShortcutFile = L"\\RunAccounts.lnk";

// The machine's settings that describe the accounts product's desktop launcher.
constexpr std::wstring_view kLauncherFolder = L"LauncherFolder";
constexpr std::wstring_view kLauncherFile = L"LauncherFile";
constexpr std::wstring_view kLauncherName = L"LauncherName";
constexpr std::wstring_view kInstallation12 = L"Installation12";
constexpr std::wstring_view kInstallation13 = L"Installation13";

std::wstring ErrorText(const Error& error) {
  return L"An error occurred whilst making an entry to the 'veltrix.ini' file.  "
         L"The error reported is:\r\n\r\nError Number: " +
         std::to_wstring(error.number()) + L"\r\nDescription: " + error.text() +
         L"\r\n\r\nWhat do you want to do?";
}

bool ContainsIgnoreCase(std::wstring_view text, std::wstring_view part) {
  return UpperCase(text).find(UpperCase(part)) != std::wstring::npos;
}

// Makes an entry of the add-in list, step by step; each step that fails is put to the user.
class AddInList {
 public:
  explicit AddInList(const Context& context) : context_(context) {}

  // False when the user has aborted.
  bool Register(const TextArray& check_items, std::wstring_view long_path,
                std::wstring_view narrative, std::wstring_view bitmap, std::wstring_view exe_name) {
    // A path that has no short form, since it does not exist yet, is written as it is.
    std::wstring short_path(long_path);
    Attempt(context_.trace(), {L"Environment", L"ShortPath", long_path},
            [&] { short_path = machine().ShortPath(long_path); });
    std::wstring entry(narrative);
    for (const std::wstring_view part : {std::wstring_view(short_path), bitmap, exe_name}) {
      entry.append(L",").append(part);
    }
    ForEachEntry([&](int number, std::wstring_view value) {
      const std::int64_t last = check_items.upper_bound();
      for (auto i = std::max<std::int64_t>(check_items.lower_bound(), 0); i <= last; ++i) {
        const std::wstring_view part = Trimmed(check_items.Get(i));
        if (!part.empty() && ContainsIgnoreCase(value, part)) Write(number, L"");
      }
    });
    const int free = ForEachEntry([](int, std::wstring_view) {});
    if (free > 0) Write(free, entry);
    return !aborted_;
  }

 private:
  Environment& machine() const { return context_.environment; }

  // Calls `action(number, value)` for each entry up to the first that is missing or empty, and
  // gives that one's number; 0 when the list could not be read to its end.
  template <class Action>
  int ForEachEntry(Action&& action) {
    for (int number = 1;; ++number) {
      std::wstring value;
      if (!Try(L"ReadIni",
               [&] { value = machine().ReadIni(kIniFile, kAddInSection, Key(number)); })) {
        return 0;
      }
      if (value.empty()) return number;
      action(number, value);
    }
  }

  void Write(int number, std::wstring_view value) {
    Try(L"WriteIni", [&] { machine().WriteIni(kIniFile, kAddInSection, Key(number), value); });
  }

  static std::wstring Key(int number) { return L"AddIn" + std::to_wstring(number); }

  // Runs a step until it has succeeded, or the user does not want it retried. Nothing is done any
  // more once they have aborted.
  template <class Action>
  bool Try(std::wstring_view operation, Action&& action) {
    while (!aborted_) {
      try {
        action();
        return true;
      } catch (const Error& error) {
        context_.trace().SkippedByException({L"Environment", operation, kIniFile});
        const Choice choice = Ask(ErrorText(error));
        aborted_ = choice == Choice::kAbort;
        if (choice != Choice::kRetry) return false;
      }
    }
    return false;
  }

  // A question that cannot be put ends it all.
  Choice Ask(const std::wstring& text) const {
    Choice choice = Choice::kAbort;
    if (Attempt(context_.trace(), {L"Environment", L"AskWhatToDo"},
                [&] { choice = machine().AskWhatToDo(text, context_.app_name); })) {
      context_.trace().Shown(context_.app_name, text);
    }
    return choice;
  }

  const Context& context_;
  bool aborted_ = false;
};

std::wstring KeySetting(const Context& context, std::wstring_view key) {
  std::wstring value;
  Attempt(context.trace(), {L"Environment", L"ReadIni", key},
          [&] { value = context.environment.ReadIni(kIniFile, kKeySection, key); });
  return value;
}

std::wstring_view WithoutBackslash(std::wstring_view folder) {
  if (folder.ends_with(L'\\')) folder.remove_suffix(1);
  return folder;
}

std::wstring MachineSetting(Environment& machine, std::wstring_view name) {
  std::wstring value = machine.GetMachineSetting(name);
  if (value.empty()) {
    throw Error(kErrorFailed, L"The machine has no setting " + std::wstring(name) + L".");
  }
  return value;
}

}  // namespace

bool General::AddEntryToIniFile(const TextArray& check_items, std::wstring_view long_path,
                                std::wstring_view narrative, std::wstring_view bitmap,
                                std::wstring_view exe_name) const noexcept {
  return Call<bool>(
      L"AddEntryToIniFile", {check_items, long_path, narrative, bitmap, exe_name}, [&](bool& done) {
        done = AddInList(context()).Register(check_items, long_path, narrative, bitmap, exe_name);
      });
}

bool General::IsF12Hide() const noexcept {
  return Call<bool>(L"IsF12Hide", [&](bool& hide) {
    hide = KeySetting(context(), kHideKey) == L"1";
    if (!hide) NoteDecision(L"IsF12Hide", L"False: HideOnF12 in veltrix.ini is not 1.");
  });
}

std::wstring General::GetF11Program() const noexcept {
  return Call<std::wstring>(L"GetF11Program", [&](std::wstring& program) {
    program = KeySetting(context(), kProgramKey);
    if (program.empty()) program = L"CONTROL.EXE";
  });
}

bool General::IsArdExclusive(std::wstring_view path) const noexcept {
  return Call<bool>(L"IsArdExclusive", {path}, [&](bool& exclusive) {
    exclusive = true;
    std::wstring file;
    file.reserve(path.size() + 1 + kRegister.size());
    file = path;
    if (!file.ends_with(L'\\')) file += L'\\';
    Trim(file);
    file += kRegister;
    exclusive = !Attempt(context().trace(), {L"Environment", L"TryToRead", file},
                         [&] { context().environment.TryToRead(file); });
  });
}

std::wstring General::CreateAccountsShortcut(std::int32_t owner, std::wstring_view accts_prog_path,
                                             std::wstring_view manuf_prog_path,
                                             std::int16_t accounts_version) const noexcept {
  return Call<std::wstring>(
      L"CreateAccountsShortcut", {owner, accts_prog_path, manuf_prog_path, accounts_version},
      [&](std::wstring& file) {
        Environment& machine = context().environment;
        Shortcut shortcut;
        shortcut.file = std::wstring(WithoutBackslash(manuf_prog_path)).append(kShortcutFile);
        shortcut.arguments =
            L" " +
            MachineSetting(machine, accounts_version == 12 ? kInstallation12 : kInstallation13);
        shortcut.description = MachineSetting(machine, kLauncherName);
        shortcut.target = machine.CommonFilesFolder(owner) + L"\\" +
                          MachineSetting(machine, kLauncherFolder) + L"\\" +
                          MachineSetting(machine, kLauncherFile);
        shortcut.working_folder = WithoutBackslash(accts_prog_path);
        machine.CreateShortcut(shortcut);
        file = std::move(shortcut.file);
      });
}

}  // namespace ard::settings
