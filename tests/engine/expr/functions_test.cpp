// The built-in functions over records built in memory.

#include <gtest/gtest.h>

#include "engine/expr/expression.hpp"
#include "test_table.hpp"

namespace fnrk::engine::expr {
namespace {

class Functions : public testing::RecordTest {
  protected:
    Functions() {
        table.Add("NAME", 'C', 10)
            .Add("DOCNUMBER", 'C', 8)
            .Add("AMOUNT", 'N', 10, 2)
            .Add("BORN", 'D', 8);
        record = table.Blank();
        table.Put(record, "NAME", "  Chlo\xE9 ");
        table.Put(record, "DOCNUMBER", "  000123");
        table.Put(record, "AMOUNT", "   1234.56");
        table.Put(record, "BORN", "20240131");
    }
};

TEST_F(Functions, CaseAndTrimming) {
    // A to Z only: accented letters keep their case, as in the existing index files.
    EXPECT_EQ(Text("upper(name)"), "  CHLO\xE9   ");
    EXPECT_EQ(Text("lower('\xC3\x89T\xC3\x89 AZ@[')"), "\xC9t\xC9 az@[");
    EXPECT_EQ(Text("upper('az`{\xC3\xBF')"), "AZ`{\xFF");
    EXPECT_EQ(Text("trim(name)"), "  Chlo\xE9");
    EXPECT_EQ(Text("rtrim(name)"), "  Chlo\xE9");
    EXPECT_EQ(Text("ltrim(name)"), "Chlo\xE9   ");
    EXPECT_EQ(Text("alltrim(name)"), "Chlo\xE9");
    EXPECT_EQ(Text("allt('   ')"), "");
    EXPECT_EQ(Length("upper(name)"), 10u);
    EXPECT_EQ(Length("alltrim(name)"), 10u);
}

TEST_F(Functions, BuildingText) {
    EXPECT_EQ(Text("space(3)"), "   ");
    EXPECT_EQ(Text("space(0)"), "");
    EXPECT_EQ(Text("replicate('ab', 3)"), "ababab");
    EXPECT_EQ(Text("replicate(trim(name), 2)"), "  Chlo\xE9  Chlo\xE9");
    EXPECT_EQ(Length("replicate(name, 3)"), 30u);
    EXPECT_EQ(Text("padl('ab', 5)"), "   ab");
    EXPECT_EQ(Text("padr('ab', 5, '*')"), "ab***");
    EXPECT_EQ(Text("padl('abcdef', 3)"), "abc");
    EXPECT_EQ(Text("padr('ab', 4, '')"), "ab  ");
    EXPECT_EQ(Length("padl(name, 12)"), 12u);
    EXPECT_EQ(Text("chr(65) + chr(233)"), "A\xE9");
}

TEST_F(Functions, PartsOfText) {
    EXPECT_EQ(Text("left(docnumber, 4)"), "  00");
    EXPECT_EQ(Text("right(docnumber, 3)"), "123");
    EXPECT_EQ(Text("left('abc', 10)"), "abc");
    EXPECT_EQ(Text("right('abc', -1)"), "");
    EXPECT_EQ(Text("substr('abcdef', 2, 3)"), "bcd");
    EXPECT_EQ(Text("subs('abcdef', 4)"), "def");
    EXPECT_EQ(Text("substr('abcdef', 0, 2)"), "ab");
    EXPECT_EQ(Text("substr('abcdef', 9, 2)"), "");
    EXPECT_EQ(Text("substr('abcdef', 5, 9)"), "ef");
    EXPECT_EQ(Length("left(name, 4)"), 4u);
    EXPECT_EQ(Length("left(name, 40)"), 10u);
    EXPECT_EQ(Length("substr(name, 2, 3)"), 3u);
    EXPECT_EQ(Length("substr(name, 2)"), 10u);
    EXPECT_EQ(Length("left(name, amount)"), 10u);
    EXPECT_DOUBLE_EQ(Number("at('lo', name)"), 5);
    EXPECT_DOUBLE_EQ(Number("at('xyz', name)"), 0);
    EXPECT_DOUBLE_EQ(Number("at('', name)"), 0);
    EXPECT_DOUBLE_EQ(Number("len(name)"), 10);
    EXPECT_DOUBLE_EQ(Number("len(trim(name))"), 7);
    EXPECT_DOUBLE_EQ(Number("asc(name)"), 32);
    EXPECT_DOUBLE_EQ(Number("asc('')"), 0);
}

TEST_F(Functions, NumbersToTextAndBack) {
    EXPECT_EQ(Text("str(val(docnumber), 8)"), "     123");
    EXPECT_EQ(Length("str(val(docnumber), 8)"), 8u);
    EXPECT_EQ(Text("str(amount)"), "      1235");  // default length 10, no decimals
    EXPECT_EQ(Text("str(amount, 9, 1)"), "   1234.6");
    EXPECT_EQ(Text("str(-amount, 8, 2)"), "-1234.56");
    EXPECT_EQ(Text("str(amount, 6, 2)"), "1234.6");  // decimals give way first
    EXPECT_EQ(Text("str(amount, 3)"), "***");
    EXPECT_EQ(Text("str(2.675, 5, 2)"), " 2.68");
    EXPECT_EQ(Text("str(-0.001, 5, 2)"), " 0.00");
    EXPECT_EQ(Text("strzero(42, 5)"), "00042");
    EXPECT_EQ(Text("strzero(-42, 5)"), "-0042");
    EXPECT_EQ(Text("strzero(1.5, 6, 2)"), "001.50");
    EXPECT_DOUBLE_EQ(Number("val('  -12.5xyz')"), -12.5);
    EXPECT_DOUBLE_EQ(Number("val('abc')"), 0);
    EXPECT_DOUBLE_EQ(Number("val(docnumber)"), 123);
    EXPECT_DOUBLE_EQ(Number("val('1e3')"), 1000);
}

TEST_F(Functions, NumberFunctions) {
    EXPECT_DOUBLE_EQ(Number("abs(-amount)"), 1234.56);
    EXPECT_DOUBLE_EQ(Number("int(-7.9)"), -7);
    EXPECT_DOUBLE_EQ(Number("int(7.9)"), 7);
    EXPECT_DOUBLE_EQ(Number("round(amount, 1)"), 1234.6);
    EXPECT_DOUBLE_EQ(Number("round(-2.5, 0)"), -3);
    EXPECT_DOUBLE_EQ(Number("round(1.005, 2)"), 1.01);
    EXPECT_DOUBLE_EQ(Number("round(amount, -2)"), 1200);
    EXPECT_DOUBLE_EQ(Number("mod(-7, 3)"), 2);
    EXPECT_DOUBLE_EQ(Number("sign(-amount)"), -1);
    EXPECT_DOUBLE_EQ(Number("min(3, amount)"), 3);
    EXPECT_DOUBLE_EQ(Number("max(3, amount)"), 1234.56);
}

TEST_F(Functions, Dates) {
    const std::int32_t born = JulianFromCivil(2024, 1, 31);
    EXPECT_EQ(Text("dtos(born)"), "20240131");
    EXPECT_EQ(Text("dtos({})"), "        ");
    EXPECT_EQ(Text("dtos(stod('20240229') + 1)"), "20240301");
    EXPECT_EQ(Date("stod('garbage!')"), 0);
    EXPECT_DOUBLE_EQ(Number("year(born) * 10000 + month(born) * 100 + day(born)"), 20240131);
    EXPECT_DOUBLE_EQ(Number("year({})"), 0);
    EXPECT_EQ(Date("min(born, {^2024-01-01})"), JulianFromCivil(2024, 1, 1));
    EXPECT_EQ(Date("max(born, {^2024-01-01})"), born);
    EXPECT_EQ(Date("date()"), Today());

    const DateSettings belgian{"DD/MM/YYYY", 2000};
    EXPECT_EQ(Text("dtoc(born)", &belgian), "31/01/2024");
    EXPECT_EQ(Text("dtoc({})", &belgian), "  /  /    ");
    EXPECT_EQ(Text("dtoc(born)"), "01/31/2024");
    EXPECT_EQ(Date("ctod('01/02/24')", &belgian), JulianFromCivil(2024, 2, 1));
    const DateSettings american{"MM/DD/YY", 1900};
    EXPECT_EQ(Date("ctod('01/02/24')", &american), JulianFromCivil(1924, 1, 2));
    EXPECT_EQ(Date("ctod('99/99/99')", &american), 0);
    EXPECT_EQ(Text("dtoc(born)", &american), "01/31/24");
    EXPECT_EQ(Expression::Compile("dtoc(born)", table, american).length(), 8u);
}

TEST_F(Functions, ConditionalsAndEmptiness) {
    EXPECT_EQ(Text("iif(amount > 0, 'plus', 'minus')"), "plus");
    EXPECT_EQ(Length("iif(amount > 0, 'plus', 'minus')"), 5u);
    EXPECT_EQ(Text("if(amount < 0, 'plus', 'minus')"), "minus");
    EXPECT_DOUBLE_EQ(Number("iif(.f., 1, 2)"), 2);
    EXPECT_EQ(Date("iif(.t., born, {})"), JulianFromCivil(2024, 1, 31));
    EXPECT_TRUE(Logical("iif(.t., .t., .f.)"));
    Expression key = Expression::Compile("iif(amount > 0, 'ab', 'abcd') + 'X'", table);
    EXPECT_EQ(key.length(), 5u);
    const std::string_view records[] = {record};
    EXPECT_EQ(key.EvaluateKey({records, 1, nullptr}), "abX  ");

    EXPECT_FALSE(Logical("empty(name)"));
    EXPECT_TRUE(Logical("empty(space(4))"));
    EXPECT_TRUE(Logical("empty('')"));
    EXPECT_TRUE(Logical("empty(0) .and. empty({}) .and. empty(.f.)"));
    EXPECT_FALSE(Logical("empty(amount) .or. empty(born) .or. empty(.t.)"));
    EXPECT_EQ(Text("max('ab', 'abc')"), "abc");
    EXPECT_EQ(Text("min('b', 'abc')"), "abc");
    EXPECT_EQ(Length("max(name, 'x')"), 10u);
}

}  // namespace
}  // namespace fnrk::engine::expr
