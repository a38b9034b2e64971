#include "frame/trace.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <new>

#include "frame/date.h"
#include "frame/error.h"
#include "frame/text.h"

namespace ard {
namespace {

using std::chrono::steady_clock;

// 2026-11-21T09:30:00.125Z
void AppendNow(std::string& line) {
  const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  const auto day = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  char text[] = "0000-00-00T00:00:00.000Z";
  // `last` is where the last digit goes.
  const auto put = [&](std::size_t last, std::int64_t number) {
    for (; number > 0; number /= 10) text[last--] = static_cast<char>('0' + number % 10);
  };
  put(3, static_cast<int>(date.year()));
  put(6, static_cast<unsigned>(date.month()));
  put(9, static_cast<unsigned>(date.day()));
  put(12, time.hours().count());
  put(15, time.minutes().count());
  put(18, time.seconds().count());
  put(22, time.subseconds().count());
  line += text;
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

// The published members that take or give a password, which is never written: parameter 0 is the
// answer. They are known by their names alone.
constexpr struct {
  std::wstring_view member;
  std::size_t parameter;
} kPasswords[] = {{L"LogonUser", 2}, {L"PassLogged", 0}, {L"PassLogged", 1}, {L"GetPassword", 0}};

std::string Detail(const Seen& value, std::wstring_view member, std::size_t parameter) {
  const bool secret =
      std::any_of(std::begin(kPasswords), std::end(kPasswords), [&](const auto& password) {
        return password.member == member && password.parameter == parameter;
      });
  return secret ? "***" : Cell(value.ToText());
}

std::wstring Quoted(std::wstring_view text) {
  std::wstring quoted = L"\"";
  for (const wchar_t c : text) quoted.append(c == L'"' ? 2 : 1, c);
  return quoted + L'"';
}

// What an exception that is being handled tells.
Error Handled(const Step& step) {
  try {
    throw;
  } catch (const Error& error) {
    if (error.number() != kErrorNoMember) return error;
    std::wstring text(step.object);
    text.append(L" has no member ").append(step.operation).append(L".");
    return {error.number(), std::move(text)};
  } catch (const std::bad_alloc&) {
    return {kErrorOutOfMemory, L"Out of memory."};
  } catch (const std::exception&) {
    return {kErrorFailed, L"Internal error."};
  } catch (...) {
    return {kErrorFailed, L"Unknown error."};
  }
}

}  // namespace

bool Seen::IsNeutral() const {
  switch (kind_) {
    case Kind::kBoolean:
      return !As<bool>();
    case Kind::kInteger:
      return As<std::int16_t>() == 0;
    case Kind::kLong:
      return As<std::int32_t>() == 0;
    case Kind::kDouble:
      return As<double>() == 0;
    case Kind::kDate:
      return As<Date>() == Date();
    case Kind::kText:
      return As<std::wstring>().empty();
    default:
      return !value_;
  }
}

std::wstring Seen::ToText() const {
  switch (kind_) {
    case Kind::kBoolean:
      return As<bool>() ? L"True" : L"False";
    case Kind::kInteger:
      return std::to_wstring(As<std::int16_t>());
    case Kind::kLong:
      return std::to_wstring(As<std::int32_t>());
    case Kind::kDouble:
      return Value(As<double>()).ToText();
    case Kind::kDate: {
      const Date date = As<Date>();
      // What is no date of the calendar is told as the number that it is.
      return IsInRange(date) ? Value(date).ToText() : Value(date.days).ToText();
    }
    case Kind::kText:
      return Quoted(As<std::wstring>());
    case Kind::kTextView:
      return Quoted(As<std::wstring_view>());
    case Kind::kTexts: {
      std::wstring texts;
      const auto& array = As<TextArray>();
      for (std::int64_t i = array.lower_bound(); i <= array.upper_bound(); ++i) {
        texts += (texts.empty() ? L"{" : L", ") + Quoted(array.Get(i));
      }
      return texts.empty() ? L"{}" : texts + L'}';
    }
    default:
      return value_ ? L"Object" : L"Nothing";
  }
}

void Trace::Attach(Sink sink, const Origin& origin) {
  sink_ = std::move(sink);
  origin_ = origin;
  origin_.about = {};
  on_ = static_cast<bool>(sink_);
  if (!on_ || origin.about.empty()) return;
  try {
    Write({"process", Cell(origin.about)});
  } catch (...) {
    // A line that cannot be written is lost: the trace never disturbs what it describes.
  }
}

void Trace::Begin(Call& call, std::wstring_view object, std::wstring_view member) noexcept {
  call.object = object;
  call.member = member;
  call.thread = Thread();
  {
    const std::lock_guard lock(mutex_);
    call.number = ++calls_;
    call.outer = std::exchange(running_, &call);
  }
  call.start = steady_clock::now();
}

void Trace::End(Call& call, std::wstring_view result_type, const Seen& result,
                std::initializer_list<Seen> arguments) noexcept {
  const auto duration = steady_clock::now() - call.start;
  try {
    char microseconds[32];
    std::snprintf(microseconds, sizeof microseconds, "%.1f us",
                  std::chrono::duration<double, std::micro>(duration).count());
    const char* const kind = !result.has_value() ? "" : result.IsNeutral() ? "neutral" : "answered";
    std::string given;
    std::string answer;
    if (origin_.detail) {
      std::size_t parameter = 0;
      if (result.has_value()) answer = Detail(result, call.member, parameter);
      for (const Seen& argument : arguments) {
        std::string& cell = argument.is_output() ? answer : given;
        cell.append(cell.empty() ? "" : ", ").append(Detail(argument, call.member, ++parameter));
      }
      given = '(' + given + ')';
    }
    Write({"call", Cell(Step{call.object, call.member}), microseconds, Cell(result_type), kind,
           given, answer},
          &call);
  } catch (...) {
    // As above.
  }
  const std::lock_guard lock(mutex_);
  Call** place = &running_;
  while (*place != &call) place = &(*place)->outer;
  *place = call.outer;
}

void Trace::SkippedByException(const Step& step) noexcept {
  if (!on_) return;
  try {
    const Error error = Handled(step);
    // A field that nothing has been put into is no fault.
    if (error.number() == kErrorNull) return Noted(step, error.text());
    Skipped(step, error.number(), error.text());
  } catch (...) {
    // As above.
  }
}

void Trace::NotedByException(const Step& step) noexcept {
  if (!on_) return;
  try {
    Noted(step, Handled(step).text());
  } catch (...) {
    // As above.
  }
}

void Trace::Skipped(const Step& step, std::int32_t number, std::wstring_view text) noexcept {
  if (!on_) return;
  try {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(number));
    Write({"skip", Cell(step), code, Cell(text)});
  } catch (...) {
    // As above.
  }
}

void Trace::Noted(const Step& step, Name text) noexcept {
  if (!on_) return;
  try {
    Write({"note", Cell(step), Cell(text)});
  } catch (...) {
    // As above.
  }
}

void Trace::Shown(std::wstring_view title, std::wstring_view text) noexcept {
  if (!on_) return;
  try {
    Write({"message", Cell(title), Cell(text)});
  } catch (...) {
    // As above.
  }
}

void Trace::Write(std::initializer_list<std::string_view> cells, const Call* call) {
  const std::uint32_t thread = Thread();
  // In one piece, so that how much memory is asked for does not depend on the figures in it.
  std::size_t size = 64;
  for (const std::string_view cell : cells) size += cell.size() + 1;
  std::string line;
  line.reserve(size);
  AppendNow(line);
  const std::lock_guard lock(mutex_);
  std::string number;
  for (const Call* running = call ? call : running_; running; running = running->outer) {
    if (running->thread != thread) continue;
    number.insert(0, std::to_string(running->number) + (number.empty() ? "" : "/"));
  }
  line.append("\t").append(std::to_string(origin_.process)).append("\t");
  line.append(number.empty() ? "0" : number);
  for (const std::string_view cell : cells) line.append("\t").append(cell);
  sink_(line);
}

}  // namespace ard
