#include "test_table.hpp"

#include <algorithm>
#include <stdexcept>

namespace fnrk::engine::expr::testing {
namespace {

std::string Upper(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return result;
}

}  // namespace

TestTable::TestTable(std::string alias, int source) : alias_(Upper(alias)), source_(source) {}

TestTable& TestTable::Add(const std::string& name, char type, std::uint32_t length,
                          std::uint16_t decimals) {
    columns_.push_back({Upper(name), FieldBinding{source_, type, recordLength_, length, decimals}});
    recordLength_ += length;
    return *this;
}

std::optional<FieldBinding> TestTable::Resolve(std::string_view alias,
                                               std::string_view field) const {
    if (!alias.empty() && Upper(alias) != alias_) return std::nullopt;
    for (const Column& column : columns_) {
        if (column.name == Upper(field)) return column.binding;
    }
    return std::nullopt;
}

std::string TestTable::Blank() const {
    return std::string(recordLength_, ' ');
}

void TestTable::Put(std::string& record, const std::string& field, std::string_view bytes) const {
    for (const Column& column : columns_) {
        if (column.name != Upper(field)) continue;
        std::string value(bytes.substr(0, column.binding.length));
        value.resize(column.binding.length, ' ');
        record.replace(column.binding.offset, column.binding.length, value);
        return;
    }
    throw std::invalid_argument("no field " + field);
}

Evaluated EvaluateOn(const std::string& text, const FieldResolver& table, const std::string& record,
                     std::uint32_t recno, const DateSettings* dates) {
    Expression expression = Expression::Compile(text, table, dates ? *dates : DateSettings{});
    const std::string_view records[] = {record};
    const Value value = expression.Evaluate(EvaluationContext{records, recno, dates});
    return {value.type, std::string(value.text), value.number, value.julian, value.logical};
}

}  // namespace fnrk::engine::expr::testing
