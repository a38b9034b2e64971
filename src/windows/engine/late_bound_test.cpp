#include "windows/engine/late_bound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/holdings.h"
#include "frame/error.h"
#include "tests/windows/host.h"
#include "windows/engine/variant.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

using Answer = std::function<HRESULT(VARIANT& result, EXCEPINFO& exception)>;

// Every object of an engine: what it was asked, and what it is to answer, which is itself as a
// rule.
class Recorder final : public testing::ForeignObject {
 public:
  std::vector<std::wstring> lookups;
  std::wstring asked;  // by the last call: its id, its flags, and each argument with its type
  std::function<void(VARIANT& text)> spoil;  // what is done to one that has been passed
  HRESULT lookup_status = S_OK;
  Answer answer;

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    lookups.emplace_back(names[0]);
    ids[0] = static_cast<DISPID>(lookups.size());
    return lookup_status;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT*) override {
    EXPECT_EQ(locale, LCID{LOCALE_USER_DEFAULT});
    // A value to be put has a name; nothing else has.
    const bool puts = flags == DISPATCH_PROPERTYPUT;
    EXPECT_EQ(parameters->cNamedArgs, puts ? 1u : 0u);
    EXPECT_TRUE(!puts || parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT);
    std::wostringstream text;
    text << std::hex << id << L' ' << std::dec << flags;
    for (UINT i = parameters->cArgs; i-- > 0;) {
      const VARIANT& argument = parameters->rgvarg[i];
      text << L' ' << argument.vt << L':'
           << (argument.vt & VT_ARRAY ? L"" : FromVariant(argument).ToText());
    }
    asked = text.str();
    if (spoil && parameters->cArgs > 0) spoil(parameters->rgvarg[0]);
    ScopedVariant ignored;
    if (answer) return answer(result ? *result : ignored, *exception);
    if (result) *result = testing::Variant(this).Detach();
    return S_OK;
  }
};

// One object of each kind, behind the seam.
struct Seam {
  explicit Seam(Recorder& recorder)
      : workspace(WrapWorkspace(&recorder)), engine(WrapEngine(&recorder)) {}

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

class LateBoundTest : public ::testing::Test {
 protected:
  void TearDown() override {
    seam.reset();
    EXPECT_EQ(recorder.references, 1u) << "references were leaked";
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
  const std::pair<std::function<void(Seam&)>, const wchar_t*> cases[] = {
      {[](Seam& s) { s.error->Number(); }, L"1 3"},
      {[](Seam& s) { s.error->Text(); }, L"2 3"},
      {[](Seam& s) { s.workspace->Version(); }, L"3 3"},
      {[](Seam& s) { s.workspace->Connect(L"a", L"b", L"", L"d"); }, L"4 3 8:a 8:b 8: 8:d"},
      {[](Seam& s) { s.workspace->Disconnect(); }, L"6 1"},
      {[](Seam& s) { s.workspace->ConnectNT(L"a", L"b", L"", L"d"); }, L"7 3 8:a 8:b 8: 8:d"},
      {[](Seam& s) { s.file->Open(engine::Mode::kRead); }, L"10009 3 3:64"},
      {[](Seam& s) { s.file->Open(engine::Mode::kAppend); }, L"10009 3 3:33"},
      {[](Seam& s) { s.file->Read(7); }, L"10003 3 16387:7"},
      {[](Seam& s) { s.file->FindFirst(L"A", 3); }, L"1000b 3 8:A 3:3"},
      {[](Seam& s) { s.file->FindNext(L"A", 3); }, L"1000c 3 8:A 3:3"},
      {[](Seam& s) { s.record->Find(engine::Match::kExact); }, L"2000c 3 11:False"},
      {[](Seam& s) { s.record->Find(engine::Match::kPartial); }, L"2000c 3 11:True"},
      {[](Seam& s) { s.record->Edit(); }, L"2000f 1"},
      {[](Seam& s) { s.record->SetExtraText(L"a"); }, L"20011 4 8:a"},
      {[](Seam& s) { s.transactions->Count(); }, L"10006 3"},
      {[](Seam& s) { s.transactions->MoveFirst(); }, L"20004 1"},
      {[](Seam& s) { s.index->SetKey(L"A"); }, L"10001 4 8:A"},
      {[](Seam& s) { s.index->Position(); }, L"10003 3"},
      {[](Seam& s) { s.index->MoveTo(12); }, L"1000d 1 3:12"},
      {[](Seam& s) { s.field->Type(); }, L"4 3"},
  };
  Tell(Number(VT_BOOL, -1));
  for (const auto& [act, asked] : cases) {
    act(*seam);
    EXPECT_EQ(recorder.asked, asked);
  }
}

// A server whose parameters are by reference may do what it likes with them.
TEST_F(LateBoundTest, NamesArriveWhateverBecameOfThemBefore) {
  const std::function<void(VARIANT & text)> spoilers[] = {
      [](VARIANT& text) { text.bstrVal[0] = L'X'; },
      [](VARIANT& text) { text.bstrVal[SysStringLen(text.bstrVal) / 2] = L'X'; },
      [](VARIANT& text) { text.bstrVal[std::max(SysStringLen(text.bstrVal), 1U) - 1] = L'X'; },
      [](VARIANT& text) { SysReAllocString(&text.bstrVal, L"ANOTHER_NAME"); },
      [](VARIANT& text) { SysFreeString(std::exchange(text.bstrVal, nullptr)); },
      [](VARIANT& text) {
        VariantClear(&text);
        text = Number(VT_I4, 7);
      },
      [this](VARIANT&) {
        recorder.spoil = nullptr;
        seam->fields->Item(L"NAME");
      },
  };
  for (const auto& spoil : spoilers) {
    recorder.spoil = spoil;
    for (const std::wstring& name :
         {std::wstring(L"NAME"), std::wstring(L"EMAN"), std::wstring(), std::wstring(L"KEY"),
          std::wstring(L"T1_RATE"), std::wstring(1000, L'\0')}) {
      for (int i = 0; i < 2; ++i) {
        seam->fields->Item(name);
        EXPECT_EQ(recorder.asked, L"0 3 8:" + name);
      }
    }
  }
}

TEST_F(LateBoundTest, AnswersAreConverted) {
  EXPECT_FALSE(WrapWorkspace(nullptr) || WrapEngine(nullptr) || WrapRecord(nullptr));
  for (const VARTYPE type : {VT_BOOL, VT_I2, VT_I4, VT_EMPTY}) {
    for (const LONG content : {-1, 1, 0}) {
      Tell(Number(type, content));
      EXPECT_EQ(seam->file->Read(1), content != 0 && type != VT_EMPTY) << type;
    }
  }
  const ScopedVariant version = ToVariant(L"9.02");
  Tell(version);
  EXPECT_EQ(seam->workspace->Version(), L"9.02");
  Tell(Number(VT_I4, 7));
  std::wstring text;
  seam->field->ReadText(text);
  EXPECT_EQ(text, L"7");
  ScopedVariant object = testing::Variant(&recorder);
  VARIANT unknown = object;
  unknown.vt = VT_UNKNOWN;
  VARIANT reference = object;
  reference.vt = VT_BYREF | VT_DISPATCH;
  reference.ppdispVal = &object.pdispVal;
  for (const VARIANT& any : {reference, unknown}) {
    Tell(any);
    EXPECT_TRUE(seam->file->GetFields()) << any.vt;
    EXPECT_TRUE(seam->workspace->CreatePricing()) << any.vt;
  }
  for (const VARIANT& no_object :
       {VARIANT{}, Number(VT_I4, 1), Number(VT_DISPATCH, 0), Number(VT_UNKNOWN, 0)}) {
    Tell(no_object);
    EXPECT_EQ(ErrorOf([this] { seam->file->GetFields(); }).first, kErrorTypeMismatch);
    EXPECT_FALSE(seam->workspace->CreatePricing()) << "none, which is no error";
  }
}

TEST_F(LateBoundTest, AFieldIsCopiedAsItIs) {
  ScopedVariant memo;
  memo.parray = SafeArrayCreateVector(VT_UI1, 0, 3);
  memo.vt = VT_ARRAY | VT_UI1;
  VARIANT decimal{};
  decimal.decVal.Lo64 = 12345678901234567;
  decimal.vt = VT_DECIMAL;
  std::uint64_t put = 0;
  recorder.spoil = [&](VARIANT& value) {
    put = value.vt == VT_DECIMAL ? value.decVal.Lo64 : value.parray->rgsabound[0].cElements;
  };
  for (const auto& [value, expected] :
       {std::pair<const VARIANT&, std::uint64_t>(memo, 3), {decimal, 12345678901234567}}) {
    Tell(value);
    seam->field->CopyFrom(*seam->record_field);
    EXPECT_EQ(put, expected);
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
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, coded), (std::pair{91, std::wstring()}));
  const std::wstring text(L"a\0b", 3);
  coded.bstrDescription = NewBstr(text);
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, coded), (std::pair{91, text}));
  EXPECT_EQ(close_error(DISP_E_EXCEPTION, {}),
            (std::pair{std::int32_t{DISP_E_EXCEPTION}, SystemError(DISP_E_EXCEPTION).text()}))
      << "an engine that tells nothing";
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

// Texts that were passed, came back or told of an error, and what a workspace has come to know.
TEST_F(LateBoundTest, NothingStaysInMemory) {
  const auto use = [this] {
    for (int i = 0; i < 100; ++i) {
      recorder.lookups.clear();
      recorder.answer = nullptr;
      const Seam made(recorder);
      recorder.spoil = [&](VARIANT&) {
        recorder.spoil = nullptr;
        made.fields->Item(L"NAME");
      };
      made.fields->Item(L"NAME");
      recorder.answer = [](VARIANT&, EXCEPINFO& info) {
        for (BSTR* told : {&info.bstrSource, &info.bstrHelpFile}) *told = NewBstr(L"told");
        return FillInLate(&info), DISP_E_EXCEPTION;
      };
      EXPECT_THROW(made.file->Close(), Error);
    }
    return benchmarks::Heaps().blocks;
  };
  use();
  EXPECT_NEAR(use(), use(), 20);
}

}  // namespace
}  // namespace ard::windows
