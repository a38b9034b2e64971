// What a host would write that asks the engine itself: what a replay costs is held to these.
#ifndef ARD_BENCHMARKS_BY_HAND_H_
#define ARD_BENCHMARKS_BY_HAND_H_

#include <span>
#include <string_view>

#include "engine/seam.h"

namespace ard::benchmarks {

struct SequenceByHand {
  std::wstring_view member;  // that asks for the same
  double (*run)(engine::Workspace& workspace);
  double answer;  // a number, or the length of a text
};
std::span<const SequenceByHand> SequencesByHand();

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_BY_HAND_H_
