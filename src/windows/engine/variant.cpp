#include "windows/engine/variant.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "windows/floating_point.h"

namespace ard::windows {
namespace {

[[noreturn]] void ThrowTypeMismatch() { throw Error(kErrorTypeMismatch, L"Type mismatch."); }

// The content of a variant that holds a reference.
ScopedVariant Dereferenced(const VARIANT& reference) {
  ScopedVariant content;
  if (FAILED(VariantCopyInd(&content, const_cast<VARIANT*>(&reference)))) ThrowTypeMismatch();
  return content;
}

// Null when it is none of automation's.
ComPtr<IDispatch> QueryDispatch(IUnknown* object) {
  void* dispatch = nullptr;
  if (!object || FAILED(object->QueryInterface(IID_IDispatch, &dispatch))) dispatch = nullptr;
  FloatingPoint::Establish();
  return ComPtr<IDispatch>::Adopt(static_cast<IDispatch*>(dispatch));
}

Value ObjectValue(ComPtr<IDispatch> object) {
  if (!object) return std::shared_ptr<Object>();
  return std::shared_ptr<Object>(std::make_shared<DispatchObject>(std::move(object)));
}

ScopedVariant ChangedTo(VARTYPE type, const VARIANT& variant) {
  ScopedVariant result;
  auto* source = const_cast<VARIANT*>(&variant);
  if (FAILED(VariantChangeTypeEx(&result, source, LOCALE_INVARIANT, 0, type))) ThrowTypeMismatch();
  return result;
}

// A double, when that has all the digits; else the text, which converts to any type, too.
Value LongNumber(const VARIANT& number) {
  const ScopedVariant text = ChangedTo(VT_BSTR, number);
  const std::wstring_view shown = View(text.bstrVal);
  const auto is_digit = [](wchar_t c) { return c >= L'0' && c <= L'9'; };
  if (std::count_if(shown.begin(), shown.end(), is_digit) > 15) return shown;
  return ChangedTo(VT_R8, number).dblVal;
}

// Stores each kind of value in the variant, which is empty at first.
struct StoreInto {
  VARIANT& variant;

  void operator()(std::monostate) const {}
  void operator()(Null) const { variant.vt = VT_NULL; }
  void operator()(bool value) const {
    variant.vt = VT_BOOL;
    variant.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(std::uint8_t value) const {
    variant.vt = VT_UI1;
    variant.bVal = value;
  }
  void operator()(std::int16_t value) const {
    variant.vt = VT_I2;
    variant.iVal = value;
  }
  void operator()(std::int32_t value) const {
    variant.vt = VT_I4;
    variant.lVal = value;
  }
  void operator()(double value) const {
    variant.vt = VT_R8;
    variant.dblVal = value;
  }
  void operator()(Currency value) const {
    variant.vt = VT_CY;
    variant.cyVal.int64 = value.units;
  }
  void operator()(Date value) const {
    variant.vt = VT_DATE;
    variant.date = value.days;
  }
  void operator()(const std::wstring& value) const {
    variant.bstrVal = NewBstr(value);
    variant.vt = VT_BSTR;
  }
  void operator()(const std::shared_ptr<Object>& value) const {
    const auto* object = dynamic_cast<const DispatchObject*>(value.get());
    if (value && !object) ThrowTypeMismatch();
    variant.vt = VT_DISPATCH;
    variant.pdispVal = object ? ComPtr<IDispatch>(object->get()).Detach() : nullptr;
  }
};

}  // namespace

Value FromVariant(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Null();
    case VT_BOOL:
      return variant.boolVal != VARIANT_FALSE;
    case VT_UI1:
      return std::uint8_t{variant.bVal};
    case VT_I1:
      return static_cast<std::int16_t>(static_cast<signed char>(variant.cVal));
    case VT_I2:
      return std::int16_t{variant.iVal};
    case VT_UI2:
      return std::int32_t{variant.uiVal};
    case VT_I4:
      return static_cast<std::int32_t>(variant.lVal);
    case VT_INT:
      return std::int32_t{variant.intVal};
    case VT_UI4:
      return static_cast<double>(variant.ulVal);
    case VT_UINT:
      return static_cast<double>(variant.uintVal);
    case VT_I8:
    case VT_UI8:
    case VT_DECIMAL:
      return LongNumber(variant);
    case VT_R4:
      return double{variant.fltVal};
    case VT_R8:
      return variant.dblVal;
    case VT_CY:
      return Currency{variant.cyVal.int64};
    case VT_DATE:
      return Date{variant.date};
    case VT_BSTR:
      return View(variant.bstrVal);
    case VT_DISPATCH:
      return ObjectValue(ComPtr<IDispatch>(variant.pdispVal));
    case VT_UNKNOWN: {
      ComPtr<IDispatch> object = QueryDispatch(variant.punkVal);
      if (variant.punkVal && !object) ThrowTypeMismatch();
      return ObjectValue(std::move(object));
    }
    default:
      break;
  }
  if ((variant.vt & VT_BYREF) && !(variant.vt & VT_ARRAY)) {
    return FromVariant(Dereferenced(variant));
  }
  ThrowTypeMismatch();
}

ScopedVariant ToVariant(const Value& value) {
  ScopedVariant result;
  std::visit(StoreInto{result}, value.storage());
  return result;
}

ComPtr<IDispatch> ObjectIn(ScopedVariant&& variant) {
  if (variant.vt == VT_DISPATCH) return ComPtr<IDispatch>::Adopt(variant.Detach().pdispVal);
  if (variant.vt == VT_UNKNOWN) return QueryDispatch(variant.punkVal);
  ScopedVariant content;
  const bool refers = (variant.vt & VT_BYREF) && SUCCEEDED(VariantCopyInd(&content, &variant));
  return refers ? ObjectIn(std::move(content)) : ComPtr<IDispatch>();
}

ComPtr<IDispatch> ToDispatch(ScopedVariant&& variant) {
  ComPtr<IDispatch> object = ObjectIn(std::move(variant));
  if (!object) ThrowTypeMismatch();
  return object;
}

}  // namespace ard::windows
