#include "simulator/testing/company_builder.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "frame/text.h"
#include "simulator/company.h"
#include "simulator/standard_columns.h"
#include "simulator/table_text.h"

namespace ard::simulator {

std::wstring_view TakeUpTo(wchar_t separator, std::wstring_view& text) {
  const std::wstring_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

FieldValues::FieldValues(std::wstring_view text) {
  while (!text.empty()) {
    std::wstring_view value = TakeUpTo(L'|', text);
    const std::wstring_view field = TakeUpTo(L'=', value);
    push_back({std::wstring(field), value});
  }
}

CompanyBuilder::CompanyBuilder() : company_(std::make_unique<Company>()) {
  for (const wchar_t* ledger : {L"SalesData", L"PurchaseData", L"NominalData", L"BankData",
                                L"StockData", L"SopData", L"PopData"}) {
    TableFor(ledger);
  }
  Setup({{L"TERMS_WARNING", true}});
}

CompanyBuilder::~CompanyBuilder() = default;

CompanyBuilder& CompanyBuilder::Customer(std::wstring_view account_ref, const FieldValues& values) {
  return Add(L"SalesData", {{L"ACCOUNT_REF", account_ref}, {L"TERMS_AGREED_FLAG", true}}, values);
}
CompanyBuilder& CompanyBuilder::Supplier(std::wstring_view account_ref, const FieldValues& values) {
  return Add(L"PurchaseData", {{L"ACCOUNT_REF", account_ref}, {L"TERMS_AGREED_FLAG", true}},
             values);
}
CompanyBuilder& CompanyBuilder::Nominal(std::wstring_view account_ref, const FieldValues& values) {
  return Add(L"NominalData", {{L"ACCOUNT_REF", account_ref}, {L"ACCOUNT_TYPE", 1}}, values);
}
CompanyBuilder& CompanyBuilder::Bank(std::wstring_view account_ref, const FieldValues& values) {
  return Add(L"BankData", {{L"ACCOUNT_REF", account_ref}}, values);
}
CompanyBuilder& CompanyBuilder::Product(std::wstring_view stock_code, const FieldValues& values) {
  return Add(L"StockData", {{L"STOCK_CODE", stock_code}}, values);
}

CompanyBuilder& CompanyBuilder::Setup(const FieldValues& values) {
  setup_.insert(setup_.end(), values.begin(), values.end());
  return *this;
}
CompanyBuilder& CompanyBuilder::Control(const FieldValues& values) {
  control_.insert(control_.end(), values.begin(), values.end());
  return *this;
}

CompanyBuilder& CompanyBuilder::Record(std::wstring_view table, const FieldValues& values) {
  return Add(table, {}, values);
}

CompanyBuilder& CompanyBuilder::Columns(std::wstring_view table, std::wstring_view columns) {
  std::string header = ToUtf8(columns);
  std::replace(header.begin(), header.end(), '|', '\t');
  company_->Set(table, company_->NewTable(table, ParseColumns(header, "")));
  return *this;
}

CompanyBuilder& CompanyBuilder::Without(std::wstring_view table) {
  left_out_.emplace_back(table);
  return *this;
}

CompanyBuilder& CompanyBuilder::Line(std::wstring_view line) {
  static const std::map<std::wstring_view,
                        CompanyBuilder& (CompanyBuilder::*)(std::wstring_view, const FieldValues&)>
      kRecords = {
          {L"Customer", &CompanyBuilder::Customer}, {L"Supplier", &CompanyBuilder::Supplier},
          {L"Nominal", &CompanyBuilder::Nominal},   {L"Bank", &CompanyBuilder::Bank},
          {L"Product", &CompanyBuilder::Product},   {L"Record", &CompanyBuilder::Record}};
  const std::wstring_view kind = TakeUpTo(L' ', line);
  if (kind == L"Setup") return Setup(FieldValues(line));
  if (kind == L"Control") return Control(FieldValues(line));
  const std::wstring_view name = TakeUpTo(L' ', line);
  if (kind == L"Columns") return Columns(name, line);
  if (kind == L"Without") return Without(name);
  const auto record = kRecords.find(kind);
  if (record == kRecords.end()) throw Error(kErrorFailed, L"There is no " + std::wstring(kind));
  return (this->*record->second)(name, FieldValues(line));
}

std::unique_ptr<Simulator> CompanyBuilder::Build() {
  Store(L"SetupData", setup_);
  Store(L"ControlData", control_);
  for (const std::wstring& table : left_out_) company_->Set(table, nullptr);
  return std::make_unique<Simulator>(std::move(company_));
}

CompanyBuilder& CompanyBuilder::Add(std::wstring_view table, std::vector<FieldValue> values,
                                    const FieldValues& more) {
  values.insert(values.end(), more.begin(), more.end());
  Store(table, values);
  return *this;
}

Table& CompanyBuilder::TableFor(std::wstring_view name) {
  if (company_->Find(name) == nullptr) {
    company_->Set(name, company_->NewTable(name, StandardColumns(name)));
  }
  return *company_->Find(name);
}

// Later values replace earlier ones.
void CompanyBuilder::Store(std::wstring_view name, const std::vector<FieldValue>& values) {
  Table& table = TableFor(name);
  Row row(table.columns().size());
  for (const FieldValue& given : values) {
    const std::size_t column = table.columns().Require(given.field);
    row[column] = ConvertTo(table.columns()[column].type, given.value);
  }
  if (table.Store(table.size() + 1, std::move(row))) return;
  throw Error(kErrorFailed, L"A key of " + std::wstring(name) + L" is blank or there already.");
}

}  // namespace ard::simulator
