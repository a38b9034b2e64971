// The type library, by which hosts are compiled: every name, identifier, id, type and place in the
// vtable.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "frame/text.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host

// The members of each interface after those of IDispatch, in vtable order, as hosts have been
// compiled against them. They stay for ever; what is added comes after them, and in here with the
// release that brings it.
constexpr std::wstring_view kReleased =
#include "tests/windows/published_members.inc"
    ;

struct Enumeration {
  const wchar_t* name;
  const wchar_t* id;
  std::vector<const wchar_t*> members;  // with the values 0, 1, 2 ...
};
const Enumeration kEnumerations[] = {
    {L"vxAccess",
     L"{8E1EEC7B-DED6-430A-889D-E3520C18C45A}",
     {L"vxAccessCustomerRecord", L"vxAccessSupplierRecord", L"vxAccessNominalRecord",
      L"vxAccessBankRecord", L"vxAccessProductRecord", L"vxAccessInvoiceRecord",
      L"vxAccessSopRecord", L"vxAccessPopRecord"}},
    {L"tbDelAddType",
     L"{E1C415B5-8FDB-4407-B96F-1B27E09ACAED}",
     {L"tbDelAddCompany", L"tbDelAddSales", L"tbDelAddPurchase"}},
};

std::wstring NameOf(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
  Bstr name;
  info->GetDocumentation(member, name.Receive(), nullptr, nullptr, nullptr);
  return std::wstring(name.view());
}

// What development tools show of a type or a member is a sentence.
void ExpectHelp(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
  Bstr help;
  info->GetDocumentation(member, nullptr, help.Receive(), nullptr, nullptr);
  const std::wstring_view text = help.view();
  EXPECT_TRUE(text.size() > 5 && text.ends_with(L'.') && text.front() < L'a')
      << ToUtf8(NameOf(info) + L"." + NameOf(info, member)) << ": " << ToUtf8(text);
}

// The type that `info` implements, or the other side of a dual interface (-1).
ComPtr<ITypeInfo> Implemented(ITypeInfo* info, UINT index) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> type;
  info->GetRefTypeOfImplType(index, &reference);
  info->GetRefTypeInfo(reference, type.Receive());
  return type;
}

TYPEATTR AttributesOf(ITypeInfo* info) {
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  const TYPEATTR copy = *attributes;
  info->ReleaseTypeAttr(attributes);
  return copy;
}

std::wstring TypeName(const TYPEDESC& type) {
  static const std::map<VARTYPE, std::wstring> kNames = {
      {VT_BSTR, L"String"},     {VT_BOOL, L"Boolean"},
      {VT_DISPATCH, L"Object"}, {VT_HRESULT, L"HRESULT"},
      {VT_I2, L"Integer"},      {VT_I4, L"Long"},
      {VT_R8, L"Double"},       {VT_DATE, L"Date"},
      {VT_VARIANT, L"Variant"}, {VT_USERDEFINED, L"Enumeration"}};
  if (type.vt == VT_PTR) return TypeName(*type.lptdesc) + L"*";
  if (type.vt == VT_SAFEARRAY) return TypeName(*type.lptdesc) + L"()";
  const auto known = kNames.find(type.vt);
  return known == kNames.end() ? L"type " + std::to_wstring(type.vt) : known->second;
}

std::wstring Describe(ITypeInfo* info, const FUNCDESC& function) {
  static const std::map<INVOKEKIND, std::wstring> kKinds = {{INVOKE_FUNC, L"call "},
                                                            {INVOKE_PROPERTYGET, L"get "},
                                                            {INVOKE_PROPERTYPUT, L"put "},
                                                            {INVOKE_PROPERTYPUTREF, L"putref "}};
  static const std::pair<USHORT, std::wstring> kFlags[] = {{PARAMFLAG_FIN, L"in "},
                                                           {PARAMFLAG_FOUT, L"out "},
                                                           {PARAMFLAG_FRETVAL, L"retval "},
                                                           {PARAMFLAG_FOPT, L"optional "}};
  BSTR names[8] = {};
  UINT count = 0;
  info->GetNames(function.memid, names, ARRAYSIZE(names), &count);
  std::wstring text = kKinds.at(function.invkind) + names[0] + L"(";
  for (int i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    if (i > 0) text += L", ";
    for (const auto& [flag, word] : kFlags) {
      if (parameter.paramdesc.wParamFlags & flag) text += word;
    }
    // The value of a property has no name of its own here: all of them are "Value".
    const bool named = i + 1 < static_cast<int>(count);
    text += TypeName(parameter.tdesc) + L" " + (named ? names[i + 1] : L"Value");
    if (parameter.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) {
      text += L" = \"" + FromVariant(parameter.paramdesc.pparamdescex->varDefaultValue).ToText() +
              L"\"";
    }
  }
  for (const BSTR name : names) SysFreeString(name);
  return text + L")";
}

class TypeLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library_.Receive()), S_OK);
  }
  ComPtr<ITypeInfo> Find(const wchar_t* id) {
    ComPtr<ITypeInfo> info;
    library_->GetTypeInfoOfGuid(Id(id), info.Receive());
    return info;
  }

  ComPtr<ITypeLib> library_;
};

TEST_F(TypeLibrary, HoldsThePublishedTypesAndNoOther) {
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library_->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(Text(attributes->guid), kLibraryId);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  library_->ReleaseTLibAttr(attributes);
  Bstr name;
  Bstr help_file;
  library_->GetDocumentation(-1, name.Receive(), nullptr, nullptr, help_file.Receive());
  EXPECT_EQ(name.view(), L"ArdObjects100");
  EXPECT_TRUE(help_file.view().ends_with(L"ArdObjects100.chm"));
  EXPECT_EQ(library_->GetTypeInfoCount(), 2 * std::size(kClasses) + std::size(kEnumerations));
}

TEST_F(TypeLibrary, EnumerationsCarryTheirOwnNamesAndIdentifiers) {
  for (const Enumeration& enumeration : kEnumerations) {
    const ComPtr<ITypeInfo> info = Find(enumeration.id);
    ASSERT_TRUE(info);
    EXPECT_EQ(NameOf(info.get()), enumeration.name);
    ExpectHelp(info.get());
    const TYPEATTR attributes = AttributesOf(info.get());
    EXPECT_EQ(attributes.typekind, TKIND_ENUM);
    ASSERT_EQ(attributes.cVars, enumeration.members.size());
    for (UINT i = 0; i < attributes.cVars; ++i) {
      VARDESC* constant = nullptr;
      ASSERT_EQ(info->GetVarDesc(i, &constant), S_OK);
      EXPECT_EQ(NameOf(info.get(), constant->memid), enumeration.members[i]);
      ExpectHelp(info.get(), constant->memid);
      EXPECT_EQ(constant->lpvarValue->vt, VT_I4);
      EXPECT_EQ(constant->lpvarValue->lVal, static_cast<LONG>(i));
      info->ReleaseVarDesc(constant);
    }
  }
}

TEST_F(TypeLibrary, ClassesHaveTheirDefaultInterface) {
  for (const ClassIdentity& identity : kClasses) {
    const ComPtr<ITypeInfo> info = Find(identity.class_id);
    ASSERT_TRUE(info);
    EXPECT_EQ(NameOf(info.get()), identity.name);
    const TYPEATTR attributes = AttributesOf(info.get());
    EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
    EXPECT_TRUE(attributes.wTypeFlags & TYPEFLAG_FCANCREATE);
    ASSERT_EQ(attributes.cImplTypes, 1);
    INT flags = 0;
    info->GetImplTypeFlags(0, &flags);
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
    EXPECT_EQ(Text(AttributesOf(Implemented(info.get(), 0).get()).guid), identity.interface_id);
  }
}

TEST_F(TypeLibrary, InterfacesAreDualAndHaveTheirMembersInOrder) {
  for (const ClassIdentity& identity : kClasses) {
    const ComPtr<ITypeInfo> dispatch = Find(identity.interface_id);
    ASSERT_TRUE(dispatch);
    EXPECT_EQ(NameOf(dispatch.get()), std::wstring(L"_") + identity.name);
    TYPEATTR attributes = AttributesOf(dispatch.get());
    EXPECT_EQ(attributes.typekind, TKIND_DISPATCH);
    EXPECT_TRUE(attributes.wTypeFlags & TYPEFLAG_FDUAL);

    const ComPtr<ITypeInfo> info = Implemented(dispatch.get(), static_cast<UINT>(-1));
    ASSERT_TRUE(info) << "no vtable";
    attributes = AttributesOf(info.get());
    EXPECT_EQ(attributes.typekind, TKIND_INTERFACE);
    ExpectHelp(dispatch.get());

    std::wstring found = L"\n" + std::wstring(identity.name) + L"\n";
    DISPID last_id = 0;
    std::wstring last_name;
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
      FUNCDESC* function = nullptr;
      ASSERT_EQ(info->GetFuncDesc(i, &function), S_OK);
      found += L"  " + Describe(info.get(), *function) + L"\n";
      EXPECT_EQ(function->callconv, CC_STDCALL);
      EXPECT_EQ(TypeName(function->elemdescFunc.tdesc), L"HRESULT");
      EXPECT_EQ(function->oVft, static_cast<SHORT>((7 + i) * sizeof(void*)));
      const std::wstring name = NameOf(info.get(), function->memid);
      EXPECT_EQ(function->memid, name == last_name ? last_id : last_id + 1);
      ExpectHelp(info.get(), function->memid);
      last_id = function->memid;
      last_name = name;
      info->ReleaseFuncDesc(function);
    }
    const std::size_t start = kReleased.find(found.substr(0, found.find(L'\n', 1) + 1));
    ASSERT_NE(start, kReleased.npos) << ToUtf8(identity.name);
    std::size_t end = kReleased.find(L'\n', start + 1) + 1;  // of the members, which are indented
    while (end < kReleased.size() && kReleased[end] == L' ') end = kReleased.find(L'\n', end) + 1;
    EXPECT_TRUE(found.starts_with(kReleased.substr(start, end - start))) << ToUtf8(found);
  }
}

}  // namespace
}  // namespace ard::windows
