#include "windows/server/class_factory.h"

#include <atomic>
#include <new>

#include "windows/floating_point.h"
#include "windows/server/module.h"

namespace ard::windows {
namespace {

std::atomic<long> host_locks = 0;

// Asks a new object, with one reference, for the interface that a host wants.
HRESULT HandOver(IUnknown* created, REFIID iid, void** object) {
  return ComPtr<IUnknown>::Adopt(created)->QueryInterface(iid, object);
}

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(const PublishedClass& published) : published_(published) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    const FloatingPoint floating_point;
    try {
      return HandOver(published_.create(published_), iid, object);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      return E_FAIL;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock) {
      LockModule();
      ++host_locks;
      return S_OK;
    }
    // A lock that no host has made is not undone: that would undo an object's.
    long locks = host_locks;
    while (locks > 0 && !host_locks.compare_exchange_weak(locks, locks - 1)) continue;
    if (locks > 0) UnlockModule();
    return S_OK;
  }

 private:
  ModuleLock module_lock_;  // the last to go
  const PublishedClass& published_;
};

}  // namespace

HRESULT CreateClassFactory(const PublishedClass& published, REFIID iid, void** object) {
  ClassFactory* const factory = new (std::nothrow) ClassFactory(published);
  return factory ? HandOver(factory, iid, object) : E_OUTOFMEMORY;
}

}  // namespace ard::windows
