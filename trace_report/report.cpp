#include "trace_report/report.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <system_error>
#include <utility>

namespace ard::trace_report {
namespace {

constexpr std::size_t kSlowest = 10;
// How much is shown of a line that is no entry.
constexpr std::size_t kShown = 200;

// The kinds of entries, and how many cells each has of its own.
constexpr struct {
  std::string_view name;
  std::size_t cells;
} kKinds[] = {{"call", 6}, {"skip", 3}, {"note", 2}, {"message", 2}, {"process", 1}};

std::vector<std::string_view> CellsOf(std::string_view line) {
  std::vector<std::string_view> cells;
  for (std::size_t tab; (tab = line.find('\t')) != line.npos; line.remove_prefix(tab + 1)) {
    cells.push_back(line.substr(0, tab));
  }
  cells.push_back(line);
  return cells;
}

// Whether `text` looks like `form`, where a 0 stands for any digit, hexadecimal ones included.
bool HasForm(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char f) {
    return f == '0' ? (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') : c == f;
  });
}

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// "12.5 us"
std::optional<double> DurationOf(std::string_view cell) {
  constexpr std::string_view kUnit = " us";
  if (!cell.ends_with(kUnit)) return std::nullopt;
  cell.remove_suffix(kUnit.size());
  double microseconds = 0;
  const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), microseconds);
  const bool is_whole = error == std::errc() && end == cell.data() + cell.size();
  if (!is_whole || !(microseconds >= 0)) return std::nullopt;
  return microseconds;
}

template <class... Parts>
std::string Joined(const Parts&... parts) {
  std::string text;
  (text.append(parts), ...);
  return text;
}

template <class... Arguments>
std::string Formatted(const char* format, Arguments... arguments) {
  char text[64];
  std::snprintf(text, sizeof text, format, arguments...);
  return text;
}

std::string Counted(std::size_t count, const char* what) {
  return Joined(std::to_string(count), " ", what, count == 1 ? "" : "s");
}

// The entries of a map by `weight` of their values, the heaviest first.
template <class Map, class Weight>
std::vector<std::pair<typename Map::key_type, typename Map::mapped_type>> Sorted(const Map& map,
                                                                                 Weight weight) {
  std::vector<std::pair<typename Map::key_type, typename Map::mapped_type>> entries(map.begin(),
                                                                                    map.end());
  std::stable_sort(entries.begin(), entries.end(), [&](const auto& a, const auto& b) {
    return weight(a.second) > weight(b.second);
  });
  return entries;
}

// How often, by what is printed of it.
using Counts = std::map<std::string, std::int64_t>;

void AddCounts(const Counts& counts, std::vector<std::string>& lines) {
  for (const auto& [what, count] : Sorted(counts, [](std::int64_t c) { return c; })) {
    lines.push_back(Formatted("%8lld  ", static_cast<long long>(count)) + what);
  }
}

// What a call is known by while it runs: its process and its own number.
std::string KeyOf(std::string_view process, std::string_view calls) {
  return Joined(process, " ", calls.substr(calls.rfind('/') + 1));
}

bool ClosesDialog(const Report::Told& told) {
  return told.kind == "message" || told.what.ends_with(".Show");
}

}  // namespace

std::optional<Entry> ParseEntry(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  Entry entry;
  entry.cells = CellsOf(line);
  if (entry.cells.size() < 5) return std::nullopt;
  entry.time = entry.cells[0];
  entry.process = entry.cells[1];
  entry.calls = entry.cells[2];
  entry.kind = entry.cells[3];
  entry.cells.erase(entry.cells.begin(), entry.cells.begin() + 4);
  const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                 [&](const auto& k) { return k.name == entry.kind; });
  if (!HasForm(entry.time, "0000-00-00T00:00:00.000Z") || !IsNumber(entry.process) ||
      entry.calls.find_first_not_of("0123456789/") != entry.calls.npos || entry.calls.empty() ||
      kind == std::end(kKinds) || entry.cells.size() != kind->cells) {
    return std::nullopt;
  }
  if (entry.kind == "skip" && !HasForm(entry.cells[1], "0x00000000")) return std::nullopt;
  if (entry.kind == "call") {
    const std::optional<double> microseconds = DurationOf(entry.cells[1]);
    if (!microseconds) return std::nullopt;
    entry.microseconds = *microseconds;
  }
  return entry;
}

std::string Printable(std::string_view text) {
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    // The second set of them is two bytes each.
    if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
      printable += Formatted("\\x%02X", next);
      ++i;
    } else if (byte < 0x20 || byte == 0x7F) {
      printable += Formatted("\\x%02X", byte);
    } else {
      printable += text[i];
    }
  }
  return printable;
}

void Report::Add(std::string_view line) {
  if (++lines_ == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
  if (const std::optional<Entry> entry = ParseEntry(line)) {
    ++entries_;
    AddEntry(*entry);
  } else {
    if (line.ends_with('\r')) line.remove_suffix(1);
    unread_.push_back(Joined("  line ", std::to_string(lines_), ": ",
                             Printable(line.substr(0, kShown)),
                             line.size() > kShown ? " ..." : ""));
  }
}

void Report::AddEntry(const Entry& entry) {
  const auto cell = [&](std::size_t i) { return Printable(entry.cells[i]); };
  if (entry.kind == "process") {
    processes_.push_back(Joined(entry.time, "  process ", entry.process, ": ", cell(0)));
    return;
  }
  Call& call = running_[KeyOf(entry.process, entry.calls)];
  call.time = entry.time;
  call.process = entry.process;
  call.calls = entry.calls;
  if (entry.kind == "call") {
    call.member = cell(0);
    call.microseconds = entry.microseconds;
    call.type = cell(2);
    call.outcome = cell(3);
    call.arguments = cell(4);
    call.answer = cell(5);
  } else {
    Told told = {std::string(entry.kind), cell(0), "", cell(entry.cells.size() - 1)};
    if (entry.kind == "skip") told.code = cell(1);
    if (ClosesDialog(told)) {
      // It has taken the time of the calls around it, too.
      for (std::string_view calls = entry.calls; !calls.empty();) {
        running_[KeyOf(entry.process, calls)].is_dialog = true;
        calls = calls.substr(0, std::min(calls.size(), calls.rfind('/') + 1));
        if (!calls.empty()) calls.remove_suffix(1);
      }
    }
    call.told.push_back(std::move(told));
    // Outside all calls, each is for itself.
    if (entry.calls != "0") return;
  }
  calls_.push_back(std::move(call));
  running_.erase(KeyOf(entry.process, entry.calls));
}

void Report::End() {
  for (auto& [key, call] : running_) {
    if (!call.told.empty()) calls_.push_back(std::move(call));
  }
  running_.clear();
}

void Report::AddGroups(std::string_view title, std::string_view kind,
                       std::vector<std::string>& lines) const {
  struct Group {
    const Call* first = nullptr;
    const Call* last = nullptr;
    const Call* example = nullptr;
    std::int64_t count = 0;
    bool is_neutral = false;
    Counts counts;
  };
  std::map<std::string, Group> groups;
  for (const Call& call : calls_) {
    for (const Told& told : call.told) {
      if (told.kind != kind || (kind == "note" && ClosesDialog(told))) continue;
      Group& group = groups[call.member];
      if (!group.first) group.first = group.example = &call;
      // One that came to nothing tells most.
      if (!group.is_neutral && call.outcome == "neutral") group.example = &call;
      group.last = &call;
      ++group.count;
      group.is_neutral |= call.outcome == "neutral";
      ++group.counts[Joined(told.what, "  ", told.code, told.code.empty() ? "" : " ", told.text)];
    }
  }
  if (!groups.empty()) lines.insert(lines.end(), {"", std::string(title)});
  const auto weight = [](const Group& group) { return std::pair(group.is_neutral, group.count); };
  for (const auto& [member, group] : Sorted(groups, weight)) {
    std::string line = member.empty() ? "(outside a call that has ended)" : member;
    const Call& example = *group.example;
    line += example.arguments;
    if (!example.answer.empty()) line += Joined(" = ", example.answer);
    if (group.is_neutral && example.answer.empty()) line += " (neutral answer)";
    line += Joined(", ", group.first->time);
    if (group.count > 1) line += Joined(" to ", group.last->time);
    lines.push_back(std::move(line));
    AddCounts(group.counts, lines);
  }
}

std::vector<std::string> Report::Findings() const {
  std::size_t ended = 0;
  std::map<std::string, std::size_t, std::less<>> told;
  for (const Call& call : calls_) {
    ended += call.member.empty() ? 0 : 1;
    for (const Told& what : call.told) ++told[what.kind];
  }
  std::vector<std::string> lines = {
      Joined(Counted(ended, "call"), ", ", Counted(told["skip"], "failed step"), ", ",
             Counted(told["note"], "note"), ", ", Counted(told["message"], "message"), " shown")};
  AddGroups("Failed steps", "skip", lines);
  AddGroups("Notes", "note", lines);
  AddGroups("Messages shown", "message", lines);
  if (!processes_.empty()) lines.insert(lines.end(), {"", "Processes"});
  lines.insert(lines.end(), processes_.begin(), processes_.end());
  return lines;
}

std::string Report::ToText() const {
  std::vector<std::string> lines = Findings();
  struct Use {
    std::int64_t count = 0;
    double microseconds = 0;
  };
  std::map<std::string, Use> members;
  std::map<bool, std::vector<const Call*>> slowest;  // by whether there was a dialog
  for (const Call& call : calls_) {
    if (call.member.empty()) continue;
    ++members[call.member].count;
    members[call.member].microseconds += call.microseconds;
    slowest[call.is_dialog].push_back(&call);
  }
  for (auto& [is_dialog, calls] : slowest) {
    lines.insert(lines.end(), {"", is_dialog ? "Longest dialogs" : "Slowest calls",
                               "          us  time                      member"});
    std::stable_sort(calls.begin(), calls.end(), [](const Call* a, const Call* b) {
      return a->microseconds > b->microseconds;
    });
    if (calls.size() > kSlowest) calls.resize(kSlowest);
    for (const Call* call : calls) {
      lines.push_back(Joined(Formatted("%12.1f  ", call->microseconds), call->time, "  ",
                             call->member, call->arguments));
    }
  }
  if (!members.empty()) {
    lines.insert(lines.end(), {"", "Calls", "   count    total ms     mean us  member"});
  }
  for (const auto& [member, use] : Sorted(members, [](const Use& u) { return u.microseconds; })) {
    lines.push_back(Joined(
        Formatted("%8lld %11.1f %11.1f  ", static_cast<long long>(use.count),
                  use.microseconds / 1000, use.microseconds / static_cast<double>(use.count)),
        member));
  }
  if (!unread_.empty()) lines.insert(lines.end(), {"", "Not an entry of a trace"});
  lines.insert(lines.end(), unread_.begin(), unread_.end());
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

}  // namespace ard::trace_report
