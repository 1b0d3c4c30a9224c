#include "declarations/declaration_text.hpp"

#include <gtest/gtest.h>

namespace fnrk::declarations {
namespace {

TEST(DeclarationText, PostCodesLoseOnlyAnActualCountryPrefix) {
    EXPECT_EQ(PostCodeText("BE-1000   "), "1000");
    EXPECT_EQ(PostCodeText("  lu 1234"), "1234");
    EXPECT_EQ(PostCodeText("1000      "), "1000");
    EXPECT_EQ(PostCodeText("L-1234"), "L-1234");
    EXPECT_EQ(PostCodeText("BE1000"), "BE1000");
    EXPECT_EQ(PostCodeText("BE-"), "BE-");
    EXPECT_EQ(PostCodeText("NL-1011 AB"), "1011 AB");
    EXPECT_EQ(PostCodeText(""), "");
}

TEST(DeclarationText, StreetsAndCountries) {
    EXPECT_EQ(StreetText(" Rue de l'Église 4~bte 2   "), "RUE DE L'ÉGLISE 4,BTE 2");
    EXPECT_EQ(StreetText("a~~b"), "A,,B");
    EXPECT_EQ(CountryCodeText(" be "), "BE");
    EXPECT_EQ(CountryCodeText("Belgique"), "BE");
    EXPECT_EQ(CountryCodeText("l"), "L");
    EXPECT_EQ(CountryCodeText(""), "");
}

}  // namespace
}  // namespace fnrk::declarations
