#pragma once

// What the statements of one connection reach: the engine's operations over the connection's
// tables, the passwords given for encrypted tables, the views of a data dictionary, and the
// fields of every table a statement has named (to type the columns of its cursor).

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/operations.hpp"
#include "engine/sql/field_values.hpp"
#include "engine/sql/row_id.hpp"

namespace fnrk::engine::sql {

// The SQL text of the view `name` of the connection's data dictionary, if it has one.
using ViewLookup =
    std::function<std::optional<std::string>(Handle connection, std::string_view name)>;

struct TableSource {
    TableSource(Operations& engine, Handle connection) : engine(engine), connection(connection) {}

    Operations& engine;
    Handle connection = 0;
    std::uint16_t lockType = ADS_COMPATIBLE_LOCKING;
    std::uint16_t checkRights = ADS_IGNORERIGHTS;
    std::string password;                          // for every encrypted table
    std::map<std::string, std::string> passwords;  // by upper-case table name
    ViewLookup views;
    // Fields of the tables declared so far, by upper-case name as the statement wrote it.
    std::map<std::string, std::vector<FieldInfo>> declaredTables;
    std::uint32_t nextAlias = 0;
    // Set once the statement has opened an encrypted table: its cursor must not be plain.
    bool readsEncrypted = false;
    RowIdStyle rowIds = RowIdStyle::Base64;

    // Opens the table file `path` shared under a private alias, with its password when it is
    // encrypted. The message says what failed.
    [[nodiscard]] Status OpenTable(const std::string& path, bool readOnly, Handle& table,
                                   std::string& message);
};

}  // namespace fnrk::engine::sql
