// fennrick param: keys, book years and matching numbers of a company folder.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace {

using fnrk::testing::RunFennrick;
using fnrk::testing::TempDir;

// The shared fixture's parameter table as the company "SOC1" of a temporary folder.
class ParamCommand : public ::testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(company);
        for (const char* extension : {".dbf", ".cdx"}) {
            std::filesystem::copy_file(fnrk::testing::SharedDir() / "fixtures" / "xbase" /
                                           (std::string("SOC1_param") + extension),
                                       company / (std::string("SOC1_param") + extension));
        }
    }
    TempDir dir;
    std::filesystem::path company = dir / "SOC1";
};

TEST_F(ParamCommand, KeysPrintTheirFullValuesOneLineEach) {
    auto result = RunFennrick({"param", company.string(), "socname", "MISSING", "VatParam"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out,
              "Brasserie du Parc SPRL\n\n" + std::string(40, 'A') + std::string(30, 'B') + "\n");

    result = RunFennrick({"param", company.string(), "--company", "SOC2", "SOCNAME"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("no parameter table"), std::string::npos) << result.err;
    EXPECT_EQ(RunFennrick({"param", (dir / "none").string(), "SOCNAME"}).exitCode, 1);
}

TEST_F(ParamCommand, BookYearsAreOneJsonLineEach) {
    auto result = RunFennrick({"param", company.string(), "--book-years", "--language", "F"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.out.starts_with(
        "{\"number\":1,\"status\":\"CLOSED\",\"closed\":true,\"shortLabel\":\"\","))
        << result.out;
    std::istringstream lines(result.out);
    std::vector<nlohmann::json> years;
    for (std::string line; std::getline(lines, line);) years.push_back(nlohmann::json::parse(line));
    ASSERT_EQ(years.size(), 3u);
    EXPECT_EQ(years[1]["status"], "open");
    EXPECT_EQ(years[1]["closed"], false);
    const nlohmann::json& third = years[2];
    EXPECT_EQ(third["number"], 3);
    EXPECT_EQ(third["shortLabel"], "2026");
    EXPECT_EQ(third["longLabel"], "Exercice 2026");
    EXPECT_EQ(third["currency"], "");
    EXPECT_EQ(third["periodCount"], 12);
    ASSERT_EQ(third["periodDates"].size(), 14u);
    EXPECT_EQ(third["periodDates"][2], "01022026");
    // No language of creation: French is not it, so the second label set, which is missing.
    EXPECT_EQ(third["periodLabels"].size(), 0u);
}

TEST_F(ParamCommand, MatchingNumbersCountUpPerBookYear) {
    auto result = RunFennrick({"param", company.string(), "--next-match-number", "1"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1\n");
    EXPECT_EQ(RunFennrick({"param", company.string(), "--next-match-number", "1"}).out, "2\n");
    // Without a book year: the last open one, 3.
    EXPECT_EQ(RunFennrick({"param", company.string(), "--next-match-number"}).out, "1\n");
    EXPECT_EQ(
        RunFennrick({"param", company.string(), "BOOKYEAR1.MATCHNUMBER", "BOOKYEAR3.MATCHNUMBER"})
            .out,
        "2\n1\n");
}

}  // namespace
