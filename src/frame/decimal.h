// Exact decimal arithmetic on doubles: each stands for the decimal number that its 15 significant
// digits write, so that 10.3 - 10.1 is 0.2.
#ifndef ARD_FRAME_DECIMAL_H_
#define ARD_FRAME_DECIMAL_H_

namespace ard {

// The double nearest to the exact sum or difference. Throws Error (overflow) when an operand is
// no finite number.
double ExactSum(double a, double b);
double ExactDifference(double a, double b);

}  // namespace ard

#endif  // ARD_FRAME_DECIMAL_H_
