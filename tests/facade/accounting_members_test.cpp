// The accounting and analytical helper members in a scripted session through `fennrick run` on a
// company with book-year periods and general-ledger accounts.

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

class AccountingMembersTest : public FacadeTest {};

TEST_F(AccountingMembersTest, HelpersAnswerFromTheCompanysTables) {
    std::string dates = "01012024";
    for (int month = 1; month <= 12; ++month) {
        dates += (month < 10 ? "010" : "01") + std::to_string(month) + "2024";
    }
    CreateTable("PARAM", testing::kParamFields, {{"ID", "ID"}},
                {{{"ID", "BOOKYEARCOUNT"}, {"VALUE", "1"}},
                 {{"ID", "BOOKYEAR1.PERDATE"},
                  {"VALUE", dates.substr(0, 60)},
                  {"VALUEEXT", dates.substr(60)}},
                 {{"ID", "BOOKYEAR1.PERLIB1"},
                  {"VALUE", std::string(60, 'L')},
                  {"VALUEEXT", std::string(52, 'L')}}});
    CreateTable("ACF", "GLNUMBER,C,10,0;ISANALYT,L,1,0;PLANANALYT,C,2,0", {},
                {{{"GLNUMBER", "400000"}, {"ISANALYT", false}},
                 {{"GLNUMBER", "610000"}, {"ISANALYT", true}}});
    static_cast<void>(Tables().FileCloseAll());

    const std::string script =
        ScriptStep("FileOpen", {"ACF"}, false) + ScriptStep("ACCReturnPeriode", {"29/02/2024", 1}) +
        ScriptStep("ACCReturnPeriode", {json{{"date", "31/12/2024"}}, 1}) +
        ScriptStep("ACCReturnPeriode", {"01/01/2025", 1}) +
        ScriptStep("ACCCheckCentralisateur", {"400000"}) +
        ScriptStep("ACCCheckCentralisateur", {"610000"}) +
        ScriptStep("ACCGetBankName", {"NL91ABNA0417164300"}) +
        ScriptStep("ANAIsAccountAnalytical", {"610000"}) +
        ScriptStep("ANAIsAccountAnalytical", {"400000"}) +
        ScriptStep("ANAGetFormatforSectionQuantity", {1}) + ScriptStep("ACCReturnPeriode", {});
    const auto result = RunFennrick({"run", "--dossier", dossier.string(), "-"}, script);
    const std::vector<json> answers = AnswerLines(result.out);
    ASSERT_EQ(answers.size(), 11u) << result.out << result.err;
    EXPECT_EQ(answers[0]["result"], 0) << answers[0];
    const json expected = json::array({"02", "12", "", true, false, "", true, false, ""});
    for (std::size_t step = 1; step <= 9; ++step)
        EXPECT_EQ(answers[step]["result"], expected[step - 1]) << answers[step];
    EXPECT_EQ(answers[10]["error"]["number"], 449) << "the date is required";
}

}  // namespace
}  // namespace fnrk::facade
