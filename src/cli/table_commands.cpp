// fennrick table info|dump|create|load|delete|recall|pack|zap|check FILE

#include <iostream>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "cli/table_index_commands.hpp"
#include "cli/table_json.hpp"
#include "engine/dbf/field_list.hpp"
#include "engine/dbf/table_check.hpp"
#include "platform/codepage.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;
using engine::cursor::TableCursor;

struct TableOptions {
    std::string file;
    std::string fields;
    std::uint32_t recno = 0;
    std::string tag;
};

// Settings of the command line's engine: the defaults, deleted records shown.
const engine::cursor::EngineSettings& Settings() {
    static const engine::cursor::EngineSettings settings;
    return settings;
}

std::unique_ptr<TableCursor> OpenTable(const std::string& file, engine::dbf::OpenRequest request) {
    auto table = std::make_unique<TableCursor>(Settings());
    std::string message;
    const engine::Status status = table->Open(file, "T", request, message);
    if (status != AE_SUCCESS)
        throw CommandFailure(message.empty() ? "cannot open " + file : message);
    return table;
}

void Info(const std::string& file) {
    auto table = OpenTable(file, {.exclusive = false, .readOnly = true});
    const auto& header = table->header();
    nlohmann::ordered_json info;
    info["version"] = header.version;
    info["recordCount"] = header.recordCount;
    info["recordLength"] = header.recordLength;
    info["fields"] = nlohmann::ordered_json::array();
    for (const auto& field : header.fields) {
        info["fields"].push_back({{"name", platform::Cp1252ToUtf8(field.name)},
                                  {"type", std::string(1, field.type)},
                                  {"length", field.length},
                                  {"decimals", field.decimals}});
    }
    std::cout << info.dump() << "\n";
}

void Dump(const std::string& file) {
    auto table = OpenTable(file, {.exclusive = false, .readOnly = true});
    std::uint32_t count = 0;
    CheckStatus(table->Count(false, count), file);
    RecordPrinter printer(*table);
    for (std::uint32_t recno = 1; recno <= count; ++recno) printer.Print(recno);
    printer.Finish();
}

void Create(const std::string& file, const std::string& fieldList) {
    std::vector<engine::dbf::Field> fields;
    if (std::string problem = engine::dbf::ParseFieldList(fieldList, fields); !problem.empty())
        throw CommandFailure("bad field list: " + problem);
    std::string message;
    if (engine::dbf::TableFile::Create(file, std::move(fields), 0, message) != AE_SUCCESS)
        throw CommandFailure(message);
}

void Load(const std::string& file) {
    auto table = OpenTable(file, {.exclusive = false, .readOnly = false});
    const auto indexes = FollowIndexes(*table);
    std::string line;
    std::size_t lineNumber = 0;
    while (std::getline(std::cin, line)) {
        ++lineNumber;
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        try {
            AppendRecordFromJson(*table, nlohmann::json::parse(line));
        } catch (const nlohmann::json::exception& error) {
            throw CommandFailure("line " + std::to_string(lineNumber) + ": " + error.what());
        } catch (const CommandFailure& failure) {
            throw CommandFailure("line " + std::to_string(lineNumber) + ": " + failure.what());
        }
    }
    if (table->Flush() != AE_SUCCESS) throw CommandFailure("cannot write " + file);
}

void SetDeleted(const std::string& file, std::uint32_t recno, bool deleted) {
    auto table = OpenTable(file, {.exclusive = false, .readOnly = false});
    const auto indexes = FollowIndexes(*table);
    // A record number past the end leaves the table at its end, which the next line names.
    engine::IgnoreStatus(table->GotoRecord(recno));
    if (table->atEof()) throw CommandFailure("no record " + std::to_string(recno) + " in " + file);
    const engine::Status status = table->SetDeleted(deleted);
    if (status != AE_SUCCESS)
        throw CommandFailure("cannot change record " + std::to_string(recno) + ": status " +
                             std::to_string(status));
}

void Reorganise(const std::string& file, bool zap) {
    auto table = OpenTable(file, {.exclusive = true, .readOnly = false});
    const auto indexes = FollowIndexes(*table);
    std::string message;
    const engine::Status status = zap ? table->Zap(message) : table->Pack(message);
    if (status != AE_SUCCESS)
        throw CommandFailure(message.empty() ? "status " + std::to_string(status) : message);
}

void Check(const std::string& file) {
    std::vector<std::string> problems = engine::dbf::CheckTable(file);
    // The tags too, unless the table itself cannot be opened for them (that is reported).
    try {
        for (std::string& problem : CheckTableIndexes(file)) problems.push_back(std::move(problem));
    } catch (const CommandFailure& failure) {
        if (problems.empty()) problems.push_back(failure.what());
    }
    if (problems.empty()) {
        std::cout << file << ": ok\n";
        return;
    }
    std::string text = file + ":";
    for (const std::string& problem : problems) text += "\n  " + problem;
    throw CommandFailure(text, 1);
}

void SetUpTableCommands(CLI::App& app) {
    auto* table = app.add_subcommand("table", "read, write and check DBF tables");
    table->require_subcommand(1);
    auto options = std::make_shared<TableOptions>();
    auto addFile = [&](CLI::App* command) {
        command->add_option("FILE", options->file, "table file (.dbf)")->required();
        return command;
    };

    addFile(table->add_subcommand("info", "print the structure as JSON"))->callback([options] {
        Info(options->file);
    });
    auto* dump = addFile(table->add_subcommand("dump", "print every record as one JSON line"));
    dump->add_option("--tag", options->tag, "in the order of this index tag");
    dump->callback([options] {
        options->tag.empty() ? Dump(options->file) : DumpInTagOrder(options->file, options->tag);
    });
    auto* create = addFile(table->add_subcommand("create", "create an empty table"));
    create->add_option("--fields", options->fields, "NAME,TYPE,LENGTH,DECIMALS;...")->required();
    create->callback([options] { Create(options->file, options->fields); });
    addFile(table->add_subcommand("load", "append records read as JSON lines on standard input"))
        ->callback([options] { Load(options->file); });
    for (const bool deleted : {true, false}) {
        auto* command = addFile(
            table->add_subcommand(deleted ? "delete" : "recall",
                                  deleted ? "mark a record deleted" : "recall a deleted record"));
        command->add_option("--recno", options->recno, "record number")->required();
        command->callback(
            [options, deleted] { SetDeleted(options->file, options->recno, deleted); });
    }
    addFile(table->add_subcommand("pack", "remove deleted records"))->callback([options] {
        Reorganise(options->file, false);
    });
    addFile(table->add_subcommand("zap", "remove every record"))->callback([options] {
        Reorganise(options->file, true);
    });
    addFile(
        table->add_subcommand("check", "verify header, record count, memo blocks and index tags"))
        ->callback([options] { Check(options->file); });
}

const CommandRegistration registration("table", SetUpTableCommands);

}  // namespace
}  // namespace fnrk::cli
