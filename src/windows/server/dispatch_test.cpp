// Late-bound calls as the various hosts make them, on a class with a member of each kind.
#include "windows/server/dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "tests/windows/host.h"
#include "windows/server/string_array.h"

namespace ard::windows {
namespace {

struct Sample : testing::ForeignObject {
  std::wstring text;
  ComPtr<IDispatch> object;
  double factor = 0;
  bool flag = false;

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
    *result = View(a).size() > static_cast<std::size_t>(length) ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  // Multiplies `amount` and appends to `name`, unless `use` is false.
  virtual HRESULT STDMETHODCALLTYPE Change(double by, double* amount, BSTR* name,
                                           VARIANT_BOOL use) {
    factor = by;
    flag = use != VARIANT_FALSE;
    if (!flag) return S_OK;
    *amount *= by;
    SysFreeString(std::exchange(*name, NewBstr(std::wstring(View(*name)) + L"!")));
    return S_OK;
  }
  // Adds "!" to each element but the empty ones.
  virtual HRESULT STDMETHODCALLTYPE Mark(SAFEARRAY** array) {
    const ArrayElements<BSTR> strings(*array);
    const TextArray texts = TextsOf(strings);
    lower_bound = texts.lower_bound();
    for (std::int64_t i = texts.lower_bound(); i <= texts.upper_bound(); ++i) {
      if (!texts.Get(i).empty()) texts.Put(i, std::wstring(texts.Get(i)) + L'!');
    }
    return S_OK;
  }
  std::int64_t lower_bound = -1;
};

enum : DISPID { kText = 1, kObject, kIsLonger, kChange, kMark };
constexpr Member kMembers[] = {
    Property<&Sample::get_Text, &Sample::put_Text, String>,
    ObjectProperty<&Sample::get_Object, &Sample::putref_Object>,
    Method<&Sample::IsLonger, Boolean(String, Integer)>,
    Method<&Sample::Change,
           void(Double, ByRef<Double>, ByRef<String>, Optional<Boolean, VARIANT_TRUE>)>,
    Method<&Sample::Mark, void(StringArray)>,
};
constexpr const wchar_t* kNames[] = {L"Text", L"Object", L"IsLonger a length",
                                     L"Change by amount name use", L"Mark array"};
constexpr DispatchTable kTable = {L"Sample", kMembers, kNames};

VARIANT Text(const wchar_t* text) { return testing::Variant(text).Detach(); }
VARIANT Long(long value) { return testing::Variant(value).Detach(); }
VARIANT Nothing(VARTYPE vt) {
  VARIANT variant = {};
  variant.vt = vt;
  return variant;
}
VARIANT Omitted() {
  VARIANT variant = Nothing(VT_ERROR);
  variant.scode = DISP_E_PARAMNOTFOUND;
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
                                           LOCALE_NEUTRAL, flags, &parameters, &result_, &failed_);
    for (VARIANT& argument : arguments) VariantClear(&argument);
    return status;
  }

  static constexpr UINT kNone = 99;
  Sample sample_;
  Trace trace_;
  bool prepared_ = false;
  ScopedVariant result_;
  UINT failed_ = kNone;
};

TEST_F(DispatchTest, ArgumentsAreConverted) {
  ScopedVariant variable = testing::Variant(L"1234");
  ScopedVariant number;
  number.vt = VT_R8;
  number.dblVal = 2.6;
  BSTR text = variable.bstrVal;
  for (const auto& [a, b] :
       {std::pair(Text(L"1234"), Long(3)), std::pair(Long(1234), Text(L"3")),
        std::pair(Reference(VT_VARIANT, &variable), Reference(VT_VARIANT, &number)),
        std::pair(Reference(VT_BSTR, &text), Long(3))}) {
    ASSERT_EQ(Invoke(kIsLonger, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {a, b}), S_OK);
    EXPECT_EQ(result_.vt, VT_BOOL);
    EXPECT_EQ(result_.boolVal, VARIANT_TRUE);
  }
}

// A host's variable has the type that the host likes.
TEST_F(DispatchTest, OutputsGoBackIntoVariablesOfOtherTypes) {
  std::string lines;
  trace_.Attach([&](std::string_view line) {
    lines.append(line.substr(line.find('\t'))).append("\n");  // without its time
  });
  const auto change = [&](const VARIANT& variable, const wchar_t* by) {
    EXPECT_EQ(Invoke(kChange, DISPATCH_METHOD, {Text(by), variable, Text(L"")}), S_OK) << lines;
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
      variable.vt = vt;  // a decimal takes the whole of it
      ScopedVariant now;
      VariantChangeTypeEx(&now, &variable, LOCALE_NEUTRAL, 0, VT_R8);
      VariantChangeTypeEx(&now, &now, LOCALE_NEUTRAL, 0, VT_BSTR);
      EXPECT_EQ(View(now.bstrVal), after) << vt << ToUtf8(before);
    }
  }
  EXPECT_EQ(lines,
            "\t0\t0\tskip\tSample.Change(\"amount\")\t0x8002000A\tThe variable cannot hold it.\n"
            "\t0\t0\tskip\tSample.Change(\"amount\")\t0x8002000A\tThe variable cannot hold it.\n");

  // What a script's variable held before is let go of.
  Sample object;
  for (VARIANT held : {Nothing(VT_DISPATCH), testing::Variant(&object).Detach()}) {
    change(Reference(VT_VARIANT, &held), L"2");
    EXPECT_EQ(held.vt, VT_R8);
    EXPECT_EQ(held.dblVal, 0);
  }
  EXPECT_EQ(object.references, 1u);
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
    variant[1] = Long(7);
    variant[2] = Text(L"a");

    for (const VARIANT& way :
         {Reference(VT_VARIANT, &strings), Reference(VT_ARRAY | VT_BSTR, &strings.parray),
          Reference(VT_VARIANT, &variants), Reference(VT_ARRAY | VT_VARIANT, &variants.parray)}) {
      ASSERT_EQ(Invoke(kMark, DISPATCH_METHOD, {way}), S_OK);
      EXPECT_EQ(sample_.lower_bound, lower_bound);
    }
    EXPECT_EQ(View(string[0]), L"");
    EXPECT_EQ(View(string[2]), L"a!!");
    EXPECT_EQ(variant[0].vt, VT_EMPTY);  // an element that the member leaves alone
    EXPECT_EQ(View(variant[1].bstrVal), L"7!!");
    EXPECT_EQ(View(variant[2].bstrVal), L"a!!");
  }
  // No array yet, or one of several dimensions: there is nothing to fill.
  SAFEARRAYBOUND square[] = {{2, 0}, {2, 0}};
  ScopedVariant table;
  table.vt = VT_ARRAY | VT_VARIANT;
  table.parray = SafeArrayCreate(VT_VARIANT, 2, square);
  EXPECT_EQ(Invoke(kMark, DISPATCH_METHOD, {Reference(VT_VARIANT, &table)}), S_OK);
  SAFEARRAY* none = nullptr;
  EXPECT_EQ(Invoke(kMark, DISPATCH_METHOD, {Reference(VT_ARRAY | VT_BSTR, &none)}), S_OK);
}

TEST_F(DispatchTest, ArgumentsMayBeNamedOrOmitted) {
  ASSERT_EQ(Invoke(kIsLonger, DISPATCH_METHOD, {Long(3), Text(L"1234")}, {1, 0}), S_OK);
  EXPECT_EQ(result_.boolVal, VARIANT_TRUE);
  ASSERT_EQ(Invoke(kIsLonger, DISPATCH_METHOD, {Text(L"1234"), Long(4)}, {1}), S_OK);
  EXPECT_EQ(result_.boolVal, VARIANT_FALSE);
  VARIANT omitted = Omitted();
  for (const VARIANT& way :
       {omitted, Reference(VT_VARIANT, &omitted), Reference(VT_ERROR, &omitted.scode)}) {
    sample_.flag = false;
    ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD, {Long(2), Long(1), Text(L""), way}), S_OK);
    EXPECT_TRUE(sample_.flag);
  }
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD, {Long(2), Long(0), Text(L""), Long(1)}, {3, 2, 1}),
            S_OK);
  EXPECT_FALSE(sample_.flag);
}

TEST_F(DispatchTest, PropertiesAreSetInEveryWay) {
  Sample object;
  for (const int flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF,
                          DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
    sample_.object = ComPtr<IDispatch>();
    VARIANT reference = testing::Variant(&object).Detach();
    ASSERT_EQ(Invoke(kObject, static_cast<WORD>(flags), {reference}, {DISPID_PROPERTYPUT}), S_OK)
        << flags;
    EXPECT_EQ(sample_.object.get(), &object) << flags;
  }
  ASSERT_EQ(Invoke(kObject, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}), S_OK);
  EXPECT_EQ(result_.vt, VT_DISPATCH);
  EXPECT_EQ(result_.pdispVal, &object);
  for (const VARTYPE nothing : {VT_DISPATCH, VT_EMPTY, VT_NULL}) {
    sample_.object = ComPtr<IDispatch>(&object);
    ASSERT_EQ(Invoke(kObject, DISPATCH_PROPERTYPUTREF, {Nothing(nothing)}, {DISPID_PROPERTYPUT}),
              S_OK)
        << nothing;
    EXPECT_FALSE(sample_.object) << nothing;
  }
  result_ = ScopedVariant();
  EXPECT_EQ(object.references, 1u);

  ASSERT_EQ(Invoke(kText, DISPATCH_PROPERTYPUT, {Text(L"unnamed")}), S_OK);
  EXPECT_EQ(sample_.text, L"unnamed");
}

TEST_F(DispatchTest, MistakesOfTheHostAreTold) {
  IDispatch* target = nullptr;
  const VARIANT object = Reference(VT_DISPATCH, &target);
  VARIANT array = Nothing(VT_ARRAY | VT_VARIANT);
  const VARIANT with_array = Reference(VT_VARIANT, &array);
  VARIANT omitted = Omitted();
  const VARIANT handed_on = Reference(VT_VARIANT, &omitted);
  const WORD call = DISPATCH_METHOD;
  const WORD put = DISPATCH_PROPERTYPUT;
  struct Case {
    const char* what;
    DISPID id;
    WORD flags;
    std::vector<VARIANT> arguments;
    std::vector<DISPID> names;
    HRESULT status;
    UINT failed = kNone;
  };
  const Case cases[] = {
      {"no member", 0, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"no member", kMark + 1, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"put a method", kIsLonger, put, {Long(1)}, {}, DISP_E_MEMBERNOTFOUND},
      {"call a property", kText, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"refer to a text", kText, DISPATCH_PROPERTYPUTREF, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"too few", kIsLonger, call, {Long(1)}, {}, DISP_E_BADPARAMCOUNT},
      {"too many", kIsLonger, call, {Long(1), Long(1), Long(1)}, {}, DISP_E_BADPARAMCOUNT},
      {"no value", kText, put, {}, {}, DISP_E_BADPARAMCOUNT},
      {"left out", kIsLonger, call, {Omitted(), Long(1)}, {}, DISP_E_PARAMNOTOPTIONAL},
      {"no such name", kIsLonger, call, {Long(1), Long(1)}, {2}, DISP_E_PARAMNOTFOUND, 0},
      {"named twice", kIsLonger, call, {Long(1), Long(1)}, {1, 1}, DISP_E_PARAMNOTFOUND, 1},
      {"given and named", kIsLonger, call, {Long(1), Long(1)}, {0}, DISP_E_PARAMNOTFOUND, 1},
      {"no text", kIsLonger, call, {Nothing(VT_NULL), Long(1)}, {}, DISP_E_TYPEMISMATCH, 1},
      {"too large", kIsLonger, call, {Long(1), Long(70000)}, {}, DISP_E_OVERFLOW, 0},
      {"no object", kObject, put, {Long(1)}, {}, DISP_E_TYPEMISMATCH, 0},
      {"object", kChange, call, {Long(1), object, Long(1)}, {}, DISP_E_TYPEMISMATCH, 1},
      {"array", kChange, call, {Long(1), with_array, Long(1)}, {}, DISP_E_TYPEMISMATCH, 1},
      {"handed on", kIsLonger, call, {Text(L"a"), handed_on}, {}, DISP_E_PARAMNOTOPTIONAL},
      {"no array", kMark, call, {Text(L"a")}, {}, DISP_E_TYPEMISMATCH, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Invoke(c.id, c.flags, c.arguments, c.names), c.status) << c.what;
    EXPECT_EQ(failed_, c.failed) << c.what;
    EXPECT_EQ(result_.vt, VT_EMPTY) << c.what;
  }
  EXPECT_EQ(sample_.factor, 0) << "a member was called";
  EXPECT_EQ(Invoke(kText, DISPATCH_PROPERTYGET, {}), E_FAIL);
  EXPECT_EQ(result_.vt, VT_EMPTY);
}

}  // namespace
}  // namespace ard::windows
