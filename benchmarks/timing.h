// Comparing two ways to do the same thing.
#ifndef ARD_BENCHMARKS_TIMING_H_
#define ARD_BENCHMARKS_TIMING_H_

#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <vector>

namespace ard::benchmarks {

using Nanoseconds = std::chrono::duration<double, std::nano>;

// Batches much shorter than the system's time slices: what else runs spoils a few of them, not the
// median.
inline constexpr int kBatches = 1001;
inline constexpr std::chrono::microseconds kBatchTime{200};

inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Nanoseconds that `calls` calls take together.
template <class Action>
double Time(int calls, Action&& action) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < calls; ++i) action();
  return Nanoseconds(std::chrono::steady_clock::now() - start).count();
}

// How many calls fill a batch.
template <class Action>
int BatchSize(Action&& action) {
  int calls = 1;
  while (Time(calls, action) < Nanoseconds(kBatchTime).count()) calls *= 2;
  return calls;
}

// Nanoseconds per call: the medians of many batches, which take turns, so that whatever else the
// machine does slows both down.
struct Comparison {
  double hand_written;
  double ours;
  double ratio() const { return ours / hand_written; }
};

template <class HandWritten, class Library>
Comparison Compare(HandWritten&& hand_written, Library&& library, int batches = kBatches) {
  const int calls = BatchSize(library);
  std::vector<double> by_hand;
  std::vector<double> by_library;
  for (int i = 0; i < batches; ++i) {
    by_hand.push_back(Time(calls, hand_written) / calls);
    by_library.push_back(Time(calls, library) / calls);
  }
  return {Median(by_hand), Median(by_library)};
}

// The same, again and again while the ratio is above `target`, a few times at most: what else the
// machine does only adds. Gives the least.
template <class HandWritten, class Library>
Comparison CompareWithin(double target, HandWritten&& hand_written, Library&& library,
                         int batches = kBatches) {
  constexpr int kTimes = 4;
  Comparison least = Compare(hand_written, library, batches);
  for (int i = 1; i < kTimes && least.ratio() > target; ++i) {
    const Comparison next = Compare(hand_written, library, batches);
    if (next.ratio() < least.ratio()) least = next;
  }
  return least;
}

inline void PrintComparisonHeader() {
  std::printf("%-40s %16s %12s %7s %7s  %s\n", "operation", "hand-written ns", "library ns",
              "ratio", "target", "engine operations");
}

// For what is measured, and not held to anything.
inline constexpr double kNoTarget = std::numeric_limits<double>::infinity();

// Prints a line; returns whether the library is within the target and asks no more of the engine.
inline bool Report(const char* operation, const Comparison& times, double target,
                   std::int64_t operations_by_hand, std::int64_t operations_by_library) {
  const bool met = times.ratio() <= target && operations_by_hand == operations_by_library;
  std::printf("%-40s %16.0f %12.0f %7.3f %7.2f  %" PRId64 " and %" PRId64 "%s\n", operation,
              times.hand_written, times.ours, times.ratio(), target, operations_by_hand,
              operations_by_library, met ? "" : "   MISSED");
  return met;
}

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_TIMING_H_
