#include "frame/trace.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "frame/error.h"
#include "frame/public_class.h"
#include "testing/scripted_environment.h"

namespace ard {
namespace {

// The cells after the time stamp.
std::string Rest(const std::string& line) { return line.substr(line.find('\t') + 1); }

class TraceTest : public ::testing::Test {
 protected:
  void Attach() {
    trace_.Attach([this](std::string_view line) { lines_.emplace_back(line); });
  }

  Trace trace_;
  std::vector<std::string> lines_;
};

TEST_F(TraceTest, NotesSkippedStepsWithNumberAndText) {
  Attach();
  EXPECT_TRUE(Attempt(trace_, {L"A", L"Fine"}, [] {}));
  EXPECT_FALSE(Attempt(trace_, {L"SalesRecord", L"Fields", L"NAME"},
                       [] { throw Error(kErrorUnknownName, L"No such\r\nfield\t!"); }));
  EXPECT_FALSE(Attempt(trace_, {L"A", L"B"}, [] { throw std::bad_alloc(); }));
  EXPECT_FALSE(Attempt(trace_, {L"A", L"B"}, [] { throw 5; }));
  ASSERT_EQ(lines_.size(), 3u);
  EXPECT_EQ(Rest(lines_[0]), "skip\tSalesRecord.Fields(\"NAME\")\t0x80020006\tNo such  field !");
  EXPECT_EQ(Rest(lines_[1]), "skip\tA.B\t0x8007000E\tOut of memory.");
  EXPECT_EQ(Rest(lines_[2]), "skip\tA.B\t0x80004005\tUnknown error.");
  EXPECT_EQ(lines_[0].find_first_not_of("0123456789-:.TZ"), 24u) << lines_[0];
}

TEST_F(TraceTest, AFailingSinkDisturbsNothing) {
  trace_.Attach([](std::string_view) { throw std::runtime_error("disk full"); });
  EXPECT_FALSE(Attempt(trace_, {L"A", L"B"}, [] { throw Error(1, L""); }));
  trace_.Called(L"A", L"B", L"String", {});
}

class Sample : public PublicClass {
 public:
  explicit Sample(Environment& environment) : PublicClass(L"Sample", environment) {}

  std::int32_t Half(std::int32_t number) const noexcept {
    return Call<std::int32_t>(L"Half", [&](std::int32_t& half) {
      half = number / 2;
      if (number < 0) throw Error(kErrorOverflow, L"Overflow.");
    });
  }
};

TEST(PublicClassTest, RecordsCallsAndKeepsWhatWasAssignedBeforeAFailure) {
  testing::ScriptedEnvironment environment;
  const Sample sample(environment);
  EXPECT_EQ(sample.Half(8), 4);
  EXPECT_EQ(sample.Half(-8), -4);

  std::vector<std::string> lines;
  environment.trace().Attach([&](std::string_view line) { lines.emplace_back(line); });
  EXPECT_EQ(sample.Half(8), 4);
  EXPECT_EQ(sample.Half(-8), -4);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(Rest(lines[0]).rfind("call\tSample.Half\t", 0), 0u) << lines[0];
  EXPECT_TRUE(lines[0].ends_with(" us\tLong")) << lines[0] << ": the kind of the answer alone";
  EXPECT_EQ(Rest(lines[1]), "skip\tSample.Half\t0x8002000A\tOverflow.");
}

}  // namespace
}  // namespace ard
