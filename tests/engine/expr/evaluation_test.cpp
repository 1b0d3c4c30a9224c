// Operators and field types over records built in memory.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "engine/expr/expression.hpp"
#include "test_table.hpp"

namespace fnrk::engine::expr {
namespace {

using testing::TestTable;

class Evaluation : public testing::RecordTest {
  protected:
    Evaluation() {
        table.Add("NAME", 'C', 10)
            .Add("CODE", 'C', 4)
            .Add("AMOUNT", 'N', 10, 2)
            .Add("QTY", 'N', 5)
            .Add("BORN", 'D', 8)
            .Add("ACTIVE", 'L', 1)
            .Add("COUNT", 'I', 4)
            .Add("RATE", 'B', 8)
            .Add("PRICE", 'Y', 8)
            .Add("STAMP", 'T', 8)
            .Add("NOTE", 'M', 10)
            .Add("BLOB", 'M', 4);
        record = table.Blank();
        table.Put(record, "NAME", "Dupont");
        table.Put(record, "CODE", "AB");
        table.Put(record, "AMOUNT", "   -123.45");
        table.Put(record, "QTY", "   42");
        table.Put(record, "BORN", "19800215");
        table.Put(record, "ACTIVE", "T");
        table.Put(record, "COUNT", Bytes<std::int32_t>(-7));
        table.Put(record, "RATE", Bytes<double>(0.25));
        table.Put(record, "PRICE", Bytes<std::int64_t>(123456));  // 12.3456
        std::string stamp = Bytes<std::int32_t>(JulianFromCivil(2024, 3, 1));
        stamp += Bytes<std::int32_t>(3600000);
        table.Put(record, "STAMP", stamp);
    }

    template <class T>
    static std::string Bytes(T value) {
        std::string bytes(sizeof value, '\0');
        std::memcpy(bytes.data(), &value, sizeof value);  // the test host is little-endian
        return bytes;
    }
};

TEST_F(Evaluation, FieldsOfEveryType) {
    EXPECT_EQ(Text("name"), "Dupont    ");
    EXPECT_DOUBLE_EQ(Number("amount"), -123.45);
    EXPECT_DOUBLE_EQ(Number("qty"), 42);
    EXPECT_EQ(Date("born"), JulianFromCivil(1980, 2, 15));
    EXPECT_TRUE(Logical("active"));
    EXPECT_DOUBLE_EQ(Number("count"), -7);
    EXPECT_DOUBLE_EQ(Number("rate"), 0.25);
    EXPECT_DOUBLE_EQ(Number("price"), 12.3456);
    EXPECT_EQ(Date("stamp"), JulianFromCivil(2024, 3, 1));

    for (const char* truth : {"T", "t", "Y", "y"}) {
        table.Put(record, "ACTIVE", truth);
        EXPECT_TRUE(Logical("active")) << truth;
    }
    for (const char* falsehood : {"F", "f", "N", "n", " ", "?"}) {
        table.Put(record, "ACTIVE", falsehood);
        EXPECT_FALSE(Logical("active")) << falsehood;
    }
    table.Put(record, "AMOUNT", "");
    table.Put(record, "BORN", "");
    EXPECT_DOUBLE_EQ(Number("amount"), 0);
    EXPECT_EQ(Date("born"), 0);
}

TEST_F(Evaluation, MemoFieldsOnlyTellWhetherTheyAreEmpty) {
    EXPECT_TRUE(Logical("empty(note) .and. empty(blob)"));
    table.Put(record, "NOTE", "      1576");
    table.Put(record, "BLOB", Bytes<std::int32_t>(3));
    EXPECT_FALSE(Logical("empty(note)"));
    EXPECT_FALSE(Logical("empty(blob)"));
    table.Put(record, "NOTE", "         0");
    EXPECT_TRUE(Logical("empty(note)"));
    Expression memo = Expression::Compile("empty(note)", table);
    EXPECT_EQ(memo.tree().operands[0].binding.type, 'M');
}

TEST_F(Evaluation, ShortOrMissingRecordsReadAsEmpty) {
    Expression name = Expression::Compile("name", table);
    Expression amount = Expression::Compile("amount", table);
    const std::string_view shortRecord[] = {std::string_view(record).substr(0, 5)};
    EXPECT_EQ(name.EvaluateText({shortRecord, 1, nullptr}), "");
    EXPECT_EQ(name.EvaluateKey({shortRecord, 1, nullptr}), "          ");
    EXPECT_DOUBLE_EQ(amount.EvaluateNumber({{}, 1, nullptr}), 0);
    // Empty pieces pass through every text operation.
    Expression joined = Expression::Compile("padl(name - code, 3) + replicate(name, 2)", table);
    EXPECT_EQ(joined.EvaluateText({{}, 1, nullptr}), "   ");
    EXPECT_EQ(joined.EvaluateKey({{}, 1, nullptr}), std::string(23, ' '));
}

TEST_F(Evaluation, Arithmetic) {
    EXPECT_DOUBLE_EQ(Number("1 + 2 * 3"), 7);
    EXPECT_DOUBLE_EQ(Number("(1 + 2) * 3"), 9);
    EXPECT_DOUBLE_EQ(Number("qty / 8"), 5.25);
    EXPECT_DOUBLE_EQ(Number("qty % 5"), 2);
    EXPECT_DOUBLE_EQ(Number("-7 % 3"), 2);  // the divisor's sign
    EXPECT_DOUBLE_EQ(Number("7 % -3"), -2);
    EXPECT_DOUBLE_EQ(Number("2 ^ 10"), 1024);
    EXPECT_DOUBLE_EQ(Number("2 ** 3 ** 2"), 512);
    EXPECT_DOUBLE_EQ(Number("-2 ^ 2"), -4);
    EXPECT_DOUBLE_EQ(Number("-amount"), 123.45);
    EXPECT_DOUBLE_EQ(Number("amount - -amount"), -246.9);
    EXPECT_TRUE(std::isinf(Number("1 / 0")));
}

TEST_F(Evaluation, TextJoining) {
    EXPECT_EQ(Text("'X' + name"), "XDupont    ");
    EXPECT_EQ(Text("name + code"), "Dupont    AB  ");
    // "-" moves the left side's trailing blanks to the end.
    EXPECT_EQ(Text("name - code"), "DupontAB      ");
    EXPECT_EQ(Text("'ab  ' - 'cd' - 'e'"), "abcde  ");
    EXPECT_EQ(Expression::Compile("name - code + 'Z'", table).length(), 15u);
}

TEST_F(Evaluation, DateArithmetic) {
    const std::int32_t born = JulianFromCivil(1980, 2, 15);
    EXPECT_EQ(Date("born + 14"), born + 14);
    EXPECT_EQ(Date("30 + born"), born + 30);
    EXPECT_EQ(Date("born - 15"), JulianFromCivil(1980, 1, 31));
    EXPECT_DOUBLE_EQ(Number("{^1980-03-01} - born"), 15);  // 1980 is a leap year
    EXPECT_EQ(Date("{} + 5"), 0);
    EXPECT_EQ(Date("born + 100000000"), 0);
}

TEST_F(Evaluation, TextComparisonsFollowTheNonExactRule) {
    EXPECT_TRUE(Logical("name = 'Dup'"));   // up to the right side's length
    EXPECT_TRUE(Logical("name = ''"));      // an empty right side always matches
    EXPECT_FALSE(Logical("'Dup' = name"));  // a shorter left side never matches
    EXPECT_FALSE(Logical("'Dupont' = name"));
    EXPECT_TRUE(Logical("'Dupont    ' = name"));
    EXPECT_TRUE(Logical("'Dupont' < name .and. 'Dupont' <= name .and. 'Dupont' # name"));
    EXPECT_FALSE(Logical("name == 'Dupont'"));  // exact: trailing blanks count
    EXPECT_TRUE(Logical("name == 'Dupont    '"));
    EXPECT_TRUE(Logical("name != 'Dur'"));
    EXPECT_TRUE(Logical("name <> 'Dur'"));
    EXPECT_TRUE(Logical("name # 'Dur'"));
    EXPECT_FALSE(Logical("name # 'Dup'"));
    EXPECT_TRUE(Logical("name < 'E'"));
    EXPECT_TRUE(Logical("name >= 'Dupont'"));
    EXPECT_TRUE(Logical("name <= 'Dupa'") == false);
    EXPECT_TRUE(Logical("name > 'Dupa'"));
    // Bytes, not letters: lower case sorts after upper case, accents after both.
    EXPECT_TRUE(Logical("'a' > 'Z'"));
    EXPECT_TRUE(Logical("'\xC3\xA9' > 'z'"));
    EXPECT_TRUE(Logical("'pon' $ name"));
    EXPECT_FALSE(Logical("'PON' $ name"));
    EXPECT_FALSE(Logical("'' $ name"));
}

TEST_F(Evaluation, OtherComparisonsAndLogic) {
    EXPECT_TRUE(Logical("amount < 0 .and. qty = 42"));
    EXPECT_TRUE(Logical("qty == 42 .and. qty >= 42 .and. qty <= 42 .and. !(qty > 42)"));
    EXPECT_TRUE(Logical("born = {^1980-02-15} .and. born < {^1980-02-16} .and. born > {}"));
    EXPECT_TRUE(Logical("active = .T. .and. active <> .F."));
    EXPECT_TRUE(Logical("active == .y."));
    EXPECT_TRUE(Logical(".F. .or. .not. .F."));
    EXPECT_FALSE(Logical(".T. .and. .F."));
    EXPECT_TRUE(Logical("active AND NOT qty = 1"));
    EXPECT_TRUE(Logical("code = 'AB' .and. amount > -200"));
}

TEST_F(Evaluation, DeletedAndRecno) {
    Expression live =
        Expression::Compile("iif(.not. deleted(), 'X' + name, 'X' + space(10))", table);
    EXPECT_EQ(live.type(), ValueType::Character);
    EXPECT_EQ(live.length(), 11u);
    const std::string_view records[] = {record};
    EXPECT_EQ(live.EvaluateKey({records, 1, nullptr}), "XDupont    ");
    std::string deleted = record;
    deleted[0] = '*';
    const std::string_view deletedRecords[] = {deleted};
    EXPECT_EQ(live.EvaluateKey({deletedRecords, 1, nullptr}), "X          ");

    Expression recno = Expression::Compile("recno() * 2", table);
    EXPECT_DOUBLE_EQ(recno.EvaluateNumber({records, 21, nullptr}), 42);
}

TEST_F(Evaluation, FieldsOfOtherTables) {
    TestTable other("ACF", 1);
    other.Add("LABEL", 'C', 6);
    struct Both : FieldResolver {
        const TestTable* own;
        const TestTable* other;
        std::optional<FieldBinding> Resolve(std::string_view alias,
                                            std::string_view field) const override {
            return alias.empty() ? own->Resolve(alias, field) : other->Resolve(alias, field);
        }
    } both;
    both.own = &table;
    both.other = &other;
    std::string otherRecord = other.Blank();
    other.Put(otherRecord, "LABEL", "Client");
    Expression joined = Expression::Compile("code + acf->label", both);
    const std::string_view records[] = {record, otherRecord};
    EXPECT_EQ(joined.EvaluateText({records, 1, nullptr}), "AB  Client");
    EXPECT_EQ(joined.tree().operands[1].binding.source, 1);
    EXPECT_EQ(joined.EvaluateText({std::span(records, 1), 1, nullptr}), "AB  ");
}

TEST_F(Evaluation, TypeAndNameFaultsGivePositions) {
    auto fault = [&](const std::string& text) {
        try {
            Expression::Compile(text, table);
        } catch (const ExpressionError& error) {
            return std::string(error.what());
        }
        return std::string("no error");
    };
    EXPECT_EQ(fault("name + 1"), "operator + cannot take character and numeric at 5");
    EXPECT_EQ(fault("qty .and. active"), "operator .AND. cannot take numeric and logical at 4");
    EXPECT_EQ(fault("-name"), "operator - cannot take character at 0");
    EXPECT_EQ(fault("born * 2"), "operator * cannot take date and numeric at 5");
    EXPECT_EQ(fault("qty $ 'abc'"), "operator $ cannot take numeric and character at 4");
    EXPECT_EQ(fault("active < .T."), "operator < cannot take logical and logical at 7");
    EXPECT_EQ(fault("1 + nosuch"), "unknown field NOSUCH at 4");
    EXPECT_EQ(fault("xyz->name"), "unknown field XYZ->NAME at 0");
    EXPECT_EQ(fault("upper(note)"), "memo field NOTE not allowed here at 6");
    EXPECT_EQ(fault("empty(note + 'x')"), "memo field NOTE not allowed here at 6");
    EXPECT_EQ(fault("upper(qty)"), "argument 1 of UPPER must be character at 6");
    EXPECT_EQ(fault("iif(qty, 1, 2)"), "argument 1 of IIF must be logical at 4");
    EXPECT_EQ(fault("iif(active, 1, 'a')"),
              "IIF needs arguments of one type, not numeric and character at 15");
    EXPECT_EQ(fault("space(qty)"), "argument 1 of SPACE must be a number literal at 6");
    EXPECT_EQ(fault("space(70000)"), "invalid length for SPACE at 6");
    EXPECT_EQ(fault("replicate(name, 7000)"), "character value too long at 0");

    Expression numeric = Expression::Compile("qty", table);
    const std::string_view records[] = {record};
    EXPECT_THROW(numeric.EvaluateText({records, 1, nullptr}), std::logic_error);
}

}  // namespace
}  // namespace fnrk::engine::expr
