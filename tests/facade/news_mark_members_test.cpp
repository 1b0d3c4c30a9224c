// The current user's news preferences and release-note marks through `fennrick run`: what one
// run writes, the next one reads back, and another user has marks of their own.

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

class NewsMarkMembersTest : public FacadeTest {
  protected:
    std::vector<json> Results(const std::string& user, const std::string& script) {
        const auto result = RunFennrick({"run", "--user", user, "-"}, script);
        EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
        std::vector<json> results;
        for (const json& answer : AnswerLines(result.out)) results.push_back(answer["result"]);
        return results;
    }
};

TEST_F(NewsMarkMembersTest, MarksLastAcrossRunsAndBelongToTheirUser) {
    EXPECT_EQ(
        Results("MARTIN", ScriptStep("SaveNewsPref", {2, 5}) + ScriptStep("SelectLabel", {"Tax"}) +
                              ScriptStep("SelectLabel", {"Payroll"}) +
                              ScriptStep("SelectLabel", {"tax", false}) +
                              ScriptStep("SaveLastNews", {"N-118"}) +
                              ScriptStep("RNSetLastReleaseNote", {"4.9"}) +
                              ScriptStep("RNSetLastReleaseNote", {"four"})),
        json::parse("[true, true, true, true, true, true, false]"));
    EXPECT_EQ(Results("martin", ScriptStep("GetTypeNews") + ScriptStep("GetFreqNews") +
                                    ScriptStep("NewsLabelsSelected") +
                                    ScriptStep("RNIsUnreadReleaseNote", {"4.10"}) +
                                    ScriptStep("RNIsUnreadReleaseNote", {"4.9"})),
              json::parse(R"([2, 5, "Payroll", true, false])"));
    EXPECT_EQ(Results("ANNE", ScriptStep("GetTypeNews") + ScriptStep("NewsLabelsSelected") +
                                  ScriptStep("RNIsUnreadReleaseNote", {"4.9"})),
              json::parse(R"([0, "", true])"));
}

}  // namespace
}  // namespace fnrk::facade
