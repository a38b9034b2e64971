// What a trace file comes to: the steps that failed and what was noted, by the member in whose
// calls that was; the slowest calls; how often each member has been called; the messages that the
// user has seen.
#ifndef ARD_TRACE_REPORT_REPORT_H_
#define ARD_TRACE_REPORT_REPORT_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ard::trace_report {

// One line of a trace. What it refers to belongs to the line.
struct Entry {
  std::string_view time;
  std::string_view process;
  std::string_view calls;  // "1/2": within call 2, which was made within call 1; "0" for none
  std::string_view kind;
  std::vector<std::string_view> cells;  // as many as the kind has
  double microseconds = 0;              // of a call
};

// None when the line is no entry of a trace.
std::optional<Entry> ParseEntry(std::string_view line);

// With the bytes that would steer a terminal written as \x1B.
std::string Printable(std::string_view text);

class Report {
 public:
  // Something that was told within a call.
  struct Told {
    std::string kind;  // "skip", "note" or "message"
    std::string what;  // the step, or the title of the message
    std::string code;  // of a skip
    std::string text;
  };
  struct Call {
    std::string time;  // when it ended
    std::string process;
    std::string calls;
    std::string member;
    double microseconds = 0;
    std::string type;
    std::string outcome;  // "neutral", "answered" or nothing
    std::string arguments;
    std::string answer;
    bool is_dialog = false;  // its time is that of a user
    std::vector<Told> told;
  };

  // The next line of the file, with or without its carriage return. One that is no entry of a trace
  // is noted with its number.
  void Add(std::string_view line);
  // There are no more lines. What was told in a call that has not ended is a call without a name.
  void End();

  bool is_trace() const { return entries_ > 0; }
  const std::vector<Call>& calls() const { return calls_; }

  // The lines that open a report: how much there is, then what failed, then what was noted, of the
  // calls without an answer first. A line that begins with a blank belongs to the one above.
  std::vector<std::string> Findings() const;
  // All of it, as text of several lines.
  std::string ToText() const;

 private:
  void AddEntry(const Entry& entry);
  // What is told by steps of that kind, by member.
  void AddGroups(std::string_view title, std::string_view kind,
                 std::vector<std::string>& lines) const;

  std::int64_t lines_ = 0;
  std::int64_t entries_ = 0;
  std::vector<Call> calls_;
  std::map<std::string, Call, std::less<>> running_;  // by process and number
  std::vector<std::string> processes_;
  std::vector<std::string> unread_;
};

}  // namespace ard::trace_report

#endif  // ARD_TRACE_REPORT_REPORT_H_
