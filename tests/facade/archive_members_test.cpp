// Opening archived book years' tables and the alternative chart of accounts through
// `fennrick run`, and the desktop-form member that a library build cannot serve.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "answer_lines.hpp"
#include "facade_fixture.hpp"
#include "support/run_command.hpp"

namespace fnrk::facade {
namespace {

using fnrk::testing::RunFennrick;
using nlohmann::json;
using testing::AnswerLines;
using testing::FacadeTest;
using testing::ScriptStep;

class ArchiveMembersTest : public FacadeTest {};

TEST_F(ArchiveMembersTest, ArchivedYearsAndTheAlternativeChartOpenBesideTheCompanysTables) {
    const std::string archive = (folder / "ARCHIVES" / "2023").string();
    std::filesystem::create_directories(archive);
    CreateTable("PARAM", testing::kParamFields, {{"ID", "ID"}},
                {{{"ID", "BOOKYEAR1.PATHARCH"},
                  {"VALUE", archive.substr(0, 60)},
                  {"VALUEEXT", archive.size() > 60 ? archive.substr(60) : ""}}});
    CreateTable("ALTACF", "NUMBER,C,10,0");
    CreateTable("ALTREF", "NUMBER,C,10,0");
    // The archived copy of the entries: the archive folder, the company's short name.
    tables::SqlDatabase& db = tables::SharedSqlDatabase();
    engine::Handle table = 0;
    ASSERT_EQ(db.CreateTable(0, tables::AdsClass::StandardTablePathOf(archive + "/SOC1", "ACT"),
                             "ARCHIVED", engine::ADS_CDX, engine::ADS_ANSI,
                             engine::ADS_COMPATIBLE_LOCKING, engine::ADS_IGNORERIGHTS, 0,
                             "DOCNUMBER,C,8,0", table),
              engine::AE_SUCCESS);
    ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
    static_cast<void>(Tables().FileCloseAll());

    const std::string script =
        ScriptStep("OpenFilesALT", {}) + ScriptStep("IsAlias", {"ALTREF"}, false) +
        ScriptStep("OpenFileArchiveACT", {1}) + ScriptStep("IsAlias", {"ARCHACT"}, false) +
        ScriptStep("OpenFileArchiveACF", {1}) + ScriptStep("OpenFilesArchiveALT", {1}) +
        ScriptStep("OpenFileArchiveACT", {2}) + ScriptStep("StartForm", {"frmAbout"});
    const auto result = RunFennrick({"run", "--dossier", dossier.string(), "-"}, script);
    const std::vector<json> answers = AnswerLines(result.out);
    ASSERT_EQ(answers.size(), 8u) << result.out << result.err;
    EXPECT_EQ(answers[0]["result"], true) << answers[0];
    EXPECT_EQ(answers[1]["result"], true) << answers[1];
    EXPECT_EQ(answers[2]["result"], true) << answers[2];
    EXPECT_EQ(answers[3]["result"], true) << answers[3];
    EXPECT_EQ(answers[4]["result"], false) << "the archive holds no ACF";
    EXPECT_EQ(answers[5]["result"], false) << "nor an alternative chart";
    EXPECT_EQ(answers[6]["result"], false) << "book year 2 is not archived";
    EXPECT_EQ(answers[7]["error"]["number"], 445) << answers[7];
    EXPECT_NE(answers[7]["error"]["description"].get<std::string>().find(
                  "FnrkRoutines.StartForm: no desktop forms"),
              std::string::npos)
        << answers[7];
}

}  // namespace
}  // namespace fnrk::facade
