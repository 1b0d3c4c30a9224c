// fennrick table encrypt|decrypt|check: the password comes from a file; a wrong one is refused
// with the table left as it was.

#include "engine/sql/sql_fixture.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {
namespace {

using testing::RunFennrick;

class CryptCommandTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "people");
        testing::WriteFileBytes(dir / "right.txt", "horse battery\r\n");
        testing::WriteFileBytes(dir / "wrong.txt", "horse\n");
    }
    testing::CommandResult Run(const char* verb, const char* passwordFile) {
        return RunFennrick({"table", verb, (dir / "people.dbf").string(), "--password-file",
                            (dir / passwordFile).string()});
    }
};

TEST_F(CryptCommandTest, EncryptsAndDecryptsWithThePasswordOfTheFile) {
    const std::string plain = testing::ReadFileBytes(dir / "people.dbf");
    const auto encrypted = Run("encrypt", "right.txt");
    ASSERT_EQ(encrypted.exitCode, 0) << encrypted.err;
    EXPECT_EQ(testing::ReadFileBytes(dir / "people.dbf").find("SOC016"), std::string::npos);

    // The password is the first line without its line end.
    const Handle table = Open("people");
    EXPECT_EQ(engine.EnableEncryption(table, "horse battery"), AE_SUCCESS);
    EXPECT_EQ(String(table, "NAME"), "BOB            ");
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);

    // The check cannot look into an encrypted table without its password, and says why; with
    // it, it checks the records, memos and tags; a wrong one is named.
    const auto check = RunFennrick({"table", "check", (dir / "people.dbf").string()});
    EXPECT_NE(check.exitCode, 0);
    EXPECT_NE(check.err.find("encrypted"), std::string::npos) << check.err;
    const auto checked = Run("check", "right.txt");
    EXPECT_EQ(checked.exitCode, 0) << checked.err;
    EXPECT_NE(checked.out.find(": ok"), std::string::npos) << checked.out;
    const auto wrongCheck = Run("check", "wrong.txt");
    EXPECT_NE(wrongCheck.exitCode, 0);
    EXPECT_NE(wrongCheck.err.find("the password is not the table's"), std::string::npos)
        << wrongCheck.err;

    const std::string sealed = testing::ReadFileBytes(dir / "people.dbf");
    const auto refused = Run("decrypt", "wrong.txt");
    EXPECT_NE(refused.exitCode, 0);
    EXPECT_NE(refused.err.find("5097"), std::string::npos) << refused.err;
    EXPECT_EQ(testing::ReadFileBytes(dir / "people.dbf"), sealed);

    const auto decrypted = Run("decrypt", "right.txt");
    ASSERT_EQ(decrypted.exitCode, 0) << decrypted.err;
    // Back to the plain records; only the header's update date may differ.
    EXPECT_EQ(testing::ReadFileBytes(dir / "people.dbf").substr(4), plain.substr(4));

    const auto missing = Run("encrypt", "none.txt");
    EXPECT_NE(missing.exitCode, 0);
    EXPECT_NE(missing.err.find("none.txt"), std::string::npos) << missing.err;
}

}  // namespace
}  // namespace fnrk::engine
