#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

// A table encrypted with a password: closed to a handle without it, open (orders, seeks, writes,
// memos) to one with it, and plain again once decrypted.
class EncryptionConformance : public Conformance {
  protected:
    // The sample table with three items, a tag on NAME, encrypted with `password` and closed.
    void MakeEncryptedItems(const std::string& password) {
        Handle t = CreateItems();
        Handle index = 0;
        ASSERT_EQ(ops->CreateIndex(t, "items.cdx", "NAME", "NAME", "", "", ADS_COMPOUND, index),
                  AE_SUCCESS);
        AddItem(t, "C1", "charlie", 3);
        ASSERT_EQ(ops->SetString(t, "NOTE", "note of charlie"), AE_SUCCESS);
        AddItem(t, "A1", "alpha", 1);
        AddItem(t, "B1", "bravo", 2);
        ASSERT_EQ(ops->EncryptTable(t), AE_ENCRYPTION_NOT_ENABLED) << "no password yet";
        ASSERT_EQ(ops->EnableEncryption(t, password), AE_SUCCESS);
        ASSERT_EQ(ops->EncryptTable(t), AE_SUCCESS);
        // Encrypted, the table stays open to the handle that encrypted it.
        EXPECT_EQ(Text(t, "NAME"), "bravo");
        ASSERT_EQ(ops->CloseTable(t), AE_SUCCESS);
    }

    Handle OpenItems(std::uint32_t options) {
        Handle t = 0;
        EXPECT_EQ(ops->OpenTable(connection, "items.dbf", "", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, options, t),
                  AE_SUCCESS);
        return t;
    }

    bool Encrypted(Handle t) {
        bool encrypted = false;
        EXPECT_EQ(ops->IsTableEncrypted(t, encrypted), AE_SUCCESS);
        return encrypted;
    }

    bool AtEof(Handle t) {
        bool atEof = false;
        EXPECT_EQ(ops->AtEOF(t, atEof), AE_SUCCESS);
        return atEof;
    }
};

TEST_P(EncryptionConformance, APasswordOpensTheTableAndNothingElseDoes) {
    MakeEncryptedItems("pass phrase");
    Handle t = OpenItems(ADS_SHARED);
    EXPECT_TRUE(Encrypted(t));
    // Without its password the table shows nothing and takes nothing.
    ASSERT_EQ(ops->GotoTop(t), AE_SUCCESS);
    EXPECT_TRUE(AtEof(t));
    EXPECT_EQ(ops->AppendRecord(t), AE_ENCRYPTION_NOT_ENABLED);
    EXPECT_EQ(ops->DecryptTable(t), AE_ENCRYPTION_NOT_ENABLED);
    EXPECT_EQ(ops->EnableEncryption(t, "pass phrasE"), AE_INVALID_PASSWORD);
    EXPECT_EQ(ops->EnableEncryption(t, ""), AE_INVALID_PASSWORD);
    ASSERT_EQ(ops->GotoTop(t), AE_SUCCESS);
    EXPECT_TRUE(AtEof(t));
    // A record asked for by number is there, blank, and cannot be changed; the records are
    // counted.
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    EXPECT_FALSE(AtEof(t));
    EXPECT_EQ(RecordNumber(t), 2u);
    EXPECT_EQ(Text(t, "CODE"), "");
    EXPECT_EQ(ops->SetString(t, "CODE", "x"), AE_NO_CURRENT_RECORD);
    for (const std::uint16_t filters : {ADS_IGNOREFILTERS, ADS_RESPECTFILTERS}) {
        std::uint32_t count = 0;
        ASSERT_EQ(ops->GetRecordCount(t, filters, count), AE_SUCCESS);
        EXPECT_EQ(count, 3u) << filters;
    }

    ASSERT_EQ(ops->EnableEncryption(t, "pass phrase"), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (std::vector<std::uint32_t>{1, 2, 3}));
    Handle index = 0;
    ASSERT_EQ(ops->GetIndexHandle(t, "NAME", index), AE_SUCCESS);
    EXPECT_EQ(Walk(t, index), (std::vector<std::uint32_t>{2, 3, 1}));
    bool found = false;
    ASSERT_EQ(ops->Seek(index, "charlie", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    EXPECT_EQ(Text(t, "CODE"), "C1");
    EXPECT_EQ(Text(t, "NOTE"), "note of charlie");
    ASSERT_EQ(ops->Seek(index, "bz", ADS_STRINGKEY, ADS_SOFTSEEK, found), AE_SUCCESS);
    EXPECT_FALSE(found);
    EXPECT_EQ(Text(t, "NAME"), "charlie");

    // Once open, a wrong password is refused and the right one again changes nothing.
    EXPECT_EQ(ops->EnableEncryption(t, "pass"), AE_INVALID_PASSWORD);
    ASSERT_EQ(ops->EnableEncryption(t, "pass phrase"), AE_SUCCESS);
    EXPECT_EQ(Walk(t, index), (std::vector<std::uint32_t>{2, 3, 1}));
    // Encrypting it again changes nothing; decrypting needs it open exclusively.
    EXPECT_EQ(ops->EncryptTable(t), AE_SUCCESS);
    EXPECT_EQ(ops->DecryptTable(t), AE_TABLE_NOT_EXCLUSIVE);
    EXPECT_TRUE(Encrypted(t));
}

TEST_P(EncryptionConformance, WritesStayEncryptedAndDecryptingMakesThePlainTable) {
    MakeEncryptedItems("k");
    Handle t = OpenItems(ADS_EXCLUSIVE);
    ASSERT_EQ(ops->EnableEncryption(t, "k"), AE_SUCCESS);
    AddItem(t, "D1", "aardvark", 4);
    ASSERT_EQ(ops->SetString(t, "NOTE", "memo of the unseen kind"), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "NAME", "zulu"), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 3), AE_SUCCESS);
    ASSERT_EQ(ops->DeleteRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->PackTable(t), AE_SUCCESS);
    ASSERT_EQ(ops->CloseTable(t), AE_SUCCESS);

    t = OpenItems(ADS_EXCLUSIVE);
    ASSERT_EQ(ops->GotoTop(t), AE_SUCCESS);
    EXPECT_TRUE(AtEof(t));
    ASSERT_EQ(ops->EnableEncryption(t, "k"), AE_SUCCESS);
    Handle index = 0;
    ASSERT_EQ(ops->GetIndexHandle(t, "NAME", index), AE_SUCCESS);
    // Records after the pack: charlie, zulu, aardvark.
    EXPECT_EQ(Walk(t, index), (std::vector<std::uint32_t>{3, 1, 2}));
    ASSERT_EQ(ops->GotoRecord(t, 3), AE_SUCCESS);
    EXPECT_EQ(Text(t, "NOTE"), "memo of the unseen kind");

    ASSERT_EQ(ops->DecryptTable(t), AE_SUCCESS);
    EXPECT_FALSE(Encrypted(t));
    EXPECT_EQ(ops->DecryptTable(t), AE_TABLE_NOT_ENCRYPTED);
    ASSERT_EQ(ops->CloseTable(t), AE_SUCCESS);

    // Plain again: any handle reads it, no password asked.
    t = OpenItems(ADS_SHARED);
    EXPECT_FALSE(Encrypted(t));
    ASSERT_EQ(ops->GetIndexHandle(t, "NAME", index), AE_SUCCESS);
    EXPECT_EQ(Walk(t, index), (std::vector<std::uint32_t>{3, 1, 2}));
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    EXPECT_EQ(Text(t, "NOTE"), "note of charlie");
    EXPECT_EQ(Text(t, "NAME"), "charlie");
}

// A statement reads an encrypted table with the password it is given for it, and its static
// cursor is no plainer than the table; without the password the statement fails.
TEST_P(EncryptionConformance, StatementsReadAnEncryptedTableWithItsPassword) {
    MakeEncryptedItems("k");
    auto select = [&](const char* password, Handle& cursor) {
        Handle statement = 0;
        EXPECT_EQ(ops->CreateSQLStatement(connection, statement), AE_SUCCESS);
        EXPECT_EQ(ops->StmtSetTableType(statement, ADS_CDX), AE_SUCCESS);
        if (password != nullptr) {
            EXPECT_EQ(ops->StmtSetTablePassword(statement, "items", password), AE_SUCCESS);
        }
        return ops->ExecuteSQLDirect(statement, "SELECT CODE, NOTE FROM [items] ORDER BY CODE",
                                     cursor);
    };
    Handle cursor = 0;
    EXPECT_NE(select(nullptr, cursor), AE_SUCCESS);
    EXPECT_NE(select("wrong", cursor), AE_SUCCESS);
    ASSERT_EQ(select("k", cursor), AE_SUCCESS);
    std::vector<std::string> codes;
    ASSERT_EQ(ops->GotoTop(cursor), AE_SUCCESS);
    for (bool atEof = AtEof(cursor); !atEof && codes.size() < 10; atEof = AtEof(cursor)) {
        codes.push_back(Text(cursor, "CODE") + ":" + Text(cursor, "NOTE"));
        ASSERT_EQ(ops->Skip(cursor, 1), AE_SUCCESS);
    }
    EXPECT_EQ(codes, (std::vector<std::string>{"A1:", "B1:", "C1:note of charlie"}));
    EXPECT_TRUE(Encrypted(cursor));
}

INSTANTIATE_TEST_SUITE_P(Implementations, EncryptionConformance,
                         ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance
