// The online-service members: this installation has no endpoints for them, so each one answers
// at once, in one scripted run, with error 462 naming itself and its service, whatever the
// arguments, and leaves by-reference arguments as they were.

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

#include "answer_lines.hpp"
#include "facade/member_table.hpp"
#include "support/run_command.hpp"

namespace fnrk::facade {
namespace {

using fnrk::testing::RunFennrick;
using nlohmann::json;

// The service members by family: a name prefix and how many members carry it.
const std::map<std::string, std::size_t> kFamilies = {{"Connect", 28},
                                                      {"UpdateConnectData", 1},
                                                      {"DEP", 19},
                                                      {"CodaBox", 7},
                                                      {"CodaFind", 2},
                                                      {"Dashboard", 5},
                                                      {"MessageQueue", 5},
                                                      {"SendMessageCodaOnDemand", 1},
                                                      {"Log", 4},
                                                      {"FennRickViewGetRequest", 1},
                                                      {"NewsNumberOfNews", 1},
                                                      {"NewsMsgT", 1},
                                                      {"ViewOldNews", 1},
                                                      {"UpdateNews", 1},
                                                      {"GetNewsLabels", 1},
                                                      {"NumberOfNews", 1},
                                                      {"RNGet", 3}};

TEST(OnlineServiceMembersTest, EveryServiceMemberSaysItIsNotConfigured) {
    std::map<std::string, std::size_t> counted;
    std::vector<std::string> names;
    for (const Member& member : MemberTable::Instance().Members()) {
        for (const auto& [prefix, count] : kFamilies) {
            if (member.name.rfind(prefix, 0) != 0) continue;
            ++counted[prefix];
            names.push_back(member.name);
            EXPECT_TRUE(member.Available()) << member.name;
        }
    }
    for (const auto& [prefix, count] : kFamilies) EXPECT_EQ(counted[prefix], count) << prefix;

    std::string script;
    for (const std::string& name : names) {
        script += json{{"call", name},
                       {"args",
                        {json{{"registry", json::array()}}, "x", 1,
                         json{{"ref", "answer"}, {"value", "kept"}}}}}
                      .dump() +
                  "\n";
    }
    const auto result = RunFennrick({"run", "-"}, script);
    const std::vector<json> answers = testing::AnswerLines(result.out);
    ASSERT_EQ(answers.size(), names.size()) << result.err;
    for (std::size_t step = 0; step < names.size(); ++step) {
        const json& answer = answers[step];
        EXPECT_EQ(answer["error"]["number"], 462) << answer;
        const std::string description = answer["error"]["description"];
        EXPECT_EQ(description.rfind("FnrkRoutines." + names[step] + ": service not configured", 0),
                  0u)
            << description;
        EXPECT_FALSE(answer.contains("refs") && answer["refs"]["answer"] != "kept") << answer;
    }
}

}  // namespace
}  // namespace fnrk::facade
