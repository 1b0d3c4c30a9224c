#include "engine/expr/parser.hpp"

#include <gtest/gtest.h>

#include "engine/expr/expression_error.hpp"

namespace fnrk::engine::expr {
namespace {

std::string Canonical(const std::string& text) {
    return CanonicalText(Parse(text));
}

TEST(Parser, PrecedenceAndAssociativity) {
    EXPECT_EQ(Canonical("1 + 2 * 3"), "1+(2*3)");
    EXPECT_EQ(Canonical("(1 + 2) * 3"), "(1+2)*3");
    EXPECT_EQ(Canonical("10 - 4 - 3"), "(10-4)-3");
    EXPECT_EQ(Canonical("2 ^ 3 ** 2"), "2^(3^2)");
    EXPECT_EQ(Canonical("-2 ^ 2"), "-(2^2)");
    EXPECT_EQ(Canonical("a = 1 .or. b = 2 .and. .not. c"), "(A=1).OR.((B=2).AND.(.NOT.C))");
    EXPECT_EQ(Canonical("!a .AND. b"), "(.NOT.A).AND.B");
    EXPECT_EQ(Canonical("x # 1 .or. x != 2 .or. x <> 3"), "((X<>1).OR.(X<>2)).OR.(X<>3)");
    EXPECT_EQ(Canonical("'ab' $ name"), "'ab'$NAME");
    EXPECT_EQ(Canonical("a AND b OR NOT c"), "(A.AND.B).OR.(.NOT.C)");
}

TEST(Parser, SpellingsOfOneExpressionGiveOneCanonicalText) {
    EXPECT_EQ(Canonical("iif(.not. deleted(),'X' + SOURCE,'X' + space(10))"),
              Canonical("IIf( .NOT.Deleted( ), \"X\"+source, [X]+SPACE( 10 ) )"));
    EXPECT_EQ(Canonical("SUBS(name, 1, 3)"), "SUBSTR(NAME,1,3)");
    EXPECT_EQ(Canonical("allt(name)"), "ALLTRIM(NAME)");
    EXPECT_EQ(Canonical("if(a, 1, 2)"), "IIF(A,1,2)");
    EXPECT_EQ(Canonical("dele()"), "DELETED()");
    EXPECT_EQ(Canonical("strz(n, 5)"), "STRZERO(N,5)");
    EXPECT_EQ(Canonical("acf->name"), "ACF->NAME");
}

TEST(Parser, Literals) {
    const Node date = Parse("{^2024-01-31}");
    ASSERT_EQ(date.kind, NodeKind::Constant);
    EXPECT_EQ(date.constant.type, ValueType::Date);
    EXPECT_EQ(date.constant.julian, JulianFromCivil(2024, 1, 31));
    EXPECT_EQ(Parse("{31/01/2024}", DateSettings{"DD/MM/YYYY", 2000}).constant.julian,
              JulianFromCivil(2024, 1, 31));
    EXPECT_EQ(Parse("{}").constant.julian, 0);

    const Node text = Parse("'caf\xC3\xA9'");  // UTF-8 in, Windows-1252 out
    EXPECT_EQ(text.constant.type, ValueType::Character);
    EXPECT_EQ(text.constant.text, "caf\xE9");
    EXPECT_EQ(Parse("[say \"hi\"]").constant.text, "say \"hi\"");

    EXPECT_DOUBLE_EQ(Parse("12.50").constant.number, 12.5);
    EXPECT_DOUBLE_EQ(Parse(".25").constant.number, 0.25);
    EXPECT_TRUE(Parse(".T.").constant.logical);
    EXPECT_TRUE(Parse(".y.").constant.logical);
    EXPECT_FALSE(Parse(".F.").constant.logical);
    EXPECT_FALSE(Parse(".n.").constant.logical);
    EXPECT_EQ(Canonical("1.AND..T."), "1.AND..T.");
}

TEST(Parser, TreeIsOpenToInspection) {
    const Node tree = Parse("upper(name) = 'AB' .and. amount >= 100");
    ASSERT_EQ(tree.kind, NodeKind::Binary);
    EXPECT_EQ(tree.op, Operator::And);
    const Node& equal = tree.operands[0];
    EXPECT_EQ(equal.op, Operator::Equal);
    EXPECT_TRUE(IsComparison(equal.op));
    EXPECT_EQ(equal.operands[0].kind, NodeKind::Call);
    EXPECT_EQ(equal.operands[0].name, "UPPER");
    EXPECT_EQ(equal.operands[0].operands[0].kind, NodeKind::Field);
    EXPECT_EQ(equal.operands[0].operands[0].name, "NAME");
    EXPECT_EQ(equal.operands[1].constant.text, "AB");
    const Node& range = tree.operands[1];
    EXPECT_EQ(range.op, Operator::GreaterOrEqual);
    EXPECT_EQ(range.position, 32u);
    EXPECT_DOUBLE_EQ(range.operands[1].constant.number, 100);
}

// Each fault is reported at its 0-based byte offset.
void ExpectError(const std::string& text, std::size_t position, const std::string& reason) {
    try {
        Parse(text);
        ADD_FAILURE() << "no error for " << text;
    } catch (const ExpressionError& error) {
        EXPECT_EQ(error.position(), position) << text << ": " << error.what();
        EXPECT_EQ(error.reason(), reason) << text;
        EXPECT_EQ(std::string(error.what()), reason + " at " + std::to_string(position));
    }
}

TEST(Parser, SyntaxErrorsGiveTheirPosition) {
    ExpectError("1 + FOO(2)", 4, "unknown function FOO");
    ExpectError("name = 'abc", 7, "unterminated string");
    ExpectError("{^2024-02-30}", 0, "invalid date");
    ExpectError("{^2024-01-31", 0, "unterminated date");
    ExpectError("(a + b", 6, "missing )");
    ExpectError("a + ", 4, "unexpected end of expression");
    ExpectError("a b", 2, "unexpected token");
    ExpectError("a .xor. b", 2, "unknown operator .XOR.");
    ExpectError("a ? b", 2, "unexpected character '?'");
    ExpectError("upper(a, b)", 0, "wrong number of arguments to UPPER");
    ExpectError("deleted(1)", 0, "wrong number of arguments to DELETED");
    ExpectError("", 0, "unexpected end of expression");
    ExpectError("acf->", 5, "missing field name after ->");
    ExpectError("UP(name)", 0, "unknown function UP");
    try {
        Parse(std::string(100000, '('));
        ADD_FAILURE() << "deep nesting accepted";
    } catch (const ExpressionError& error) {
        EXPECT_EQ(error.reason(), "expression nested too deeply");
        EXPECT_LT(error.position(), 200u);
    }
    std::string chain = "1";
    for (int i = 0; i < 3000; ++i) chain += "+1";
    ExpectError(chain, 4001, "expression too long");
}

}  // namespace
}  // namespace fnrk::engine::expr
