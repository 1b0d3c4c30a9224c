// Query keys, ROWID decoding and the statement texts the query layer builds.

#include <gtest/gtest.h>

#include "tables/named_query.hpp"

namespace fnrk::tables {
namespace {

TEST(QueryTexts, KeysJoinNameAndFormAndStopAt25Characters) {
    EXPECT_EQ(NamedQueryKey("  entries ", 3), "ENTRIES3");
    EXPECT_EQ(NamedQueryKey("entries", 12), "ENTRIES12");
    // Names that differ only past the 25th character of name plus form are one query.
    EXPECT_EQ(NamedQueryKey("ABCDEFGHIJKLMNOPQRSTUVWXYZ_first", 1),
              NamedQueryKey("abcdefghijklmnopqrstuvwxyz_second", 2));
    EXPECT_EQ(NamedQueryKey("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 1), "ABCDEFGHIJKLMNOPQRSTUVWXY");
    EXPECT_NE(NamedQueryKey("ABCDEFGHIJKLMNOPQRSTUVW", 1),
              NamedQueryKey("ABCDEFGHIJKLMNOPQRSTUVW", 2));
}

TEST(QueryTexts, TemporaryEntriesAreFilteredOut) {
    EXPECT_EQ(WithoutTemporaryEntries(""), "ISTEMP=.F.");
    EXPECT_EQ(WithoutTemporaryEntries("   "), "ISTEMP=.F.");
    EXPECT_EQ(WithoutTemporaryEntries("AMOUNT>0"), "AMOUNT>0 AND ISTEMP=.F.");
}

TEST(QueryTexts, EngineRowIdsDecodeTheirLastSixCharactersFoldingCase) {
    EXPECT_EQ(RecordNumberOfEngineRowId("xxxxxxxxxxxxAAAAAB"), 1u);
    EXPECT_EQ(RecordNumberOfEngineRowId("xxxxxxxxxxxxAAABAA"), 4096u);
    // A lower-case letter counts as its upper-case form: "a" is 0, not 26.
    EXPECT_EQ(RecordNumberOfEngineRowId("xxxxxxxxxxxxAAAAAa"), 0u);
    EXPECT_EQ(RecordNumberOfEngineRowId("xxxxxxxxxxxxAAAAAz"), 25u);
    EXPECT_EQ(RecordNumberOfEngineRowId("AAAAA9"), 61u);
    EXPECT_EQ(RecordNumberOfEngineRowId("AAAA+/"), 62u * 64 + 63);
    EXPECT_EQ(RecordNumberOfEngineRowId("BAAAAA"), 1u << 30);
    EXPECT_EQ(RecordNumberOfEngineRowId("AAAAB"), 0u);
    EXPECT_EQ(RecordNumberOfEngineRowId("AAAA*B"), 0u);
}

TEST(QueryTexts, SqlRowIdsDecodeTheirLastEightDigits) {
    EXPECT_EQ(RecordNumberOfSqlRowId("table:00000042"), 42u);
    EXPECT_EQ(RecordNumberOfSqlRowId("1234567812345678"), 12345678u);
    EXPECT_EQ(RecordNumberOfSqlRowId("0000042"), 0u);
    EXPECT_EQ(RecordNumberOfSqlRowId("x000004A"), 0u);
}

TEST(QueryTexts, UserCursorStatementsKeepTheirTextAndQuoteTheName) {
    EXPECT_EQ(UserCursorStatement("system"),
              "select ROWID,CODESOC,PATH from [USERS] where NAME ='SYSTEM         ' ORDER BY "
              "CODESOC");
    EXPECT_EQ(UserCursorStatement("bob"),
              "select ROWID,CODESOC,PATH from [USERS] where NAME ='BOB            ' AND "
              "CODESOC<>'' ORDER BY CODESOC");
    EXPECT_EQ(PathCursorStatement("bob"),
              "select ROWID,CODESOC,PATH from [USERS] where NAME ='BOB            ' AND PATH<>'' "
              "UNION SELECT ROWID,'ZZZZZZZZZZZZZZZ','ZZZZZZZZZZZZZZZ' from [USERS] ORDER BY "
              "CODESOC");
    // A quote in the name is doubled: the name stays inside its literal.
    EXPECT_EQ(UserCursorStatement("x' OR '1'='1"),
              "select ROWID,CODESOC,PATH from [USERS] where NAME ='X'' OR ''1''=''1   ' AND "
              "CODESOC<>'' ORDER BY CODESOC");
}

TEST(QueryTexts, SelectsGetTheStaticHintOnce) {
    EXPECT_EQ(WithStaticCursor("SELECT * FROM ACT"), "SELECT {static} * FROM ACT");
    EXPECT_EQ(WithStaticCursor("select name from USERS"), "SELECT {static} name from USERS");
    // A hint in any case, or a statement that is no query, stays as it is.
    for (const char* unchanged : {"select {Static} * from ACT", "SELECT {STATIC} * FROM ACT",
                                  "UPDATE ACT SET AMOUNT = 0"}) {
        EXPECT_EQ(WithStaticCursor(unchanged), unchanged);
    }
}

}  // namespace
}  // namespace fnrk::tables
