// What a process holds, also where the system does not count it itself, as Wine does not. A counter
// gives kUnknown when it cannot tell.
#ifndef ARD_BENCHMARKS_HOLDINGS_H_
#define ARD_BENCHMARKS_HOLDINGS_H_

namespace ard::benchmarks {

inline constexpr double kUnknown = -1;

double Handles();
double GdiObjects();
double UserObjects();

// In KiB: the memory that the process shares with nobody, and that is in use.
double PrivateMemory();

// What is allocated on all heaps of the process.
struct HeapUse {
  double blocks = 0;
  double kilobytes = 0;
};
HeapUse Heaps();

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_HOLDINGS_H_
