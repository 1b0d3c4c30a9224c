#pragma once

// How one tag makes keys from records: its key expression (and FOR condition) compiled over the
// table's fields, and the key bytes each record gets.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/cdx/index_key.hpp"
#include "engine/dbf/table_header.hpp"
#include "engine/expr/expression.hpp"

namespace fnrk::engine::order {

class TagKeys {
  public:
    // Throws expr::ExpressionError for an expression that does not compile over the table, and
    // std::invalid_argument for a FOR condition that is not logical or an empty key. Text keys
    // longer than cdx::kMaxKeyLength are cut to it.
    TagKeys(std::string_view keyExpression, std::string_view forExpression,
            const dbf::TableHeader& header, const expr::DateSettings& dates);

    cdx::KeyKind kind() const { return kind_; }
    std::size_t keyLength() const { return keyLength_; }

    // The record's key, or nothing when it does not satisfy the FOR condition. `record` holds the
    // deletion flag byte first, so keys over DELETED() follow deletes and recalls.
    std::optional<std::string> KeyOf(std::string_view record, std::uint32_t recordNumber);
    // The same key written into keyLength() bytes at `out`, without allocating; false when the
    // record does not satisfy the FOR condition.
    bool WriteKey(std::string_view record, std::uint32_t recordNumber, char* out);

  private:
    expr::Expression key_;
    std::optional<expr::Expression> condition_;
    const expr::DateSettings* dates_;
    cdx::KeyKind kind_;
    std::size_t keyLength_;
};

// The kind of key an expression's value type gives.
cdx::KeyKind KeyKindOf(expr::ValueType type);

// A stored key expression's kind over a table (character when it does not compile).
cdx::KeyKind KeyKindOfExpression(const std::string& expression, const dbf::TableHeader& header);

}  // namespace fnrk::engine::order
