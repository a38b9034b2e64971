#include "trace_report/report.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

namespace ard::trace_report {
namespace {

constexpr std::size_t kSlowest = 10;

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

}  // namespace

void Report::Add(std::string_view line) {
  ++lines_;
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (AddEntry(CellsOf(line))) {
    ++entries_;
  } else {
    unread_.push_back(Joined("line ", std::to_string(lines_), ": ", line));
  }
}

bool Report::AddEntry(const std::vector<std::string_view>& cells) {
  if (cells.size() < 4 || !HasForm(cells[0], "0000-00-00T00:00:00.000Z")) return false;
  const std::string_view kind = cells[1];
  if (kind == "message" && cells.size() == 4) {
    ++messages_[Joined(cells[2], ": ", cells[3])];
    return true;
  }
  if (kind == "note" && cells.size() == 4) {
    ++notes_[Joined(cells[2], "  ", cells[3])];
    return true;
  }
  if (cells.size() != 5) return false;
  if (kind == "call") {
    const std::optional<double> microseconds = DurationOf(cells[3]);
    if (microseconds) AddCall(cells[0], cells[2], *microseconds);
    return microseconds.has_value();
  }
  if (kind != "skip" || !HasForm(cells[3], "0x00000000")) return false;
  ++failures_[Joined(cells[3], "  ", cells[2], "  ", cells[4])];
  return true;
}

void Report::AddCall(std::string_view time, std::string_view member, double microseconds) {
  auto calls = calls_.find(member);
  if (calls == calls_.end()) calls = calls_.emplace(member, Calls()).first;
  ++calls->second.count;
  calls->second.microseconds += microseconds;

  const auto place = std::find_if(slowest_.begin(), slowest_.end(), [&](const Call& call) {
    return call.microseconds < microseconds;
  });
  slowest_.insert(place, {microseconds, std::string(time), std::string(member)});
  if (slowest_.size() > kSlowest) slowest_.pop_back();
}

std::string Report::ToText() const {
  std::string text = Joined(std::to_string(entries_), " entries\n");
  if (!calls_.empty()) text += "\nCalls\n   count    total ms     mean us  member\n";
  for (const auto& [member, calls] :
       Sorted(calls_, [](const Calls& c) { return c.microseconds; })) {
    text +=
        Formatted("%8lld %11.1f %11.1f  ", static_cast<long long>(calls.count),
                  calls.microseconds / 1000, calls.microseconds / static_cast<double>(calls.count));
    text += Joined(member, "\n");
  }
  if (!slowest_.empty())
    text += "\nSlowest calls\n          us  time                      member\n";
  for (const Call& call : slowest_) {
    text += Formatted("%12.1f  ", call.microseconds);
    text += Joined(call.time, "  ", call.member, "\n");
  }
  const auto add = [&](const char* title, const Counts& counts) {
    if (!counts.empty()) text += Joined("\n", title, "\n");
    for (const auto& [what, count] : Sorted(counts, [](std::int64_t c) { return c; })) {
      text += Formatted("%8lld  ", static_cast<long long>(count)) + what + '\n';
    }
  };
  add("Failed steps", failures_);
  add("Notes", notes_);
  add("Messages shown", messages_);
  if (!unread_.empty()) text += "\nNot an entry of a trace\n";
  for (const std::string& line : unread_) text += Joined("  ", line, "\n");
  return text;
}

}  // namespace ard::trace_report
