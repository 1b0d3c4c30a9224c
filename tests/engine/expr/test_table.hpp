#pragma once

// An in-memory record layout for expression tests: fields are added in order like a table's
// field descriptors, and records are built as the bytes a table file holds.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine/expr/expression.hpp"

namespace fnrk::engine::expr::testing {

class TestTable : public FieldResolver {
  public:
    // `alias` answers "ALIAS->FIELD" references; `source` is this table's number in the
    // evaluation context.
    explicit TestTable(std::string alias = {}, int source = 0);

    TestTable& Add(const std::string& name, char type, std::uint32_t length,
                   std::uint16_t decimals = 0);
    std::optional<FieldBinding> Resolve(std::string_view alias,
                                        std::string_view field) const override;

    // A blank, not deleted record.
    std::string Blank() const;
    // Writes raw bytes into a field (cut or blank-padded to its length).
    void Put(std::string& record, const std::string& field, std::string_view bytes) const;

  private:
    struct Column {
        std::string name;
        FieldBinding binding;
    };
    std::string alias_;
    int source_;
    std::uint32_t recordLength_ = 1;
    std::vector<Column> columns_;
};

// A result copied out of the expression that made it.
struct Evaluated {
    ValueType type = ValueType::Logical;
    std::string text;
    double number = 0;
    std::int32_t julian = 0;
    bool logical = false;
};

// Compiles `text` against `table` and evaluates it over one record (record number `recno`).
Evaluated EvaluateOn(const std::string& text, const FieldResolver& table, const std::string& record,
                     std::uint32_t recno = 1, const DateSettings* dates = nullptr);

// A test over one table and one record: `table` and `record` are set up by the derived
// fixture, and expressions evaluate over that record as record number 1.
class RecordTest : public ::testing::Test {
  protected:
    std::string Text(const std::string& text, const DateSettings* dates = nullptr) {
        return EvaluateOn(text, table, record, 1, dates).text;
    }
    double Number(const std::string& text) { return EvaluateOn(text, table, record).number; }
    bool Logical(const std::string& text) { return EvaluateOn(text, table, record).logical; }
    std::int32_t Date(const std::string& text, const DateSettings* dates = nullptr) {
        return EvaluateOn(text, table, record, 1, dates).julian;
    }
    std::uint32_t Length(const std::string& text) {
        return Expression::Compile(text, table).length();
    }

    TestTable table;
    std::string record;
};

}  // namespace fnrk::engine::expr::testing
