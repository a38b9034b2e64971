#include "windows/floating_point.h"

namespace ard::windows {
namespace {

constexpr std::uint16_t kControl = 0x027F;
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
__attribute__((no_stack_protector)) FloatingPoint::FloatingPoint()
    : status_(Status()), sse_(_mm_getcsr()) {
  asm volatile("fnstcw %0" : "=m"(control_));
  if (status_ & kPending) asm volatile("fnclex");
  Establish();
}

__attribute__((no_stack_protector)) FloatingPoint::~FloatingPoint() {
  if ((Status() ^ status_) & kNoted) {
    std::uint32_t environment[7];
    asm volatile("fnstenv %0" : "=m"(environment));
    environment[1] = (environment[1] & ~kNoted) | (status_ & kNoted);
    asm volatile("fldenv %0" : : "m"(environment));
  }
  asm volatile("fldcw %0" : : "m"(control_));
  _mm_setcsr(sse_);
}

// The older unit is asked first, because the processor waits when it is set; to set the newer one
// takes less time than to ask it.
__attribute__((no_stack_protector)) void FloatingPoint::Establish() {
  EstablishOlderUnit();
  _mm_setcsr(kSse);
}

__attribute__((no_stack_protector)) void FloatingPoint::EstablishOlderUnit() {
  std::uint16_t control;
  asm volatile("fnstcw %0" : "=m"(control));
  // What they have left to be raised would be now. The host's own comes back at the end.
  if (control != kControl) asm volatile("fnclex\n\tfldcw %0" : : "m"(kControl));
}

}  // namespace ard::windows
