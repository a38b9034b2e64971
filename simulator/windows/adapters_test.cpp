#include "simulator/windows/adapters.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/testing/company_builder.h"
#include "simulator/windows/engine_object.h"
#include "windows/engine/late_bound.h"

namespace ard::simulator {
namespace {

using engine::Match;
using engine::Mode;

std::unique_ptr<Simulator> Company() {
  return CompanyBuilder()
      .Customer(L"ABC001", {{L"NAME", L"ABC Ltd"}, {L"BALANCE", 10.0}})
      .Customer(L"ADE001", {{L"NAME", L"Adele \x00e9"}, {L"ACCOUNT_ON_HOLD", true}})
      .Customer(L"BAY002", {{L"CREDIT_LIMIT", 99.5}})
      .Build();
}

// Everything that was answered, errors too: a line each.
class Transcript {
 public:
  void Note(const auto& action) {
    try {
      if constexpr (std::is_void_v<decltype(action())>) {
        action();
        Add("done", L"");
      } else {
        const Value answer(action());
        Add("type " + std::to_string(answer.storage().index()), answer.ToText());
      }
    } catch (const Error& error) {
      Add("error " + std::to_string(error.number()), error.text());
    }
  }
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  void Add(std::string_view kind, std::wstring_view text) {
    lines_.push_back(std::string(kind).append(" ").append(ToUtf8(text)));
  }

  std::vector<std::string> lines_;
};

void UseDataFile(engine::Workspace& workspace, Transcript& log) {
  const auto file = workspace.CreateDataFile(L"SalesData");
  log.Note([&] { return file->Open(Mode::kAppend); });
  log.Note([&] { return file->Read(2); });
  log.Note([&] { return file->Read(99); });
  const auto fields = file->GetFields();
  for (std::int32_t i = 1; i <= fields->Count(); ++i) {
    log.Note([&] { return fields->Item(i)->Name(); });
    log.Note([&] { return fields->Item(i)->Type(); });
    log.Note([&] { return fields->Item(i)->GetValue(); });
  }
  log.Note([&] { fields->Item(L"NO_SUCH_FIELD"); });
  log.Note([&] { fields->Item(0); });
  log.Note([&] { return file->FindFirst(L"ACCOUNT_REF", L"A*"); });
  log.Note([&] { return file->FindNext(L"ACCOUNT_REF", L"A*"); });
  log.Note([&] { return fields->Item(L"account_ref")->GetValue(); });
  log.Note([&] { return file->FindNext(L"ACCOUNT_REF", L"A*"); });
  log.Note([&] { fields->Item(L"ACCOUNT_REF")->SetValue(L"NEW001"); });
  log.Note([&] { fields->Item(L"BALANCE")->SetValue(L"no number"); });
  log.Note([&] { return file->Write(file->Count() + 1); });
  log.Note([&] { return file->Count(); });
  log.Note([&] { file->Close(); });
  log.Note([&] { return file->Read(1); });
}

void UseIndex(engine::Workspace& workspace, Transcript& log) {
  const auto index = workspace.CreateIndex(L"SalesIndex");
  log.Note([&] { return index->Open(Mode::kRead); });
  log.Note([&] { index->SetKey(L"BAY"); });
  log.Note([&] { return index->Find(Match::kExact); });
  log.Note([&] { return index->Find(Match::kPartial); });
  log.Note([&] { return index->Position(); });
  log.Note([&] { index->MoveTo(2); });
  log.Note([&] { return index->RecordNumber(); });
  log.Note([&] { return index->MoveNext(); });
  log.Note([&] { index->MoveFirst(); });
  log.Note([&] { return index->Position(); });
  log.Note([&] { index->Close(); });
}

void UseRecord(engine::Workspace& workspace, Transcript& log) {
  const auto record = workspace.CreateRecord(L"SalesRecord");
  const auto fields = record->GetFields();
  log.Note([&] { fields->Item(L"ACCOUNT_REF")->SetValue(L"ADE001"); });
  log.Note([&] { return record->Find(Match::kExact); });
  log.Note([&] { return fields->Item(L"NAME")->GetValue(); });
  log.Note([&] { record->Edit(); });
  log.Note([&] { fields->Item(L"NAME")->SetValue(L"changed"); });
  log.Note([&] { return record->Update(); });
  log.Note([&] { record->MoveFirst(); });
  log.Note([&] { return record->MoveNext(); });
  log.Note([&] { return fields->Item(L"NAME")->GetValue(); });
  log.Note([&] { record->AddNew(); });
  log.Note([&] { record->SetExtraText(L""); });
  log.Note([&] { return record->Update(); });
}

void UseWorkspace(engine::Workspace& workspace, Transcript& log) {
  log.Note([&] { return workspace.Version(); });
  log.Note([&] { return workspace.Connect(L"C:\\data", L"NOBODY", L"secret", L"id"); });
  log.Note([&] { return workspace.ConnectNT(L"C:\\data", L"NOBODY", L"", L"id"); });
  log.Note([&] { workspace.Disconnect(); });
  log.Note([&] { workspace.CreateDataFile(L"NoSuchData"); });
}

std::vector<std::string> Use(engine::Workspace& workspace) {
  Transcript log;
  UseDataFile(workspace, log);
  UseIndex(workspace, log);
  UseRecord(workspace, log);
  UseWorkspace(workspace, log);
  return log.lines();
}

TEST(Adapters, AnswerThroughAutomationAsTheEngineItselfDoes) {
  const auto direct = Company();
  const auto behind = Company();
  const auto live = std::make_shared<std::int32_t>(0);
  const auto wrapped = windows::WrapWorkspace(Expose(behind->workspace(), live).get());
  EXPECT_EQ(Use(*wrapped), Use(*direct->workspace()));
  EXPECT_EQ(*live, 0);
  EXPECT_EQ(behind->counters().living_objects, 0);
  EXPECT_EQ(behind->counters().open_files, 0);
  // One operation of the engine for each call, and none of the adapters' own.
  EXPECT_EQ(behind->operations(), direct->operations());
}

TEST(Adapters, AFieldKeepsItsObjectAliveAndCounts) {
  const auto simulator = Company();
  const auto live = std::make_shared<std::int32_t>(0);
  const auto workspace = windows::WrapWorkspace(Expose(simulator->workspace(), live).get());
  auto file = workspace->CreateDataFile(L"SalesData");
  ASSERT_TRUE(file->Open(Mode::kRead));
  ASSERT_TRUE(file->Read(1));
  const auto field = file->GetFields()->Item(L"ACCOUNT_REF");
  EXPECT_EQ(*live, 2);
  file.reset();
  EXPECT_EQ(*live, 1);
  EXPECT_EQ(field->GetValue().ToText().substr(0, 6), L"ABC001");
}

// The engine object by name, as a script uses it.
class Script {
 public:
  Value Ask(const wchar_t* name, std::vector<Value> arguments = {}) {
    std::vector<windows::ScopedVariant> list;
    for (auto it = arguments.rbegin(); it != arguments.rend(); ++it) {
      list.push_back(windows::ToVariant(*it));
    }
    auto* text = const_cast<LPOLESTR>(name);
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(engine_->GetIDsOfNames(IID_NULL, &text, 1, 0, &id), S_OK) << id;
    DISPPARAMS parameters = {list.data(), nullptr, static_cast<UINT>(list.size()), 0};
    windows::ScopedVariant result;
    EXCEPINFO exception{};
    last_ = engine_->Invoke(id, IID_NULL, 0, kCall, &parameters, &result, &exception, nullptr);
    error_ = windows::View(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    return windows::FromVariant(result);
  }
  HRESULT last() const { return last_; }
  const std::wstring& error() const { return error_; }

 private:
  ComPtr<IDispatch> engine_ = CreateEngineObject();
  HRESULT last_ = S_OK;
  std::wstring error_;
};

TEST(EngineObject, OpensCompaniesAndCounts) {
  Script script;
  script.Ask(L"Workspace");
  EXPECT_EQ(script.last(), DISP_E_EXCEPTION);
  EXPECT_EQ(script.error(), L"No company has been opened.");
  script.Ask(L"Open", {L"C:\\no such folder"});
  EXPECT_EQ(script.last(), DISP_E_EXCEPTION);
  EXPECT_NE(script.error(), L"");
  script.Ask(L"Open");
  EXPECT_EQ(script.last(), DISP_E_BADPARAMCOUNT);

  EXPECT_TRUE(script.Ask(L"opensynthetic", {1000}).ToBoolean());
  const auto workspace = windows::WrapWorkspace(
      windows::ToDispatch(windows::ToVariant(script.Ask(L"WORKSPACE"))).get());
  {
    const auto file = workspace->CreateDataFile(L"SalesData");
    EXPECT_TRUE(file->Open(Mode::kRead));
    EXPECT_TRUE(file->Read(1000));
    EXPECT_EQ(script.Ask(L"OpenFiles"), Value(1));
    // The engine's object, and the one that stands for it.
    EXPECT_EQ(script.Ask(L"LivingObjects"), Value(2));
    EXPECT_EQ(script.Ask(L"RecordsRead"), Value(1.0));

    script.Ask(L"FailFrom", {1, false});
    EXPECT_THROW(file->Close(), Error);
    EXPECT_NO_THROW(file->Close());
  }
  EXPECT_EQ(script.Ask(L"OpenFiles"), Value(0));
  EXPECT_EQ(script.Ask(L"LivingObjects"), Value(0));
}

}  // namespace
}  // namespace ard::simulator
