#pragma once

// clsAccounting: accounting answers over the company's tables, for the calling applications.
//
// - ReturnPeriode: the ordinary period of a book year that holds a date. Period k runs from its
//   start date (".PerDate", slot k + 1) to the day before period k + 1 starts; the last one runs
//   as long as the one before it (a year of one period: twelve months). The opening and closing
//   periods hold no dates of their own.
// - CheckCentralisateur: the account is a centralising account: a general-ledger account of the
//   company ("ACF") of the trade receivables (class 40) or trade payables (class 44), into which
//   the customer and supplier ledgers are totalled, in the Belgian and Luxembourg charts alike.
// - GetBankName: the bank of a Belgian account number, from the bank-code list the installation
//   supplies, "BANKCODE.ORG" in the application's template folder: FROMCODE C 3, TOCODE C 3,
//   NAME C 60, one row per range of bank protocol codes (the first three digits of the national
//   account number).

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::company {

class SocParamColClassApi;

class clsAccounting {
  public:
    // Both must outlive this object.
    clsAccounting(SocParamColClassApi& params, tables::AdsClass& tables)
        : params_(params), tables_(tables) {}

    // The period ("01", "02", ...) of book year `bookYear` (0: the current one) that holds
    // `date` ("DD/MM/YYYY"); "" for a date outside its periods, a date that does not read, or a
    // book year without period dates.
    std::string ReturnPeriode(std::string_view date, std::int16_t bookYear);
    bool CheckCentralisateur(std::string_view account);
    // The bank's name for an account number written as a Belgian IBAN ("BE68 5390 0754 7034"),
    // in the national form ("539-0075470-34") or as the three-digit code alone; "" when the
    // number is not Belgian, the list is missing or it has no such code.
    std::string GetBankName(std::string_view account);

  private:
    SocParamColClassApi& params_;
    tables::AdsClass& tables_;
};

// The bank protocol code (three digits) of a Belgian account number in one of the forms
// above; "" for another text.
std::string BankProtocolCode(std::string_view account);

}  // namespace fnrk::company
