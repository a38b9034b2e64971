#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include "settings/general.h"
#include "windows/server/context_properties.h"
#include "windows/server/string_array.h"

namespace ard::windows {
namespace {

using Portable = settings::General;
using Base = WithAppName<WithArdWorkspace<
    WithArdEngine<WithDBaseConn<WithRegistryPath<AutomationObject<_General, Portable>>>>>>;

class GeneralObject final : public Base {
 public:
  using Base::Base;

  // The accounts program.
  HRESULT STDMETHODCALLTYPE AddEntryToIniFile(SAFEARRAY** check_items, BSTR long_path,
                                              BSTR narrative, BSTR bitmap, BSTR exe_name,
                                              VARIANT_BOOL* result) override {
    if (!check_items) return E_POINTER;
    StringArrayArgument items(*check_items);
    return Call(result, &Portable::AddEntryToIniFile, items.value(), View(long_path),
                View(narrative), View(bitmap), View(exe_name));
  }
  HRESULT STDMETHODCALLTYPE IsF12Hide(VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsF12Hide);
  }
  HRESULT STDMETHODCALLTYPE GetF11Program(BSTR* result) override {
    return Call(result, &Portable::GetF11Program);
  }
  HRESULT STDMETHODCALLTYPE IsArdExclusive(BSTR path, VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsArdExclusive, View(path));
  }
  HRESULT STDMETHODCALLTYPE CreateAccountsShortcut(LONG owner, BSTR accts_prog_path,
                                                   BSTR manuf_prog_path, short accounts_version,
                                                   BSTR* result) override {
    return Call(result, &Portable::CreateAccountsShortcut, static_cast<std::int32_t>(owner),
                View(accts_prog_path), View(manuf_prog_path), accounts_version);
  }

  // Current users.
  HRESULT STDMETHODCALLTYPE GetNumActiveUsers(short* result) override {
    return Call(result, &Portable::GetNumActiveUsers);
  }
  HRESULT STDMETHODCALLTYPE GetNumActiveUsersInclDet(BSTR* user_name, BSTR* mach_name,
                                                     short* result) override {
    if (!user_name || !mach_name) return E_POINTER;
    TextOutput user(user_name);
    TextOutput machine(mach_name);
    return Call(result, [&](Portable& portable) {
      return portable.GetNumActiveUsersInclDet(user.value(), machine.value());
    });
  }
  HRESULT STDMETHODCALLTYPE ShowUserList(VARIANT_BOOL manager) override {
    return Perform([&](Portable& portable) { portable.ShowUserList(manager != VARIANT_FALSE); });
  }

  // The company's settings.
  HRESULT STDMETHODCALLTYPE GetCategories(SAFEARRAY** list) override {
    return Fill(&Portable::GetCategories, list);
  }
  HRESULT STDMETHODCALLTYPE GetDepartments(SAFEARRAY** list) override {
    return Fill(&Portable::GetDepartments, list);
  }
  HRESULT STDMETHODCALLTYPE GetDPSettings(short* qty_dp, short* unit_dp, BSTR* qty_format,
                                          BSTR* unit_format) override {
    if (!qty_dp || !unit_dp || !qty_format || !unit_format) return E_POINTER;
    TextOutput quantity(qty_format);
    TextOutput unit(unit_format);
    return Perform([&](Portable& portable) {
      portable.GetDPSettings(*qty_dp, *unit_dp, quantity.value(), unit.value());
    });
  }
  HRESULT STDMETHODCALLTYPE GetTaxCodes(SAFEARRAY** list) override {
    return Fill(&Portable::GetTaxCodes, list);
  }
  HRESULT STDMETHODCALLTYPE GetVatRate(short vat_code, double* result) override {
    return Call(result, &Portable::GetVatRate, vat_code);
  }
  HRESULT STDMETHODCALLTYPE GetVatDesc(short vat_code, BSTR* result) override {
    return Call(result, &Portable::GetVatDesc, vat_code);
  }

 private:
  HRESULT Fill(void (Portable::*method)(TextArray) const noexcept, SAFEARRAY** list) {
    if (!list) return E_POINTER;
    StringArrayArgument strings(*list);
    return Perform([&](Portable& portable) { (portable.*method)(strings.value()); });
  }
};

constexpr Member kMembers[] = {
    kAppName<_General>,
    kArdWorkspace<_General>,
    kArdEngine<_General>,
    kDBaseConn<_General>,
    kRegistryPath<_General>,
    Method<&_General::AddEntryToIniFile, Boolean(StringArray, String, String, String, String)>,
    Method<&_General::IsF12Hide, Boolean()>,
    Method<&_General::GetF11Program, String()>,
    Method<&_General::IsArdExclusive, Boolean(String)>,
    Method<&_General::CreateAccountsShortcut,
           String(Long, String, String, Optional<Integer, SHORT{12}>)>,
    Method<&_General::GetNumActiveUsers, Integer()>,
    Method<&_General::GetNumActiveUsersInclDet, Integer(ByRef<String>, ByRef<String>)>,
    Method<&_General::ShowUserList, void(Boolean)>,
    Method<&_General::GetCategories, void(StringArray)>,
    Method<&_General::GetDepartments, void(StringArray)>,
    Method<&_General::GetDPSettings,
           void(ByRef<Integer>, ByRef<Integer>, ByRef<String>, ByRef<String>)>,
    Method<&_General::GetTaxCodes, void(StringArray)>,
    Method<&_General::GetVatRate, Double(Integer)>,
    Method<&_General::GetVatDesc, String(Integer)>,
};

}  // namespace

const PublishedClass kGeneral = {{L"General", kMembers, kGeneralNames},
                                 kGeneralHelp,
                                 CLSID_General,
                                 IID__General,
                                 Create<GeneralObject>};

}  // namespace ard::windows
