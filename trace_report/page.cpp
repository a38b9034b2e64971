#include "trace_report/page.h"

#include <cstddef>
#include <cstdio>

namespace ard::trace_report {
namespace {

// The page, with "$title$", "$findings$" and "$calls$" where these go: trace_report/page.html.
constexpr std::string_view kPage =
#include "page_html.inc"
    ;

std::string Html(std::string_view text) {
  std::string html;
  for (const char c : text) {
    if (c == '<') {
      html += "&lt;";
    } else if (c == '&') {
      html += "&amp;";
    } else {
      html += c;
    }
  }
  return html;
}

// A text in the page's script; "</script>" in it would end that.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '<') {
      quoted += "\\u003c";
    } else {
      if (c == '"' || c == '\\') quoted += '\\';
      quoted += c;
    }
  }
  return quoted + '"';
}

// [time, process, calls, member, microseconds, outcome, arguments, answer, dialog, told]
std::string Row(const Report::Call& call) {
  std::string row = "[";
  for (const std::string* cell : {&call.time, &call.process, &call.calls, &call.member}) {
    row += Quoted(*cell) + ',';
  }
  char microseconds[32];
  std::snprintf(microseconds, sizeof microseconds, "%.1f,", call.microseconds);
  row += microseconds;
  for (const std::string* cell : {&call.outcome, &call.arguments, &call.answer}) {
    row += Quoted(*cell) + ',';
  }
  row += call.is_dialog ? "1,[" : "0,[";
  const char* separator = "";
  for (const Report::Told& told : call.told) {
    row += separator;
    row += '[' + Quoted(told.kind) + ',' + Quoted(told.what) + ',' +
           Quoted(told.code + (told.code.empty() ? "" : " ") + told.text) + ']';
    separator = ",";
  }
  return row + "]]";
}

std::string Findings(const Report& report) {
  std::string html;
  std::string_view section;
  const std::vector<std::string> lines = report.Findings();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    if (line.empty()) {
      section = lines[++i];
      html += "<h2>" + Html(section) + "</h2>\n";
    } else {
      const bool is_detail = line.starts_with(' ');
      const char* kind = i == 0      ? "sum"
                         : is_detail ? (section.starts_with("F") ? "skip" : "note")
                                     : "member";
      html += std::string("<div class=\"") + kind + "\">" + Html(line) + "</div>\n";
    }
  }
  return html;
}

}  // namespace

std::string ToPage(const Report& report, std::string_view title) {
  std::string calls;
  for (const Report::Call& call : report.calls()) {
    calls += (calls.empty() ? "" : ",\n") + Row(call);
  }
  std::string page(kPage);
  const auto put = [&](std::string_view mark, const std::string& text) {
    page.replace(page.find(mark), mark.size(), text);
  };
  // The last first: what is put in may look like a mark.
  put("$calls$", calls);
  put("$findings$", Findings(report));
  put("$title$", Html(Printable(title)));
  put("$title$", Html(Printable(title)));
  return page;
}

}  // namespace ard::trace_report
