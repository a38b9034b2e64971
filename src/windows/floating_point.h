// The processor's floating-point environment: of hosts outside the library, and Windows' own
// inside.
#ifndef ARD_WINDOWS_FLOATING_POINT_H_
#define ARD_WINDOWS_FLOATING_POINT_H_

#include <xmmintrin.h>

#include <cstdint>

namespace ard::windows {

// As long as one lives, the environment is that with which Windows starts a thread: no operation
// raises an exception, results are rounded to the nearest double. Then it is again what it was,
// down to the exceptions that it has noted. Some hosts have exceptions raised, or their numbers
// rounded to 24 bits, and everything that they call works with that.
class FloatingPoint {
 public:
  FloatingPoint() {
    asm volatile("fnstcw %0\n\tfnstsw %1" : "=m"(control_), "=m"(status_));
    sse_ = _mm_getcsr();
    if (status_ & kPending) asm volatile("fnclex");
    Establish();
  }
  FloatingPoint(const FloatingPoint&) = delete;
  FloatingPoint& operator=(const FloatingPoint&) = delete;
  ~FloatingPoint() {
    std::uint16_t status;
    asm volatile("fnstsw %0" : "=m"(status));
    if ((status ^ status_) & kNoted) {
      std::uint32_t environment[7];
      asm volatile("fnstenv %0" : "=m"(environment));
      environment[1] = (environment[1] & ~kNoted) | (status_ & kNoted);
      asm volatile("fldenv %0" : : "m"(environment));
    }
    asm volatile("fldcw %0" : : "m"(control_));
    _mm_setcsr(sse_);
  }

  // After someone else's code, which may have changed it. It costs less than to ask.
  static void Establish() {
    asm volatile("fldcw %0" : : "m"(kControl));
    _mm_setcsr(kSse);
  }

 private:
  static constexpr std::uint16_t kControl = 0x027F;
  static constexpr std::uint32_t kSse = 0x1F80;
  // Of the older unit: the exceptions that it has noted, and whether its next operation raises one.
  static constexpr std::uint32_t kNoted = 0x3F;
  static constexpr std::uint32_t kPending = 0x80;

  std::uint16_t control_;
  std::uint16_t status_;
  std::uint32_t sse_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_FLOATING_POINT_H_
