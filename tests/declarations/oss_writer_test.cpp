#include "declarations/oss_writer.hpp"

#include <gtest/gtest.h>

#include "representative_record.hpp"
#include "xml_expectation.hpp"

namespace fnrk::declarations {
namespace {

using testing::ExpectedElement;

const std::string kNs0 = "http://www.minfin.fgov.be/OSSDeclaration";
const std::string kNs1 = "http://www.minfin.fgov.be/InputCommon";
const std::string kNs2 = "urn:minfin.fgov.be:oss:common";

DeclarationHeader Header() {
    return {.declarationCount = "1",
            .groupVatNumber = "",
            .sequenceNumber = "1",
            .traderCountry = "be",
            .traderVatNumber = "0477472701",
            .year = "2024",
            .quarter = "2"};
}

testing::RepresentativeRecord Representative() {
    return testing::RepresentativeRecord({{"NTVA", "0123456789     "},
                                          {"Name", "fiduciaire élan sprl     "},
                                          {"Adress", "Rue Haute 12~bte 3        "},
                                          {"PostCode", "BE-1000   "},
                                          {"Locality", "bruxelles      "},
                                          {"Country", "be        "},
                                          {"Email", "  info@elan.be   "}});
}

ExpectedElement Trader() {
    return {"ns0:Trader_ID",
            kNs0,
            {},
            "",
            {{"ns2:VATNumber", kNs2, {{"issuedBy", "BE"}}, "0477472701"}}};
}

ExpectedElement Period(const std::string& prefix, const std::string& uri, const char* year,
                       const char* quarter) {
    return {prefix + "Period",
            uri,
            {},
            "",
            {{"ns2:Year", kNs2, {}, year}, {"ns2:Quarter", kNs2, {}, quarter}}};
}

void ExpectDocument(const DeclarationDocument& document, const ExpectedElement& expected) {
    const std::string text = document.Serialize();
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", 0), 0u) << text;
    const testing::ParsedXml parsed = testing::ParseXml(text);
    ASSERT_TRUE(parsed) << "not namespace-well-formed:\n" << text;
    for (const std::string& difference :
         testing::CompareElement(xmlDocGetRootElement(parsed.get()), expected))
        ADD_FAILURE() << difference << "\n" << text;
}

TEST(OssWriter, ConsignmentWithRepresentativeRowsAndCorrections) {
    DeclarationDocument document;
    DeclarationHeader header = Header();
    header.groupVatNumber = "0999999999";
    OssXmlHeaderCheckRepresentative(document, header, Representative());
    OssXmlHeaderInfo(document, {"1", "fr "});
    OssXmlRow(document, {.sequenceNumber = "1",
                         .goods = true,
                         .establishment = {"DE", "DE123456789"},
                         .rateType = "STANDARD",
                         .rate = "20,00",
                         .vatAmount = "246,91",
                         .taxableAmount = "1234,56",
                         .currency = "EUR"});
    OssXmlRow(document, {.sequenceNumber = "2",
                         .goods = false,
                         .establishment = {"BE", "0477472701"},
                         .rateType = "REDUCED",
                         .rate = "5.5",
                         .vatAmount = "5.5",
                         .taxableAmount = "100",
                         .currency = "EUR"});
    OssXmlHeaderInfo(document, {"2", "LU"});
    OssXmlRowCorrection(document, {"2024", "1", "-12,50", "EUR"});

    const ExpectedElement representative = {"ns0:Representative",
                                            kNs0,
                                            {},
                                            "",
                                            {{"ns1:RepresentativeID",
                                              kNs1,
                                              {{"identificationType", "NVAT"}, {"issuedBy", "BE"}},
                                              "0123456789"},
                                             {"ns1:Name", kNs1, {}, "FIDUCIAIRE ÉLAN SPRL"},
                                             {"ns1:Street", kNs1, {}, "RUE HAUTE 12,BTE 3"},
                                             {"ns1:PostCode", kNs1, {}, "1000"},
                                             {"ns1:City", kNs1, {}, "BRUXELLES"},
                                             {"ns1:CountryCode", kNs1, {}, "BE"},
                                             {"ns1:EmailAddress", kNs1, {}, "info@elan.be"},
                                             {"ns1:Phone", kNs1, {}, ""}}};
    const ExpectedElement france = {
        "ns0:OSSDeclarationInfo",
        kNs0,
        {{"SequenceNumber", "1"}},
        "",
        {{"ns2:MemberStateOfConsumption", kNs2, {}, "FR"},
         {"ns2:OSSDeclarationRows",
          kNs2,
          {{"SequenceNumber", "1"}},
          "",
          {{"ns2:SupplyType", kNs2, {}, "GOODS"},
           {"ns2:FixedEstablishment",
            kNs2,
            {},
            "",
            {{"ns3:VATIdentificationNumber", kNs2, {{"issuedBy", "DE"}}, "DE123456789"}}},
           {"ns2:VatRateType", kNs2, {{"type", "STANDARD"}}, "20.00"},
           {"ns2:VatAmount", kNs2, {{"currency", "EUR"}}, "246.91"},
           {"ns2:TaxableAmount", kNs2, {{"currency", "EUR"}}, "1234.56"}}},
         {"ns2:OSSDeclarationRows",
          kNs2,
          {{"SequenceNumber", "2"}},
          "",
          {{"ns2:SupplyType", kNs2, {}, "SERVICES"},
           {"ns2:VatRateType", kNs2, {{"type", "REDUCED"}}, "5.5"},
           {"ns2:VatAmount", kNs2, {{"currency", "EUR"}}, "5.5"},
           {"ns2:TaxableAmount", kNs2, {{"currency", "EUR"}}, "100"}}}}};
    const ExpectedElement luxembourg = {
        "ns0:OSSDeclarationInfo",
        kNs0,
        {{"SequenceNumber", "2"}},
        "",
        {{"ns2:MemberStateOfConsumption", kNs2, {}, "LU"},
         {"ns2:CorrectionsInfo",
          kNs2,
          {},
          "",
          {Period("ns2:", kNs2, "2024", "1"),
           {"ns2:TotalVATAmountCorrection", kNs2, {{"currency", "EUR"}}, "-12.50"}}}}};

    ExpectDocument(document,
                   {"ns0:OSSConsignment",
                    kNs0,
                    {{"OSSDeclarationNbr", "1"}, {"XMLGroupVATIdentifier", "0999999999"}},
                    "",
                    {representative,
                     {"ns0:OSSDeclaration",
                      kNs0,
                      {{"SequenceNumber", "1"}},
                      "",
                      {Trader(), Period("ns0:", kNs0, "2024", "2"), france, luxembourg}}}});

    // The root binds exactly its three prefixes, in order; "ns3" is bound where it is used.
    const std::string text = document.Serialize();
    EXPECT_NE(text.find("<ns0:OSSConsignment xmlns:ns0=\"" + kNs0 + "\" xmlns:ns1=\"" + kNs1 +
                        "\" xmlns:ns2=\"" + kNs2 + "\" OSSDeclarationNbr=\"1\""),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("<ns3:VATIdentificationNumber xmlns:ns3=\"" + kNs2 + "\""),
              std::string::npos)
        << text;
}

TEST(OssWriter, NilDeclarationWithoutRepresentative) {
    DeclarationDocument document;
    OssXmlHeader(document, Header());
    OssXmlNil(document);
    ExpectDocument(
        document,
        {"ns0:OSSConsignment",
         kNs0,
         {{"OSSDeclarationNbr", "1"}},
         "",
         {{"ns0:OSSDeclaration",
           kNs0,
           {{"SequenceNumber", "1"}},
           "",
           {Trader(), Period("ns0:", kNs0, "2024", "2"), {"ns0:IsNihil", kNs0, {}, "true"}}}}});
}

TEST(OssWriter, SectionsOutOfOrderAreRefusedAndChangeNothing) {
    DeclarationDocument empty;
    EXPECT_THROW(OssXmlNil(empty), DeclarationError);
    EXPECT_THROW(OssXmlHeaderInfo(empty, {"1", "FR"}), DeclarationError);
    EXPECT_EQ(empty.root(), nullptr);

    DeclarationDocument document;
    OssXmlHeader(document, Header());
    const std::string before = document.Serialize();
    EXPECT_THROW(OssXmlRow(document, {}), DeclarationError);
    EXPECT_THROW(OssXmlRowCorrection(document, {}), DeclarationError);
    EXPECT_THROW(OssXmlHeader(document, Header()), DeclarationError);
    EXPECT_EQ(document.Serialize(), before);

    // Rows go to the last member state written.
    OssXmlHeaderInfo(document, {"1", "FR"});
    OssXmlHeaderInfo(document, {"2", "NL"});
    OssXmlRow(document, {.sequenceNumber = "1",
                         .goods = true,
                         .establishment = {},
                         .rateType = "STANDARD",
                         .rate = "21",
                         .vatAmount = "21",
                         .taxableAmount = "100",
                         .currency = "EUR"});
    const testing::ParsedXml parsed = testing::ParseXml(document.Serialize());
    ASSERT_TRUE(parsed);
    const auto declaration = testing::ChildElements(xmlDocGetRootElement(parsed.get()))[0];
    const auto blocks = testing::ChildElements(declaration);
    ASSERT_EQ(blocks.size(), 4u);
    EXPECT_EQ(testing::ChildElements(blocks[2]).size(), 1u);
    EXPECT_EQ(testing::ChildElements(blocks[3]).size(), 2u);
}

}  // namespace
}  // namespace fnrk::declarations
