// SocParamColClassApi: book years, their periods, archives and currencies.

#include <gtest/gtest.h>

#include "param_fixture.hpp"
#include "platform/text.hpp"
#include "session/session_user.hpp"

namespace fnrk::company::testing {
namespace {

class BookYearsTest : public ParamTest {
  protected:
    void TearDown() override {
        session::SharedFacade().language.clear();
        ParamTest::TearDown();
    }
    // Labels of `periods` ordinary periods with an opening and a closing slot.
    static std::string Labels(int periods, const std::string& stem) {
        std::string text = "Open    ";
        for (int period = 1; period <= periods; ++period) {
            text += platform::PadRight(stem + std::to_string(period), 8);
        }
        return text + "Closing";
    }
    // Stores a text over VALUE (12) and VALUEEXT (40) as a writer that cuts at the width does.
    void AddLong(const std::string& id, const std::string& text) {
        AddParam(id, text.substr(0, 12), text.size() > 12 ? text.substr(12) : "");
    }
};

TEST_P(BookYearsTest, StatusLabelsAndClosingAreReadPerBookYear) {
    AddParam("BOOKYEARCOUNT", "3");
    AddParam("BOOKYEAR1.STATUS", "CLOSED");
    AddParam("BOOKYEAR2.STATUS", "open");
    AddParam("BOOKYEAR3.STATUS", "OPEN");
    AddParam("BOOKYEAR3.SHORTLABEL", "2026");
    AddParam("BOOKYEAR3.LONGLABEL", "Exercice", " 2026");

    EXPECT_EQ(params.BookYearCount(), 3);
    EXPECT_TRUE(params.IsBookYearClosed(1));
    EXPECT_FALSE(params.IsBookYearClosed(2)) << "\"open\" in lower case is open";
    EXPECT_FALSE(params.IsBookYearClosed(3));
    EXPECT_TRUE(params.IsBookYearClosed(4)) << "a book year without status is not open";
    EXPECT_EQ(params.BookYearStatus(2), "open");
    EXPECT_EQ(params.LongLabel(3), "Exercice 2026");
    EXPECT_EQ(params.ShortLabel(3), "2026");

    EXPECT_EQ(params.CurrentBookYearName(), "") << "no current book year";
    EXPECT_EQ(params.CurrentbookYearNum1(), 1) << "the first, when none is current";
    params.CurrentBYNum(3);
    EXPECT_EQ(params.CurrentBookYearName(), "2026");
    EXPECT_EQ(params.CurrentbookYearNum1(), 3);
    EXPECT_EQ(params.ShortLabel(0), "2026") << "0 stands for the current book year";
}

TEST_P(BookYearsTest, PeriodCountRoundsHalfToEvenAndWritesTheCurrentBookYearBack) {
    // 47 characters, two blanks lost where VALUE ends: 45 / 8 - 2 = 3.625.
    AddLong("BOOKYEAR1.PERLIB1", Labels(4, "Q"));
    AddLong("BOOKYEAR2.PERLIB1", std::string(36, 'x'));  // 4.5 - 2 = 2.5: ties to 2
    AddLong("BOOKYEAR3.PERLIB1", std::string(28, 'x'));  // 3.5 - 2 = 1.5: ties to 2
    AddLong("BOOKYEAR4.PERLIB1", "Open");

    std::string first = "1";
    EXPECT_EQ(params.NbrPerByYear(first), 4);
    std::string second = "2";
    EXPECT_EQ(params.NbrPerByYear(second), 2);
    std::string third = "3";
    EXPECT_EQ(params.NbrPerByYear(third), 2);
    std::string fourth = "4";
    EXPECT_EQ(params.NbrPerByYear(fourth), 0) << "never below zero";
    std::string missing = "9";
    EXPECT_EQ(params.NbrPerByYear(missing), 0);

    params.CurrentBYNum(1);
    std::string current;
    EXPECT_EQ(params.NbrPerByYear(current), 4);
    EXPECT_EQ(current, "1") << "the current book year is written back";
    std::string blank = "  ";
    EXPECT_EQ(params.NbrPerByYear(blank), 4);
    EXPECT_EQ(blank, "1");
    EXPECT_FALSE(params.IsSocMensuel(1));
}

TEST_P(BookYearsTest, PeriodLabelsFollowTheOrderOfLanguagesOrTheLanguageOfCreation) {
    AddParam("BOOKYEAR1.PERLIB1", "Ouv.    P1");
    AddParam("BOOKYEAR1.PERLIB2", "Open    P1");
    AddParam("LANGCREATION", "F");

    session::SharedFacade().language = "F";
    EXPECT_EQ(params.perlib(1), "Ouv.    P1") << "the language of creation";
    session::SharedFacade().language = "n";
    EXPECT_EQ(params.perlib(1), "Open    P1") << "another language";

    AddParam("ORDERLANGUAGE", "NF");
    EXPECT_EQ(params.perlib(1), "Ouv.    P1") << "N is first in the order";
    session::SharedFacade().language = "F";
    EXPECT_EQ(params.perlib(1), "Open    P1") << "F is second";
    session::SharedFacade().language = "E";
    EXPECT_EQ(params.perlib(1), "") << "absent from the order: .Perlib0, which stays empty";
}

TEST_P(BookYearsTest, LabelAndDateSlotsAndTheMonthlyTest) {
    // Written as a new company's parameters are, so that no blank between slots is lost.
    std::string dates;
    for (int slot = 0; slot < 14; ++slot) {
        const int month = slot == 0 ? 1 : (slot == 13 ? 12 : slot);
        dates += "01" + std::string(month < 10 ? "0" : "") + std::to_string(month) + "2026";
    }
    ASSERT_TRUE(params.SaveParamNewsoc({{"BOOKYEAR2.PERLIB1", Labels(12, "P")},
                                        {"BOOKYEAR2.PERDATE", dates},
                                        {"LANGCREATION", "F"}}));
    session::SharedFacade().language = "F";

    const auto slots = params.PeriodLabels(2);
    ASSERT_EQ(slots.size(), 14u);
    EXPECT_EQ(slots.front(), "Open");
    EXPECT_EQ(slots[1], "P1");
    EXPECT_EQ(slots[12], "P12");
    EXPECT_EQ(slots.back(), "Closing");
    EXPECT_TRUE(params.IsSocMensuel(2));

    const auto periodDates = params.PeriodDates(2);
    ASSERT_EQ(periodDates.size(), 14u);
    EXPECT_EQ(periodDates[1], "01012026");
    EXPECT_EQ(periodDates[13], "01122026");
    EXPECT_EQ(params.PerDate(2), dates);
}

INSTANTIATE_TEST_SUITE_P(Keepings, BookYearsTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

}  // namespace
}  // namespace fnrk::company::testing
