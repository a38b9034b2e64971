#include "windows/server/module.h"

#include <atomic>
#include <mutex>
#include <new>

// Where the linker has put the module.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace ard::windows {
namespace {

std::atomic<long> locks = 0;

std::mutex runtime_mutex;
std::weak_ptr<Runtime> shared_runtime;

std::mutex type_library_mutex;
ComPtr<ITypeLib> type_library;

}  // namespace

HINSTANCE ModuleInstance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const auto size = static_cast<DWORD>(path.size());
    const DWORD length = GetModuleFileNameW(ModuleInstance(), path.data(), size);
    if (length < size) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());
  }
}

void LockModule() { ++locks; }
void UnlockModule() { --locks; }
bool CanUnloadModule() { return locks == 0; }

std::shared_ptr<Runtime> Runtime::Get() {
  const std::lock_guard lock(runtime_mutex);
  std::shared_ptr<Runtime> runtime = shared_runtime.lock();
  if (!runtime) {
    runtime = std::make_shared<Runtime>();
    shared_runtime = runtime;
  }
  return runtime;
}

ComPtr<ITypeInfo> FindTypeInfo(REFGUID id) {
  const std::lock_guard lock(type_library_mutex);
  ComPtr<ITypeInfo> info;
  try {
    if (!type_library) LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, type_library.Receive());
    if (type_library) type_library->GetTypeInfoOfGuid(id, info.Receive());
  } catch (const std::bad_alloc&) {  // none, then
  }
  return info;
}

}  // namespace ard::windows
