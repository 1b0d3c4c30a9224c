// UsersNews: each user's news preferences and release-note marks in the installation's
// "USERSNEWS" table, in either keeping.

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <set>
#include <sstream>
#include <thread>

#include "support/run_command.hpp"
#include "users/users_news.hpp"
#include "users_fixture.hpp"

namespace fnrk::users::testing {
namespace {

class UsersNewsTest : public UsersTest {
  protected:
    // The names of the table's rows in name order.
    std::vector<std::string> Rows() {
        std::vector<std::string> names;
        EXPECT_EQ(ads.ActivateAlias("USERSNEWS"), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.SetIndex("NAME"));
        for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext())
            names.push_back(ads.GetStringValue("NAME"));
        return names;
    }
    UsersNews news{ads};
};

TEST_P(UsersNewsTest, PreferencesAreKeptOneRowPerUserInAnyCase) {
    EXPECT_EQ(news.GetTypeNews("martin"), 0) << "no table yet";
    EXPECT_EQ(news.NewsLabelsSelected("martin"), "");
    EXPECT_FALSE(ads.IsAlias("USERSNEWS")) << "a read makes no table";

    ASSERT_TRUE(news.SaveNewsPref("martin", 3, 7));
    ASSERT_TRUE(news.SaveNewsPref("Martin ", 4, 7));
    ASSERT_TRUE(news.SaveLastNews("MARTIN", "N-2024-118"));
    ASSERT_TRUE(news.SaveNewsPref("anne", 1, 2));
    EXPECT_EQ(news.GetTypeNews("martin"), 4);
    EXPECT_EQ(news.GetFreqNews("martin"), 7);
    EXPECT_EQ(news.GetLastNews("martin"), "N-2024-118") << "a later write keeps the others";
    EXPECT_EQ(news.GetTypeNews("anne"), 1);
    EXPECT_EQ(news.GetLastNews("anne"), "");
    EXPECT_EQ(Rows(), (std::vector<std::string>{"ANNE", "MARTIN"}));
    EXPECT_EQ(ads.CurrentIndexKeyExpr(), "iif(.not. deleted(),upper(name),space(15))");

    EXPECT_FALSE(news.SaveNewsPref("martin", 100, 1)) << "two digits";
    EXPECT_FALSE(news.SaveNewsPref("martin", -1, 1));
    EXPECT_FALSE(news.SaveLastNews("martin", std::string(21, 'n'))) << "longer than the field";
    EXPECT_FALSE(news.SaveLastNews("  ", "N-1")) << "no user";
    EXPECT_EQ(news.GetTypeNews("martin"), 4);
    EXPECT_EQ(news.GetLastNews("martin"), "N-2024-118") << "a refused write changes nothing";
    EXPECT_EQ(Rows().size(), 2u);
}

TEST_P(UsersNewsTest, LabelsAreChosenOnceInAnyCaseAndTakenOut) {
    ASSERT_TRUE(news.SelectLabel("martin", "Tax", true));
    ASSERT_TRUE(news.SelectLabel("martin", "Payroll", true));
    ASSERT_TRUE(news.SelectLabel("martin", "TAX", true)) << "chosen again: once, last";
    EXPECT_EQ(news.NewsLabelsSelected("martin"), "Payroll;TAX");
    ASSERT_TRUE(news.SelectLabel("martin", "payroll", false));
    ASSERT_TRUE(news.SelectLabel("martin", "Legal", false)) << "taking out a label not chosen";
    EXPECT_EQ(news.NewsLabelsSelected("martin"), "TAX");
    EXPECT_FALSE(news.SelectLabel("martin", "A;B", true));
    EXPECT_FALSE(news.SelectLabel("martin", " ", true));
    EXPECT_FALSE(news.SelectLabel("martin", std::string(260, 'x'), true));
    EXPECT_EQ(news.NewsLabelsSelected("martin"), "TAX");
}

TEST_P(UsersNewsTest, ReleaseNotesAreUnreadWhenNewerThanTheLastOneRead) {
    EXPECT_TRUE(news.IsUnreadReleaseNote("martin", "4.2")) << "nothing read yet";
    ASSERT_TRUE(news.SetLastReleaseNote("martin", "4.9"));
    EXPECT_TRUE(news.IsUnreadReleaseNote("martin", "4.10")) << "parts compare as numbers";
    EXPECT_TRUE(news.IsUnreadReleaseNote("martin", "4.9.1"));
    EXPECT_FALSE(news.IsUnreadReleaseNote("martin", "4.9.0"));
    EXPECT_FALSE(news.IsUnreadReleaseNote("martin", "4.8.7"));
    EXPECT_FALSE(news.IsUnreadReleaseNote("martin", "4.x")) << "not a version";
    EXPECT_FALSE(news.SetLastReleaseNote("martin", "4..2"));
    EXPECT_FALSE(news.SetLastReleaseNote("martin", ""));
    EXPECT_EQ(news.GetLastReleaseNote("martin"), "4.9");
    EXPECT_TRUE(news.IsUnreadReleaseNote("anne", "1.0")) << "marks are per user";
}

TEST_P(UsersNewsTest, TwoWorkstationsChoosingLabelsAtOnceLoseNoChoice) {
    constexpr int kEach = 12;
    ASSERT_TRUE(news.SaveLastNews("martin", "N-1"));  // the row exists: both rewrite it
    auto other = std::async(std::launch::async, [&] {
        return fnrk::testing::RunCommand(
            {FNRK_NEWS_LABEL_CHOOSER, "martin", "B", std::to_string(kEach)});
    });
    int refusals = 0;
    for (int label = 1; label <= kEach; ++label) {
        while (!news.SelectLabel("martin", "A" + std::to_string(label), true) && refusals < 2000) {
            ++refusals;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    const auto result = other.get();
    ASSERT_EQ(result.exitCode, 0) << result.err;
    // A fresh open reads what both wrote.
    ASSERT_EQ(ads.CloseAlias("USERSNEWS"), engine::AE_SUCCESS);
    std::set<std::string> chosen;
    std::stringstream labels(news.NewsLabelsSelected("martin"));
    for (std::string label; std::getline(labels, label, ';');) chosen.insert(label);
    EXPECT_EQ(chosen.size(), static_cast<std::size_t>(2 * kEach))
        << news.NewsLabelsSelected("martin");
    EXPECT_EQ(news.GetLastNews("martin"), "N-1");
}

INSTANTIATE_TEST_SUITE_P(Keepings, UsersNewsTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

}  // namespace
}  // namespace fnrk::users::testing
