// GetNewMatchNumber between workstations: processes of their own take numbers of one book year
// at the same time; every number is given once and none is skipped.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <fstream>
#include <set>

#include "param_fixture.hpp"

extern char** environ;

namespace fnrk::company::testing {
namespace {

constexpr int kWorkstations = 8;
constexpr int kNumbersEach = 250;

// One taker process, its output going to a file.
struct Taker {
    pid_t pid = 0;
    std::filesystem::path output;
};

Taker StartTaker(const std::string& prefix, const std::filesystem::path& output) {
    Taker taker{0, output};
    std::vector<std::string> args = {FNRK_MATCH_NUMBER_TAKER, prefix, "1",
                                     std::to_string(kNumbersEach)};
    std::vector<char*> argv;
    for (auto& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const std::string errors = output.string() + ".err";
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (posix_spawn(&taker.pid, FNRK_MATCH_NUMBER_TAKER, &actions, nullptr, argv.data(), environ) !=
        0)
        taker.pid = 0;
    posix_spawn_file_actions_destroy(&actions);
    return taker;
}

class MatchNumberProcessesTest : public ParamTest {};

TEST_P(MatchNumberProcessesTest, EightWorkstationsGetTwoThousandDistinctNumbersWithoutGap) {
    // The counter's row does not exist yet: the first takers race to add it too.
    ASSERT_EQ(ads.CloseAlias("PARAM"), engine::AE_SUCCESS);
    std::vector<Taker> takers;
    for (int index = 0; index < kWorkstations; ++index) {
        takers.push_back(
            StartTaker(Prefix(), folder / ("numbers" + std::to_string(index) + ".txt")));
        ASSERT_NE(takers.back().pid, 0);
    }
    std::multiset<int> numbers;
    for (const Taker& taker : takers) {
        int status = 0;
        ASSERT_EQ(waitpid(taker.pid, &status, 0), taker.pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
            << fnrk::testing::ReadFileBytes(taker.output.string() + ".err");
        std::ifstream output(taker.output);
        int previous = 0;
        for (int number = 0; output >> number;) {
            EXPECT_GT(number, previous) << "one workstation's numbers grow";
            previous = number;
            numbers.insert(number);
        }
    }
    ASSERT_EQ(numbers.size(), static_cast<std::size_t>(kWorkstations * kNumbersEach));
    EXPECT_EQ(std::set<int>(numbers.begin(), numbers.end()).size(), numbers.size())
        << "a number was given twice";
    EXPECT_EQ(*numbers.begin(), 1);
    EXPECT_EQ(*numbers.rbegin(), kWorkstations * kNumbersEach) << "a number was skipped";

    ASSERT_EQ(ads.FileOpenParam(), engine::AE_SUCCESS);
    EXPECT_EQ(params.GetParamValue("BOOKYEAR1.MATCHNUMBER"),
              std::to_string(kWorkstations * kNumbersEach));
    // One row for the counter, however many raced to add it.
    ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);
    ASSERT_TRUE(ads.SetIndex(""));
    int rows = 0;
    for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) ++rows;
    EXPECT_EQ(rows, 1);
}

INSTANTIATE_TEST_SUITE_P(Keepings, MatchNumberProcessesTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql), KeepingName);

}  // namespace
}  // namespace fnrk::company::testing
