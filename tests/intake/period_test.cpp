// Months to periods through the company's book years, and the book-year test of a file from the
// period element of each kind's XML.

#include <gtest/gtest.h>

#include "intake/file_period.hpp"
#include "intake/intake_folders.hpp"
#include "intake/intake_settings.hpp"
#include "intake/period_mapping.hpp"
#include "intake_fixture.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::intake {
namespace {

using fnrk::testing::WriteFileBytes;
using tables::ads_testing::Keeping;
using testing::IntakeTest;

TEST(PeriodStartKey, QuarterlyCompaniesKeyByTheQuartersFirstMonth) {
    for (int month : {1, 2, 3}) EXPECT_EQ(PeriodStartKey(month, 2024, false), "01012024");
    EXPECT_EQ(PeriodStartKey(5, 2024, false), "01042024");
    EXPECT_EQ(PeriodStartKey(9, 2024, false), "01072024");
    EXPECT_EQ(PeriodStartKey(12, 2024, false), "01102024");
    EXPECT_EQ(PeriodStartKey(3, 2024, true), "01032024");
    EXPECT_EQ(PeriodStartKey(12, 2024, true), "01122024");
}

TEST(PeriodText, MonthAndYearOfTheFormsFilesUse) {
    const auto is = [](std::string_view text, int month, int year) {
        const auto period = ParsePeriodText(text);
        return period && period->month == month && period->year == year;
    };
    EXPECT_TRUE(is("2024-03-01", 3, 2024));
    EXPECT_TRUE(is(" 2024-03-31T00:00:00 ", 3, 2024));
    EXPECT_TRUE(is("2024-11", 11, 2024));
    EXPECT_TRUE(is("202402", 2, 2024));
    EXPECT_TRUE(is("20240229", 2, 2024));
    EXPECT_TRUE(is("07/2024", 7, 2024));
    EXPECT_TRUE(is("15/07/2024", 7, 2024));
    EXPECT_FALSE(ParsePeriodText("2024-13"));
    EXPECT_FALSE(ParsePeriodText("march 2024"));
    EXPECT_FALSE(ParsePeriodText(""));
}

class PeriodTest : public IntakeTest {};

TEST_P(PeriodTest, TheNewestBookYearWinsAndTheOpeningPeriodIsNeverMatched) {
    // Book year 1: 2024 from January, its opening period dated 01/12/2023 alone.
    SaveParam("BOOKYEAR1.PerDate",
              "01122023010120240102202401032024010420240105202401062024"
              "01072024010820240109202401102024011120240112202401122024");
    SaveParam("BOOKYEAR1.PERLIB1", std::string(14 * 8, 'L'));
    // Book year 2 starts in June 2024: June is in both, and book year 2 wins.
    SaveParam("BOOKYEAR2.PerDate", "010620240106202401072024");
    SaveParam("BOOKYEAR2.PERLIB1", std::string(14 * 8, 'L'));
    SaveParam("Bookyearcount", "2");

    std::string period = "keep";
    std::string bookYear = "keep";
    ASSERT_TRUE(DateToPeriode(company, "3", "2024", period, bookYear));
    EXPECT_EQ(period, "03");
    EXPECT_EQ(bookYear, "1");
    ASSERT_TRUE(DateToPeriode(company, " 06", "2024 ", period, bookYear));
    EXPECT_EQ(period, "01");
    EXPECT_EQ(bookYear, "2");
    ASSERT_TRUE(DateToPeriode(company, "12", "2024", period, bookYear));
    EXPECT_EQ(period, "12");
    EXPECT_EQ(bookYear, "1");

    period = bookYear = "keep";
    EXPECT_FALSE(DateToPeriode(company, "12", "2023", period, bookYear))
        << "only the opening period holds December 2023";
    for (const auto& [month, year] :
         std::vector<std::pair<std::string, std::string>>{{"", "2024"},
                                                          {"3", " "},
                                                          {"0", "2024"},
                                                          {"-1", "2024"},
                                                          {"x", "2024"},
                                                          {"3", "0"},
                                                          {"3", "2030"}}) {
        EXPECT_FALSE(DateToPeriode(company, month, year, period, bookYear)) << month << year;
    }
    EXPECT_EQ(period, "keep");
    EXPECT_EQ(bookYear, "keep");
}

TEST_P(PeriodTest, QuarterlyCompaniesFindTheQuarterOfAMonth) {
    AddBookYear(1, 2024, false);
    ASSERT_FALSE(company.IsSocMensuel());
    std::string period;
    std::string bookYear;
    for (const char* month : {"1", "2", "3"}) {
        ASSERT_TRUE(DateToPeriode(company, month, "2024", period, bookYear));
        EXPECT_EQ(period, "01") << month;
    }
    ASSERT_TRUE(DateToPeriode(company, "12", "2024", period, bookYear));
    EXPECT_EQ(period, "04");
    EXPECT_EQ(bookYear, "1");
}

TEST_P(PeriodTest, EachKindReadsItsOwnPeriodElement) {
    AddBookYear(1, 2024, true);
    AddBookYear(2, 2025, true);
    const fnrk::testing::TempDir files;
    WriteFileBytes(files / "soda.xml",
                   "<?xml version=\"1.0\"?><Payroll xmlns=\"urn:payroll\"><Header>"
                   "<AccountPeriod>2024-12</AccountPeriod><SocialPeriod>2025-01</SocialPeriod>"
                   "</Header></Payroll>");
    WriteFileBytes(files / "efff.xml",
                   "<DmfA><startDaySocialPayPeriod>2024-01-01</startDaySocialPayPeriod>"
                   "<e:employerDeclaration xmlns:e=\"urn:e\"><q>"
                   "<e:startDaySocialPayPeriod>\n  2025-02-01\n</e:startDaySocialPayPeriod>"
                   "</q></e:employerDeclaration></DmfA>");
    WriteFileBytes(files / "caro.xml", "<Statement><EndDate>2024-11-30</EndDate></Statement>");
    WriteFileBytes(files / "broken.xml", "<Statement><EndDate>2024-11-30</EndDate>");
    WriteFileBytes(files / "none.xml", "<Statement/>");

    const IntakeFolders soda(IntakeKind::Soda);
    const IntakeFolders efff(IntakeKind::Efff);
    const IntakeFolders caro(IntakeKind::Caro);
    const std::string sodaFile = (files / "soda.xml").string();
    EXPECT_TRUE(soda.FileInTheGoodBookyear(company, sodaFile, 1)) << "the accounting period";
    EXPECT_FALSE(soda.FileInTheGoodBookyear(company, sodaFile, 2));
    ASSERT_TRUE(IntakeSettings(company, IntakeKind::Soda).SetSocialPeriod(true));
    EXPECT_TRUE(soda.FileInTheGoodBookyear(company, sodaFile, 2)) << "the social period";
    EXPECT_FALSE(soda.FileInTheGoodBookyear(company, sodaFile, 1));

    EXPECT_TRUE(efff.FileInTheGoodBookyear(company, (files / "efff.xml").string(), 2))
        << "only inside the employer's declaration";
    EXPECT_FALSE(efff.FileInTheGoodBookyear(company, (files / "efff.xml").string(), 1));
    EXPECT_TRUE(caro.FileInTheGoodBookyear(company, (files / "caro.xml").string(), 1));
    EXPECT_FALSE(caro.FileInTheGoodBookyear(company, (files / "broken.xml").string(), 1));
    EXPECT_FALSE(caro.FileInTheGoodBookyear(company, (files / "none.xml").string(), 1));
    EXPECT_FALSE(caro.FileInTheGoodBookyear(company, (files / "missing.xml").string(), 1));
}

INSTANTIATE_TEST_SUITE_P(Keeping, PeriodTest, ::testing::Values(Keeping::Files),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
