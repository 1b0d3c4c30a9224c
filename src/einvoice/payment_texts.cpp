#include "einvoice/payment_texts.hpp"

#include <utility>

#include "platform/text.hpp"

namespace fnrk::einvoice {

std::string PaymentReference(std::string_view structuredCommunication) {
    std::string reference = platform::Trim(structuredCommunication);
    if (reference.size() >= 6 && reference.starts_with("+++") && reference.ends_with("+++")) {
        reference = reference.substr(3, reference.size() - 6);
    }
    std::erase(reference, '/');
    return platform::Trim(reference);
}

std::string CompactIban(std::string_view iban) {
    std::string compact(iban);
    std::erase(compact, ' ');
    return compact;
}

std::string CashDiscountNote(std::string_view days, double percent, double discountAmount,
                             double payableAmount, const NumberWriter& numbers) {
    const std::string d = platform::Trim(days);
    const std::string p = numbers.Amount(percent);
    const std::string a = numbers.Amount(discountAmount);
    const std::string t = numbers.Amount(payableAmount);
    return "In geval van betaling binnen " + d + " dagen is " + p + "% (" + a +
           "€) betalingskorting van toepassing en het te betalen bedrag = " + t +
           "€ En cas de paiement dans les " + d + " jours, l'escompte conditionnel de " + p +
           "% (" + a + "€) est appliqué et le montant payable = " + t +
           "€ In case of payment within " + d + " days, " + p + " % (" + a +
           "€) conditional cash/payment discount applies and the payable amount = " + t + "€ ";
}

std::string VatBaseAllowanceReason(bool isCashDiscount, double percent,
                                   const NumberWriter& numbers) {
    static constexpr std::string_view kCashDiscount =
        "Conditional cash/payment discount | Korting contant | Escompte Conditionnel";
    if (!isCashDiscount) return "Trade Discount";
    if (percent == 0.0) return std::string(kCashDiscount);
    return std::string(kCashDiscount) + " " + numbers.Amount(percent) + "%";
}

bool HasTaxExemptionReasonMarker(std::string_view text) {
    const std::string framed = "*" + platform::UpperCase(platform::Trim(text)) + "*";
    return framed.find("*TAXEXEMPTIONREASON*") != std::string::npos;
}

std::string TaxExemptionReason(std::string_view category, std::string_view given) {
    // The categories whose sub-total must say why no VAT is charged. "E" takes the UN/EDIFACT
    // 5305 name of its category; "AE" (reverse charge) is exempt at the seller's side, hence
    // "Exempted"; the others take the standard texts of their exemption reason codes. Other
    // categories carry no exemption reason.
    static constexpr std::pair<std::string_view, std::string_view> kStandardReasons[] = {
        {"E", "Exempt from tax"},
        {"AE", "Exempted"},
        {"K", "Intra-community supply"},
        {"G", "Export outside the EU"},
        {"O", "Not subject to VAT"}};
    const std::string code = platform::UpperCase(platform::Trim(category));
    for (const auto& [letter, standard] : kStandardReasons) {
        if (code != letter) continue;
        const std::string text = platform::Trim(given);
        if (!text.empty() && !HasTaxExemptionReasonMarker(text)) return text;
        return std::string(standard);
    }
    return {};
}

std::string TaxExemptionReasonCode(std::string_view category, std::string_view given) {
    if (TaxExemptionReason(category, "").empty()) return {};
    return platform::UpperCase(platform::Trim(given));
}

}  // namespace fnrk::einvoice
