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
      .Product(L"NUT", {{L"SALES_PRICE", 9.5}, {L"LAST_PURCHASE_PRICE", 4.5}})
      .Record(L"StockTransactionData", {{L"STOCK_CODE", L"NUT"}, {L"QUANTITY", 7.5}})
      .Setup({{L"PRICING_SERVICE", true}})
      .Build();
}

// What using everything answers, errors too: a line each.
std::vector<std::string> Use(engine::Workspace& workspace) {
  std::vector<std::string> lines;
  const auto add = [&](std::string_view kind, int number, std::wstring_view text) {
    lines.push_back(std::string(kind) + std::to_string(number) + " " + ToUtf8(text));
  };
  const auto note = [&](const auto& action) {
    try {
      if constexpr (std::is_void_v<decltype(action())>) {
        action();
      } else {
        const Value answer(action());
        add("type ", static_cast<int>(answer.storage().index()), answer.ToText());
      }
    } catch (const Error& error) {
      add("error ", error.number(), error.text());
    }
  };
  note([&] { return workspace.Version(); });
  note([&] { return workspace.Connect(L"C:\\data", L"NOBODY", L"secret", L"id"); });
  note([&] { return workspace.ConnectNT(L"C:\\data", L"NOBODY", L"", L"id"); });
  note([&] { workspace.Disconnect(); });
  note([&] { workspace.CreateDataFile(L"NoSuchData"); });

  const auto file = workspace.CreateDataFile(L"SalesData");
  note([&] { return file->Open(Mode::kAppend); });
  note([&] { return file->Read(2); });
  note([&] { return file->Read(99); });
  auto fields = file->GetFields();
  for (std::int32_t i = 0; i <= fields->Count(); ++i) {
    note([&] { return fields->Item(i)->Name(); });
    note([&] { return fields->Item(i)->Type(); });
    note([&] { return fields->Item(i)->GetValue(); });
  }
  note([&] { fields->Item(L"NO_SUCH_FIELD"); });
  note([&] { return file->FindFirst(L"ACCOUNT_REF", L"A*"); });
  note([&] { return file->FindNext(L"ACCOUNT_REF", L"A*"); });
  note([&] { return fields->Item(L"account_ref")->GetValue(); });
  note([&] { return file->FindNext(L"ACCOUNT_REF", L"A*"); });
  note([&] { fields->Item(L"ACCOUNT_REF")->SetValue(L"NEW001"); });
  note([&] { fields->Item(L"BALANCE")->SetValue(L"no number"); });
  note([&] { return file->Write(file->Count() + 1); });
  note([&] { return file->Count(); });
  note([&] { file->Close(); });
  note([&] { return file->Read(1); });

  const auto index = workspace.CreateIndex(L"SalesIndex");
  note([&] { return index->Open(Mode::kRead); });
  note([&] { index->SetKey(L"BAY"); });
  note([&] { return index->Find(Match::kExact); });
  note([&] { return index->Find(Match::kPartial); });
  note([&] { return index->Position(); });
  note([&] { index->MoveTo(2); });
  note([&] { return index->RecordNumber(); });
  note([&] { return index->MoveNext(); });
  note([&] { index->MoveFirst(); });
  note([&] { return index->Position(); });
  note([&] { index->Close(); });

  const auto record = workspace.CreateRecord(L"SalesRecord");
  fields = record->GetFields();
  note([&] { fields->Item(L"ACCOUNT_REF")->SetValue(L"ADE001"); });
  note([&] { return record->Find(Match::kExact); });
  note([&] { return fields->Item(L"NAME")->GetValue(); });
  note([&] { record->Edit(); });
  note([&] { fields->Item(L"NAME")->SetValue(L"changed"); });
  note([&] { return record->Update(); });
  note([&] { record->MoveFirst(); });
  note([&] { return record->MoveNext(); });
  note([&] { return fields->Item(L"NAME")->GetValue(); });
  note([&] { record->AddNew(); });
  note([&] { record->SetExtraText(L""); });
  note([&] { return record->Update(); });
  note([&] { record->Transactions(); });

  const auto product = workspace.CreateRecord(L"StockRecord");
  const auto transactions = product->Transactions();
  note([&] { return transactions->Count(); });
  note([&] { return transactions->GetFields()->Item(L"QUANTITY")->GetValue(); });
  note([&] { return transactions->MoveNext(); });
  note([&] { transactions->MoveFirst(); });
  const auto pricing = workspace.CreatePricing();
  note([&] { return pricing->CustomerUnitPrice(L"ABC001", L"NUT"); });
  note([&] { return pricing->SupplierUnitPrice(L"NUT", L"SUP001"); });
  return lines;
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
struct Script {
  Value Ask(const wchar_t* name, std::vector<Value> arguments = {}) {
    std::vector<windows::ScopedVariant> list;
    for (auto it = arguments.rbegin(); it != arguments.rend(); ++it) {
      list.push_back(windows::ToVariant(*it));
    }
    auto* text = const_cast<LPOLESTR>(name);
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(engine->GetIDsOfNames(IID_NULL, &text, 1, 0, &id), S_OK) << id;
    DISPPARAMS parameters = {list.data(), nullptr, static_cast<UINT>(list.size()), 0};
    windows::ScopedVariant result;
    EXCEPINFO exception{};
    last = engine->Invoke(id, IID_NULL, 0, kCall, &parameters, &result, &exception, nullptr);
    error = windows::View(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    return windows::FromVariant(result);
  }

  ComPtr<IDispatch> engine = CreateEngineObject();
  HRESULT last = S_OK;
  std::wstring error;
};

TEST(EngineObject, OpensCompaniesAndCounts) {
  Script script;
  script.Ask(L"Workspace");
  EXPECT_EQ(script.last, DISP_E_EXCEPTION);
  EXPECT_EQ(script.error, L"No company has been opened.");
  script.Ask(L"Open", {L"C:\\no such folder"});
  EXPECT_EQ(script.last, DISP_E_EXCEPTION);
  EXPECT_NE(script.error, L"");
  script.Ask(L"Open");
  EXPECT_EQ(script.last, DISP_E_BADPARAMCOUNT);

  EXPECT_TRUE(script.Ask(L"opensynthetic", {2}).ToBoolean());
  EXPECT_TRUE(script.Ask(L"OpenSyntheticStock", {1000, 300}).ToBoolean());
  const auto workspace = windows::WrapWorkspace(
      windows::ToDispatch(windows::ToVariant(script.Ask(L"WORKSPACE"))).get());
  {
    const auto stock = workspace->CreateDataFile(L"StockData");
    EXPECT_TRUE(stock->Open(Mode::kRead));
    EXPECT_EQ(stock->Count(), 300);
  }
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
