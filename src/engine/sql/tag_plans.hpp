#pragma once

// Which index tags of a table can answer conditions on a field: tags keyed on the field alone
// (equality and ranges) or on a character field followed by more (equality on that field, a
// leading part of the key). Tags with a FOR condition, unique or descending tags, and tags
// hiding deleted records while the engine shows them, are left out: their key sets do not
// hold every visible record in ascending order.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/sql/field_values.hpp"

struct sqlite3_value;

namespace fnrk::engine::sql {

struct TagPlan {
    std::string tag;
    std::size_t field = 0;  // index into the table's fields
    bool leadingPart = false;
};

std::vector<TagPlan> UsableTags(Operations& engine, Handle table,
                                const std::vector<FieldInfo>& fields, bool showDeleted);

struct ScopeKey {
    std::string bytes;
    std::uint16_t dataType = ADS_STRINGKEY;
};

// The scope key that bounds the tag at a SQL value of its field; none when the value cannot
// bound it (then the tag is walked without that bound, and SQLite checks the rows).
std::optional<ScopeKey> ScopeKeyFor(const FieldInfo& field, const TagPlan& plan,
                                    sqlite3_value* value, bool equality);

}  // namespace fnrk::engine::sql
