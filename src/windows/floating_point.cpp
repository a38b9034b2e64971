#include "windows/floating_point.h"

namespace ard::windows {
namespace {

// In either unit's status: the exceptions that it has noted.
constexpr std::uint32_t kNoted = 0x3F;
// In the older unit's status: its next operation raises an exception.
constexpr std::uint32_t kPending = 0x80;

std::uint16_t Status() {
  std::uint16_t status;
  asm volatile("fnstsw %0" : "=m"(status));
  return status;
}

}  // namespace

// Without guards on their stacks, of which only the instructions write: every call of a host passes
// here.
__attribute__((no_stack_protector)) FloatingPoint::FloatingPoint() : status_(Status()) {
  asm volatile("stmxcsr %0" : "=m"(sse_));
  asm volatile("fnstcw %0" : "=m"(control_));
  if (status_ & kPending) asm volatile("fnclex");
  Establish();
}

__attribute__((no_stack_protector)) FloatingPoint::~FloatingPoint() {
  if ((Status() ^ status_) & (kNoted | kPending)) {
    std::uint32_t environment[7];
    asm volatile("fnstenv %0" : "=m"(environment));
    environment[0] |= kNoted;  // masked: nothing is to be raised here
    environment[1] = (environment[1] & ~kNoted) | (status_ & kNoted);
    asm volatile("fldenv %0" : : "m"(environment));
  }
  asm volatile("fldcw %0" : : "m"(control_));
  asm volatile("ldmxcsr %0" : : "m"(sse_));
}

}  // namespace ard::windows
