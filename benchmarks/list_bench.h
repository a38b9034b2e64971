// What the lists of the dialogs cost.
#ifndef ARD_BENCHMARKS_LIST_BENCH_H_
#define ARD_BENCHMARKS_LIST_BENCH_H_

namespace ard::benchmarks {

// Pages and openings, against what they ask of the engine with nothing around it. False when they
// ask for more.
bool CompareLists();

// What opening a paged list takes, up to its first page. False when that depends on how many
// records there are.
bool OpenPagedDialogs();

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_LIST_BENCH_H_
