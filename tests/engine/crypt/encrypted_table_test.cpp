// Encrypted tables through the engine: no plaintext left in the table, memo or index file, the
// right password reads everything back (indexes included), a wrong one is refused, and every
// write keeps the files encrypted.

#include <filesystem>
#include <string>
#include <vector>

#include "engine/sql/sql_fixture.hpp"
#include "platform/codepage.hpp"
#include "support/file_size_limit.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {
namespace {

const std::vector<std::string> kFields = {"NAME", "CODESOC", "PATH", "AMOUNT", "BORN", "NOTE"};

class EncryptedTableTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "people");
    }

    std::string FileBytes(const char* extension) {
        return testing::ReadFileBytes(dir / (std::string("people") + extension));
    }

    // Field values that the fixture's files hold in plain text (Windows-1252).
    static std::vector<std::string> Secrets() {
        return {"C:\\DATA\\SOC018", "SOC016", platform::Utf8ToCp1252("DÉSIRÉ"),
                std::string(40, 'x')};
    }

    int PlaintextHits(const std::string& bytes) {
        int hits = 0;
        for (const std::string& secret : Secrets())
            if (bytes.find(secret) != std::string::npos) ++hits;
        return hits;
    }

    Handle OpenWith(const std::string& password, std::uint32_t options = ADS_EXCLUSIVE) {
        const Handle table = Open("people", options);
        EXPECT_EQ(engine.EnableEncryption(table, password), AE_SUCCESS);
        return table;
    }

    void Encrypt(const std::string& password) {
        const Handle table = OpenWith(password);
        ASSERT_EQ(engine.EncryptTable(table), AE_SUCCESS) << LastErrorText();
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    // The records in the order of tag `tag` ("" for natural order), as text.
    std::vector<std::vector<std::string>> InOrder(Handle table, const std::string& tag) {
        Handle object = table;
        if (!tag.empty()) {
            EXPECT_EQ(engine.GetIndexHandle(table, tag, object), AE_SUCCESS);
        }
        return Rows(object, kFields);
    }
};

TEST_F(EncryptedTableTest, FilesHoldNoPlaintextAndReadBackIdentically) {
    for (const char* extension : {".dbf", ".fpt", ".cdx"})
        ASSERT_GT(PlaintextHits(FileBytes(extension)), 0) << extension << " shows the fixture";
    const Handle plain = Open("people");
    const auto natural = InOrder(plain, "");
    const auto byName = InOrder(plain, "NAME");
    ASSERT_EQ(engine.CloseTable(plain), AE_SUCCESS);

    Encrypt("pass phrase");
    for (const char* extension : {".dbf", ".fpt", ".cdx"})
        EXPECT_EQ(PlaintextHits(FileBytes(extension)), 0) << extension;

    const Handle table = Open("people");
    bool encrypted = false;
    ASSERT_EQ(engine.IsTableEncrypted(table, encrypted), AE_SUCCESS);
    EXPECT_TRUE(encrypted);
    // Without its password the table shows nothing and takes nothing.
    EXPECT_TRUE(Eof(table));
    EXPECT_EQ(engine.AppendRecord(table), AE_ENCRYPTION_NOT_ENABLED);
    EXPECT_EQ(engine.EnableEncryption(table, "pass phrasE"), AE_INVALID_PASSWORD);
    EXPECT_EQ(engine.EnableEncryption(table, ""), AE_INVALID_PASSWORD);
    EXPECT_TRUE(Eof(table));

    ASSERT_EQ(engine.EnableEncryption(table, "pass phrase"), AE_SUCCESS);
    EXPECT_EQ(InOrder(table, ""), natural);
    EXPECT_EQ(InOrder(table, "NAME"), byName);
    Handle index = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "NAME", index), AE_SUCCESS);
    bool found = false;
    ASSERT_EQ(engine.Seek(index, "DÉSIRÉ", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    EXPECT_EQ(String(table, "PATH"), natural[2][2]);  // record 4: record 1 is deleted

    // Once open, a wrong password is refused and the right one given again changes nothing.
    EXPECT_EQ(engine.EnableEncryption(table, "pass"), AE_INVALID_PASSWORD);
    ASSERT_EQ(engine.EnableEncryption(table, "pass phrase"), AE_SUCCESS);
    EXPECT_EQ(InOrder(table, "NAME"), byName);
}

TEST_F(EncryptedTableTest, WritesStayEncryptedAndDecryptingRestoresThePlainFiles) {
    const std::string original = FileBytes(".dbf");
    Encrypt("k");
    {
        const Handle table = OpenWith("k");
        ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "NAME", "ZEPHYRINE"), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "NOTE", "memo of the unseen kind"), AE_SUCCESS);
        ASSERT_EQ(engine.GotoRecord(table, 2), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "CODESOC", "SOCRENAMED"), AE_SUCCESS);
        ASSERT_EQ(engine.GotoRecord(table, 3), AE_SUCCESS);
        ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.PackTable(table), AE_SUCCESS) << LastErrorText();
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }
    for (const char* extension : {".dbf", ".fpt", ".cdx"}) {
        const std::string bytes = FileBytes(extension);
        // Index keys lose their prefix shared with the key before: look for the tail.
        EXPECT_EQ(bytes.find("PHYRINE"), std::string::npos) << extension;
        EXPECT_EQ(bytes.find("SOCRENAMED"), std::string::npos) << extension;
        EXPECT_EQ(bytes.find("unseen"), std::string::npos) << extension;
    }

    const Handle table = OpenWith("k");
    std::vector<std::vector<std::string>> natural = InOrder(table, "");
    ASSERT_FALSE(natural.empty());
    EXPECT_EQ(natural.back()[0], "ZEPHYRINE      ");
    EXPECT_EQ(natural.back()[5], "memo of the unseen kind");
    EXPECT_EQ(natural.front()[1], "SOCRENAMED     ");  // record 2 is first: 1 is deleted
    Handle index = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "NAME", index), AE_SUCCESS);
    bool found = false;
    ASSERT_EQ(engine.Seek(index, "ZEPHYRINE", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    ASSERT_EQ(engine.Seek(index, "CHLOÉ", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_FALSE(found) << "record 3 was packed away";

    ASSERT_EQ(engine.DecryptTable(table), AE_SUCCESS) << LastErrorText();
    EXPECT_EQ(InOrder(table, ""), natural);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_NE(FileBytes(".dbf").find("ZEPHYRINE"), std::string::npos);
    EXPECT_NE(FileBytes(".cdx").find("PHYRINE"), std::string::npos);
    EXPECT_NE(FileBytes(".fpt").find("unseen"), std::string::npos);
    // Records that were never changed are back byte for byte: record 4 is now record 2
    // (records 1 and 3 were packed away).
    constexpr std::size_t kHeader = 290;
    constexpr std::size_t kRecord = 128;
    const std::string now = FileBytes(".dbf");
    EXPECT_EQ(now.substr(12, 16), std::string(16, '\0'));
    EXPECT_EQ(now.substr(kHeader + kRecord, kRecord),
              original.substr(kHeader + 3 * kRecord, kRecord));
    // The pack wrote the memo file anew: every kept memo is back in plain text.
    const std::string memos = FileBytes(".fpt");
    for (const auto& row : natural)
        EXPECT_NE(memos.find(platform::Utf8ToCp1252(row[5])), std::string::npos) << row[0];
}

// Encrypting (and decrypting) writes the files anew beside the old ones: cut short by a full
// disk, it leaves the table, memo and index as they were; complete, with their permissions.
TEST_F(EncryptedTableTest, AChangeCutShortLeavesEveryFileAsItWas) {
    const std::vector<const char*> extensions = {".dbf", ".fpt", ".cdx"};
    const auto permissions = std::filesystem::perms::owner_read |
                             std::filesystem::perms::owner_write |
                             std::filesystem::perms::group_read;
    std::vector<std::string> before;
    for (const char* extension : extensions) {
        std::filesystem::permissions(dir / (std::string("people") + extension), permissions);
        before.push_back(FileBytes(extension));
    }
    const auto plain = InOrder(Open("people", ADS_EXCLUSIVE), "");
    ASSERT_EQ(engine.CloseAllTables(), AE_SUCCESS);

    auto encryptUnder = [&](std::uint64_t limit) {
        return testing::RunWithFileSizeLimit(limit, [&] {
            Engine own;
            Handle folder = 0;
            Handle table = 0;
            if (own.Connect26(dir.path().string(), ADS_LOCAL_SERVER, folder) != AE_SUCCESS ||
                own.OpenTable(folder, "people", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                              ADS_IGNORERIGHTS, ADS_EXCLUSIVE, table) != AE_SUCCESS ||
                own.EnableEncryption(table, "full disk") != AE_SUCCESS)
                return 2;
            return own.EncryptTable(table) == AE_SUCCESS ? 0 : 1;
        });
    };
    // Short in the records, then in the memos (the table file fits).
    for (const std::uint64_t limit :
         {before[0].size() / 2, (before[0].size() + before[1].size()) / 2}) {
        EXPECT_EQ(encryptUnder(limit), 1) << limit;
        for (std::size_t i = 0; i < extensions.size(); ++i)
            EXPECT_EQ(FileBytes(extensions[i]), before[i]) << extensions[i] << " " << limit;
        for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
            EXPECT_EQ(entry.path().filename().string().find(".crypt"), std::string::npos)
                << entry.path();
    }

    Encrypt("full disk");
    for (const char* extension : extensions)
        EXPECT_EQ(std::filesystem::status(dir / (std::string("people") + extension)).permissions() &
                      std::filesystem::perms::all,
                  permissions)
            << extension;
    const Handle table = OpenWith("full disk");
    EXPECT_EQ(InOrder(table, ""), plain);
}

TEST_F(EncryptedTableTest, RefusalsChangeNothing) {
    const std::string original = FileBytes(".dbf");
    const Handle shared = Open("people", ADS_SHARED);
    EXPECT_EQ(engine.EncryptTable(shared), AE_ENCRYPTION_NOT_ENABLED);
    ASSERT_EQ(engine.EnableEncryption(shared, "k"), AE_SUCCESS);
    EXPECT_EQ(engine.EncryptTable(shared), AE_TABLE_NOT_EXCLUSIVE);
    EXPECT_EQ(engine.DecryptTable(shared), AE_TABLE_NOT_ENCRYPTED);
    bool encrypted = true;
    ASSERT_EQ(engine.IsTableEncrypted(shared, encrypted), AE_SUCCESS);
    EXPECT_FALSE(encrypted);
    ASSERT_EQ(engine.CloseTable(shared), AE_SUCCESS);
    EXPECT_EQ(FileBytes(".dbf"), original);

    Encrypt("k");
    const std::string sealed = FileBytes(".dbf");
    const Handle locked = Open("people", ADS_EXCLUSIVE);
    EXPECT_EQ(engine.DecryptTable(locked), AE_ENCRYPTION_NOT_ENABLED);
    EXPECT_EQ(engine.EnableEncryption(locked, "wrong"), AE_INVALID_PASSWORD);
    EXPECT_EQ(engine.DecryptTable(locked), AE_ENCRYPTION_NOT_ENABLED);
    EXPECT_EQ(engine.EncryptTable(locked), AE_SUCCESS);  // already encrypted: nothing to do
    ASSERT_EQ(engine.CloseTable(locked), AE_SUCCESS);
    EXPECT_EQ(FileBytes(".dbf").substr(32), sealed.substr(32));
}

}  // namespace
}  // namespace fnrk::engine
