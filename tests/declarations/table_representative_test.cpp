#include "declarations/table_representative.hpp"

#include <gtest/gtest.h>

#include "declarations/oss_writer.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::declarations {
namespace {

using tables::ads_testing::AdsTest;
using tables::ads_testing::Keeping;

class TableRepresentativeTest : public AdsTest {};

TEST_P(TableRepresentativeTest, FieldsOfTheCurrentRecordFeedTheOssHeader) {
    CreateStandard("CSF",
                   "NTVA,C,15,0;NAME,C,30,0;ADRESS,C,30,0;POSTCODE,C,10,0;"
                   "LOCALITY,C,20,0;COUNTRY,C,10,0;EMAIL,C,30,0");
    CreateStandard("ACF", tables::ads_testing::kAccountFields);
    ASSERT_EQ(ads.FileOpen("CSF"), engine::AE_SUCCESS);
    const std::vector<std::pair<std::string, std::string>> record = {
        {"NTVA", "0123456789"},           {"Name", "fiduciaire élan sprl"},
        {"Adress", "Rue Haute 12~bte 3"}, {"PostCode", "BE-1000"},
        {"Locality", "bruxelles"},        {"Country", "be"},
        {"Email", "info@elan.be"}};
    AddRecord("CSF", record);
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);

    const TableRepresentative representative(ads, "CSF");
    for (const auto& [field, value] : record) EXPECT_EQ(representative.FieldText(field), value);
    EXPECT_EQ(representative.FieldText("PHONE"), "");
    EXPECT_EQ(TableRepresentative(ads, "NOTOPEN").FieldText("NTVA"), "");
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF");

    DeclarationDocument document;
    OssXmlHeaderCheckRepresentative(document,
                                    {.declarationCount = "1",
                                     .groupVatNumber = "",
                                     .sequenceNumber = "1",
                                     .traderCountry = "BE",
                                     .traderVatNumber = "0477472701",
                                     .year = "2024",
                                     .quarter = "2"},
                                    representative);
    const std::string text = document.Serialize();
    for (const char* expected :
         {"issuedBy=\"BE\">0123456789</ns1:RepresentativeID>",
          "<ns1:Name>FIDUCIAIRE ÉLAN SPRL</ns1:Name>",
          "<ns1:Street>RUE HAUTE 12,BTE 3</ns1:Street>", "<ns1:City>BRUXELLES</ns1:City>",
          "<ns1:EmailAddress>info@elan.be</ns1:EmailAddress>"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected << "\n" << text;
}

INSTANTIATE_TEST_SUITE_P(Keeping, TableRepresentativeTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::declarations
