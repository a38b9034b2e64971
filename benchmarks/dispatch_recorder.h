// What a call asks of automation objects, written down by proxies between the library and them: to
// ask the bare objects for the very same again with nothing around it, and to show it as a script.
#ifndef ARD_BENCHMARKS_DISPATCH_RECORDER_H_
#define ARD_BENCHMARKS_DISPATCH_RECORDER_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "windows/engine/com.h"

namespace ard::benchmarks {

// The objects of a recording are numbered by slots. One that goes leaves its slot to the next.
using Slot = std::size_t;
inline constexpr Slot kNoSlot = static_cast<Slot>(-1);

// One operation, or the release of what one has handed out.
struct Step {
  enum class Kind { kInvoke, kCreate, kRelease };

  Kind kind = Kind::kInvoke;
  Slot object = kNoSlot;  // the one asked, created or released
  CLSID class_id{};       // of one created

  std::wstring name;  // the member, empty when it has no known name; the class of one created

  // Of an operation. The arguments stand as they are passed, the last one first.
  DISPID id = DISPID_UNKNOWN;
  WORD flags = 0;
  std::vector<windows::ScopedVariant> arguments;
  std::vector<windows::ScopedVariant> referred;  // what arguments by reference refer to
  bool has_result = false;
  Slot result = kNoSlot;  // the object handed out
  bool failed = false;
};

class DispatchProxy;

class Recording {
 public:
  // Asks the bare objects for the same again: ids are known, texts are made for each operation as
  // any host has to, and results go when they went in the recording. What failed then fails now.
  void Replay();

  const std::vector<Step>& steps() const { return steps_; }
  // The host's object in a slot; null for one that was handed out.
  IDispatch* HostObject(Slot slot) const { return host_objects_[slot].get(); }

 private:
  friend class DispatchRecorder;

  std::vector<Step> steps_;
  std::vector<windows::ComPtr<IDispatch>> host_objects_;  // by slot
  std::vector<windows::ComPtr<IDispatch>> objects_;       // of a replay, by slot
};

// Makes recordings, one after the other.
class DispatchRecorder {
 public:
  DispatchRecorder() = default;
  DispatchRecorder(const DispatchRecorder&) = delete;
  DispatchRecorder& operator=(const DispatchRecorder&) = delete;

  // A proxy of an object that the host has made, such as the workspace. It passes every operation
  // on, and hands out proxies; none of them may outlive this. A proxy stays as it is.
  windows::ComPtr<IDispatch> Wrap(windows::ComPtr<IDispatch> object);

  // Notes what is asked until Stop. The objects that live at the start are the host's.
  void Start();
  Recording Stop();

 private:
  friend class DispatchProxy;
  friend class WrappingFactory;

  Slot Enter(DispatchProxy* proxy);
  void Note(Step step);
  // A copy that bare objects can be passed: without proxies, and without references.
  windows::ScopedVariant Prepared(const VARIANT& argument) const;

  bool is_on_ = false;
  std::vector<DispatchProxy*> proxies_;  // by slot, null in a free one
  Recording recording_;
};

// While it lives, the objects that are created of this class are proxies, too.
class WrappedClass {
 public:
  WrappedClass(DispatchRecorder& recorder, const wchar_t* prog_id);
  WrappedClass(const WrappedClass&) = delete;
  WrappedClass& operator=(const WrappedClass&) = delete;
  ~WrappedClass();

 private:
  DWORD registration_ = 0;
};

}  // namespace ard::benchmarks

#endif  // ARD_BENCHMARKS_DISPATCH_RECORDER_H_
