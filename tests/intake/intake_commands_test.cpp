// `fennrick intake`, `fennrick mapping` and `fennrick coda-folders` on a company folder.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "intake/intake_settings.hpp"
#include "intake_fixture.hpp"
#include "support/run_command.hpp"
#include "support/scoped_environment.hpp"

namespace fnrk::intake {
namespace {

namespace fs = std::filesystem;
using fnrk::testing::RunFennrick;
using fnrk::testing::WriteFileBytes;
using tables::ads_testing::Keeping;
using testing::IntakeTest;

class IntakeCommandsTest : public IntakeTest {
  protected:
    nlohmann::json Run(const std::vector<std::string>& args) {
        const auto result = RunFennrick(args);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return result.out.empty() ? nlohmann::json() : nlohmann::json::parse(result.out);
    }
};

TEST_P(IntakeCommandsTest, ListsAndFilesWaitingFiles) {
    const fs::path base = folder / "intake";
    ASSERT_TRUE(IntakeSettings(company, IntakeKind::Soda).SetPath(base.string()));
    AddBookYear(1, 2024, true);
    const fs::path waiting = base / "SOC1" / "2024" / "SODA_FROM_X";
    fs::create_directories(waiting / "pdf");
    WriteFileBytes(waiting / "p1.xml", "<P><AccountPeriod>2024-03</AccountPeriod></P>");
    WriteFileBytes(waiting / "pdf" / "p1.pdf", "%PDF");

    const nlohmann::json line =
        Run({"intake", dossier.string(), "--kind", "SODA", "--year", "2024"});
    EXPECT_EQ(line, nlohmann::json({{"name", "p1.xml"},
                                    {"path", (waiting / "p1.xml").string()},
                                    {"done", false},
                                    {"period", "03"},
                                    {"bookYear", "1"}}));

    Run({"intake", dossier.string(), "--kind", "soda", "--file", (waiting / "p1.xml").string(),
         "--status", "processed"});
    const fs::path processed = base / "SOC1" / "2024" / "PROCESSED" / "SODA_FROM_X";
    EXPECT_TRUE(fs::exists(processed / "p1.xml"));
    EXPECT_TRUE(fs::exists(processed / "pdf" / "p1.pdf"));
    EXPECT_EQ(IntakeSettings(company, IntakeKind::Soda).GetLastMovedFile(),
              (waiting / "p1.xml").string());

    const auto noFile =
        RunFennrick({"intake", dossier.string(), "--kind", "soda", "--status", "error"});
    EXPECT_NE(noFile.exitCode, 0);
    EXPECT_NE(
        RunFennrick({"intake", dossier.string(), "--kind", "payroll", "--year", "2024"}).exitCode,
        0);
    EXPECT_NE(
        RunFennrick({"intake", (folder / "nowhere").string(), "--kind", "soda", "--year", "2024"})
            .exitCode,
        0);
}

TEST_P(IntakeCommandsTest, ReadsAndChangesMappings) {
    const std::string company = dossier.string();
    EXPECT_EQ(Run({"mapping", company, "--table", "msoda", "get", "1000"}),
              nlohmann::json::parse(R"({"destination": ""})"));
    Run({"mapping", company, "--table", "MSODA", "set", "1000", "620000"});
    Run({"mapping", company, "--table", "MSODA", "set", "0900", "610000"});
    EXPECT_EQ(Run({"mapping", company, "--table", "MSODA", "get", "1000"}),
              nlohmann::json::parse(R"({"destination": "620000"})"));
    const auto list = RunFennrick({"mapping", company, "--table", "MSODA", "list"});
    EXPECT_EQ(list.out,
              "{\"SOURCE\":\"0900\",\"DEST\":\"610000\"}\n"
              "{\"SOURCE\":\"1000\",\"DEST\":\"620000\"}\n");

    Run({"mapping", company, "--table", "CCDKEY", "set", "SHELL", "supplier", "SHL01"});
    EXPECT_EQ(
        Run({"mapping", company, "--table", "CCDKEY", "get", "SHELL"}),
        nlohmann::json::parse(R"({"found": true, "type": "supplier", "destination": "SHL01"})"));
    const auto badType =
        RunFennrick({"mapping", company, "--table", "CCDKEY", "set", "SHELL", "bank", "X"});
    EXPECT_NE(badType.exitCode, 0);
    EXPECT_NE(badType.err.find("account or a supplier"), std::string::npos) << badType.err;
    const auto missing = RunFennrick({"mapping", company, "--table", "CCD", "set", "CARD-A"});
    EXPECT_NE(missing.exitCode, 0);
    EXPECT_NE(missing.err.find("CARDID CARDNUMBER ACCOUNT"), std::string::npos) << missing.err;
}

#ifndef _WIN32  // the drive map stands in for the network drives of Windows
TEST_P(IntakeCommandsTest, ShowsTheCodaFolders) {
    fnrk::testing::ScopedEnvironment settings("FNRK_SETTINGS_FILE",
                                              (folder / "settings.ini").string());
    WriteFileBytes(folder / "settings.ini", "[Drives]\nK:=/srv/bank\n");
    SaveParam("ISCODA", "TRUE");
    SaveParam("CODA_PARAMFILE", "WITHDEFAULT=TRUE,DEFAULT=K:\\BANK,PROCES=TRUE,PROCESPATH=C:\\D");
    EXPECT_EQ(Run({"coda-folders", dossier.string()}),
              nlohmann::json({{"default", "/srv/bank/BANK"},
                              {"pdf", dossier.string() + "/CODA/PDF/"},
                              {"processed", "C:\\D"}}));
    EXPECT_EQ(Run({"coda-folders", dossier.string(), "--escape"})["processed"], "C:\\\\D");
}
#endif

INSTANTIATE_TEST_SUITE_P(Keeping, IntakeCommandsTest, ::testing::Values(Keeping::Files),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
