#pragma once

// clsPrint: the number helpers of the printed reports (ledgers, balances, payment slips).
// Amounts follow the accounting sign: debit positive, credit negative.

#include <string>
#include <string_view>

namespace fnrk::utilities {

class clsPrint {
  public:
    // The signed total of a debit and a credit column: debit minus credit, rounded to cents (half
    // away from zero) so that totals of many lines do not print as "-0,00".
    double SignTot(double debit, double credit) const;

    // Number of characters the amount takes when printed with `decimals` decimals (0 to 6) and a
    // thousands separator every three digits, sign included: 1234567.5 with 2 decimals is
    // "1.234.567,50", 12 characters. Used to size report columns.
    int CalculCarac(double amount, int decimals) const;

    // Number of characters a text zone takes when printed: its characters (not bytes) without
    // trailing blanks, at most `width` when `width` is positive.
    int CalculCaracForAnyZone(std::string_view text, int width) const;

    // The value a closing (balance) column shows for a balance: in the debit column the balance
    // when it is positive, in the credit column its opposite when it is negative, else 0.
    double ClotureValue(double balance, bool debitColumn) const;
    // The same for a centralising account, whose balance is its debit total minus its credit
    // total.
    double ClotureValueCentral(double debitTotal, double creditTotal, bool debitColumn) const;

    // A report zone holds simulated (not booked) figures when its code, trimmed, starts with "S"
    // (the simulation journals' letter) in either case.
    bool ZoneIsSimulation(std::string_view zoneCode) const;

    // The check number of a Belgian structured communication: the first ten digits taken as a
    // number, modulo 97, with 97 instead of 0, as two digits. Characters other than digits are
    // skipped ("+++123/4567/890" is read as 1234567890). Empty text when there are not exactly
    // ten digits.
    std::string GetNumberKeyControl(std::string_view number) const;

    // The whole structured communication of a number of at most ten digits (padded with leading
    // zeros): "+++DDD/DDDD/DDDCC+++" with CC its check number; 1234567890 gives
    // "+++123/4567/89002+++". Empty text for anything else than 1 to 10 digits.
    std::string FormatCheckedNumber(std::string_view number) const;
};

}  // namespace fnrk::utilities
