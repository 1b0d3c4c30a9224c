// CCD, CCDKEY and CCDDETAIL on both keepings.

#include <gtest/gtest.h>

#include "intake/caro_mappings.hpp"
#include "intake/ccd_detail_info.hpp"
#include "intake/mapping_layouts.hpp"
#include "mapping_fixture.hpp"

namespace fnrk::intake {
namespace {

using tables::ads_testing::Keeping;
using testing::MappingTest;

class CaroMappingTest : public MappingTest {};

TEST_P(CaroMappingTest, CardsMapToAccountsAndAreReadInCardOrder) {
    CaroMappings caro(company);
    ASSERT_TRUE(caro.CreateMapping());
    EXPECT_TRUE(caro.CreateIndexMapping()) << "the tags can be rebuilt";
    ASSERT_TRUE(caro.UpdateMapping("CARD-B", "4000 0000 0000 0002", "499100"));
    ASSERT_TRUE(caro.UpdateMapping("CARD-A", "4000 0000 0000 0001", "499000"));
    ASSERT_TRUE(caro.UpdateMapping("CARD-B", "4000 0000 0000 0002", "499200"));
    EXPECT_EQ(caro.GetMapping("CARD-B"), "499200");
    EXPECT_EQ(caro.GetMapping("CARD-C"), "");

    ASSERT_TRUE(caro.OpenMapping());
    std::vector<std::string> read;
    std::string cardId, cardNumber, account;
    std::int32_t recno = 0;
    while (caro.ReadMapping(cardId, cardNumber, account, recno)) {
        read.push_back(cardId + "|" + cardNumber + "|" + account + "|" + std::to_string(recno));
    }
    EXPECT_EQ(read, (std::vector<std::string>{"CARD-A|4000 0000 0000 0001|499000|2",
                                              "CARD-B|4000 0000 0000 0002|499200|1"}));

    EXPECT_TRUE(caro.DeleteMapping("CARD-A"));
    EXPECT_FALSE(caro.DeleteMapping("CARD-A")) << "a deleted card is not found again";
    EXPECT_EQ(caro.GetMapping("CARD-A"), "");
    EXPECT_EQ(TagExpression("CCD", "CARDNUMBER"),
              "IIf(.not.deleted(),'X' + CARDNUMBER,'X' + space(20))");
    EXPECT_TRUE(caro.FlushAndUnlockMapping());
    EXPECT_TRUE(caro.PackCloseMapping());
    EXPECT_EQ(caro.GetMapping("CARD-B"), "499200") << "reopened after the pack";
}

TEST_P(CaroMappingTest, MerchantsMapToAnAccountOrASupplier) {
    CaroMappings caro(company);
    ASSERT_TRUE(caro.CreateKeyMapping());
    ASSERT_TRUE(caro.UpdateKeyMapping("SHELL", kDestinationAccount, "612000"));
    ASSERT_TRUE(caro.UpdateKeyMapping("AMAZON", kDestinationSupplier, "AMZ001"));
    EXPECT_FALSE(caro.UpdateKeyMapping("X", 7, "612000"));
    std::int16_t type = 0;
    std::string destination;
    ASSERT_TRUE(caro.GetKeyMapping("SHELL", type, destination));
    EXPECT_EQ(type, kDestinationAccount);
    EXPECT_EQ(destination, "612000");
    ASSERT_TRUE(caro.UpdateKeyMapping("SHELL", kDestinationSupplier, "SHL01"));
    ASSERT_TRUE(caro.GetKeyMapping("SHELL", type, destination));
    EXPECT_EQ(type, kDestinationSupplier);
    EXPECT_EQ(destination, "SHL01");
    EXPECT_FALSE(caro.GetKeyMapping("X", type, destination));

    ASSERT_TRUE(caro.OpenKeyMapping());
    std::string merchant;
    std::int32_t recno = 0;
    ASSERT_TRUE(caro.ReadKeyMapping(merchant, type, destination, recno));
    EXPECT_EQ(merchant + "/" + destination, "AMAZON/AMZ001");
    ASSERT_TRUE(caro.ReadKeyMapping(merchant, type, destination, recno));
    EXPECT_EQ(merchant, "SHELL");
    EXPECT_FALSE(caro.ReadKeyMapping(merchant, type, destination, recno));
    EXPECT_TRUE(caro.DeleteKeyMapping("SHELL"));
    EXPECT_FALSE(caro.GetKeyMapping("SHELL", type, destination));
}

TEST_P(CaroMappingTest, DetailsRoundTripAndDocumentNumbersKeyByTheirValue) {
    CaroMappings caro(company);
    EXPECT_EQ(caro.GetInfoCCDDETAIL("BNK", "12", "1", "1", "03"), "");
    const std::string info =
        "CARDID=CARD-A|CATEGORY=FUEL|TRANSDATE=14/03/2024|TRANSNAME=Fuel \\| car|"
        "AMOUNT=-61.50|CURRENCY=EUR|CURRAMOUNT=-66.42|CURRCODE=USD|CURRRATE=1.08|"
        "MERCHANT=SHELL A\\\\B|CARDNUM=4000 0000 0000 0001|EMBOSS=J DOE|MASTER=M01";
    ASSERT_TRUE(caro.UpdateCCDDETAIL("BNK", "00000012", "1", "1", "03", info));
    EXPECT_EQ(caro.GetInfoCCDDETAIL("BNK", "12", "1", "1", "03"), info)
        << "what Get answers, Update takes unchanged; 12 and 00000012 are one key";
    ASSERT_TRUE(caro.UpdateCCDDETAIL("BNK", "12", "1", "1", "03",
                                     caro.GetInfoCCDDETAIL("BNK", "12", "1", "1", "03")));
    ASSERT_TRUE(caro.UpdateCCDDETAIL("BNK", "12", "1", "1", "03", "category=TOLL"));
    const std::string changed = caro.GetInfoCCDDETAIL("BNK", "0012", "1", "1", "03");
    EXPECT_NE(changed.find("|CATEGORY=TOLL|"), std::string::npos) << changed;
    EXPECT_NE(changed.find("|AMOUNT=-61.50|"), std::string::npos) << "others are kept";

    EXPECT_FALSE(caro.UpdateCCDDETAIL("BNK", "12", "1", "1", "03", "COLOUR=red"));
    EXPECT_FALSE(caro.UpdateCCDDETAIL("BNK", "12", "1", "1", "03", "AMOUNT=12,5"));
    EXPECT_FALSE(caro.UpdateCCDDETAIL("BNK", "12", "1", "1", "03", "CATEGORY"));
    EXPECT_EQ(caro.GetInfoCCDDETAIL("BNK", "12", "1", "1", "03"), changed)
        << "a refused update changes nothing";

    EXPECT_EQ(caro.GetComment("BNK", "12", "1", "1", "03"), "14/03/2024 SHELL A\\B -66.42 USD")
        << "date, merchant, and the foreign amount of a purchase in another currency";
    const std::string pretty = caro.GetPrettyInfoCCDDETAIL("BNK", "12", "1", "1", "03");
    EXPECT_NE(pretty.find("Transaction: Fuel | car\r\n"), std::string::npos) << pretty;
    EXPECT_NE(pretty.find("Amount: -61.50\r\n"), std::string::npos) << pretty;

    ASSERT_TRUE(caro.UpdateCCDDETAIL("BNK", "13", "1", "1", "03", "CARDID=CARD-B"));
    EXPECT_NE(caro.GetInfoCCDDETAIL("BNK", "13", "1", "1", "03").find("TRANSDATE=|"),
              std::string::npos)
        << "an empty date reads blank";
    ASSERT_TRUE(
        caro.UpdateCCDDETAIL("BNK", "14", "1", "1", "03",
                             "TRANSNAME=Parking|CURRENCY=EUR|CURRAMOUNT=5.00|CURRCODE=eur"));
    EXPECT_EQ(caro.GetComment("BNK", "14", "1", "1", "03"), "Parking")
        << "no date, the transaction's name for a blank merchant, no amount in the own currency";
    EXPECT_EQ(caro.GetComment("BNK", "15", "1", "1", "03"), "");
    EXPECT_TRUE(caro.DeleteCCDDETAIL("BNK", "14", "1", "1", "03"));
    EXPECT_TRUE(caro.DeleteCCDDETAIL("BNK", "000012", "1", "1", "03"));
    EXPECT_EQ(caro.GetInfoCCDDETAIL("BNK", "12", "1", "1", "03"), "");
    EXPECT_EQ(InTagOrder("CCDDETAIL", "REF", "DOCNUMBER"), std::vector<std::string>{"13"});
    EXPECT_EQ(TagExpression("CCDDETAIL", "REF"),
              "IIf(.not.deleted(),'X' + DBKCODE+BOOKYEAR+PERIOD+str(val(DOCNUMBER),8)+DOCORDER,"
              "'X' + space(20))");
    EXPECT_TRUE(caro.PackCloseCCDDETAIL());
    EXPECT_TRUE(caro.CreateIndexCCDDETAIL());
    EXPECT_NE(caro.GetInfoCCDDETAIL("BNK", "13", "1", "1", "03"), "");
}

INSTANTIATE_TEST_SUITE_P(Keeping, CaroMappingTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake

namespace fnrk::intake {
namespace {

class CaroMappingFilesTest : public testing::MappingTest {};

TEST_P(CaroMappingFilesTest, AnOutsideReaderSeesTheDetailsWritten) {
    CaroMappings caro(company);
    ASSERT_TRUE(caro.UpdateCCDDETAIL("BNK", "0012", "1", "1", "03",
                                     "CARDID=CARD-A|TRANSDATE=14/03/2024|AMOUNT=-61.5|"
                                     "CURRAMOUNT=-66.42|CURRRATE=1.08|TRANSNAME=Café"));
    ASSERT_TRUE(caro.UpdateCCDDETAIL("BNK", "7", "2", "1", "03", "CARDID=CARD-B"));
    ASSERT_TRUE(caro.DeleteCCDDETAIL("BNK", "7", "2", "1", "03"));
    ads.FileCloseAll(true);
    const nlohmann::json read = ReadWithDbfread("CCDDETAIL");
    EXPECT_EQ(read["fields"],
              nlohmann::json({"DBKCODE,C,6", "DOCNUMBER,C,8", "DOCORDER,C,3", "BOOKYEAR,C,1",
                              "PERIOD,C,2", "CARDID,C,20", "CATEGORY,C,10", "TRANSDATE,D,8",
                              "TRANSNAME,C,40", "AMOUNT,N,17", "CURRENCY,C,3", "CURRAMOUNT,C,17",
                              "CURRCODE,C,3", "CURRRATE,N,5", "MERCHANT,C,40", "CARDNUM,C,20",
                              "EMBOSS,C,40", "MASTER,C,3"}));
    ASSERT_EQ(read["live"].size(), 1u);
    const nlohmann::json& line = read["live"][0];
    EXPECT_EQ(line["DOCNUMBER"], "0012") << "the number as written; the key holds its value";
    EXPECT_EQ(line["TRANSDATE"], "2024-03-14");
    EXPECT_EQ(line["AMOUNT"], -61.5);
    EXPECT_EQ(line["CURRAMOUNT"], "-66.42");
    EXPECT_EQ(line["CURRRATE"], 1.08);
    EXPECT_EQ(line["TRANSNAME"], "Café") << "Windows-1252 on disk";
    ASSERT_EQ(read["deleted"].size(), 1u);
    EXPECT_EQ(read["deleted"][0]["CARDID"], "CARD-B");
    EXPECT_TRUE(IndexHolds("CCDDETAIL", CcdDetailLayout().tags[0].second));
}

INSTANTIATE_TEST_SUITE_P(Keeping, CaroMappingFilesTest,
                         ::testing::Values(tables::ads_testing::Keeping::Files),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
