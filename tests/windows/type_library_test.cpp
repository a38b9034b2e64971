// The type library, by which hosts are compiled: every name, identifier, id, type and place in the
// vtable. Scripts, which call late-bound, are told the same ids.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host

// What hosts have been compiled against: every type with its identifiers, the members of a class in
// the order of the vtable, with their numbers, kinds and types. It stays for ever; what is added
// comes after the rest of its type, and in here with the release that brings it.
constexpr std::wstring_view kReleased =
#include "tests/windows/published_members.inc"
    ;

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

std::wstring TypeName(ITypeInfo* info, const TYPEDESC& type) {
  static const std::map<VARTYPE, std::wstring> kNames = {
      {VT_BSTR, L"String"},     {VT_BOOL, L"Boolean"}, {VT_DISPATCH, L"Object"},
      {VT_HRESULT, L"HRESULT"}, {VT_I2, L"Integer"},   {VT_I4, L"Long"},
      {VT_R8, L"Double"},       {VT_DATE, L"Date"},    {VT_VARIANT, L"Variant"}};
  if (type.vt == VT_PTR) return TypeName(info, *type.lptdesc) + L"*";
  if (type.vt == VT_SAFEARRAY) return TypeName(info, *type.lptdesc) + L"()";
  if (type.vt == VT_USERDEFINED) {
    ComPtr<ITypeInfo> named;
    info->GetRefTypeInfo(type.hreftype, named.Receive());
    return NameOf(named.get());
  }
  const auto known = kNames.find(type.vt);
  return known == kNames.end() ? L"type " + std::to_wstring(type.vt) : known->second;
}

// What `object` knows of a member and its parameters, in capitals, and of one that it does not
// have.
void ExpectIds(IDispatch* object, MEMBERID member, std::vector<std::wstring> names) {
  std::vector<DISPID> expected = {member};
  for (DISPID i = 1; i < static_cast<DISPID>(names.size()); ++i) expected.push_back(i - 1);
  expected.push_back(DISPID_UNKNOWN);
  names.push_back(L"Unknown");
  std::vector<wchar_t*> texts;
  for (std::wstring& name : names) texts.push_back(CharUpperW(name.data()));
  std::vector<DISPID> ids(names.size());
  const auto count = static_cast<UINT>(names.size());
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, texts.data(), count, 0, ids.data()),
            DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids, expected) << ToUtf8(names[0]);
}

std::wstring Describe(ITypeInfo* info, const FUNCDESC& function, IDispatch* object) {
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
  std::wstring text =
      std::to_wstring(function.memid) + L" " + kKinds.at(function.invkind) + names[0] + L"(";
  std::vector<std::wstring> known = {names[0]};
  for (int i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    if (i > 0) text += L", ";
    for (const auto& [flag, word] : kFlags) {
      if (parameter.paramdesc.wParamFlags & flag) text += word;
    }
    // The value of a property has no name of its own here: all of them are "Value".
    const bool named = i + 1 < static_cast<int>(count);
    const bool is_result = parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL;
    if (function.invkind == INVOKE_FUNC && !is_result) known.emplace_back(names[i + 1]);
    text += TypeName(info, parameter.tdesc) + L" " + (named ? names[i + 1] : L"Value");
    if (parameter.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) {
      text += L" = \"" + FromVariant(parameter.paramdesc.pparamdescex->varDefaultValue).ToText() +
              L"\"";
    }
  }
  ExpectIds(object, function.memid, std::move(known));
  for (const BSTR name : names) SysFreeString(name);
  return text + L")";
}

// "vxAccess {8E1EEC7B-...}"
std::wstring Heading(ITypeInfo* info) {
  return NameOf(info) + L" " + Text(AttributesOf(info).guid);
}

std::wstring DescribeEnumeration(ITypeInfo* info) {
  ExpectHelp(info);
  std::wstring text = L"enum " + Heading(info) + L"\n";
  for (UINT i = 0; i < AttributesOf(info).cVars; ++i) {
    VARDESC* constant = nullptr;
    EXPECT_EQ(info->GetVarDesc(i, &constant), S_OK);
    EXPECT_EQ(constant->lpvarValue->vt, VT_I4);
    ExpectHelp(info, constant->memid);
    text += L"  " + NameOf(info, constant->memid) + L" = " +
            std::to_wstring(constant->lpvarValue->lVal) + L"\n";
    info->ReleaseVarDesc(constant);
  }
  return text;
}

std::wstring DescribeClass(ITypeInfo* info) {
  const TYPEATTR attributes = AttributesOf(info);
  EXPECT_TRUE(attributes.wTypeFlags & TYPEFLAG_FCANCREATE);
  EXPECT_EQ(attributes.cImplTypes, 1);
  INT flags = 0;
  info->GetImplTypeFlags(0, &flags);
  EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
  const ComPtr<ITypeInfo> dispatch = Implemented(info, 0);
  ExpectHelp(dispatch.get());
  EXPECT_TRUE(AttributesOf(dispatch.get()).wTypeFlags & TYPEFLAG_FDUAL);
  const ComPtr<ITypeInfo> members = Implemented(dispatch.get(), static_cast<UINT>(-1));
  EXPECT_EQ(AttributesOf(members.get()).typekind, TKIND_INTERFACE);

  ComPtr<IDispatch> object;
  CoCreateInstance(AttributesOf(info).guid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                   reinterpret_cast<void**>(object.Receive()));
  std::wstring text = L"class " + Heading(info) + L" " + Heading(dispatch.get()) + L"\n";
  for (UINT i = 0; i < AttributesOf(members.get()).cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    EXPECT_EQ(members->GetFuncDesc(i, &function), S_OK);
    EXPECT_EQ(function->callconv, CC_STDCALL);
    EXPECT_EQ(TypeName(members.get(), function->elemdescFunc.tdesc), L"HRESULT");
    EXPECT_EQ(function->oVft, static_cast<SHORT>((7 + i) * sizeof(void*)));
    ExpectHelp(members.get(), function->memid);
    text += L"  " + Describe(members.get(), *function, object.get()) + L"\n";
    members->ReleaseFuncDesc(function);
  }
  return text;
}

TEST(TypeLibrary, IsTheReleasedOneWithAdditionsAtMost) {
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library.Receive()), S_OK);
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  Bstr name;
  Bstr help_file;
  library->GetDocumentation(-1, name.Receive(), nullptr, nullptr, help_file.Receive());
  EXPECT_TRUE(help_file.view().ends_with(L"ArdObjects100.chm"));
  // Each type by its first line.
  std::map<std::wstring, std::wstring> found;
  found[L"library " + std::wstring(name.view()) + L" " + Text(attributes->guid) + L" " +
        std::to_wstring(attributes->wMajorVerNum) + L"." +
        std::to_wstring(attributes->wMinorVerNum) + L"\n"];
  library->ReleaseTLibAttr(attributes);
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(library->GetTypeInfo(i, info.Receive()), S_OK);
    const TYPEKIND kind = AttributesOf(info.get()).typekind;
    if (kind == TKIND_DISPATCH) continue;  // that of a class
    const std::wstring text =
        kind == TKIND_ENUM ? DescribeEnumeration(info.get()) : DescribeClass(info.get());
    const std::size_t end = text.find(L'\n') + 1;
    found[text.substr(0, end)] = text.substr(end);
  }

  std::size_t types = 0;
  for (std::size_t at = 1; at < kReleased.size(); ++types) {
    const std::size_t members = kReleased.find(L'\n', at) + 1;
    std::size_t end = members;
    while (end < kReleased.size() && kReleased[end] == L' ') end = kReleased.find(L'\n', end) + 1;
    const std::wstring heading(kReleased.substr(at, members - at));
    EXPECT_TRUE(found.contains(heading)) << ToUtf8(heading);
    EXPECT_TRUE(found[heading].starts_with(kReleased.substr(members, end - members)))
        << ToUtf8(heading + found[heading]);
    at = end;
  }
  EXPECT_EQ(types, found.size()) << "a new type, to be written down with its release";
}

}  // namespace
}  // namespace ard::windows
