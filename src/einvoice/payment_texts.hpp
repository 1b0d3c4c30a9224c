#pragma once

// Texts of the payment and tax sections of the newer profiles: the payment reference, the IBAN,
// the three-language cash-discount note, the allowance reasons and the tax exemption reasons.

#include <string>
#include <string_view>

#include "einvoice/ubl_values.hpp"

namespace fnrk::einvoice {

// "+++123/4567/89012+++" -> "123456789012".
std::string PaymentReference(std::string_view structuredCommunication);

// The IBAN without blanks.
std::string CompactIban(std::string_view iban);

// The Dutch, French and English sentence on a discount for payment within `days` days.
std::string CashDiscountNote(std::string_view days, double percent, double discountAmount,
                             double payableAmount, const NumberWriter& numbers);

// Reason of an allowance on the VAT base: the conditional cash discount (with its percentage
// when there is one) or a trade discount.
std::string VatBaseAllowanceReason(bool isCashDiscount, double percent,
                                   const NumberWriter& numbers);

// True when the text, upper-cased and trimmed and framed by "*", holds "*TAXEXEMPTIONREASON*".
bool HasTaxExemptionReasonMarker(std::string_view text);

// The exemption reason written for a tax category ("E", "AE", "K", "G" or "O"), or "" when the
// category takes none. `given` is the caller's reason text; empty or carrying the marker, it
// gives way to the standard wording of the category.
std::string TaxExemptionReason(std::string_view category, std::string_view given);

// The caller's exemption reason code ("VATEX-EU-IC", ...) upper-cased, for the categories that
// take an exemption reason; "" for the others, which must not carry one.
std::string TaxExemptionReasonCode(std::string_view category, std::string_view given);

}  // namespace fnrk::einvoice
