// fennrick sql DIR "STATEMENT", or sql --database URL "STATEMENT": runs one statement over the
// tables of a folder or of a SQL database and prints the rows of a query as JSON lines, one
// object of column name to value per row.

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "cli/table_access.hpp"
#include "engine/constants.hpp"
#include "engine/sql/field_values.hpp"
#include "platform/text.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;
using engine::Handle;
using engine::Status;

struct SqlOptions {
    std::vector<std::string> arguments;  // DIR and STATEMENT, or STATEMENT after --database
    std::string database;
    bool deleted = false;
};

// Text without its padding, numbers as numbers, dates as "YYYY-MM-DD"; blanks are null.
nlohmann::ordered_json FieldJson(engine::Operations& engine, Handle cursor,
                                 const engine::sql::FieldInfo& field) {
    std::string text;
    if (field.type == engine::ADS_LOGICAL) {
        bool value = false;
        CheckEngineStatus(engine, engine.GetLogical(cursor, field.name, value), field.name);
        return value;
    }
    if (field.type == engine::ADS_DATE) {
        std::int32_t julian = 0;
        CheckEngineStatus(engine, engine.GetJulian(cursor, field.name, julian), field.name);
        if (julian == 0) return nullptr;
        return engine::sql::IsoDate(julian);
    }
    CheckEngineStatus(engine, engine.GetString(cursor, field.name, text, engine::ADS_RTRIM),
                      field.name);
    if (field.type != engine::ADS_NUMERIC) return text;
    if (platform::Trim(text).empty()) return nullptr;
    double number = 0;
    CheckEngineStatus(engine, engine.GetDouble(cursor, field.name, number), field.name);
    if (field.decimals == 0) return static_cast<std::int64_t>(number);
    return number;
}

void Run(const SqlOptions& options) {
    const std::size_t wanted = options.database.empty() ? 2 : 1;
    if (options.arguments.size() != wanted)
        throw CommandFailure(options.database.empty() ? "give DIR and STATEMENT"
                                                      : "give STATEMENT only with --database");
    const std::string& text = options.arguments.back();
    const std::string where = options.database.empty() ? "folder " + options.arguments.front()
                                                       : std::string("the database");
    engine::Operations& engine = tables::SharedSqlDatabase();
    Handle connection = 0, statement = 0, cursor = 0;
    const std::string path =
        options.database.empty() ? options.arguments.front() : ConnectionPathOf(options.database);
    CheckEngineStatus(engine, engine.Connect26(path, engine::ADS_LOCAL_SERVER, connection),
                      "cannot use " + where);
    CheckEngineStatus(engine, engine.ShowDeleted(options.deleted), "settings");
    CheckEngineStatus(engine, engine.CreateSQLStatement(connection, statement), "statement");
    CheckEngineStatus(engine, engine.ExecuteSQLDirect(statement, text, cursor), "SQL");
    if (cursor != 0) {
        std::vector<engine::sql::FieldInfo> fields;
        CheckEngineStatus(engine, engine::sql::ReadFieldInfos(engine, cursor, fields), "cursor");
        bool eof = false;
        for (CheckEngineStatus(engine, engine.GotoTop(cursor), "cursor");
             engine.AtEOF(cursor, eof) == AE_SUCCESS && !eof;
             CheckEngineStatus(engine, engine.Skip(cursor, 1), "cursor")) {
            nlohmann::ordered_json row = nlohmann::ordered_json::object();
            for (const auto& field : fields) row[field.name] = FieldJson(engine, cursor, field);
            std::cout << row.dump() << '\n';
        }
    }
    CheckEngineStatus(engine, engine.CloseSQLStatement(statement), "statement");
    CheckEngineStatus(engine, engine.Disconnect(connection), "disconnect");
}

void SetUpSqlCommand(CLI::App& app) {
    auto options = std::make_shared<SqlOptions>();
    auto* command = app.add_subcommand(
        "sql",
        "run a SQL statement over the tables of a folder or a SQL database; query rows "
        "as JSON lines");
    command
        ->add_option("ARGUMENTS", options->arguments,
                     "DIR STATEMENT, or STATEMENT alone with --database")
        ->required();
    command->add_option("--database", options->database,
                        "SQL database: sqlite:PATH, postgresql://... or a libpq connection string");
    command->add_flag("--deleted", options->deleted, "let the statement see deleted records");
    command->callback([options] { Run(*options); });
}

const CommandRegistration registration("sql", SetUpSqlCommand);

}  // namespace
}  // namespace fnrk::cli
