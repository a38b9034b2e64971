#include "benchmarks/script_host.h"

#include <algorithm>
#include <set>

#include "frame/error.h"
#include "windows/engine/variant.h"

namespace ard::benchmarks {

using windows::ComPtr;
using windows::ScopedVariant;

// ---- The script ----

namespace {

std::wstring Quoted(std::wstring_view text) {
  std::wstring quoted = L"\"";
  for (const wchar_t c : text) quoted.append(c == L'"' ? 2 : 1, c);
  return quoted + L"\"";
}

class Writer {
 public:
  Writer(const Recording& recording, std::vector<NamedObject>& objects)
      : recording_(recording), objects_(objects) {}

  // The statement that asks for the same.
  std::wstring Line(const Step& step) {
    const std::wstring object = Variable(step.object);
    if (step.kind == Step::Kind::kCreate) {
      return L"Set " + object + L" = CreateObject(" + Quoted(step.name) + L")";
    }
    if (step.name.empty()) throw Error(kErrorFailed, L"A member without a name was asked.");
    const std::wstring call = object + L"." + step.name;
    const std::wstring arguments = Arguments(step);
    if (step.flags & DISPATCH_PROPERTYPUT) return call + L" = " + arguments;
    if (!step.has_result) return call + L" " + arguments;
    const std::wstring asked = arguments.empty() ? call : call + L"(" + arguments + L")";
    if (step.result != kNoSlot) return L"Set " + Variable(step.result) + L" = " + asked;
    return L"answer = " + asked;
  }

  // For the objects that are handed out.
  const std::set<std::wstring>& variables() const { return variables_; }

 private:
  std::wstring Variable(Slot slot) {
    if (IDispatch* const object = recording_.HostObject(slot)) return NameOf(object);
    return *variables_.insert(L"o" + std::to_wstring(slot)).first;
  }

  std::wstring NameOf(IDispatch* object) {
    for (const auto& [name, known] : objects_) {
      if (known.get() == object) return name;
    }
    objects_.emplace_back(L"object" + std::to_wstring(objects_.size()), ComPtr(object));
    return objects_.back().first;
  }

  std::wstring Arguments(const Step& step) {
    std::wstring list;
    for (std::size_t i = step.arguments.size(); i > 0; --i) {
      const bool referred = step.arguments[i - 1].vt & VT_BYREF;
      if (!list.empty()) list += L", ";
      list += Literal(referred ? step.referred[i - 1] : step.arguments[i - 1]);
    }
    return list;
  }

  std::wstring Literal(const VARIANT& variant) {
    switch (variant.vt) {
      case VT_BSTR:
        return Quoted(windows::View(variant.bstrVal));
      case VT_BOOL:
        return variant.boolVal ? L"True" : L"False";
      case VT_DISPATCH:
        return NameOf(variant.pdispVal);
      default:
        return windows::FromVariant(variant).ToText();
    }
  }

  const Recording& recording_;
  std::vector<NamedObject>& objects_;
  std::set<std::wstring> variables_;
};

}  // namespace

std::wstring ScriptOf(const std::wstring& name, const Recording& recording,
                      std::vector<NamedObject>& objects) {
  Writer writer(recording, objects);
  bool fails = false;
  std::wstring body;
  const auto expect_failure = [&](bool expected) {
    if (expected == fails) return;
    fails = expected;
    body += fails ? L"    On Error Resume Next\n" : L"    On Error GoTo 0\n";
  };
  for (const Step& step : recording.steps()) {
    if (step.kind == Step::Kind::kRelease) continue;  // the next object takes its variable
    expect_failure(step.failed);
    body += L"    " + writer.Line(step) + L"\n";
  }
  expect_failure(false);
  std::wstring script = L"Sub " + name + L"(count)\n  Dim i, answer";
  for (const std::wstring& variable : writer.variables()) script += L", " + variable;
  return script + L"\n  For i = 1 To count\n" + body + L"  Next\nEnd Sub\n";
}

// ---- Its host ----

namespace {

constexpr CLSID kVbScript = {
    0xb54f3741, 0x5b07, 0x11cf, {0xa4, 0xb0, 0x00, 0xaa, 0x00, 0x4a, 0x55, 0xe8}};

#ifdef _WIN64
using Parser = IActiveScriptParse64;
#else
using Parser = IActiveScriptParse32;
#endif

void Check(HRESULT status, const wchar_t* what) {
  if (FAILED(status)) throw Error(status, what);
}

class Site final : public windows::ComObject<IActiveScriptSite> {
 public:
  explicit Site(const std::vector<NamedObject>& objects) : objects_(objects) {}

  HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR name, DWORD, IUnknown** object,
                                        ITypeInfo** info) override {
    if (info) *info = nullptr;
    const auto named = std::find_if(objects_.begin(), objects_.end(),
                                    [&](const NamedObject& item) { return item.first == name; });
    if (named == objects_.end() || !object) return TYPE_E_ELEMENTNOTFOUND;
    *object = ComPtr<IDispatch>(named->second).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

 private:
  std::vector<NamedObject> objects_;
};

}  // namespace

ScriptHost::ScriptHost(const std::vector<NamedObject>& objects, const std::wstring& script) {
  const auto site = ComPtr<Site>::Adopt(new Site(objects));
  Check(CoCreateInstance(kVbScript, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                         reinterpret_cast<void**>(engine_.Receive())),
        L"There is no VBScript.");
  Check(engine_->SetScriptSite(site.get()), L"SetScriptSite");
  ComPtr<Parser> parser;
  Check(engine_->QueryInterface(__uuidof(Parser), reinterpret_cast<void**>(parser.Receive())),
        L"IActiveScriptParse");
  Check(parser->InitNew(), L"InitNew");
  for (const auto& [name, object] : objects) {
    Check(engine_->AddNamedItem(name.c_str(), SCRIPTITEM_ISVISIBLE), L"AddNamedItem");
  }
  Check(engine_->SetScriptState(SCRIPTSTATE_STARTED), L"SetScriptState");
  Check(parser->ParseScriptText(script.c_str(), nullptr, nullptr, nullptr, 0, 0,
                                SCRIPTTEXT_ISVISIBLE, nullptr, nullptr),
        L"The script is wrong.");
}

ScriptHost::~ScriptHost() {
  if (engine_) engine_->Close();
}

void ScriptHost::Run(const std::wstring& procedure, int argument) const {
  ComPtr<IDispatch> script;
  Check(engine_->GetScriptDispatch(nullptr, script.Receive()), L"GetScriptDispatch");
  auto* name = const_cast<LPOLESTR>(procedure.c_str());
  DISPID id = DISPID_UNKNOWN;
  Check(script->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), name);
  VARIANT count{};
  count.vt = VT_I4;
  count.lVal = argument;
  DISPPARAMS parameters = {&count, nullptr, 1, 0};
  Check(script->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                       nullptr, nullptr),
        name);
}

}  // namespace ard::benchmarks
