#include "accounts/account_records.h"

namespace ard::accounts {
namespace {

using engine::Blanks;
using C = CustomerDetails;
using S = SupplierDetails;

constexpr engine::FieldProperty<C> kCustomerProperties[] = {
    {L"Name", L"NAME", &C::name, Blanks::kTrim},
    {L"Address1", L"ADDRESS_1", &C::address_1, Blanks::kTrim},
    {L"Address2", L"ADDRESS_2", &C::address_2, Blanks::kTrim},
    {L"Address3", L"ADDRESS_3", &C::address_3, Blanks::kTrim},
    {L"Address4", L"ADDRESS_4", &C::address_4, Blanks::kTrim},
    {L"Address5", L"ADDRESS_5", &C::address_5, Blanks::kTrim},
    {L"DelAddress1", L"DEL_ADDRESS_1", &C::del_address_1, Blanks::kTrim},
    {L"DelAddress2", L"DEL_ADDRESS_2", &C::del_address_2, Blanks::kTrim},
    {L"DelAddress3", L"DEL_ADDRESS_3", &C::del_address_3, Blanks::kTrim},
    {L"DelAddress4", L"DEL_ADDRESS_4", &C::del_address_4, Blanks::kTrim},
    {L"DelAddress5", L"DEL_ADDRESS_5", &C::del_address_5, Blanks::kTrim},
    {L"TelNumber", L"TELEPHONE", &C::tel_number, Blanks::kTrim},
    {L"ContactName", L"CONTACT_NAME", &C::contact_name, Blanks::kTrim},
    {L"DueDays", L"SETTLEMENT_DUE_DAYS", &C::due_days},
    {L"SettDiscount", L"SETTLEMENT_DISC_RATE", &C::sett_discount},
    {L"TaxCode", L"DEF_TAX_CODE", &C::tax_code},
    {L"Department", L"DEPT_NUMBER", &C::department},
    {L"NominalCode", L"DEF_NOM_CODE", &C::nominal_code},
};

// Fewer than a customer's, under other names, and untrimmed: that is how they are published.
constexpr engine::FieldProperty<S> kSupplierProperties[] = {
    {L"Name", L"NAME", &S::name},
    {L"ContactName", L"CONTACT_NAME", &S::contact_name},
    {L"DefNomCode", L"DEF_NOM_CODE", &S::def_nom_code},
    {L"DefTaxCode", L"DEF_TAX_CODE", &S::def_tax_code},
    {L"DeptNumber", L"DEPT_NUMBER", &S::dept_number},
};

}  // namespace

CustomerRecord::CustomerRecord(Environment& environment)
    : AccountRecord(L"CustomerRecord", environment, L"SalesRecord", kCustomerProperties) {}

SupplierRecord::SupplierRecord(Environment& environment)
    : AccountRecord(L"SupplierRecord", environment, L"PurchaseRecord", kSupplierProperties) {}

}  // namespace ard::accounts
