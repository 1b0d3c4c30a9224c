#pragma once

// What the backend knows of one table: its fields in the table file's record layout and its
// index tags, each with its key expression compiled against that layout.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/dbf/field.hpp"
#include "engine/expr/expression.hpp"

namespace fnrk::backend {

enum class KeyType { Character, Numeric, Date, Logical };

struct IndexTag {
    std::string name;  // upper case
    std::string expression;
    std::string condition;  // FOR condition, empty for none
    std::uint32_t options = 0;
    KeyType keyType = KeyType::Character;
    std::uint16_t keyLength = 0;
    // Compiled lazily per use would allocate; kept here, evaluated on the table's buffer.
    std::shared_ptr<engine::expr::Expression> key;
    std::shared_ptr<engine::expr::Expression> filter;
    bool descending() const;
    bool unique() const;
};

struct TableLayout {
    std::string name;  // SQL table name: the file's upper-case stem
    std::vector<engine::dbf::Field> fields;
    std::uint32_t recordLength = 1;  // deletion flag included
    std::vector<IndexTag> tags;

    const engine::dbf::Field* Find(std::string_view fieldName) const;
    std::optional<std::size_t> TagIndex(std::string_view tagName) const;
    // The record buffer of a blank record.
    std::string BlankRecord() const;
};

// Fills in offsets and the record length from the fields' lengths.
void ArrangeFields(TableLayout& layout);

// The field list text that rebuilds `fields` ("NAME,C,10,0;...").
std::string FieldListText(const std::vector<engine::dbf::Field>& fields);

// Compiles the key and condition; throws engine::expr::ExpressionError.
IndexTag MakeTag(const TableLayout& layout, std::string_view name, std::string_view expression,
                 std::string_view condition, std::uint32_t options);

// The key of a record for a tag, as index keys compare (bytes); no value when the record does
// not satisfy the tag's FOR condition.
std::optional<std::string> KeyOf(const IndexTag& tag, const std::string& record,
                                 std::uint32_t recordNumber);

// Upper case, with anything but letters, digits and "_" made "_".
std::string SqlName(std::string_view name);

// A table's SQL name for a file name or alias: the upper-case stem.
std::string TableNameOf(std::string_view fileName);

// Binds the fields of a layout for the expression compiler.
class LayoutResolver final : public engine::expr::FieldResolver {
  public:
    explicit LayoutResolver(const TableLayout& layout) : layout_(layout) {}
    std::optional<engine::expr::FieldBinding> Resolve(std::string_view alias,
                                                      std::string_view field) const override;

  private:
    const TableLayout& layout_;
};

}  // namespace fnrk::backend
