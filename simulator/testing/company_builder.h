// Builds a small company in memory, for tests:
//
//   auto engine = CompanyBuilder()
//                     .Customer(L"ABC001", L"NAME=ABC Ltd|BALANCE=10")
//                     .Setup({{L"TERMS_WARNING", false}})
//                     .Build();
//
// Tables have the standard columns (simulator/standard_columns.h). Records come in the order in
// which they are added; a field that is not given is blank. A mistake in a test's company (unknown
// field, value of the wrong type, text too long, duplicate key) throws Error.
#ifndef ARD_SIMULATOR_TESTING_COMPANY_BUILDER_H_
#define ARD_SIMULATOR_TESTING_COMPANY_BUILDER_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/value.h"
#include "simulator/simulator.h"

namespace ard::simulator {

class Table;

// The text before the separator, which is taken off `text` along with it.
std::wstring_view TakeUpTo(wchar_t separator, std::wstring_view& text);

struct FieldValue {
  std::wstring field;
  Value value;
};
class FieldValues : public std::vector<FieldValue> {
 public:
  using vector::vector;
  // "NAME=ABC Ltd|BALANCE=10.5|ACCOUNT_ON_HOLD=True": values as text, which the columns convert.
  FieldValues(const wchar_t* text) : FieldValues(std::wstring_view(text)) {}
  explicit FieldValues(std::wstring_view text);
};

class CompanyBuilder {
 public:
  // Starts with five empty ledgers, no orders, and the two single-record files: ControlData, with
  // the counts computed, and SetupData, with TERMS_WARNING yes.
  CompanyBuilder();
  CompanyBuilder(const CompanyBuilder&) = delete;
  CompanyBuilder& operator=(const CompanyBuilder&) = delete;
  ~CompanyBuilder();

  // Accounts. Customers and suppliers have agreed terms and no credit limit, nominal accounts are
  // of ACCOUNT_TYPE 1, unless `values` say otherwise.
  CompanyBuilder& Customer(std::wstring_view account_ref, const FieldValues& values = {});
  CompanyBuilder& Supplier(std::wstring_view account_ref, const FieldValues& values = {});
  CompanyBuilder& Nominal(std::wstring_view account_ref, const FieldValues& values = {});
  CompanyBuilder& Bank(std::wstring_view account_ref, const FieldValues& values = {});
  CompanyBuilder& Product(std::wstring_view stock_code, const FieldValues& values = {});

  // Fields of the single records. A count stated here replaces the computed one.
  CompanyBuilder& Setup(const FieldValues& values);
  CompanyBuilder& Control(const FieldValues& values);

  // Appends a record to any table with standard columns, such as L"AccessData".
  CompanyBuilder& Record(std::wstring_view table, const FieldValues& values);

  // Gives a table that has no records yet these columns: "NAME:text(30)|RATE:double", as in a file.
  CompanyBuilder& Columns(std::wstring_view table, std::wstring_view columns);

  // Leaves the table out, as if its file did not exist: it cannot be opened.
  CompanyBuilder& Without(std::wstring_view table);

  // Does one of these as a line of text tells: "Customer ABC001 NAME=ABC Ltd|BALANCE=10",
  // "Control T1_RATE=17.5", "Without SetupData".
  CompanyBuilder& Line(std::wstring_view line);

  // Hands the company over; the builder is spent.
  std::unique_ptr<Simulator> Build();

 private:
  CompanyBuilder& Add(std::wstring_view table, std::vector<FieldValue> values,
                      const FieldValues& more);
  Table& TableFor(std::wstring_view name);
  void Store(std::wstring_view name, const std::vector<FieldValue>& values);

  std::unique_ptr<Company> company_;
  std::vector<FieldValue> setup_;
  std::vector<FieldValue> control_;
  std::vector<std::wstring> left_out_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_TESTING_COMPANY_BUILDER_H_
