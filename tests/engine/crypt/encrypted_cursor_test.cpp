// Cursors of statements over encrypted tables: their files on disk hold no plaintext of the rows,
// yet the cursor reads, navigates and (when writable) takes writes like the table it came from.
// Cursors of plain tables stay plain.

#include <filesystem>
#include <string>
#include <vector>

#include "engine/sql/sql_fixture.hpp"
#include "platform/codepage.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {
namespace {

const std::vector<std::string> kFields = {"NAME", "CODESOC", "PATH", "AMOUNT", "BORN", "NOTE"};
const std::string kPassword = "pass phrase";

class EncryptedCursorTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "people");
        CopyFixture("people", "plain");
        const Handle table = Open("people", ADS_EXCLUSIVE);
        ASSERT_EQ(engine.EnableEncryption(table, kPassword), AE_SUCCESS);
        ASSERT_EQ(engine.EncryptTable(table), AE_SUCCESS) << LastErrorText();
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    // Values of the fixture's records, memo included, as its files hold them (Windows-1252).
    static std::vector<std::string> Secrets() {
        return {"C:\\DATA\\SOC018", "SOC016", platform::Utf8ToCp1252("DÉSIRÉ"),
                std::string(40, 'x')};
    }

    // The secrets found in the files of the cursor's table (table, memo, index).
    std::vector<std::string> LeakedSecrets(Handle cursor) {
        std::string path;
        EXPECT_EQ(engine.GetTableFilename(cursor, ADS_FULLPATHNAME, path), AE_SUCCESS);
        std::string bytes;
        for (const char* extension : {".dbf", ".fpt", ".cdx"}) {
            const auto file = std::filesystem::path(path).replace_extension(extension);
            if (std::filesystem::exists(file)) bytes += testing::ReadFileBytes(file);
        }
        EXPECT_FALSE(bytes.empty()) << "no cursor file at " << path;
        std::vector<std::string> leaked;
        for (const std::string& secret : Secrets())
            if (bytes.find(secret) != std::string::npos) leaked.push_back(secret);
        return leaked;
    }

    std::vector<std::vector<std::string>> TableRows(const std::string& name) {
        const Handle table = Open(name);
        EXPECT_EQ(engine.EnableEncryption(table, kPassword), AE_SUCCESS);
        auto rows = Rows(table, kFields);
        EXPECT_EQ(engine.CloseTable(table), AE_SUCCESS);
        return rows;
    }

    Handle StatementWithPassword(std::uint16_t readOnly) {
        const Handle statement = NewStatement();
        EXPECT_EQ(engine.StmtEnableEncryption(statement, kPassword), AE_SUCCESS);
        EXPECT_EQ(engine.StmtSetTableReadOnly(statement, readOnly), AE_SUCCESS);
        return statement;
    }

    bool Encrypted(Handle table) {
        bool encrypted = false;
        EXPECT_EQ(engine.IsTableEncrypted(table, encrypted), AE_SUCCESS);
        return encrypted;
    }
};

TEST_F(EncryptedCursorTest, CursorOfAnEncryptedTableReadsItsRowsWithoutPlaintextOnDisk) {
    const auto expected = TableRows("people");
    ASSERT_FALSE(expected.empty());

    Handle cursor = 0;
    ASSERT_EQ(engine.ExecuteSQLDirect(StatementWithPassword(ADS_CURSOR_READONLY),
                                      "SELECT * FROM people", cursor),
              AE_SUCCESS)
        << LastErrorText();
    EXPECT_EQ(Rows(cursor, kFields), expected);
    EXPECT_TRUE(Encrypted(cursor));
    EXPECT_EQ(LeakedSecrets(cursor), std::vector<std::string>{});
    // Navigation beyond a top-to-bottom read: last row, back one, straight to a record.
    ASSERT_EQ(engine.GotoBottom(cursor), AE_SUCCESS);
    EXPECT_EQ(String(cursor, "NAME"), expected.back()[0]);
    ASSERT_EQ(engine.Skip(cursor, -1), AE_SUCCESS);
    EXPECT_EQ(String(cursor, "NOTE"), expected[expected.size() - 2][5]);
    ASSERT_EQ(engine.GotoRecord(cursor, 1), AE_SUCCESS);
    EXPECT_EQ(String(cursor, "PATH"), expected.front()[2]);

    // The same rows from a plain copy leave a plain cursor, where the secrets are to be seen.
    Handle plainCursor = Query("SELECT * FROM plain");
    EXPECT_EQ(Rows(plainCursor, kFields), expected);
    EXPECT_FALSE(Encrypted(plainCursor));
    EXPECT_EQ(LeakedSecrets(plainCursor), Secrets());
}

TEST_F(EncryptedCursorTest, WritableCursorOfAJoinWithAnEncryptedTableStaysEncrypted) {
    Handle cursor = 0;
    ASSERT_EQ(engine.ExecuteSQLDirect(StatementWithPassword(ADS_CURSOR_READWRITE),
                                      "SELECT p.NAME, p.PATH, p.NOTE, q.CODESOC FROM plain q "
                                      "JOIN people p ON p.CODESOC = q.CODESOC ORDER BY p.NAME",
                                      cursor),
              AE_SUCCESS)
        << LastErrorText();
    EXPECT_TRUE(Encrypted(cursor));
    EXPECT_EQ(LeakedSecrets(cursor), std::vector<std::string>{});

    ASSERT_EQ(engine.GotoTop(cursor), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(cursor, "NOTE", "memo of the unseen kind"), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(cursor, "NAME", "ZEPHYRINE"), AE_SUCCESS);
    ASSERT_EQ(engine.FlushFileBuffers(cursor), AE_SUCCESS) << LastErrorText();
    std::string path;
    ASSERT_EQ(engine.GetTableFilename(cursor, ADS_FULLPATHNAME, path), AE_SUCCESS);
    for (const char* extension : {".dbf", ".fpt"}) {
        const std::string bytes =
            testing::ReadFileBytes(std::filesystem::path(path).replace_extension(extension));
        EXPECT_EQ(bytes.find("ZEPHYRINE"), std::string::npos) << extension;
        EXPECT_EQ(bytes.find("unseen"), std::string::npos) << extension;
    }
    ASSERT_EQ(engine.GotoTop(cursor), AE_SUCCESS);
    EXPECT_EQ(String(cursor, "NOTE"), "memo of the unseen kind");
    EXPECT_EQ(String(cursor, "NAME").substr(0, 9), "ZEPHYRINE");
}

}  // namespace
}  // namespace fnrk::engine
