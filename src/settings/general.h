// General: the company's settings, its current users, and what ties the host to the accounts
// program.
#ifndef ARD_SETTINGS_GENERAL_H_
#define ARD_SETTINGS_GENERAL_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/public_class.h"
#include "frame/text_array.h"

namespace ard::settings {

class General : public PublicClass {
 public:
  explicit General(Environment& environment) : PublicClass(L"General", environment) {}

  // ---- The company's settings (company_settings.cpp) ----

  // Fill the elements with the categories of products, and the departments, that have their index
  // as a number: the number, three blanks, the name. Where there is none, the name is that of the
  // record read before. The elements stay as they are when the file cannot be opened.
  void GetCategories(TextArray cat_list) const noexcept;
  void GetDepartments(TextArray dept_list) const noexcept;

  // The decimals of quantities and unit prices, and their formats such as "0.00"; 4 when they
  // cannot be told.
  void GetDPSettings(std::int16_t& qty_dp, std::int16_t& unit_dp, std::wstring& qty_format,
                     std::wstring& unit_format) const noexcept;

  // Fills the elements 0 to 99, as far as there are such, with the tax codes and their rates:
  // "T1   17.50", "T20 0.00". They stay as they are when the rates cannot be read.
  void GetTaxCodes(TextArray tax_code_list) const noexcept;
  // 0 and "" when there is no such code.
  double GetVatRate(std::int16_t vat_code) const noexcept;
  std::wstring GetVatDesc(std::int16_t vat_code) const noexcept;

  // ---- The accounts program (accounts_program.cpp) ----

  // Registers the host as an add-in in the accounts program's ini file: empties the entries in
  // which one of `check_items` from index 0 on occurs (blank ones occur in none; case does not
  // count), and makes the first free one "narrative,short path,bitmap,exe". A step that fails is
  // put to the user; False when they abort.
  bool AddEntryToIniFile(const TextArray& check_items, std::wstring_view long_path,
                         std::wstring_view narrative, std::wstring_view bitmap,
                         std::wstring_view exe_name) const noexcept;
  // Whether the accounts program hides itself on F12.
  bool IsF12Hide() const noexcept;
  // The program that it starts on F11; CONTROL.EXE when it names none.
  std::wstring GetF11Program() const noexcept;
  // Whether the accounts data in the folder `path` cannot be shared: True when its register of
  // logons cannot be opened, whatever the reason.
  bool IsArdExclusive(std::wstring_view path) const noexcept;
  // Writes a shortcut that starts the accounts program of that version through its desktop launcher
  // (docs/manual/accounts_program.md) into the folder `manuf_prog_path`. Its path; "" when it could
  // not be written. `owner` is a window of the host's.
  std::wstring CreateAccountsShortcut(std::int32_t owner, std::wstring_view accts_prog_path,
                                      std::wstring_view manuf_prog_path,
                                      std::int16_t accounts_version = 12) const noexcept;

  // ---- Current users (current_users.cpp) ----

  // How many users are logged on to the accounts data; 0 when that cannot be told.
  std::int16_t GetNumActiveUsers() const noexcept;
  // The same; the first whose name is not `user_name` is put out with their workstation. Both stay
  // as they are when there is no other.
  std::int16_t GetNumActiveUsersInclDet(std::wstring& user_name,
                                        std::wstring& mach_name) const noexcept;
  // Shows who is logged on, to the accounts data and to the host; the manager can delete logons to
  // the host.
  void ShowUserList(bool manager) const noexcept;
};

}  // namespace ard::settings

#endif  // ARD_SETTINGS_GENERAL_H_
