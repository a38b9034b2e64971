#include "windows/engine/late_bound.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "frame/error.h"
#include "windows/engine/variant.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

using Answer = std::function<HRESULT(VARIANT& result, EXCEPINFO& exception)>;

// What the objects of one engine were asked, and what they are to answer: an object as a rule.
struct Recorder {
  std::vector<std::wstring> lookups;
  DISPID id = DISPID_UNKNOWN;  // of the last call
  WORD flags = 0;
  std::vector<VARTYPE> types;  // of its arguments, the last one first
  LONG number = 0;             // the last one, where it is one
  std::wstring text;
  std::function<void(BSTR& text)> spoil;  // what is done to a text that has been passed
  HRESULT lookup_status = S_OK;
  Answer answer;
  int living = 0;
};

// Any object of an engine.
class EngineObject final : public ComObject<IDispatch> {
 public:
  explicit EngineObject(Recorder& recorder) : recorder_(recorder) { ++recorder_.living; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    recorder_.lookups.emplace_back(names[0]);
    ids[0] = static_cast<DISPID>(recorder_.lookups.size());
    return recorder_.lookup_status;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    recorder_.id = id;
    recorder_.flags = flags;
    recorder_.types.clear();
    for (UINT i = 0; i < parameters->cArgs; ++i) {
      recorder_.types.push_back(parameters->rgvarg[i].vt);
    }
    recorder_.number = LastNumber(*parameters);
    if (!recorder_.types.empty() && recorder_.types[0] == VT_BSTR) {
      recorder_.text = View(parameters->rgvarg[0].bstrVal);
      if (recorder_.spoil) recorder_.spoil(parameters->rgvarg[0].bstrVal);
    }
    VARIANT ignored{};
    VARIANT& answer = result ? *result : ignored;
    if (recorder_.answer) return recorder_.answer(answer, *exception);
    if (!result) return S_OK;
    result->vt = VT_DISPATCH;
    result->pdispVal = new EngineObject(recorder_);
    return S_OK;
  }

 private:
  ~EngineObject() override { --recorder_.living; }

  static LONG LastNumber(const DISPPARAMS& parameters) {
    if (parameters.cArgs == 0) return 0;
    const VARIANT& last = parameters.rgvarg[0];
    if (last.vt == (VT_BYREF | VT_I4)) return *last.plVal;
    return last.vt == VT_I4 ? last.lVal : last.vt == VT_BOOL ? last.boolVal : 0;
  }

  Recorder& recorder_;
};

// One object of each kind, behind the seam.
struct Seam {
  explicit Seam(Recorder& recorder)
      : workspace(WrapWorkspace(New(recorder).get())), engine(WrapEngine(New(recorder).get())) {}

  static ComPtr<IDispatch> New(Recorder& recorder) {
    return ComPtr<IDispatch>::Adopt(new EngineObject(recorder));
  }

  std::shared_ptr<engine::Workspace> workspace;
  std::shared_ptr<engine::Engine> engine;
  std::unique_ptr<engine::EngineError> error = engine->LastError();
  std::unique_ptr<engine::DataFileObject> file = workspace->CreateDataFile(L"SalesData");
  std::unique_ptr<engine::RecordObject> record = workspace->CreateRecord(L"SalesRecord");
  std::unique_ptr<engine::IndexObject> index = workspace->CreateIndex(L"SalesIndex");
  std::unique_ptr<engine::TransactionsObject> transactions = record->Transactions();
  std::unique_ptr<engine::PricingObject> pricing = workspace->CreatePricing();
  std::unique_ptr<engine::Fields> fields = file->GetFields();
  std::unique_ptr<engine::Field> field = fields->Item(2);
  std::unique_ptr<engine::Field> record_field = record->GetFields()->Item(L"NAME");
  std::unique_ptr<engine::Field> transactions_field = transactions->GetFields()->Item(L"TYPE");
};

class LateBoundTest : public testing::Test {
 protected:
  void TearDown() override {
    seam.reset();
    EXPECT_EQ(recorder.living, 0) << "references were leaked";
  }

  void Tell(const VARIANT& variant) {
    recorder.answer = [answer = VARIANT(variant)](VARIANT& result, EXCEPINFO&) mutable {
      return VariantCopy(&result, &answer);
    };
  }

  Recorder recorder;
  std::unique_ptr<Seam> seam = std::make_unique<Seam>(recorder);
};

VARIANT Number(VARTYPE type, LONG content) {
  VARIANT variant{};
  variant.vt = type;
  variant.lVal = content;  // its low half is iVal and boolVal
  return variant;
}

// The number and text of the error that an action throws.
std::pair<std::int32_t, std::wstring> ErrorOf(const auto& action) {
  try {
    action();
  } catch (const Error& error) {
    return {error.number(), error.text()};
  }
  return {};
}

TEST_F(LateBoundTest, NamesAreLookedUpOncePerTypeOfObjectAndWorkspace) {
  for (int workspace = 0; workspace < 2; ++workspace) {
    recorder.lookups.clear();
    recorder.answer = nullptr;
    const Seam made(recorder);
    Tell(Number(VT_I4, 0));
    for (int i = 0; i < 2; ++i) {
      made.fields->Count();
      made.field->Name();
      made.field->SetValue(5);
      made.field->GetValue();
      made.record_field->GetValue();
      made.transactions_field->GetValue();
      made.pricing->CustomerUnitPrice(L"ABC", L"NUT");
      made.pricing->SupplierUnitPrice(L"NUT", L"SUP");
    }
    EXPECT_EQ(recorder.lookups, (std::vector<std::wstring>{
                                    L"Transactions", L"Item", L"Count", L"Name", L"Value", L"Value",
                                    L"Value", L"CustomerUnitPrice", L"SupplierUnitPrice"}));
  }
}

TEST_F(LateBoundTest, ArgumentsGoAsTheEngineTakesThem) {
  constexpr WORD kAsk = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  constexpr WORD kCall = DISPATCH_METHOD;
  using Types = std::vector<VARTYPE>;
  const struct {
    DISPID id;
    std::function<void(Seam&)> act;
    WORD flags;
    Types types;  // the last one first
    LONG number = 0;
  } cases[] = {
      {1, [](Seam& s) { s.error->Number(); }, kAsk, {}},
      {2, [](Seam& s) { s.error->Text(); }, kAsk, {}},
      {3, [](Seam& s) { s.workspace->Version(); }, kAsk, {}},
      {4, [](Seam& s) { s.workspace->Connect(L"", L"", L"", L""); }, kAsk, Types(4, VT_BSTR)},
      {6, [](Seam& s) { s.workspace->Disconnect(); }, kCall, {}},
      {7, [](Seam& s) { s.workspace->ConnectNT(L"", L"", L"", L""); }, kAsk, Types(4, VT_BSTR)},
      {0x10009, [](Seam& s) { s.file->Open(engine::Mode::kRead); }, kAsk, {VT_I4}, 64},
      {0x10009, [](Seam& s) { s.file->Open(engine::Mode::kAppend); }, kAsk, {VT_I4}, 33},
      {0x10003, [](Seam& s) { s.file->Read(7); }, kAsk, {VT_BYREF | VT_I4}, 7},
      {0x1000b, [](Seam& s) { s.file->FindFirst(L"A", 3); }, kAsk, {VT_I4, VT_BSTR}, 3},
      {0x1000c, [](Seam& s) { s.file->FindNext(L"A", 3); }, kAsk, {VT_I4, VT_BSTR}, 3},
      {0x2000c, [](Seam& s) { s.record->Find(engine::Match::kExact); }, kAsk, {VT_BOOL}, 0},
      {0x2000c, [](Seam& s) { s.record->Find(engine::Match::kPartial); }, kAsk, {VT_BOOL}, -1},
      {0x2000f, [](Seam& s) { s.record->Edit(); }, kCall, {}},
      {0x20011, [](Seam& s) { s.record->SetExtraText(L"a"); }, DISPATCH_PROPERTYPUT, {VT_BSTR}},
      {0x10006, [](Seam& s) { s.transactions->Count(); }, kAsk, {}},
      {0x20004, [](Seam& s) { s.transactions->MoveFirst(); }, kCall, {}},
      {0x10001, [](Seam& s) { s.index->SetKey(L"A"); }, DISPATCH_PROPERTYPUT, {VT_BSTR}},
      {0x10003, [](Seam& s) { s.index->Position(); }, kAsk, {}},
      {0x1000d, [](Seam& s) { s.index->MoveTo(12); }, kCall, {VT_I4}, 12},
      {4, [](Seam& s) { s.field->Type(); }, kAsk, {}},
  };
  Tell(Number(VT_BOOL, -1));
  for (const auto& c : cases) {
    c.act(*seam);
    EXPECT_EQ(recorder.id, c.id);
    EXPECT_EQ(recorder.flags, c.flags) << c.id;
    EXPECT_EQ(recorder.types, c.types);
    EXPECT_EQ(recorder.number, c.number);
  }
}

// A server whose parameters are by reference may do what it likes with them.
TEST_F(LateBoundTest, NamesArriveWhateverBecameOfThemBefore) {
  const std::function<void(BSTR & text)> spoilers[] = {
      [](BSTR& text) { text[0] = L'X'; },
      [](BSTR& text) { SysReAllocString(&text, L"ANOTHER_NAME"); },
      [](BSTR& text) { SysFreeString(std::exchange(text, nullptr)); },
      [this](BSTR&) {
        recorder.spoil = nullptr;
        seam->fields->Item(L"NAME");
      },
  };
  for (const auto& spoil : spoilers) {
    recorder.spoil = spoil;
    for (const std::wstring& name :
         {std::wstring(L"NAME"), std::wstring(L"NAME"), std::wstring(L"EMAN"), std::wstring(),
          std::wstring(1000, L'\0')}) {
      recorder.text = L"-";
      seam->fields->Item(name);
      EXPECT_EQ(recorder.text, name);
    }
  }
}

TEST_F(LateBoundTest, AnswersAreConverted) {
  for (const VARTYPE type : {VT_BOOL, VT_I2, VT_I4, VT_EMPTY}) {
    for (const LONG content : {-1, 0}) {
      Tell(Number(type, content));
      EXPECT_EQ(seam->file->Read(1), content != 0 && type != VT_EMPTY) << type;
    }
  }
  const ScopedVariant version = ToVariant(L"9.02");
  Tell(version);
  EXPECT_EQ(seam->workspace->Version(), L"9.02");
  for (const VARIANT& no_object :
       {VARIANT{}, Number(VT_I4, 1), Number(VT_DISPATCH, 0), Number(VT_UNKNOWN, 0)}) {
    Tell(no_object);
    EXPECT_EQ(ErrorOf([this] { seam->file->GetFields(); }).first, kErrorTypeMismatch);
  }
}

HRESULT STDMETHODCALLTYPE FillInLate(EXCEPINFO* info) {
  info->scode = E_ACCESSDENIED;
  info->bstrDescription = NewBstr(L"The file is locked.");
  return S_OK;
}

TEST_F(LateBoundTest, FailuresBecomeErrorsWithNumberAndText) {
  const auto close_error = [this](HRESULT result, EXCEPINFO told) {
    recorder.answer = [=](VARIANT&, EXCEPINFO& info) {
      info = told;
      return result;
    };
    return ErrorOf([this] { seam->file->Close(); });
  };
  const std::pair<std::int32_t, std::wstring> with_text = {E_ACCESSDENIED, L"The file is locked."};
  EXCEPINFO at_once{};
  FillInLate(&at_once);
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, at_once), with_text);
  EXCEPINFO late{};
  late.pfnDeferredFillIn = FillInLate;
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, late), with_text);
  EXCEPINFO coded{};
  coded.wCode = 91;
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, coded).first, 91);
  EXCEPINFO silent{};
  silent.scode = E_ACCESSDENIED;
  const std::pair<std::int32_t, std::wstring> denied = {E_ACCESSDENIED,
                                                        SystemError(E_ACCESSDENIED).text()};
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, silent), denied);
  EXPECT_EQ(close_error(E_ACCESSDENIED, {}), denied);
  const auto create = [this] { seam->workspace->CreateRecord(L"SalesRecord"); };
  EXPECT_EQ(ErrorOf(create).first, E_ACCESSDENIED);
  recorder.lookup_status = DISP_E_UNKNOWNNAME;
  EXPECT_EQ(ErrorOf(create).first, kErrorNoMember) << "no workspace, whatever it says";
  EXPECT_EQ(ErrorOf([this] { seam->field->GetValue(); }),
            (std::pair{kErrorUnknownName, std::wstring(L"There is no member Value.")}));
}

}  // namespace
}  // namespace ard::windows
