#include "engine/sql/dialect.hpp"

#include <gtest/gtest.h>

namespace fnrk::engine::sql {
namespace {

TEST(DialectTest, StaticHintIsDroppedOutsideLiteralsOnly) {
    EXPECT_EQ(RewriteDialect("SELECT {static} * FROM [USERS]").text, "SELECT  * FROM [USERS]");
    EXPECT_EQ(RewriteDialect("select {STATIC} a from t").text, "select  a from t");
    EXPECT_EQ(RewriteDialect("select {StAtIc}a").text, "select a");
    EXPECT_EQ(RewriteDialect("select '{static}' from t").text, "select '{static}' from t");
    EXPECT_EQ(RewriteDialect("select [{static}] from t").text, "select [{static}] from t");
    EXPECT_EQ(RewriteDialect("select 1 -- {static}\n").text, "select 1 -- {static}\n");
    EXPECT_EQ(RewriteDialect("select {stat}").text, "select {stat}");
}

TEST(DialectTest, LeftAndRightBecomeFunctionsOnlyWhenCalled) {
    EXPECT_EQ(RewriteDialect("where LEFT(PATH,2)='11' OR left (PATH,2)='02'").text,
              "where fnrk_left(PATH,2)='11' OR fnrk_left (PATH,2)='02'");
    EXPECT_EQ(RewriteDialect("select Right(NAME, 3)").text, "select fnrk_right(NAME, 3)");
    EXPECT_EQ(RewriteDialect("a LEFT JOIN b ON x").text, "a LEFT JOIN b ON x");
    EXPECT_EQ(RewriteDialect("select LEFTOVER(x), BLEFT(x)").text, "select LEFTOVER(x), BLEFT(x)");
    EXPECT_EQ(RewriteDialect("select 'LEFT(x)', [LEFT(y)]").text, "select 'LEFT(x)', [LEFT(y)]");
    EXPECT_EQ(RewriteDialect("select 'it''s LEFT(' , LEFT(a,1)").text,
              "select 'it''s LEFT(' , fnrk_left(a,1)");
    EXPECT_EQ(OriginalSpelling("fnrk_left(PATH,2) || fnrk_right(a, 1)"),
              "LEFT(PATH,2) || RIGHT(a, 1)");
}

TEST(DialectTest, OffsetsPointBackIntoTheOriginal) {
    const std::string original = "SELECT {static} LEFT(NAME,1) FROM T";
    const RewrittenStatement rewritten = RewriteDialect(original);
    ASSERT_EQ(rewritten.origin.size(), rewritten.text.size() + 1);
    EXPECT_EQ(rewritten.OriginalOffset(rewritten.text.find("FROM")), original.find("FROM"));
    EXPECT_EQ(rewritten.OriginalOffset(rewritten.text.find("fnrk_left")), original.find("LEFT"));
    EXPECT_EQ(rewritten.OriginalOffset(rewritten.text.find("NAME")), original.find("NAME"));
    EXPECT_EQ(rewritten.OriginalOffset(rewritten.text.size()), original.size());
    EXPECT_EQ(rewritten.OriginalOffset(10'000), original.size());
}

}  // namespace
}  // namespace fnrk::engine::sql
