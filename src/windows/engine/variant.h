// Values of the portable code and variants of automation, one into the other.
#ifndef ARD_WINDOWS_ENGINE_VARIANT_H_
#define ARD_WINDOWS_ENGINE_VARIANT_H_

#include "frame/value.h"
#include "windows/engine/com.h"

namespace ard::windows {

// An automation object as a Value carries it. Nothing is a Value with a null object.
class DispatchObject : public Object {
 public:
  explicit DispatchObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  IDispatch* get() const { return object_.get(); }

 private:
  ComPtr<IDispatch> object_;
};

// What a variant holds, directly or by reference. Integer types that Value lacks become the next
// larger one it has, at the top end a double, or a text when it has more digits; decimals too.
// Throws Error (type mismatch) for what is no value: arrays, records, errors, objects without
// automation.
Value FromVariant(const VARIANT& variant);

// The variant that carries `value`. Throws Error when there is no memory, or when the object is
// none of automation's.
ScopedVariant ToVariant(const Value& value);

// Takes the object that a variant holds, directly or by reference, out of it; null when it is
// Nothing, or no automation object. ToDispatch throws Error (type mismatch) then.
ComPtr<IDispatch> ObjectIn(ScopedVariant&& variant);
ComPtr<IDispatch> ToDispatch(ScopedVariant&& variant);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_ENGINE_VARIANT_H_
