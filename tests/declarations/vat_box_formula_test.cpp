#include "declarations/vat_box_formula.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace fnrk::declarations {
namespace {

double Evaluate(const std::string& formula, const std::map<std::string, double>& values = {}) {
    return EvaluateFormula(formula, [&](const std::string& box) { return values.at(box); });
}

TEST(VatBoxFormula, AppliesTermsStrictlyFromLeftToRight) {
    const std::map<std::string, double> values = {
        {"001", 3}, {"002", 4}, {"033", 1000}, {"403", 17}};
    EXPECT_DOUBLE_EQ(Evaluate("+001+002*#+2", values), 14) << "(3 + 4) * 2, no precedence";
    EXPECT_DOUBLE_EQ(Evaluate("+001-002", values), -1);
    EXPECT_DOUBLE_EQ(Evaluate("+001*-002", values), -12);
    EXPECT_DOUBLE_EQ(Evaluate("*001+002", values), 4) << "the first term starts from zero";
    EXPECT_DOUBLE_EQ(Evaluate("+033*+403/#+100", values), 170);
    EXPECT_DOUBLE_EQ(Evaluate("+#+100-#-5", values), 105);
    EXPECT_DOUBLE_EQ(Evaluate("+-002+#+0.5", values), -3.5);
    EXPECT_DOUBLE_EQ(Evaluate("", values), 0);
}

TEST(VatBoxFormula, NamesWhatIsWrongInAFormula) {
    for (const char* bad :
         {"033", "+33", "+03a", "#+100", "+#100", "+#+", "+#+x", "+0331", "+033 +034", "%033"}) {
        try {
            ParseFormula(bad);
            ADD_FAILURE() << bad << " was accepted";
        } catch (const FormulaError& error) {
            EXPECT_NE(std::string(error.what()).find(bad), std::string::npos) << error.what();
        }
    }
    EXPECT_THROW(Evaluate("+001/#+0", {{"001", 5}}), FormulaError);

    const auto terms = ParseFormula("+033*+403/#+100");
    ASSERT_EQ(terms.size(), 3u);
    EXPECT_EQ(terms[0].operation, '+');
    EXPECT_EQ(terms[0].box, "033");
    EXPECT_EQ(terms[1].operation, '*');
    EXPECT_EQ(terms[1].box, "403");
    EXPECT_EQ(terms[2].operation, '/');
    EXPECT_TRUE(terms[2].box.empty());
    EXPECT_DOUBLE_EQ(terms[2].constant, 100);
}

}  // namespace
}  // namespace fnrk::declarations
