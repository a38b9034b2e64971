#include "windows/engine/late_bound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "frame/error.h"
#include "frame/text.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using engine::Match;
using engine::Mode;
using Calls = std::vector<std::string>;
using Answer = std::function<HRESULT(VARIANT& result, EXCEPINFO& exception)>;

// What the objects of one engine were asked, and what they are to answer.
struct Recorder {
  Calls calls;                            // such as "File:10009 MG I4=64"
  std::map<std::string, Answer> answers;  // by the first word of the call
  int living = 0;
};

std::string Described(const VARIANT& argument) {
  switch (argument.vt) {
    case VT_I4:
      return std::string("I4=").append(std::to_string(argument.lVal));
    case VT_BYREF | VT_I4:
      return std::string("&I4=").append(std::to_string(*argument.plVal));
    case VT_BOOL:
      return argument.boolVal == VARIANT_TRUE ? "True" : "False";
    case VT_BSTR:
      return std::string("'").append(ToUtf8(View(argument.bstrVal))).append("'");
    default:
      return "unexpected type";
  }
}

// An object of an engine that records its calls. It hands out the objects that an engine does.
class RecordingObject final : public ComObject<IDispatch> {
 public:
  RecordingObject(Recorder& recorder, std::string kind)
      : recorder_(recorder), kind_(std::move(kind)) {
    ++recorder_.living;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    const std::string name = ToUtf8(names[0]);
    recorder_.calls.push_back(kind_ + "?" + name);
    static const std::map<std::string, DISPID> known = {{"Item", 0x71},
                                                        {"Count", 0x72},
                                                        {"Name", 0x73},
                                                        {"Value", 0x74},
                                                        {"Transactions", 0x75},
                                                        {"CustomerUnitPrice", 0x76},
                                                        {"SupplierUnitPrice", 0x77}};
    if (recorder_.answers.contains(recorder_.calls.back())) return DISP_E_UNKNOWNNAME;
    // Records have other ids than data files.
    ids[0] = known.at(name) + (kind_.starts_with("Record") ? 0x10 : 0);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    EXPECT_EQ(iid, IID_NULL);
    char hex[16];
    std::snprintf(hex, sizeof hex, "%lx", static_cast<unsigned long>(id));
    const std::string member = kind_ + ":" + hex;
    recorder_.calls.push_back(member + " " + Invocation(flags, *parameters));
    VARIANT ignored{};
    VARIANT& answer = result ? *result : ignored;
    const auto told = recorder_.answers.find(member);
    if (told != recorder_.answers.end()) return told->second(answer, *exception);
    const std::string child = Child(member, *parameters);
    if (child.empty()) return S_OK;
    answer.vt = VT_DISPATCH;
    answer.pdispVal = new RecordingObject(recorder_, child);
    return S_OK;
  }

 private:
  ~RecordingObject() override { --recorder_.living; }

  // The flags, and the arguments in the order in which they are written.
  static std::string Invocation(WORD flags, const DISPPARAMS& parameters) {
    std::string text;
    if (flags & DISPATCH_METHOD) text += 'M';
    if (flags & DISPATCH_PROPERTYGET) text += 'G';
    if (flags & DISPATCH_PROPERTYPUT) text += 'P';
    for (UINT i = parameters.cArgs; i > 0; --i)
      text.append(" ").append(Described(parameters.rgvarg[i - 1]));
    const bool put =
        parameters.cNamedArgs == 1 && parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    EXPECT_EQ(put, flags == DISPATCH_PROPERTYPUT);
    return text;
  }

  std::string Child(const std::string& member, const DISPPARAMS& parameters) const {
    if (member == "Workspace:5") {
      const std::string name = ToUtf8(View(parameters.rgvarg[0].bstrVal));
      if (name.ends_with("Index")) return "Index";
      if (name == "Pricing") return name;
      return name.ends_with("Record") ? "Record" : "File";
    }
    if (member == "Engine:2") return "Error";
    if (member == "Record:85") return "Transactions";
    if (member == "File:10002" || member.ends_with(":20001")) return kind_ + "Fields";
    const bool item = member.ends_with("Fields:0") || member.ends_with("Fields:71") ||
                      member.ends_with("Fields:81");
    return item ? kind_.substr(0, kind_.size() - 1) : "";
  }

  Recorder& recorder_;
  std::string kind_;
};

// One object of each kind, behind the seam.
struct Seam {
  explicit Seam(Recorder& recorder)
      : workspace(WrapWorkspace(New(recorder, "Workspace").get())),
        engine(WrapEngine(New(recorder, "Engine").get())) {}

  static ComPtr<IDispatch> New(Recorder& recorder, const char* kind) {
    return ComPtr<IDispatch>::Adopt(new RecordingObject(recorder, kind));
  }

  std::shared_ptr<engine::Workspace> workspace;
  std::shared_ptr<engine::Engine> engine;
  std::unique_ptr<engine::DataFileObject> file = workspace->CreateDataFile(L"SalesData");
  std::unique_ptr<engine::RecordObject> record = workspace->CreateRecord(L"SalesRecord");
  std::unique_ptr<engine::IndexObject> index = workspace->CreateIndex(L"SalesIndex");
  std::unique_ptr<engine::TransactionsObject> transactions = record->Transactions();
  std::unique_ptr<engine::PricingObject> pricing = workspace->CreatePricing();
  std::unique_ptr<engine::Fields> fields = file->GetFields();
  std::unique_ptr<engine::Field> field = fields->Item(L"NAME");
  std::unique_ptr<engine::EngineError> error = engine->LastError();
};

class LateBoundTest : public testing::Test {
 protected:
  void TearDown() override {
    seam.reset();
    EXPECT_EQ(recorder.living, 0) << "references were leaked";
  }

  void Tell(const std::string& member, const VARIANT& variant) {
    recorder.answers[member] = [answer = VARIANT(variant)](VARIANT& result, EXCEPINFO&) mutable {
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

TEST_F(LateBoundTest, EveryOperationIsInvokedByItsIdWithItsArguments) {
  const struct {
    const char* call;
    std::function<void(Seam&)> act;
  } cases[] = {
      {"Workspace:3 MG", [](Seam& s) { s.workspace->Version(); }},
      {"Workspace:4 MG 'p' 'u' 'w' 'i'",
       [](Seam& s) { s.workspace->Connect(L"p", L"u", L"w", L"i"); }},
      {"Workspace:5 MG 'SalesData'", [](Seam& s) { s.workspace->CreateDataFile(L"SalesData"); }},
      {"Workspace:5 MG 'PopRecord'", [](Seam& s) { s.workspace->CreateRecord(L"PopRecord"); }},
      {"Workspace:5 MG 'PopIndex'", [](Seam& s) { s.workspace->CreateIndex(L"PopIndex"); }},
      {"Workspace:6 M", [](Seam& s) { s.workspace->Disconnect(); }},
      {"Workspace:7 MG 'p' 'a' '' 'i'",
       [](Seam& s) { s.workspace->ConnectNT(L"p", L"a", L"", L"i"); }},
      {"Engine:2 MG", [](Seam& s) { s.engine->LastError(); }},
      {"Error:1 MG", [](Seam& s) { s.error->Number(); }},
      {"Error:2 MG", [](Seam& s) { s.error->Text(); }},
      {"File:10002 MG", [](Seam& s) { s.file->GetFields(); }},
      {"File:10003 MG &I4=7", [](Seam& s) { s.file->Read(7); }},
      {"File:10004 MG I4=8", [](Seam& s) { s.file->Write(8); }},
      {"File:10006 MG", [](Seam& s) { s.file->Count(); }},
      {"File:10009 MG I4=33", [](Seam& s) { s.file->Open(Mode::kAppend); }},
      {"File:1000a M", [](Seam& s) { s.file->Close(); }},
      {"File:1000b MG 'NAME' 'A*'", [](Seam& s) { s.file->FindFirst(L"NAME", L"A*"); }},
      {"File:1000c MG 'NAME' I4=3", [](Seam& s) { s.file->FindNext(L"NAME", 3); }},
      {"Record:20001 MG", [](Seam& s) { s.record->GetFields(); }},
      {"Record:20004 M", [](Seam& s) { s.record->MoveFirst(); }},
      {"Record:20006 MG", [](Seam& s) { s.record->MoveNext(); }},
      {"Record:2000a MG", [](Seam& s) { s.record->Update(); }},
      {"Record:2000b M", [](Seam& s) { s.record->AddNew(); }},
      {"Record:2000c MG False", [](Seam& s) { s.record->Find(Match::kExact); }},
      {"Record:2000f M", [](Seam& s) { s.record->Edit(); }},
      {"Record:20011 P 'more'", [](Seam& s) { s.record->SetExtraText(L"more"); }},
      {"Transactions:10006 MG", [](Seam& s) { s.transactions->Count(); }},
      {"Transactions:20001 MG", [](Seam& s) { s.transactions->GetFields(); }},
      {"Transactions:20004 M", [](Seam& s) { s.transactions->MoveFirst(); }},
      {"Transactions:20006 MG", [](Seam& s) { s.transactions->MoveNext(); }},
      {"Workspace:5 MG 'Pricing'", [](Seam& s) { s.workspace->CreatePricing(); }},
      {"Index:10001 P 'ABC'", [](Seam& s) { s.index->SetKey(L"ABC"); }},
      {"Index:10002 MG", [](Seam& s) { s.index->RecordNumber(); }},
      {"Index:10003 MG", [](Seam& s) { s.index->Position(); }},
      {"Index:10006 MG True", [](Seam& s) { s.index->Find(Match::kPartial); }},
      {"Index:10007 M", [](Seam& s) { s.index->MoveFirst(); }},
      {"Index:10009 MG", [](Seam& s) { s.index->MoveNext(); }},
      {"Index:1000d M I4=12", [](Seam& s) { s.index->MoveTo(12); }},
      {"Index:20009 MG I4=64", [](Seam& s) { s.index->Open(Mode::kRead); }},
      {"Index:2000a M", [](Seam& s) { s.index->Close(); }},
      {"FileFields:0 MG 'NAME'", [](Seam& s) { s.fields->Item(L"NAME"); }},
      {"FileField:4 MG", [](Seam& s) { s.field->Type(); }},
  };
  for (const auto& test : cases) {
    recorder.calls.clear();
    test.act(*seam);
    EXPECT_EQ(recorder.calls, Calls{test.call});
  }
}

TEST_F(LateBoundTest, NamesAreLookedUpOncePerTypeOfObjectAndWorkspace) {
  const auto use = [](Seam& s) {
    for (int i = 0; i < 2; ++i) {
      s.file->GetFields()->Count();
      s.fields->Item(2)->Name();
      s.field->SetValue(5);
      s.field->GetValue();
      s.record->GetFields()->Item(L"NAME")->GetValue();
      s.record->Transactions()->GetFields()->Item(L"TYPE")->GetValue();
      s.pricing->CustomerUnitPrice(L"ABC", L"NUT");
      s.pricing->SupplierUnitPrice(L"NUT", L"SUP");
    }
  };
  const auto lookups = [this] {
    Calls result = recorder.calls;
    std::erase_if(result, [](const std::string& call) { return call.find('?') == call.npos; });
    return result;
  };
  // The seam has looked up "Transactions" when it was made.
  const Calls once = {
      "FileFields?Count",          "FileFields?Item",          "FileField?Name",
      "FileField?Value",           "RecordField?Value",        "TransactionsField?Value",
      "Pricing?CustomerUnitPrice", "Pricing?SupplierUnitPrice"};
  const Calls by_looked_up_id = {"FileFields:72 MG",
                                 "FileFields:71 MG I4=2",
                                 "FileField:73 MG",
                                 "FileField:74 P I4=5",
                                 "FileField:74 MG",
                                 "RecordField:84 MG",
                                 "Record:85 MG",
                                 "TransactionsField:74 MG",
                                 "Pricing:76 MG 'ABC' 'NUT'",
                                 "Pricing:77 MG 'NUT' 'SUP'"};
  recorder.calls.clear();
  use(*seam);
  EXPECT_EQ(lookups(), once);
  for (const std::string& call : by_looked_up_id) {
    EXPECT_EQ(std::count(recorder.calls.begin(), recorder.calls.end(), call), 2) << call;
  }

  Seam other(recorder);
  recorder.calls.clear();
  use(other);
  EXPECT_EQ(lookups(), once);
}

TEST_F(LateBoundTest, ARecordHandedInWorksLikeOneOfTheWorkspace) {
  ComPtr<IDispatch> handed_in = Seam::New(recorder, "Record");
  auto record = WrapRecord(handed_in.get());
  const int living = recorder.living;
  const auto transactions = record->Transactions();
  const auto field = transactions->GetFields()->Item(L"TYPE");
  handed_in = {};
  record.reset();
  field->GetValue();
  EXPECT_EQ(recorder.living, living + 1);  // the transactions and the field, without the record
  EXPECT_EQ(recorder.calls.back(), "TransactionsField:74 MG");
}

TEST_F(LateBoundTest, TextsOfAnyLengthArrive) {
  for (const std::size_t length : {0, 1, 1000}) {
    std::string text(length, 'x');
    if (length > 1) text[1] = '\0';
    seam->record->SetExtraText(FromUtf8(text));
    EXPECT_EQ(recorder.calls.back(), "Record:20011 P '" + text + "'");
  }
}

TEST_F(LateBoundTest, AnswersAreConverted) {
  for (const VARTYPE type : {VT_BOOL, VT_I2, VT_I4, VT_EMPTY}) {
    for (const LONG content : {-1, 0}) {
      Tell("File:10003", Number(type, content));
      EXPECT_EQ(seam->file->Read(1), content != 0 && type != VT_EMPTY) << type;
    }
  }
  Tell("Index:10002", Number(VT_I4, 70000));
  EXPECT_EQ(seam->index->RecordNumber(), 70000);
  const ScopedVariant version = ToVariant(L"9.02");
  Tell("Workspace:3", version);
  EXPECT_EQ(seam->workspace->Version(), L"9.02");
  VARIANT price = Number(VT_R8, 0);
  price.dblVal = 12.5;
  Tell("Pricing:76", price);
  EXPECT_EQ(seam->pricing->CustomerUnitPrice(L"ABC", L"NUT"), 12.5);
  Tell("Transactions:20006", Number(VT_BOOL, -1));
  EXPECT_TRUE(seam->transactions->MoveNext());
}

TEST_F(LateBoundTest, WhatIsNoObjectIsATypeMismatch) {
  for (const VARIANT& answer :
       {VARIANT{}, Number(VT_I4, 1), Number(VT_DISPATCH, 0), Number(VT_UNKNOWN, 0)}) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"Workspace:5", [this] { seam->workspace->CreateDataFile(L"SalesData"); }},
        {"Workspace:5", [this] { seam->workspace->CreateRecord(L"SalesRecord"); }},
        {"Workspace:5", [this] { seam->workspace->CreateIndex(L"SalesIndex"); }},
        {"Workspace:5", [this] { seam->workspace->CreatePricing(); }},
        {"Record:85", [this] { seam->record->Transactions(); }},
        {"Engine:2", [this] { seam->engine->LastError(); }},
        {"File:10002", [this] { seam->file->GetFields(); }},
        {"Record:20001", [this] { seam->record->GetFields(); }},
        {"FileFields:0", [this] { seam->fields->Item(L"NAME"); }},
    };
    for (const auto& [member, action] : cases) {
      Tell(member, answer);
      EXPECT_EQ(ErrorOf(action).first, kErrorTypeMismatch) << member;
    }
  }
}

HRESULT STDMETHODCALLTYPE FillInLate(EXCEPINFO* info) {
  info->scode = E_ACCESSDENIED;
  info->bstrDescription = NewBstr(L"The file is locked.");
  return S_OK;
}

TEST_F(LateBoundTest, FailuresBecomeErrorsWithNumberAndText) {
  const auto close_error = [this](HRESULT result, EXCEPINFO told) {
    recorder.answers["File:1000a"] = [=](VARIANT&, EXCEPINFO& info) {
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
  const auto plain = close_error(DISP_E_MEMBERNOTFOUND, {});
  EXPECT_EQ(plain.first, DISP_E_MEMBERNOTFOUND);
  EXPECT_FALSE(plain.second.empty());
  recorder.answers["FileField?Value"];
  EXPECT_EQ(ErrorOf([this] { seam->field->GetValue(); }).first, kErrorUnknownName);
}

TEST(WrapTest, ThereIsNothingBehindNothing) {
  EXPECT_EQ(WrapWorkspace(nullptr), nullptr);
  EXPECT_EQ(WrapEngine(nullptr), nullptr);
  EXPECT_EQ(WrapRecord(nullptr), nullptr);
}

}  // namespace
}  // namespace ard::windows
