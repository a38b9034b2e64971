// The processor's floating-point environment: Windows' own inside the library, the host's outside.
#ifndef ARD_WINDOWS_FLOATING_POINT_H_
#define ARD_WINDOWS_FLOATING_POINT_H_

#include <cstdint>

namespace ard::windows {

// As long as one lives, the environment is that with which Windows starts a thread: no operation
// raises an exception, results are rounded to the nearest double. Then it is again what it was,
// down to the exceptions that it has noted. Some hosts have exceptions raised, or their numbers
// rounded to 24 bits, and everything that they call works with that.
class FloatingPoint {
 public:
  FloatingPoint();
  FloatingPoint(const FloatingPoint&) = delete;
  FloatingPoint& operator=(const FloatingPoint&) = delete;
  ~FloatingPoint();

  // After someone else's code, which may have changed it. The older unit is asked, for the
  // processor waits when it is set; the newer one is set, for it waits when that is asked.
  static void Establish() {
    std::uint16_t control;
    asm volatile("fnstcw %0" : "=m"(control));
    // What they have left to be raised would be now. The host's own comes back at the end.
    if (control != kControl) asm volatile("fnclex\n\tfldcw %0" : : "m"(kControl));
    asm volatile("ldmxcsr %0" : : "m"(kSse));
  }

 private:
  static constexpr std::uint16_t kControl = 0x027F;
  static constexpr std::uint32_t kSse = 0x1F80;

  // Of the older unit, and of the newer one.
  std::uint16_t control_;
  std::uint16_t status_;
  std::uint32_t sse_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_FLOATING_POINT_H_
