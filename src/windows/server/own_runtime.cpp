// The parts of the compiler's run-time library that reach beyond the module that they are linked
// into, in versions that do not. The linker takes what it finds here rather than what its libraries
// have.
//
// An automation server is a guest in a process that it knows nothing of. It is unloaded when it is
// idle, perhaps after each job, while threads that have called it live on; and other modules may
// have brought run-time libraries of the same compiler along. So an unloading leaves nothing of
// this behind, no index for thread-local storage is taken (a process has about a thousand), and the
// modules of others are not asked for.
#include <windows.h>
// After windows.h.
#include <pthread.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace __gnu_cxx {
// Gives back the memory that the C++ library keeps for exceptions when there is no other.
void __freeres() noexcept;

// What ends a process that nothing catches for. The C++ library's own would tell of it, and brings
// along for that what takes the names of C++ apart: 46 KiB.
void __verbose_terminate_handler() { std::abort(); }
}  // namespace __gnu_cxx

namespace __cxxabiv1 {
// What the C++ library keeps of a thread: the exceptions being handled, and how many are in flight.
struct __cxa_eh_globals {
  void* handled;
  unsigned int in_flight;
};
}  // namespace __cxxabiv1

namespace {

using __cxxabiv1::__cxa_eh_globals;

// Where it keeps that, from the thread's first exception until the thread ends. The first row is
// there even when an exception says that memory has run out; few processes need another.
struct Seat {
  std::atomic<DWORD> thread = 0;  // nobody's
  __cxa_eh_globals globals = {};
};
struct Row {
  Seat seats[64];
  std::atomic<Row*> next = nullptr;
};
constinit Row first_row;

// The first seat that `suits`; null when there is none.
Seat* FindSeat(auto&& suits) {
  for (Row* row = &first_row; row; row = row->next) {
    for (Seat& seat : row->seats) {
      if (suits(seat)) return &seat;
    }
  }
  return nullptr;
}

Seat* SeatOf(DWORD thread) {
  return FindSeat([=](const Seat& seat) { return seat.thread == thread; });
}

Seat* TakeSeat(DWORD thread) {
  const auto take = [=](Seat& seat) {
    DWORD nobody = 0;
    return seat.thread.compare_exchange_strong(nobody, thread);
  };
  for (;;) {
    if (Seat* const seat = FindSeat(take)) return seat;
    Row* const row = new (std::nothrow) Row;
    if (!row) std::abort();
    Row* next = first_row.next;
    do {
      row->next = next;
    } while (!first_row.next.compare_exchange_weak(next, row));
  }
}

__cxa_eh_globals* GlobalsOfThread() {
  const DWORD thread = GetCurrentThreadId();
  Seat* const seat = SeatOf(thread);
  return &(seat ? seat : TakeSeat(thread))->globals;
}

extern "C" std::uintptr_t __stack_chk_guard;

// Constructed before all others, it is the last to go.
struct Frame {
  // Nobody can foresee the value; the zero in it stops what copies a text.
  Frame() {
    LARGE_INTEGER counter = {};
    QueryPerformanceCounter(&counter);
    __stack_chk_guard = (static_cast<std::uintptr_t>(counter.QuadPart) * 0x9E3779B9u ^
                         reinterpret_cast<std::uintptr_t>(&counter) ^ GetCurrentProcessId())
                        << 8;
  }
  ~Frame() {
    while (Row* const row = first_row.next) {
      first_row.next = row->next.load();
      delete row;
    }
    __gnu_cxx::__freeres();
  }
};
[[gnu::init_priority(101)]] const Frame frame;

// One that is initialised without a call holds a small negative number.
void* Word(std::intptr_t* object) {
  std::intptr_t word = *object;
  if (word < 0 && word >= GENERIC_RECURSIVE_INITIALIZER) {
    std::atomic_ref(*object).compare_exchange_strong(word, 0);
  }
  return object;
}
SRWLOCK* Lock(pthread_mutex_t* mutex) { return static_cast<SRWLOCK*>(Word(mutex)); }
CONDITION_VARIABLE* Condition(pthread_cond_t* condition) {
  return static_cast<CONDITION_VARIABLE*>(Word(condition));
}

}  // namespace

namespace __cxxabiv1 {
extern "C" {
__cxa_eh_globals* __cxa_get_globals() noexcept { return GlobalsOfThread(); }
__cxa_eh_globals* __cxa_get_globals_fast() noexcept { return GlobalsOfThread(); }
}
}  // namespace __cxxabiv1

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason != DLL_THREAD_DETACH) return TRUE;
  if (Seat* const seat = SeatOf(GetCurrentThreadId())) {
    seat->globals = {};
    seat->thread = 0;
  }
  return TRUE;
}

// What functions with arrays put behind them on the stack, and find there when they return.
std::uintptr_t __stack_chk_guard;
[[noreturn]] void __stack_chk_fail() {
  asm volatile("int $0x29" : : "c"(2));  // the system ends the process, and calls nothing before
  __builtin_unreachable();
}

// The locks of the compiler's libraries, none of which is taken twice by a thread: the system's,
// which need no memory.
int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
  *mutex = 0;
  return 0;
}
int pthread_mutex_destroy(pthread_mutex_t*) { return 0; }
int pthread_mutex_lock(pthread_mutex_t* mutex) {
  AcquireSRWLockExclusive(Lock(mutex));
  return 0;
}
int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(Lock(mutex));
  return 0;
}
int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  SleepConditionVariableSRW(Condition(condition), Lock(mutex), INFINITE, 0);
  return 0;
}
int pthread_cond_broadcast(pthread_cond_t* condition) {
  WakeAllConditionVariable(Condition(condition));
  return 0;
}
int pthread_once(pthread_once_t* once, void (*routine)()) {
  enum : pthread_once_t { kNew, kRunning, kDone };
  const std::atomic_ref state(*once);
  pthread_once_t expected = kNew;
  if (state.compare_exchange_strong(expected, kRunning)) {
    routine();
    state = kDone;
  }
  while (state != kDone) SwitchToThread();
  return 0;
}

// The clocks need it, and the libraries' one would bring all of their threads along.
int nanosleep(const timespec* time, timespec*) {
  Sleep(static_cast<DWORD>(time->tv_sec * 1000 + time->tv_nsec / 1'000'000));
  return 0;
}

#ifdef __i386__
// The start code would hand the module's unwinding tables to the shared library of the compiler
// when the process has that, for some plug-in's sake; and the first exception in here, looking for
// them in here, would end the process.
HMODULE WINAPI ModuleButSharedRuntime(const char* name) {
  HMODULE module = nullptr;
  if (std::strncmp(name, "libgcc_s_", 9) == 0) return nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, name, &module);
  return module;
}
extern decltype(&ModuleButSharedRuntime) const kGetModuleHandle asm("__imp__GetModuleHandleA@4");
decltype(&ModuleButSharedRuntime) const kGetModuleHandle = ModuleButSharedRuntime;
#endif

}  // extern "C"
