#include "frame/trace.h"

#include <cstdio>
#include <ctime>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard {
namespace {

using std::chrono::steady_clock;

// 2026-11-21T09:30:00.125Z
std::string Now() {
  const auto now = std::chrono::system_clock::now();
  const auto whole = std::chrono::floor<std::chrono::seconds>(now);
  const auto day = std::chrono::floor<std::chrono::days>(whole);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(whole - day);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now - whole).count();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                static_cast<int>(milliseconds));
  return text;
}

// One entry is one line: the cells of an entry may not break it, nor its columns.
std::string Cell(std::wstring_view text) {
  std::string cell = ToUtf8(text);
  for (char& c : cell) {
    if (static_cast<unsigned char>(c) < 0x20) c = ' ';
  }
  return cell;
}

// StockRecord.Fields("NAME")
std::string Cell(const Step& step) {
  std::string cell = Cell(step.object) + '.' + Cell(step.operation);
  if (!step.detail.empty()) cell += "(\"" + Cell(step.detail) + "\")";
  return cell;
}

}  // namespace

void Trace::Attach(Sink sink) {
  sink_ = std::move(sink);
  on_ = static_cast<bool>(sink_);
}

void Trace::SkippedByException(const Step& step) noexcept {
  if (!on_) return;
  try {
    throw;
  } catch (const Error& error) {
    Skipped(step, error.number(), error.text());
  } catch (const std::bad_alloc&) {
    Skipped(step, kErrorOutOfMemory, L"Out of memory.");
  } catch (const std::exception&) {
    Skipped(step, kErrorFailed, L"Internal error.");
  } catch (...) {
    Skipped(step, kErrorFailed, L"Unknown error.");
  }
}

void Trace::Skipped(const Step& step, std::int32_t number, std::wstring_view text) noexcept {
  if (!on_) return;
  try {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(number));
    Write(Now() + "\tskip\t" + Cell(step) + '\t' + code + '\t' + Cell(text));
  } catch (...) {
    // A line that cannot be written is lost: the trace never disturbs the call it describes.
  }
}

void Trace::Noted(const Step& step, std::wstring_view text) noexcept {
  if (!on_) return;
  try {
    Write(Now() + "\tnote\t" + Cell(step) + '\t' + Cell(text));
  } catch (...) {
    // As above.
  }
}

void Trace::Called(std::wstring_view object, std::wstring_view member,
                   std::wstring_view result_type, steady_clock::duration duration) noexcept {
  if (!on_) return;
  try {
    char microseconds[32];
    std::snprintf(microseconds, sizeof microseconds, "%.1f us",
                  std::chrono::duration<double, std::micro>(duration).count());
    Write(Now() + "\tcall\t" + Cell(object) + '.' + Cell(member) + '\t' + microseconds + '\t' +
          Cell(result_type));
  } catch (...) {
    // As above.
  }
}

void Trace::Shown(std::wstring_view title, std::wstring_view text) noexcept {
  if (!on_) return;
  try {
    Write(Now() + "\tmessage\t" + Cell(title) + '\t' + Cell(text));
  } catch (...) {
    // As above.
  }
}

void Trace::Write(std::string_view line) {
  const std::lock_guard lock(mutex_);
  sink_(line);
}

}  // namespace ard
