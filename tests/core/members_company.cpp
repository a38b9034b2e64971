#include <sstream>

#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"

namespace ard::testing {
namespace {

// The lines of the text that are, or are not, of the host's database.
std::vector<std::wstring> Lines(bool of_database) {
  std::wistringstream text(
#include "tests/core/members_company.inc"
  );
  std::vector<std::wstring> lines;
  for (std::wstring line; std::getline(text, line);) {
    if (line.starts_with(L"SQL ") == of_database) lines.push_back(line.substr(of_database ? 4 : 0));
  }
  return lines;
}

}  // namespace

std::unique_ptr<simulator::Simulator> MembersCompany() {
  simulator::CompanyBuilder company;
  company.Line(L"Record AccessData NAME=ANN|PASSWORD=" + std::wstring(kPassword));
  for (const std::wstring& line : Lines(false)) company.Line(line);
  return company.Build();
}

std::vector<std::wstring> MembersDatabaseCommands() { return Lines(true); }

std::shared_ptr<host_database::OdbcConnection> MembersDatabase() {
  const auto database = std::make_shared<host_database::OdbcConnection>(kMembersConnection);
  for (const std::wstring& command : MembersDatabaseCommands()) database->Execute(command);
  return database;
}

}  // namespace ard::testing
