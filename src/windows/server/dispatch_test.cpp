// Late-bound calls as the various hosts make them, on a class with a member of each kind.
#include "windows/server/dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "tests/windows/host.h"
#include "windows/server/automation_object.h"
#include "windows/server/string_array.h"

namespace ard::windows {
namespace {

struct Sample : testing::ForeignObject {
  std::wstring text;
  ComPtr<IDispatch> object;
  double factor = 0;
  BSTR variable = nullptr;  // the host's, which empties it in the middle of IsLonger

  virtual HRESULT STDMETHODCALLTYPE put_Text(BSTR value) {
    text = View(value);
    return S_OK;
  }
  virtual HRESULT STDMETHODCALLTYPE get_Text(BSTR*) { return E_FAIL; }
  virtual HRESULT STDMETHODCALLTYPE putref_Object(IDispatch* value) {
    object = ComPtr(value);
    return S_OK;
  }
  virtual HRESULT STDMETHODCALLTYPE get_Object(IDispatch** value) {
    *value = ComPtr(object).Detach();
    return S_OK;
  }
  virtual HRESULT STDMETHODCALLTYPE IsLonger(BSTR a, short length, VARIANT_BOOL* result) {
    if (variable) reinterpret_cast<UINT*>(variable)[-1] = 0;
    *result = View(a).size() > static_cast<std::size_t>(length) ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  virtual HRESULT STDMETHODCALLTYPE Multiply(double by, double* amount) {
    factor = by;
    *amount *= by;
    return S_OK;
  }
  // Adds "!" to each element but the empty ones.
  virtual HRESULT STDMETHODCALLTYPE Mark(SAFEARRAY** array) {
    const ArrayElements<BSTR> strings(*array);
    const TextArray texts = TextsOf(strings);
    lower_bound = texts.lower_bound();
    for (std::int64_t i = texts.lower_bound(); i <= texts.upper_bound(); ++i) {
      const std::wstring before(texts.Get(i));
      if (before.empty()) continue;
      texts.Put(i, before, L"?");
      texts.Put(i, before, L"!");  // as long, and begins like that
    }
    return S_OK;
  }
  std::int64_t lower_bound = -1;
};

enum : DISPID { kText = 1, kObject, kIsLonger, kMultiply, kMark };
constexpr Member kMembers[] = {
    Property<&Sample::get_Text, &Sample::put_Text, String>,
    ObjectProperty<&Sample::get_Object, &Sample::putref_Object>,
    Method<&Sample::IsLonger, Boolean(String, Optional<Integer, SHORT{3}>)>,
    Method<&Sample::Multiply, void(Double, ByRef<Double>)>,
    Method<&Sample::Mark, void(StringArray)>,
};
constexpr const wchar_t* kSampleNames[] = {L"Text", L"Object", L"IsLonger a length",
                                           L"Multiply by amount", L"Mark array"};
constexpr DispatchTable kTable = {L"Sample", kMembers, kSampleNames};

VARIANT Of(const auto& value) { return testing::Variant(value).Detach(); }
VARIANT Nothing(VARTYPE vt) {
  VARIANT variant = {};
  variant.vt = vt;
  return variant;
}
VARIANT Reference(VARTYPE vt, void* target) {
  VARIANT variant = Nothing(static_cast<VARTYPE>(VT_BYREF | vt));
  variant.byref = target;
  return variant;
}

class DispatchTest : public ::testing::Test {
 protected:
  // Arguments in the order in which they are written; the last ones are those of `names`.
  HRESULT Invoke(DISPID id, WORD flags, std::vector<VARIANT> arguments,
                 std::vector<DISPID> names = {}) {
    std::reverse(arguments.begin(), arguments.end());
    std::reverse(names.begin(), names.end());
    DISPPARAMS parameters = {arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                             static_cast<UINT>(names.size())};
    result_ = ScopedVariant();
    failed_ = kNone;
    const HRESULT status = windows::Invoke(&sample_, kTable, trace_, prepared_, id, IID_NULL,
                                           locale_, flags, &parameters, &result_, &failed_);
    for (VARIANT& argument : arguments) VariantClear(&argument);
    return status;
  }

  static constexpr UINT kNone = 99;
  Sample sample_;
  Trace trace_;
  bool prepared_ = false;
  LCID locale_ = LOCALE_NEUTRAL;
  ScopedVariant result_;
  UINT failed_ = kNone;
};

TEST_F(DispatchTest, CallsAreAnsweredAndMistakesOfTheHostTold) {
  ScopedVariant text = testing::Variant(L"1234");
  ScopedVariant number = testing::Variant(3.6);
  VARIANT omitted = Nothing(VT_ERROR);
  omitted.scode = DISP_E_PARAMNOTFOUND;
  const VARIANT handed_on = Reference(VT_VARIANT, &omitted);
  IDispatch* target = nullptr;
  const VARIANT object = Reference(VT_DISPATCH, &target);
  VARIANT array = Nothing(VT_ARRAY | VT_VARIANT);
  const VARIANT with_array = Reference(VT_VARIANT, &array);
  SAFEARRAY* none = nullptr;
  SAFEARRAYBOUND square[] = {{2, 0}, {2, 0}};
  ScopedVariant table;
  table.vt = VT_ARRAY | VT_VARIANT;
  table.parray = SafeArrayCreate(VT_VARIANT, 2, square);
  const WORD call = DISPATCH_METHOD;
  const WORD put = DISPATCH_PROPERTYPUT;
  constexpr int kNoResult = 1;
  struct Case {
    const char* what;
    DISPID id;
    WORD flags;
    std::vector<VARIANT> arguments;
    std::vector<DISPID> names;
    HRESULT status = S_OK;
    UINT failed = kNone;
    int result = kNoResult;
  };
  const auto is_longer = [](const char* what, std::vector<VARIANT> arguments,
                            std::vector<DISPID> names, bool result) {
    return Case{
        what, kIsLonger, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments), names,
        S_OK, kNone,     result ? VARIANT_TRUE : VARIANT_FALSE};
  };
  const Case cases[] = {
      is_longer("converted", {Of(L"1234"), Of(L"3")}, {}, true),
      is_longer("converted", {Of(1234), Of(3)}, {}, true),
      is_longer("variants", {Reference(VT_VARIANT, &text), Reference(VT_VARIANT, &number)}, {},
                false),
      is_longer("a text", {Reference(VT_BSTR, &text.bstrVal), Of(3)}, {}, true),
      is_longer("named", {Of(3), Of(L"1234")}, {1, 0}, true),
      is_longer("one named", {Of(L"1234"), Of(4)}, {1}, false),
      is_longer("left out", {Of(L"1234")}, {}, true),
      is_longer("omitted", {Of(L"123"), omitted}, {}, false),
      is_longer("handed on", {Of(L"1234"), handed_on}, {}, true),
      is_longer("an error", {Of(L"1234"), Reference(VT_ERROR, &omitted.scode)}, {}, true),
      {"no member", 0, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"no member", kMark + 1, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"put a method", kIsLonger, put, {Of(1)}, {}, DISP_E_MEMBERNOTFOUND},
      {"call a property", kText, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"refer to a text", kText, DISPATCH_PROPERTYPUTREF, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"too few", kIsLonger, call, {}, {}, DISP_E_BADPARAMCOUNT},
      {"too many", kIsLonger, call, {Of(1), Of(1), Of(1)}, {}, DISP_E_BADPARAMCOUNT},
      {"no value", kText, put, {}, {}, DISP_E_BADPARAMCOUNT},
      {"omitted", kIsLonger, call, {omitted, Of(1)}, {}, DISP_E_PARAMNOTOPTIONAL},
      {"handed on", kIsLonger, call, {handed_on, Of(1)}, {}, DISP_E_PARAMNOTOPTIONAL},
      {"no such name", kIsLonger, call, {Of(1), Of(1)}, {2}, DISP_E_PARAMNOTFOUND, 0},
      {"named twice", kIsLonger, call, {Of(1), Of(1)}, {1, 1}, DISP_E_PARAMNOTFOUND, 1},
      {"given and named", kIsLonger, call, {Of(1), Of(1)}, {0}, DISP_E_PARAMNOTFOUND, 1},
      {"no text", kIsLonger, call, {Nothing(VT_NULL), Of(1)}, {}, DISP_E_TYPEMISMATCH, 1},
      {"too large", kIsLonger, call, {Of(1), Of(70000)}, {}, DISP_E_OVERFLOW, 0},
      {"no object", kObject, put, {Of(1)}, {}, DISP_E_TYPEMISMATCH, 0},
      {"object", kMultiply, call, {Of(1), object}, {}, DISP_E_TYPEMISMATCH, 0},
      {"array", kMultiply, call, {Of(1), with_array}, {}, DISP_E_TYPEMISMATCH, 0},
      {"no array", kMark, call, {Of(L"a")}, {}, DISP_E_TYPEMISMATCH, 0},
      {"not yet", kMark, call, {Reference(VT_ARRAY | VT_BSTR, &none)}, {}},
      {"not yet", kMark, call, {Reference(VT_ARRAY | VT_VARIANT, &none)}, {}},
      {"not of one dimension", kMark, call, {Reference(VT_VARIANT, &table)}, {}},
      {"the member's own", kText, DISPATCH_PROPERTYGET, {}, {}, E_FAIL},
      {"without a name", kText, put, {Of(L"unnamed")}, {}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Invoke(c.id, c.flags, c.arguments, c.names), c.status) << c.what;
    EXPECT_EQ(failed_, c.failed) << c.what;
    EXPECT_EQ(result_.vt, c.result == kNoResult ? VT_EMPTY : VT_BOOL) << c.what;
    if (result_.vt == VT_BOOL) {
      EXPECT_EQ(result_.boolVal, c.result) << c.what;
    }
  }
  for (const VARIANT& way : {Reference(VT_VARIANT, &text), Reference(VT_BSTR, &text.bstrVal)}) {
    SysReAllocString(&text.bstrVal, L"1234");
    sample_.variable = text.bstrVal;
    EXPECT_EQ(Invoke(kIsLonger, DISPATCH_METHOD, {way}), S_OK);
    EXPECT_EQ(result_.boolVal, VARIANT_TRUE) << way.vt;
  }
  SysReAllocString(&text.bstrVal, L"1234");
  const Passed<ReadByRef<String>> read(&text.bstrVal);
  text.bstrVal[0] = L'?';
  EXPECT_EQ(read.value(), L"1234");
  EXPECT_EQ(sample_.factor, 0) << "a member was called";
  EXPECT_EQ(sample_.text, L"unnamed");
}

// A host's variable has the type that the host likes.
TEST_F(DispatchTest, OutputsGoBackIntoVariablesOfOtherTypes) {
  std::string lines;
  trace_.Attach([&](std::string_view line) {
    lines.append(line.substr(line.find('\t'))).append("\n");  // without its time
  });
  const auto change = [&](const VARIANT& variable, const wchar_t* by) {
    EXPECT_EQ(Invoke(kMultiply, DISPATCH_METHOD, {Of(by), variable}), S_OK) << lines;
  };
  struct Case {
    std::vector<VARTYPE> types;
    const wchar_t* before;
    const wchar_t* by;
    const wchar_t* after;
  };
  const Case cases[] = {
      {{VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_INT, VT_UINT, VT_I8, VT_UI8},
       L"21",
       L"2",
       L"42"},
      {{VT_R4, VT_R8, VT_DECIMAL, VT_CY, VT_DATE, VT_BSTR}, L"0.5", L"2.5", L"1.25"},
      {{VT_BOOL}, L"-1", L"2", L"-1"},
      {{VT_BSTR}, L"text", L"2", L"0"},
      {{VT_BSTR}, L"", L"2", L"0"},
      {{VT_I4}, L"5", L"0.5", L"2"},
      {{VT_I4}, L"7", L"0.5", L"4"},  // half to even
      // What does not fit leaves it as it was.
      {{VT_UI1}, L"200", L"2", L"200"},
      {{VT_I2}, L"-20000", L"2", L"-20000"},
  };
  for (const auto& [types, before, by, after] : cases) {
    for (const VARTYPE vt : types) {
      ScopedVariant number = testing::Variant(before);
      if (vt != VT_BSTR) VariantChangeTypeEx(&number, &number, LOCALE_NEUTRAL, 0, VT_R8);
      ScopedVariant variable;
      ASSERT_EQ(VariantChangeTypeEx(&variable, &number, LOCALE_NEUTRAL, 0, vt), S_OK);
      void* const content =
          vt == VT_DECIMAL ? static_cast<void*>(&variable.decVal) : &variable.lVal;
      change(Reference(vt, content), by);
      // A decimal takes the whole of it, and has its reserved word where the type is.
      EXPECT_EQ(std::exchange(variable.vt, vt), vt == VT_DECIMAL ? VARTYPE{VT_EMPTY} : vt);
      ScopedVariant now;
      VariantChangeTypeEx(&now, &variable, LOCALE_NEUTRAL, 0, VT_R8);
      VariantChangeTypeEx(&now, &now, LOCALE_NEUTRAL, 0, VT_BSTR);
      EXPECT_EQ(View(now.bstrVal), after) << vt << ToUtf8(before);
    }
  }
  EXPECT_EQ(
      lines,
      "\t0\t0\tskip\tSample.Multiply(\"amount\")\t0x8002000A\tThe variable cannot hold it.\n"
      "\t0\t0\tskip\tSample.Multiply(\"amount\")\t0x8002000A\tThe variable cannot hold it.\n");

  // What a script's variable held before is let go of.
  Sample object;
  for (VARIANT held : {Nothing(VT_DISPATCH), Of(&object)}) {
    change(Reference(VT_VARIANT, &held), L"2");
    EXPECT_EQ(held.vt, VT_R8);
    EXPECT_EQ(held.dblVal, 0);
  }
  EXPECT_EQ(object.references, 1u);
}

TEST_F(DispatchTest, TextsAreReadAndWrittenInTheLanguageOfTheCall) {
  locale_ = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  ScopedVariant amount = testing::Variant(L"1,5");
  EXPECT_EQ(Invoke(kMultiply, DISPATCH_METHOD, {Of(L"2,5"), Reference(VT_BSTR, &amount.bstrVal)}),
            S_OK);
  EXPECT_EQ(View(amount.bstrVal), L"3,75");

  SAFEARRAYBOUND bounds = {2, 0};
  ScopedVariant array;
  array.vt = VT_ARRAY | VT_VARIANT;
  array.parray = SafeArrayCreate(VT_VARIANT, 1, &bounds);
  VARIANT* const element = ArrayElements<VARIANT>(array.parray).begin();
  element[0] = Of(1.5);
  element[1] = Nothing(VT_NULL);
  EXPECT_EQ(Invoke(kMark, DISPATCH_METHOD, {Reference(VT_VARIANT, &array)}), S_OK);
  EXPECT_EQ(View(element[0].bstrVal), L"1,5!");
  EXPECT_EQ(element[1].vt, VT_NULL) << "no text";
}

TEST_F(DispatchTest, ArraysAreFilledWithinTheirBounds) {
  for (const LONG lower_bound : {-2, 0, 1}) {
    SAFEARRAYBOUND bounds = {3, lower_bound};
    ScopedVariant strings;
    strings.vt = VT_ARRAY | VT_BSTR;
    strings.parray = SafeArrayCreate(VT_BSTR, 1, &bounds);
    ScopedVariant variants;
    variants.vt = VT_ARRAY | VT_VARIANT;
    variants.parray = SafeArrayCreate(VT_VARIANT, 1, &bounds);
    BSTR* const string = ArrayElements<BSTR>(strings.parray).begin();
    VARIANT* const variant = ArrayElements<VARIANT>(variants.parray).begin();
    string[2] = SysAllocString(L"a");
    ScopedVariant seven = testing::Variant(7);
    VARIANT reference = Reference(VT_VARIANT, &seven);
    variant[1] = Reference(VT_VARIANT, &reference);
    variant[2] = Of(L"a");

    for (const VARIANT& way :
         {Reference(VT_VARIANT, &strings), Reference(VT_ARRAY | VT_BSTR, &strings.parray),
          Reference(VT_VARIANT, &variants), Reference(VT_ARRAY | VT_VARIANT, &variants.parray)}) {
      ASSERT_EQ(Invoke(kMark, DISPATCH_METHOD, {way}), S_OK);
      EXPECT_EQ(sample_.lower_bound, lower_bound);
    }
    EXPECT_EQ(View(string[0]), L"");
    EXPECT_EQ(View(string[2]), L"a!!");
    EXPECT_EQ(variant[0].vt, VT_EMPTY);  // an element that the member leaves alone
    EXPECT_EQ(variant[1].pvarVal, &reference);
    EXPECT_EQ(View(seven.bstrVal), L"7!!");
    EXPECT_EQ(View(variant[2].bstrVal), L"a!!");
  }
}

// Whatever the host calls it: of something else, or with its memory given back.
TEST_F(DispatchTest, ArraysThatAreNoneAreLeftAlone) {
  for (const VARTYPE held : {VT_R8, VT_I4, VT_BSTR, VT_VARIANT}) {
    ScopedVariant array;
    array.vt = static_cast<VARTYPE>(VT_ARRAY | held);
    array.parray = SafeArrayCreateVector(held, 5, 3);
    for (const VARTYPE called : {VT_BSTR, VT_VARIANT}) {
      if (called == held) SafeArrayDestroyData(array.parray);
      const auto vt = static_cast<VARTYPE>(VT_ARRAY | called);
      EXPECT_EQ(Invoke(kMark, DISPATCH_METHOD, {Reference(vt, &array.parray)}), S_OK);
      EXPECT_EQ(sample_.lower_bound, called == held ? 5 : 0) << held << called;
    }
  }
}

TEST_F(DispatchTest, PropertiesAreSetInEveryWay) {
  Sample object;
  for (const int flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF,
                          DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
    const auto way = static_cast<WORD>(flags);
    for (const VARTYPE nothing : {VT_DISPATCH, VT_EMPTY, VT_NULL}) {
      EXPECT_EQ(Invoke(kObject, way, {Of(&object)}, {DISPID_PROPERTYPUT}), S_OK) << way;
      EXPECT_EQ(Invoke(kObject, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}), S_OK);
      EXPECT_EQ(result_.vt, VT_DISPATCH);
      EXPECT_EQ(result_.pdispVal, &object) << way;
      EXPECT_EQ(Invoke(kObject, way, {Nothing(nothing)}, {DISPID_PROPERTYPUT}), S_OK) << nothing;
      EXPECT_FALSE(sample_.object) << nothing;
    }
  }
  EXPECT_EQ(object.references, 1u);
}

}  // namespace
}  // namespace ard::windows
