#pragma once

// One statement run through SQLite: a fresh in-memory database per run, so that table names
// resolve against the tables open at that moment (open aliases first, then the views of the
// connection's data dictionary, then table files of the connection's folder).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "engine/sql/field_values.hpp"
#include "engine/sql/table_source.hpp"

namespace fnrk::engine::sql {

using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string>;

struct ResultColumn {
    std::string name;
    std::optional<FieldInfo> source;  // the table field the column shows, when it is one
};

struct StatementResult {
    bool query = false;
    std::vector<ResultColumn> columns;
    std::vector<std::vector<SqlValue>> rows;
    std::uint64_t changes = 0;
};

enum class RunMode { PrepareOnly, Execute };

// On failure the message gives the reason and, when SQLite knows it, the position (1-based, in
// the statement as given); writes of a failed statement are not applied.
[[nodiscard]] Status RunStatement(TableSource& source, std::string_view statement, RunMode mode,
                                  StatementResult& result, std::string& message);

}  // namespace fnrk::engine::sql
