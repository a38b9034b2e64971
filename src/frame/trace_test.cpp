#include "frame/trace.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <functional>
#include <new>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "frame/error.h"
#include "frame/public_class.h"
#include "tests/core/scripted_environment.h"

namespace ard {
namespace {

using namespace std::string_view_literals;

// The lines without their times, with the durations of calls left out.
class TraceTest : public ::testing::Test {
 protected:
  void Attach(bool detail = false) {
    Trace::Origin origin;
    if (detail) origin.detail = true;
    origin.process = 7;
    origin.about = L"host\t1";
    const std::string start = Now();
    origin.thread = [] { return thread; };
    environment_.trace().Attach(
        [this, start](std::string_view line) {
          const std::string time(line.substr(0, 25));
          EXPECT_TRUE(std::regex_match(time, std::regex(".{19}\\.\\d{3}Z\t"))) << line;
          EXPECT_LE(start, time.substr(0, 19));
          EXPECT_LE(time.substr(0, 19), Now());
          std::string rest(line.substr(25));
          if (const std::size_t us = rest.find(" us\t"); us != rest.npos) {
            const std::size_t from = rest.rfind('\t', us) + 1;
            EXPECT_EQ(rest[us - 2], '.') << rest;
            EXPECT_LT(std::stod(rest.substr(from)), 6e8) << rest;
            rest.erase(from, us + 3 - from);
          }
          lines_.push_back(rest);
        },
        origin);
    EXPECT_EQ(Take(), std::vector<std::string>{"7\t0\tprocess\thost 1"});
  }
  static std::string Now() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    char text[20];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", std::gmtime(&now));
    return text;
  }
  Trace& trace() { return environment_.trace(); }
  std::vector<std::string> Take() { return std::exchange(lines_, {}); }

  static inline std::uint32_t thread = 1;
  testing::ScriptedEnvironment environment_;
  std::vector<std::string> lines_;
};

using Lines = std::vector<std::string>;

TEST_F(TraceTest, NotesSkippedStepsWithNumberAndText) {
  Attach();
  EXPECT_TRUE(Attempt(trace(), {L"A", L"Fine"}, [] {}));
  EXPECT_FALSE(Attempt(trace(), {L"SalesRecord", L"Fields", L"NAME"},
                       [] { throw Error(kErrorUnknownName, L"No such\r\nfield\t!"); }));
  EXPECT_FALSE(Attempt(trace(), {L"A", L"B"}, [] { throw std::bad_alloc(); }));
  EXPECT_FALSE(Attempt(trace(), {L"A", L"B"}, [] { throw std::runtime_error("x"); }));
  EXPECT_FALSE(Attempt(trace(), {L"A", L"B"}, [] { throw 5; }));
  EXPECT_FALSE(Attempt(trace(), {L"A", L"B"}, [] { Value(Null()).ToLong(); }));  // no failure
  EXPECT_FALSE(Attempt(trace(), {L"ArdWorkspace", L"CreateRecordObject", L"StockData"},
                       [] { throw Error(kErrorNoMember, L"Member not found."); }));
  EXPECT_EQ(Take(),
            (Lines{"7\t0\tskip\tSalesRecord.Fields(\"NAME\")\t0x80020006\tNo such  field !",
                   "7\t0\tskip\tA.B\t0x8007000E\tOut of memory.",
                   "7\t0\tskip\tA.B\t0x80004005\tInternal error.",
                   "7\t0\tskip\tA.B\t0x80004005\tUnknown error.",
                   "7\t0\tnote\tA.B\tIt has no value (Null).",
                   "7\t0\tskip\tArdWorkspace.CreateRecordObject(\"StockData\")\t0x80020003\t"
                   "ArdWorkspace has no member CreateRecordObject."}));
}

class Sample : public PublicClass {
 public:
  explicit Sample(Environment& environment) : PublicClass(L"Sample", environment) {}

  std::int32_t Half(std::int32_t number) const noexcept {
    return Call<std::int32_t>(L"Half", {number}, [&](std::int32_t& half) {
      half = number / 2;
      if (number < 0) throw Error(kErrorOverflow, L"Overflow.");
    });
  }
  void Outer(const std::function<void()>& action) const noexcept {
    Call<bool>(L"Outer", [&](bool&) { action(); });
  }
  void Puts(std::wstring_view text, std::wstring& output) const noexcept {
    const std::shared_ptr<int> object;
    Run(L"Puts", {text, Output(output), object}, [&] { output = L"out"; });
  }
  // Under the names of members that take or give a password.
  std::wstring Secret(std::wstring_view member, std::wstring_view password) const noexcept {
    return Call<std::wstring>(member, {L"ANN"sv, password},
                              [&](std::wstring& answer) { answer = password; });
  }
};

// A line belongs to the innermost call of its thread, whatever other threads are doing.
TEST_F(TraceTest, NumbersCallsWithinCalls) {
  Attach();
  const Sample sample(environment_);
  sample.Outer([&] {
    sample.Outer([&] { trace().Noted({L"A", L"B"}, L"in"); });
    thread = 2;
    sample.Outer([&] {
      thread = 1;
      trace().Shown(L"Title", L"between");
      thread = 2;
    });
    trace().Noted({L"A", L"B"}, L"idle");
    thread = 1;
  });
  EXPECT_EQ(
      Take(),
      (Lines{"7\t1/2\tnote\tA.B\tin", "7\t1/2\tcall\tSample.Outer\t\tBoolean\tneutral\t\t",
             "7\t1\tmessage\tTitle\tbetween", "7\t3\tcall\tSample.Outer\t\tBoolean\tneutral\t\t",
             "7\t0\tnote\tA.B\tidle", "7\t1\tcall\tSample.Outer\t\tBoolean\tneutral\t\t"}));
}

// Traced or not, what was assigned before a failure is the answer.
TEST_F(TraceTest, WritesArgumentsAndAnswersWhenAskedFor) {
  const Sample sample(environment_);
  EXPECT_EQ(sample.Half(-8), -4);
  Attach(/*detail=*/true);
  EXPECT_EQ(sample.Half(1), 0);
  EXPECT_EQ(sample.Half(-8), -4);
  std::wstring output = L"before";
  sample.Puts(L"5\" BOLT ", output);
  for (const auto name : {L"PassLogged", L"GetPassword", L"IsValid"}) sample.Secret(name, L"word");
  Trace::Call call;
  trace().Begin(call, L"A", L"B");
  trace().End(call, L"Date", Date{1e9}, {Date{-1e9}});  // in no calendar
  EXPECT_EQ(Take(),
            (Lines{"7\t1\tcall\tSample.Half\t\tLong\tneutral\t(1)\t0",
                   "7\t2\tskip\tSample.Half\t0x8002000A\tOverflow.",
                   "7\t2\tcall\tSample.Half\t\tLong\tanswered\t(-8)\t-4",
                   "7\t3\tcall\tSample.Puts\t\t\t\t(\"5\"\" BOLT \", Nothing)\t\"out\"",
                   "7\t4\tcall\tSample.PassLogged\t\tString\tanswered\t(***, \"word\")\t***",
                   "7\t5\tcall\tSample.GetPassword\t\tString\tanswered\t(\"ANN\", \"word\")\t***",
                   "7\t6\tcall\tSample.IsValid\t\tString\tanswered\t(\"ANN\", \"word\")\t\"word\"",
                   "7\t7\tcall\tA.B\t\tDate\tanswered\t(-1000000000)\t1000000000"}));
}

TEST_F(TraceTest, TellsNeutralAnswersApart) {
  Attach();
  const auto answers = [&](const auto& answer) {
    Trace::Call call;
    trace().Begin(call, L"A", L"B");
    trace().End(call, L"", answer, {});
    return Take()[0].find("\tneutral\t") == std::string::npos;
  };
  EXPECT_FALSE(answers(0.0) || answers(Date()) || answers(std::shared_ptr<int>()) ||
               answers(std::int16_t{0}));
  EXPECT_TRUE(answers(1.0) && answers(Date{1}) && answers(std::make_shared<int>()));
}

TEST_F(TraceTest, AFailingSinkDisturbsNothing) {
  trace().Attach([](std::string_view) { throw std::runtime_error("disk full"); });
  EXPECT_FALSE(Attempt(trace(), {L"A", L"B"}, [] { throw Error(1, L""); }));
  EXPECT_EQ(Sample(environment_).Half(8), 4);
}

}  // namespace
}  // namespace ard
