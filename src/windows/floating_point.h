// The processor's floating-point environment: Windows' own inside the library, the host's outside.
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
  FloatingPoint();
  FloatingPoint(const FloatingPoint&) = delete;
  FloatingPoint& operator=(const FloatingPoint&) = delete;
  ~FloatingPoint();

  // After someone else's code, which may have changed it.
  static void Establish();
  // The same for the newer unit alone, which the library calculates with, where asking the older
  // one would cost too much: after a release.
  // It is asked first: to set it makes what moves texts next wait.
  static void EstablishArithmetic() {
    if ((_mm_getcsr() & ~kNoted) != kSse) _mm_setcsr(kSse);
  }

 private:
  static void EstablishOlderUnit();

  static constexpr std::uint32_t kSse = 0x1F80;
  // In either unit's status: the exceptions that it has noted.
  static constexpr std::uint32_t kNoted = 0x3F;

  // Of the older unit, and of the newer one.
  std::uint16_t control_;
  std::uint16_t status_;
  std::uint32_t sse_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_FLOATING_POINT_H_
