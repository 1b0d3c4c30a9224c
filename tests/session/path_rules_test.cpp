#include "session/path_rules.hpp"

#include <gtest/gtest.h>

namespace fnrk::session {
namespace {

// The rules are text rules: the same cases hold with either separator.
class PathRulesTest : public ::testing::TestWithParam<char> {
  protected:
    // The path with "\" replaced by the separator under test.
    std::string P(std::string text) const {
        for (char& c : text) {
            if (c == '\\') c = GetParam();
        }
        return text;
    }
    char sep() const { return GetParam(); }
};

TEST_P(PathRulesTest, RootFolderDropsTheProgramSubfolder) {
    EXPECT_EQ(RootFolderOf(P("C:\\APP\\PRG"), sep()), P("C:\\APP"));
    EXPECT_EQ(RootFolderOf(P("C:\\APP\\bin"), sep()), P("C:\\APP"));
    EXPECT_EQ(RootFolderOf(P("C:\\APP\\BIN\\GIT\\FENNRICK"), sep()), P("C:\\APP"));
    EXPECT_EQ(RootFolderOf(P("c:\\app\\prg\\git\\Fennrick"), sep()), P("c:\\app"));
    EXPECT_EQ(RootFolderOf(P("C:\\APP"), sep()), P("C:\\APP"));
    EXPECT_EQ(RootFolderOf(P("C:\\APPPRG"), sep()), P("C:\\APPPRG"));
    EXPECT_EQ(RootFolderOf(P("C:\\PRG"), sep()), "C:");
    EXPECT_EQ(RootFolderOf(P("C:\\"), sep()), "C:");                             // drive root
    EXPECT_EQ(RootFolderOf(P("\\GIT\\FENNRICK"), sep()), P("\\GIT\\FENNRICK"));  // too short
}

TEST_P(PathRulesTest, UsersTableSuffixIsDroppedWhateverItsCase) {
    EXPECT_EQ(WithoutUsersTableSuffix(P("D:\\DATA\\USERS.DBF"), sep()), P("D:\\DATA"));
    EXPECT_EQ(WithoutUsersTableSuffix(P("D:\\DATA\\users.dbf"), sep()), P("D:\\DATA"));
    EXPECT_EQ(WithoutUsersTableSuffix(P("D:\\DATA\\"), sep()), P("D:\\DATA"));
    EXPECT_EQ(WithoutUsersTableSuffix(P("D:\\DATA\\MYUSERS.DBF"), sep()),
              P("D:\\DATA\\MYUSERS.DBF"));

    EXPECT_EQ(UsersFolderFromSetting(P("D:\\DATA\\users.dbf"), sep()), P("D:\\DATA\\"));
    EXPECT_EQ(UsersFolderFromSetting(P("D:\\DATA"), sep()), P("D:\\DATA\\"));
    EXPECT_EQ(UsersFolderFromSetting(P("D:\\DATA\\"), sep()), P("D:\\DATA\\"));
    // Nine characters, no separator in the test: "MYUSERS.DBF" loses its "USERS.DBF".
    EXPECT_EQ(UsersFolderFromSetting(P("D:\\DATA\\MYUSERS.DBF"), sep()), P("D:\\DATA\\MY\\"));
}

TEST_P(PathRulesTest, MakeAnyDirWalksEverySeparatorAfterTheFirst) {
    EXPECT_EQ(WithTrailingSeparator(P("  C:\\A\\B  "), sep()), P("C:\\A\\B\\"));
    EXPECT_EQ(WithTrailingSeparator(P("C:\\A\\"), sep()), P("C:\\A\\"));
    EXPECT_EQ(FoldersToCreate(P("C:\\A\\B\\"), sep()),
              (std::vector<std::string>{P("C:\\A\\"), P("C:\\A\\B\\")}));
    EXPECT_EQ(FoldersToCreate(P("\\srv\\a\\"), sep()),
              (std::vector<std::string>{P("\\srv\\"), P("\\srv\\a\\")}));
    EXPECT_TRUE(FoldersToCreate(P("C:\\"), sep()).empty());
    EXPECT_TRUE(FoldersToCreate("plain", sep()).empty());

    EXPECT_TRUE(IsBareDriveRoot(P("C:\\"), sep()));
    EXPECT_FALSE(IsBareDriveRoot(P("C:\\A"), sep()));
    EXPECT_FALSE(IsBareDriveRoot("C:", sep()));
}

INSTANTIATE_TEST_SUITE_P(BothSeparators, PathRulesTest, ::testing::Values('\\', '/'),
                         [](const auto& info) {
                             return info.param == '/' ? "Slash" : "Backslash";
                         });

TEST(StrSwap, ReplacesUntilNoOccurrenceIsLeft) {
    EXPECT_EQ(StrSwap("a-b-c", "-", "+"), "a+b+c");
    EXPECT_EQ(StrSwap("C:\\A\\B", "\\", "/"), "C:/A/B");
    EXPECT_EQ(StrSwap("aabb", "ab", ""), "");  // searched again from the start
    EXPECT_EQ(StrSwap("abc", "x", "y"), "abc");
    EXPECT_EQ(StrSwap("abc", "", "y"), "abc");
}

TEST(StrSwap, ReplacementHoldingTheSearchedTextEndsAfterOnePass) {
    EXPECT_EQ(StrSwap("a.b.c", ".", ".."), "a..b..c");
    EXPECT_EQ(StrSwap("xx", "x", "xx"), "xxxx");
    EXPECT_EQ(StrSwap("'it's'", "'", "''"), "''it''s''");
}

}  // namespace
}  // namespace fnrk::session
