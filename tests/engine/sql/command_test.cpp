// fennrick sql DIR "STATEMENT": query rows as JSON lines, failures on standard error.

#include <nlohmann/json.hpp>
#include <sstream>

#include "sql_fixture.hpp"
#include "support/run_command.hpp"

namespace fnrk::engine {
namespace {

TEST_F(SqlTest, CommandPrintsQueryRowsAsJsonLines) {
    CopyFixture("people", "USERS");
    const Handle users = Open("USERS");
    std::vector<std::vector<std::string>> expected;
    for (const auto& row : Rows(users, {"NAME", "AMOUNT", "ACTIVE"}))
        if (row[0] == "SYSTEM         ") expected.push_back(row);
    ASSERT_EQ(engine.CloseTable(users), AE_SUCCESS);

    const auto result =
        testing::RunFennrick({"sql", dir.path().string(),
                              "select ROWID, NAME, AMOUNT, ACTIVE, BORN from [USERS] "
                              "where NAME = 'SYSTEM'"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    std::istringstream lines(result.out);
    std::string line;
    std::size_t row = 0;
    while (std::getline(lines, line)) {
        ASSERT_LT(row, expected.size());
        const auto json = nlohmann::json::parse(line);
        EXPECT_EQ(json["ROWID"].get<std::string>().size(), sql::kRowIdLength);
        EXPECT_EQ(json["NAME"], "SYSTEM");
        EXPECT_DOUBLE_EQ(json["AMOUNT"].get<double>(), std::stod(expected[row][1]));
        EXPECT_EQ(json["ACTIVE"], expected[row][2] == "T");
        EXPECT_TRUE(json["BORN"].is_null() || json["BORN"].get<std::string>().size() == 10);
        ++row;
    }
    EXPECT_EQ(row, expected.size());

    const auto update = testing::RunFennrick(
        {"sql", dir.path().string(), "UPDATE USERS SET AMOUNT = 1 WHERE NAME = 'SYSTEM'"});
    EXPECT_EQ(update.exitCode, 0) << update.err;
    EXPECT_EQ(update.out, "");
    const auto after = testing::RunFennrick(
        {"sql", dir.path().string(), "select count(*) AS N from USERS where AMOUNT = 1"});
    EXPECT_EQ(nlohmann::json::parse(after.out)["N"], expected.size());

    const auto wrong = testing::RunFennrick({"sql", dir.path().string(), "select NAME frm USERS"});
    EXPECT_NE(wrong.exitCode, 0);
    EXPECT_NE(wrong.err.find("at position 17"), std::string::npos) << wrong.err;
}

}  // namespace
}  // namespace fnrk::engine
