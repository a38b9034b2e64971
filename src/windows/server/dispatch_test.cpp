// Late-bound calls as the various hosts make them, on a class with a member of each kind.
#include "windows/server/dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace ard::windows {
namespace {

// Further types, as a later member may add them.
struct Integer {
  using Type = short;
  static constexpr VARTYPE kVt = VT_I2;
  static Type& In(VARIANT& variant) { return variant.iVal; }
};
struct Double {
  using Type = double;
  static constexpr VARTYPE kVt = VT_R8;
  static Type& In(VARIANT& variant) { return variant.dblVal; }
};

struct Sample : IDispatch {
  std::wstring text;
  ComPtr<IDispatch> object;
  double factor = 0;
  bool flag = false;

  virtual HRESULT STDMETHODCALLTYPE put_Text(BSTR value) {
    text = View(value);
    return S_OK;
  }
  virtual HRESULT STDMETHODCALLTYPE get_Text(BSTR* value) {
    *value = NewBstr(text);
    return S_OK;
  }
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
  // Doubles `amount` and appends to `name`, unless `flag` is false.
  virtual HRESULT STDMETHODCALLTYPE Change(double by, double* amount, BSTR* name,
                                           VARIANT_BOOL use) {
    factor = by;
    flag = use != VARIANT_FALSE;
    if (!flag) return S_OK;
    *amount *= by;
    const BSTR longer = NewBstr(std::wstring(View(*name)) + L"!");
    SysFreeString(*name);
    *name = longer;
    return S_OK;
  }
  virtual HRESULT STDMETHODCALLTYPE Fail(BSTR*) { return E_FAIL; }

  // Not needed for a call through the table.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
  ULONG references = 1;
};

enum : DISPID { kText = 1, kObject, kIsLonger, kChange, kFail };
constexpr Member kMembers[] = {
    Property<&Sample::get_Text, &Sample::put_Text, String>,
    ObjectProperty<&Sample::get_Object, &Sample::putref_Object>,
    Method<&Sample::IsLonger, Boolean(String, Integer)>,
    Method<&Sample::Change,
           void(Double, ByRef<Double>, ByRef<String>, Optional<Boolean, VARIANT_TRUE>)>,
    Method<&Sample::Fail, String()>,
};

VARIANT Text(const wchar_t* text) {
  VARIANT variant = {};
  variant.vt = VT_BSTR;
  variant.bstrVal = NewBstr(text);
  return variant;
}
VARIANT Long(long value) {
  VARIANT variant = {};
  variant.vt = VT_I4;
  variant.lVal = value;
  return variant;
}
VARIANT Omitted() {
  VARIANT variant = {};
  variant.vt = VT_ERROR;
  variant.scode = DISP_E_PARAMNOTFOUND;
  return variant;
}
VARIANT Nothing(VARTYPE vt) {
  VARIANT variant = {};
  variant.vt = vt;
  return variant;
}
VARIANT Reference(VARTYPE vt, void* target) {
  VARIANT variant = {};
  variant.vt = static_cast<VARTYPE>(VT_BYREF | vt);
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
    const HRESULT status = windows::Invoke(&sample_, kMembers, id, IID_NULL, LOCALE_NEUTRAL, flags,
                                           &parameters, &result_, &failed_);
    for (VARIANT& argument : arguments) VariantClear(&argument);
    return status;
  }

  static constexpr UINT kNone = 99;
  Sample sample_;
  ScopedVariant result_;
  UINT failed_ = kNone;
};

TEST_F(DispatchTest, ArgumentsAreConverted) {
  ScopedVariant variable;
  variable.vt = VT_BSTR;
  variable.bstrVal = NewBstr(L"1234");
  ScopedVariant number;
  number.vt = VT_R8;
  number.dblVal = 2.6;
  BSTR text = variable.bstrVal;
  const std::function<VARIANT()> texts[] = {
      [&] { return Text(L"1234"); }, [&] { return Long(1234); },
      [&] { return Reference(VT_VARIANT, &variable); }, [&] { return Reference(VT_BSTR, &text); }};
  const std::function<VARIANT()> lengths[] = {[&] { return Long(3); }, [&] { return Text(L"3"); },
                                              [&] { return Reference(VT_VARIANT, &number); }};
  for (const auto& a : texts) {
    for (const auto& b : lengths) {
      ASSERT_EQ(Invoke(kIsLonger, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {a(), b()}), S_OK);
      EXPECT_EQ(result_.vt, VT_BOOL);
      EXPECT_EQ(result_.boolVal, VARIANT_TRUE);
    }
  }
  EXPECT_EQ(variable.vt, VT_BSTR);  // by value: left alone
  EXPECT_EQ(number.vt, VT_R8);
}

TEST_F(DispatchTest, OutputsGoBackIntoVariables) {
  ScopedVariant amount;
  amount.vt = VT_I2;
  amount.iVal = 21;
  ScopedVariant name;  // Empty, as a script declares it
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD,
                   {Long(2), Reference(VT_VARIANT, &amount), Reference(VT_VARIANT, &name)}),
            S_OK);
  EXPECT_EQ(amount.vt, VT_R8);
  EXPECT_EQ(amount.dblVal, 42);
  EXPECT_EQ(name.vt, VT_BSTR);
  EXPECT_EQ(View(name.bstrVal), L"!");
}

TEST_F(DispatchTest, TypedReferencesArePassedOn) {
  double amount = 1.5;
  Bstr name(L"a");
  BSTR text = name.Detach();
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD,
                   {Long(2), Reference(VT_R8, &amount), Reference(VT_BSTR, &text)}),
            S_OK);
  EXPECT_EQ(amount, 3);
  EXPECT_EQ(View(text), L"a!");
  SysFreeString(text);
}

TEST_F(DispatchTest, OutputsOfPlainValuesAreDropped) {
  VARIANT name = Text(L"a");
  VARIANT arguments[] = {name, Long(21), Long(2)};
  DISPPARAMS parameters = {arguments, nullptr, 3, 0};
  ASSERT_EQ(windows::Invoke(&sample_, kMembers, kChange, IID_NULL, 0, DISPATCH_METHOD, &parameters,
                            nullptr, nullptr),
            S_OK);
  EXPECT_EQ(sample_.factor, 2);
  EXPECT_EQ(arguments[0].bstrVal, name.bstrVal);  // they are the caller's
  EXPECT_EQ(View(name.bstrVal), L"a");
  EXPECT_EQ(arguments[1].vt, VT_I4);
  EXPECT_EQ(arguments[1].lVal, 21);
  VariantClear(&name);
}

TEST_F(DispatchTest, OptionalParametersTakeTheirDefault) {
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD, {Long(2), Long(1), Text(L"")}), S_OK);
  EXPECT_TRUE(sample_.flag);
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD, {Long(2), Long(1), Text(L""), Long(0)}), S_OK);
  EXPECT_FALSE(sample_.flag);
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD, {Long(2), Long(1), Text(L""), Omitted()}), S_OK);
  EXPECT_TRUE(sample_.flag);
}

TEST_F(DispatchTest, NamedArgumentsGoToTheirParameters) {
  ASSERT_EQ(Invoke(kIsLonger, DISPATCH_METHOD, {Long(3), Text(L"1234")}, {1, 0}), S_OK);
  EXPECT_EQ(result_.boolVal, VARIANT_TRUE);
  ASSERT_EQ(Invoke(kIsLonger, DISPATCH_METHOD, {Text(L"1234"), Long(4)}, {1}), S_OK);
  EXPECT_EQ(result_.boolVal, VARIANT_FALSE);
  ASSERT_EQ(Invoke(kChange, DISPATCH_METHOD, {Long(2), Long(0), Text(L""), Long(1)}, {3, 2, 1}),
            S_OK);
  EXPECT_FALSE(sample_.flag);
}

TEST_F(DispatchTest, PropertiesAreSetInEveryWay) {
  Sample object;
  const auto reference = [&] {
    VARIANT variant = Nothing(VT_DISPATCH);
    variant.pdispVal = ComPtr<IDispatch>(&object).Detach();
    return variant;
  };
  constexpr WORD kWays[] = {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF,
                            DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF};
  for (const WORD flags : kWays) {
    sample_.object = ComPtr<IDispatch>();
    ASSERT_EQ(Invoke(kObject, flags, {reference()}, {DISPID_PROPERTYPUT}), S_OK) << flags;
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
  short wrong_type = 0;
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
      {"no member", 6, call, {}, {}, DISP_E_MEMBERNOTFOUND},
      {"no member", -1, call, {}, {}, DISP_E_MEMBERNOTFOUND},
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
      {"reference to another type",
       kChange,
       call,
       {Long(1), Reference(VT_I2, &wrong_type), Long(1)},
       {},
       DISP_E_TYPEMISMATCH,
       1},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Invoke(c.id, c.flags, c.arguments, c.names), c.status) << c.what;
    EXPECT_EQ(failed_, c.failed) << c.what;
    EXPECT_EQ(result_.vt, VT_EMPTY) << c.what;
  }
  EXPECT_EQ(sample_.factor, 0) << "a member was called";
  EXPECT_EQ(Invoke(kFail, DISPATCH_METHOD, {}), E_FAIL);
  EXPECT_EQ(result_.vt, VT_EMPTY);
}

}  // namespace
}  // namespace ard::windows
