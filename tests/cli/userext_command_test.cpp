// fennrick userext: the external logins of an installation folder.

#include <gtest/gtest.h>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace {

using fnrk::testing::RunFennrick;

TEST(UserExtCommand, CreateSetGetAndDelete) {
    fnrk::testing::TempDir dir;
    const std::string folder = dir.path().string();
    EXPECT_EQ(RunFennrick({"userext", folder, "get", "bob", "CODABOX", "LOGIN"}).out, "\n")
        << "no table yet";
    auto result = RunFennrick({"userext", folder, "create"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(std::filesystem::exists(dir / "USERSEXT.dbf"));
    EXPECT_TRUE(std::filesystem::exists(dir / "USERSEXT.cdx"));

    for (const auto& [name, value] :
         {std::pair{"bob", "b@x.be"}, {"alice", "a,b=c"}, {"Bob", "second bob"}}) {
        result = RunFennrick({"userext", folder, "set", name, "CODABOX", "LOGIN", value});
        EXPECT_EQ(result.exitCode, 0) << result.err;
    }
    EXPECT_EQ(RunFennrick({"userext", folder, "get", "alice", "CODABOX", "LOGIN"}).out, "a,b=c\n");
    EXPECT_EQ(RunFennrick({"userext", folder, "is-multi", "CODABOX", "LOGIN"}).out, "yes\n");
    EXPECT_EQ(RunFennrick({"userext", folder, "is-multi", "CODABOX", "TOKEN"}).out, "no\n");
    EXPECT_EQ(RunFennrick({"userext", folder, "delete-user", "BOB"}).out, "2\n");
    EXPECT_EQ(RunFennrick({"userext", folder, "is-multi", "CODABOX", "LOGIN"}).out, "no\n");
    EXPECT_EQ(RunFennrick({"userext", folder, "delete-all", "CODABOX", "LOGIN"}).out, "1\n");
    EXPECT_EQ(RunFennrick({"userext", folder, "get", "alice", "CODABOX", "LOGIN"}).out, "\n");

    result = RunFennrick({"userext", folder, "set", "bob", "", "LOGIN", "x"});
    EXPECT_EQ(result.exitCode, 1) << "a blank type";
    EXPECT_NE(RunFennrick({"userext", folder, "frobnicate"}).exitCode, 0);
}

}  // namespace
