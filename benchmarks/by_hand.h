// What a host would write that asks the engine itself. What a replay costs is held to these, so
// that it can stand for others; and so are members for which no replay stands: those that make
// texts out of what they read, and the look-ups of products, beside whose steps of 12 ns a replay's
// own show.
#ifndef ARD_BENCHMARKS_BY_HAND_H_
#define ARD_BENCHMARKS_BY_HAND_H_

#include <functional>
#include <span>
#include <string_view>

#include "engine/seam.h"

namespace ard::benchmarks {

struct SequenceByHand {
  std::wstring_view member;                                 // that asks for the same
  std::function<double(engine::Workspace& workspace)> run;  // called as members are
  double answer;                                            // a number, or the length of the texts
  bool has_replay = false;
};
std::span<const SequenceByHand> SequencesByHand();

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_BY_HAND_H_
