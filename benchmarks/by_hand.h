// What a host would write that asks the engine itself. What a replay costs is held to these, so
// that it can stand for others; and so is a member for which no replay stands: one that makes texts
// out of what it reads, or looks a product up, in steps of 12 ns, beside which a replay's own show.
#ifndef ARD_BENCHMARKS_BY_HAND_H_
#define ARD_BENCHMARKS_BY_HAND_H_

#include <span>
#include <string_view>

#include "engine/seam.h"

namespace ard::benchmarks {

struct SequenceByHand {
  std::wstring_view member;  // that asks for the same
  double (*run)(engine::Workspace& workspace);
  double answer;  // a number, or the length of the texts
  enum class Kind { kHasReplay, kMakesTexts, kLooksUp } kind = Kind::kHasReplay;
};
std::span<const SequenceByHand> SequencesByHand();

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_BY_HAND_H_
