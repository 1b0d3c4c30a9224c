#include "einvoice/endpoint_schemes.hpp"

#include <gtest/gtest.h>

namespace fnrk::einvoice {
namespace {

TEST(EndpointSchemesTest, EfffSchemesByCountryPrefix) {
    const EfffEndpoint danish = EfffEndpointOf("DK12345678");
    EXPECT_EQ(danish.scheme, "DK:SE");
    EXPECT_EQ(danish.id, "DK12345678");
    EXPECT_EQ(EfffEndpointOf("CHE123456789").scheme, "CH:VAT");
    EXPECT_EQ(EfffEndpointOf("FR40303265045").scheme, "FR:SIRENE");
    const EfffEndpoint belgian = EfffEndpointOf(" BE0477472701 ");
    EXPECT_EQ(belgian.scheme, "BE:CBE");
    EXPECT_EQ(belgian.id, "0477472701");
    EXPECT_EQ(belgian.taxSchemeOfVat, "BE:VAT");
    EXPECT_EQ(EfffEndpointOf("nl123456789B01").scheme, "NL:VAT");
    EXPECT_EQ(EfffEndpointOf("LU12345613").taxSchemeOfVat, "LU:VAT");
    EXPECT_EQ(EfffEndpointOf("MT12345678").scheme, "MT:VAT");
    EXPECT_EQ(EfffEndpointOf("BA123456789012").scheme, "BA:VAT");
    EXPECT_EQ(EfffEndpointOf("US123456").scheme, "ZZZ");
    EXPECT_EQ(EfffEndpointOf("").scheme, "ZZZ");
}

TEST(EndpointSchemesTest, PeppolEndpointNumber) {
    EXPECT_EQ(PeppolEndpointId("BE 0477.472.701", "BE"), "0477472701");
    EXPECT_EQ(PeppolEndpointId("be0477-472-701", "BE"), "0477472701");
    EXPECT_EQ(PeppolEndpointId("0477472701", "BE"), "0477472701");
    // Another country's prefix is part of the number.
    EXPECT_EQ(PeppolEndpointId("NL123456789B01", "BE"), "NL123456789B01");
    EXPECT_EQ(PeppolEndpointId("", "BE"), "");
}

}  // namespace
}  // namespace fnrk::einvoice
