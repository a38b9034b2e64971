#include "benchmarks/holdings.h"

#include <windows.h>
// After windows.h.
#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace ard::benchmarks {
namespace {

double Kilobytes(auto bytes) { return static_cast<double>(bytes) / 1024; }

// Wine does not count handles, but it lists those of all processes.
double ListedHandles() {
  constexpr auto kHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
  struct Entry {
    ULONG process;
    BYTE type;
    BYTE flags;
    USHORT handle;
    void* object;
    ACCESS_MASK access;
  };
  struct List {
    ULONG count;
    Entry entries[1];
  };
  std::vector<Entry> memory(1 << 16);
  const auto size = static_cast<ULONG>(memory.size() * sizeof(Entry));
  if (NtQuerySystemInformation(kHandleInformation, memory.data(), size, nullptr) != 0)
    return kUnknown;
  const List& list = *reinterpret_cast<const List*>(memory.data());
  return static_cast<double>(
      std::count_if(list.entries, list.entries + list.count,
                    [](const Entry& entry) { return entry.process == GetCurrentProcessId(); }));
}

// Nor does Wine count GDI objects; but its table of them is that of older systems.
double ListedGdiObjects() {
  if (sizeof(void*) < 8) return kUnknown;
  constexpr std::size_t kTableInProcessBlock = 0xF8;
  constexpr std::size_t kEntries = 0x4000;
  struct Entry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;  // 0 for none
    std::uint8_t flags;
    std::uint64_t user_pointer;
  };
  PROCESS_BASIC_INFORMATION process = {};
  NtQueryInformationProcess(GetCurrentProcess(), ProcessBasicInformation, &process, sizeof(process),
                            nullptr);
  const auto* block = reinterpret_cast<const char*>(process.PebBaseAddress);
  const auto* table = *reinterpret_cast<Entry* const*>(block + kTableInProcessBlock);
  return static_cast<double>(
      std::count_if(table, table + kEntries, [](const Entry& entry) { return entry.type != 0; }));
}

bool IsIcon(HICON icon) {
  ICONINFO info = {};
  if (!GetIconInfo(icon, &info)) return false;
  DeleteObject(info.hbmMask);
  DeleteObject(info.hbmColor);
  return true;
}

// The windows, menus, icons and cursors of the process, by the lower halves of their handles, which
// do for finding them.
double FoundUserObjects() {
  double count = 0;
  for (std::uintptr_t half = 2; half <= 0xFFFF; half += 2) {
    DWORD process = 0;
    GetWindowThreadProcessId(reinterpret_cast<HWND>(half), &process);
    if (process == GetCurrentProcessId() || IsMenu(reinterpret_cast<HMENU>(half)) ||
        IsIcon(reinterpret_cast<HICON>(half))) {
      ++count;
    }
  }
  return count;
}

}  // namespace

double Handles() {
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  return handles > 0 ? handles : ListedHandles();
}

double GdiObjects() {
  const DWORD objects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  return objects > 0 ? objects : ListedGdiObjects();
}

double UserObjects() {
  const DWORD objects = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  return objects > 0 ? objects : FoundUserObjects();
}

double PrivateMemory() {
  SIZE_T bytes = 0;
  MEMORY_BASIC_INFORMATION region = {};
  for (const char* at = nullptr; VirtualQuery(at, &region, sizeof(region)) == sizeof(region);
       at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
  }
  return Kilobytes(bytes);
}

HeapUse Heaps() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(ARRAYSIZE(heaps), heaps);
  HeapUse use;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heaps[i], &entry)) {
      if (!(entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)) continue;
      ++use.blocks;
      use.kilobytes += Kilobytes(entry.cbData);
    }
  }
  return use;
}

}  // namespace ard::benchmarks
