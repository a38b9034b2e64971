// What a trace file comes to: how often each member has been called and how long that took, the
// slowest calls, the steps that failed, the messages that the user has seen.
#ifndef ARD_TRACE_REPORT_REPORT_H_
#define ARD_TRACE_REPORT_REPORT_H_

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ard::trace_report {

class Report {
 public:
  // The next line of the file, with or without its carriage return. One that is no entry of a trace
  // is noted with its number.
  void Add(std::string_view line);

  // Whether anything read so far is a trace. An empty file is one, in which nothing has happened.
  bool is_trace() const { return lines_ == 0 || entries_ > 0; }

  // As text of several lines. Members come by their total time, all else by its count, the most
  // first.
  std::string ToText() const;

 private:
  struct Calls {
    std::int64_t count = 0;
    double microseconds = 0;
  };
  struct Call {
    double microseconds;
    std::string time;
    std::string member;
  };
  // How often, by what is printed of it.
  using Counts = std::map<std::string, std::int64_t>;

  bool AddEntry(const std::vector<std::string_view>& cells);
  void AddCall(std::string_view time, std::string_view member, double microseconds);

  std::int64_t lines_ = 0;
  std::int64_t entries_ = 0;
  std::map<std::string, Calls, std::less<>> calls_;  // by member
  std::vector<Call> slowest_;
  Counts failures_;
  Counts notes_;
  Counts messages_;
  std::vector<std::string> unread_;
};

}  // namespace ard::trace_report

#endif  // ARD_TRACE_REPORT_REPORT_H_
