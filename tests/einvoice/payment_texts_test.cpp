#include "einvoice/payment_texts.hpp"

#include <gtest/gtest.h>

namespace fnrk::einvoice {
namespace {

TEST(PaymentTextsTest, ReferenceAndIban) {
    EXPECT_EQ(PaymentReference("+++090/9337/55493+++"), "090933755493");
    EXPECT_EQ(PaymentReference(" 090/9337/55493 "), "090933755493");
    EXPECT_EQ(PaymentReference("Invoice 42"), "Invoice 42");
    EXPECT_EQ(PaymentReference("+++"), "+++");
    EXPECT_EQ(CompactIban("BE68 5390 0754 7034"), "BE68539007547034");
}

TEST(PaymentTextsTest, CashDiscountNoteInThreeLanguages) {
    const NumberWriter numbers;
    EXPECT_EQ(CashDiscountNote(" 8 ", 2, 19, 1277.125, numbers),
              "In geval van betaling binnen 8 dagen is 2.00% (19.00€) betalingskorting van "
              "toepassing en het te betalen bedrag = 1277.13€ En cas de paiement dans les 8 "
              "jours, l'escompte conditionnel de 2.00% (19.00€) est appliqué et le montant "
              "payable = 1277.13€ In case of payment within 8 days, 2.00 % (19.00€) conditional "
              "cash/payment discount applies and the payable amount = 1277.13€ ");
}

TEST(PaymentTextsTest, AllowanceReasons) {
    const NumberWriter numbers;
    EXPECT_EQ(VatBaseAllowanceReason(true, 2, numbers),
              "Conditional cash/payment discount | Korting contant | Escompte Conditionnel 2.00%");
    EXPECT_EQ(VatBaseAllowanceReason(true, 0, numbers),
              "Conditional cash/payment discount | Korting contant | Escompte Conditionnel");
    EXPECT_EQ(VatBaseAllowanceReason(false, 5, numbers), "Trade Discount");
}

TEST(PaymentTextsTest, TaxExemptionReasons) {
    EXPECT_TRUE(HasTaxExemptionReasonMarker(" taxexemptionreason "));
    EXPECT_TRUE(HasTaxExemptionReasonMarker("ART44*TAXEXEMPTIONREASON"));
    EXPECT_FALSE(HasTaxExemptionReasonMarker("TAXEXEMPTIONREASONS"));
    EXPECT_FALSE(HasTaxExemptionReasonMarker(""));

    EXPECT_EQ(TaxExemptionReason("E", "TAXEXEMPTIONREASON"), "Exempt from tax");
    EXPECT_EQ(TaxExemptionReason(" ae ", ""), "Exempted");
    EXPECT_EQ(TaxExemptionReason("E", "Article 44 VAT code"), "Article 44 VAT code");
    EXPECT_EQ(TaxExemptionReason("S", "Article 44 VAT code"), "");
    EXPECT_EQ(TaxExemptionReason("Z", ""), "");
}

}  // namespace
}  // namespace fnrk::einvoice
