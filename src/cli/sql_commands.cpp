// fennrick sql DIR "STATEMENT": runs one statement over the tables of a folder and prints the
// rows of a query as JSON lines, one object of column name to value per row.

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "engine/engine.hpp"
#include "engine/sql/field_values.hpp"
#include "platform/text.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;
using engine::Handle;
using engine::Status;

struct SqlOptions {
    std::string folder;
    std::string statement;
    bool deleted = false;
};

// Text without its padding, numbers as numbers, dates as "YYYY-MM-DD"; blanks are null.
nlohmann::ordered_json FieldJson(engine::Engine& engine, Handle cursor,
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
    engine::Engine engine;
    Handle connection = 0, statement = 0, cursor = 0;
    CheckEngineStatus(engine,
                      engine.Connect26(options.folder, engine::ADS_LOCAL_SERVER, connection),
                      "cannot use folder " + options.folder);
    CheckEngineStatus(engine, engine.ShowDeleted(options.deleted), "settings");
    CheckEngineStatus(engine, engine.CreateSQLStatement(connection, statement), "statement");
    CheckEngineStatus(engine, engine.ExecuteSQLDirect(statement, options.statement, cursor), "SQL");
    if (cursor == 0) return;
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
    CheckEngineStatus(engine, engine.CloseSQLStatement(statement), "statement");
}

void SetUpSqlCommand(CLI::App& app) {
    auto options = std::make_shared<SqlOptions>();
    auto* command = app.add_subcommand(
        "sql", "run a SQL statement over the tables of a folder; query rows as JSON lines");
    command->add_option("DIR", options->folder, "folder of the tables")->required();
    command->add_option("STATEMENT", options->statement, "the statement")->required();
    command->add_flag("--deleted", options->deleted, "let the statement see deleted records");
    command->callback([options] { Run(*options); });
}

const CommandRegistration registration("sql", SetUpSqlCommand);

}  // namespace
}  // namespace fnrk::cli
