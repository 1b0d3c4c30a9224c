#include "declarations/moss_writer.hpp"

#include <gtest/gtest.h>

#include "representative_record.hpp"
#include "xml_expectation.hpp"

namespace fnrk::declarations {
namespace {

using testing::ExpectedElement;

const std::string kCommon = "http://www.minfin.fgov.be/InputCommon";
const std::string kNs2 = "http://www.minfin.fgov.be/MossConsignment";
const std::string kNs3 = "urn:ec.europa.eu:taxud:fiscalis:moss:common:v1";

DeclarationHeader Header() {
    return {.declarationCount = "1",
            .groupVatNumber = "",
            .sequenceNumber = "1",
            .traderCountry = "BE",
            .traderVatNumber = "0477472701",
            .year = "2014",
            .quarter = "4"};
}

ExpectedElement Declaration(std::vector<ExpectedElement> blocks) {
    std::vector<ExpectedElement> children = {
        {"ns2:Trader_ID",
         kNs2,
         {},
         "",
         {{"ns3:VATNumber", kNs3, {{"issuedBy", "BE"}}, "0477472701"}}},
        {"ns2:Period",
         kNs2,
         {},
         "",
         {{"ns3:Year", kNs3, {}, "2014"}, {"ns3:Quarter", kNs3, {}, "4"}}}};
    children.insert(children.end(), blocks.begin(), blocks.end());
    return {"ns2:MossDeclaration", kNs2, {{"SequenceNumber", "1"}}, "", children};
}

void ExpectDocument(const DeclarationDocument& document, const ExpectedElement& expected) {
    const std::string text = document.Serialize();
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n", 0), 0u)
        << text;
    const testing::ParsedXml parsed = testing::ParseXml(text);
    ASSERT_TRUE(parsed) << "not namespace-well-formed:\n" << text;
    for (const std::string& difference :
         testing::CompareElement(xmlDocGetRootElement(parsed.get()), expected))
        ADD_FAILURE() << difference << "\n" << text;
}

TEST(MossWriter, ConsignmentWithRepresentativeRowsAndFooter) {
    const testing::RepresentativeRecord representative({{"NTVA", "0123456789"},
                                                        {"Name", "Conseil Müller"},
                                                        {"Adress", "Grand-Rue 1~2e étage"},
                                                        {"PostCode", "LU-1660"},
                                                        {"Locality", "luxembourg"},
                                                        {"Country", "LU"},
                                                        {"Email", "moss@muller.lu"}});
    DeclarationDocument document;
    MossXmlHeaderCheckRepresentative(document, Header(), representative);
    MossXmlHeaderInfo(document, {"1", "de"});
    MossXmlRow(document, {.sequenceNumber = "1",
                          .establishment = {"FR", "FR12345678901"},
                          .rateType = "STANDARD",
                          .rate = "19,00",
                          .vatAmount = "234,57",
                          .taxableAmount = "1234,56",
                          .grossAmount = "1469,13",
                          .currency = "EUR"});
    MossXmlRow(document, {.sequenceNumber = "2",
                          .establishment = {"", ""},
                          .rateType = "REDUCED",
                          .rate = "7",
                          .vatAmount = "7",
                          .taxableAmount = "100",
                          .grossAmount = "107",
                          .currency = "EUR"});
    MossXmlFooterInfo(document, {"1334,56", "241,57", "1576,13", "EUR"});

    const ExpectedElement germany = {
        "ns2:MossDeclarationInfo",
        kNs2,
        {{"SequenceNumber", "1"}},
        "",
        {{"ns2:MemberStateOfConsumption", kNs2, {}, "DE"},
         {"ns2:MossDeclarationRows",
          kNs2,
          {{"SequenceNumber", "1"}},
          "",
          {{"ns2:FixedEstablishment",
            kNs2,
            {},
            "",
            {{"ns3:VATIdentificationNumber", kNs3, {{"issuedBy", "FR"}}, "FR12345678901"}}},
           {"ns2:VatRateType", kNs2, {{"type", "STANDARD"}}, "19.00"},
           {"ns2:VatAmount", kNs2, {{"currency", "EUR"}}, "234.57"},
           {"ns2:TaxableAmount", kNs2, {{"currency", "EUR"}}, "1234.56"},
           {"ns2:GrossAmount", kNs2, {{"currency", "EUR"}}, "1469.13"}}},
         {"ns2:MossDeclarationRows",
          kNs2,
          {{"SequenceNumber", "2"}},
          "",
          {{"ns2:VatRateType", kNs2, {{"type", "REDUCED"}}, "7"},
           {"ns2:VatAmount", kNs2, {{"currency", "EUR"}}, "7"},
           {"ns2:TaxableAmount", kNs2, {{"currency", "EUR"}}, "100"},
           {"ns2:GrossAmount", kNs2, {{"currency", "EUR"}}, "107"}}},
         {"ns2:GlobalTaxableAmount", kNs2, {{"currency", "EUR"}}, "1334.56"},
         {"ns2:GlobalVatAmount", kNs2, {{"currency", "EUR"}}, "241.57"},
         {"ns2:GlobalGrossAmount", kNs2, {{"currency", "EUR"}}, "1576.13"}}};

    ExpectDocument(document, {"ns2:MossConsignments",
                              kNs2,
                              {{"MossDeclarationNbr", "1"}},
                              "",
                              {{"ns2:Representative",
                                kNs2,
                                {},
                                "",
                                {{"RepresentativeID",
                                  kCommon,
                                  {{"identificationType", "NVAT"}, {"issuedBy", "LU"}},
                                  "0123456789"},
                                 {"Name", kCommon, {}, "CONSEIL MÜLLER"},
                                 {"Street", kCommon, {}, "GRAND-RUE 1,2E ÉTAGE"},
                                 {"PostCode", kCommon, {}, "1660"},
                                 {"City", kCommon, {}, "LUXEMBOURG"},
                                 {"CountryCode", kCommon, {}, "LU"},
                                 {"EmailAddress", kCommon, {}, "moss@muller.lu"},
                                 {"Phone", kCommon, {}, ""}}},
                               Declaration({germany})}});

    const std::string text = document.Serialize();
    EXPECT_NE(text.find("<ns2:MossConsignments xmlns=\"" + kCommon + "\" xmlns:ns2=\"" + kNs2 +
                        "\" xmlns:ns3=\"" + kNs3 + "\" MossDeclarationNbr=\"1\""),
              std::string::npos)
        << text;
}

TEST(MossWriter, NoRepresentativeWithoutTheFlagAndAGroupIdentifier) {
    DeclarationDocument document;
    DeclarationHeader header = Header();
    header.groupVatNumber = "0888888888";
    MossXmlHeader(document, header);
    MossXmlHeaderInfo(document, {"1", "NL"});
    MossXmlFooterInfo(document, {"0", "0", "0", "EUR"});
    ExpectDocument(
        document,
        {"ns2:MossConsignments",
         kNs2,
         {{"MossDeclarationNbr", "1"}, {"XMLGroupVATIdentifier", "0888888888"}},
         "",
         {Declaration({{"ns2:MossDeclarationInfo",
                        kNs2,
                        {{"SequenceNumber", "1"}},
                        "",
                        {{"ns2:MemberStateOfConsumption", kNs2, {}, "NL"},
                         {"ns2:GlobalTaxableAmount", kNs2, {{"currency", "EUR"}}, "0"},
                         {"ns2:GlobalVatAmount", kNs2, {{"currency", "EUR"}}, "0"},
                         {"ns2:GlobalGrossAmount", kNs2, {{"currency", "EUR"}}, "0"}}}})}});

    DeclarationDocument early;
    MossXmlHeader(early, Header());
    EXPECT_THROW(MossXmlRow(early, {}), DeclarationError);
    EXPECT_THROW(MossXmlFooterInfo(early, {}), DeclarationError);
}

}  // namespace
}  // namespace fnrk::declarations
