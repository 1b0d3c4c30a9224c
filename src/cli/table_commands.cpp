// fennrick table info|dump|create|load|delete|recall|pack|zap|check FILE

#include <iostream>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "cli/password_file.hpp"
#include "cli/table_access.hpp"
#include "cli/table_index_commands.hpp"
#include "cli/table_json.hpp"
#include "engine/constants.hpp"
#include "engine/table_files.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;

struct TableOptions {
    TableSource source;
    std::string fields;
    std::uint32_t recno = 0;
    std::string tag;
};

void Info(const std::string& file) {
    engine::TableFileStructure structure;
    std::string message;
    if (engine::ReadTableFileStructure(file, structure, message) != AE_SUCCESS)
        throw CommandFailure(message);
    nlohmann::ordered_json info;
    info["version"] = structure.version;
    info["recordCount"] = structure.recordCount;
    info["recordLength"] = structure.recordLength;
    info["fields"] = nlohmann::ordered_json::array();
    for (const auto& field : structure.fields) {
        info["fields"].push_back({{"name", field.name},
                                  {"type", std::string(1, field.type)},
                                  {"length", field.length},
                                  {"decimals", field.decimals}});
    }
    std::cout << info.dump() << "\n";
}

// A table file whose index cannot be opened is still dumped, in record order, with a word on it.
std::unique_ptr<OpenedTable> OpenToDump(const TableSource& source) {
    try {
        return std::make_unique<OpenedTable>(source, TableAccess::Read);
    } catch (const CommandFailure& failure) {
        if (source.file.empty()) throw;
        std::unique_ptr<OpenedTable> table;
        try {
            table = std::make_unique<OpenedTable>(source, WithoutIndexes{});
        } catch (const CommandFailure&) {
            throw failure;  // the table itself cannot be read: the first reason tells it
        }
        std::cerr << "fennrick: the index of " << source.Shown() << " could not be opened ("
                  << failure.what() << "): the table is dumped in record order\n";
        return table;
    }
}

void Dump(const TableSource& source) {
    const std::unique_ptr<OpenedTable> opened = OpenToDump(source);
    OpenedTable& table = *opened;
    std::uint32_t count = 0;
    CheckStatus(table.ops().GetRecordCount(table.handle(), engine::ADS_IGNOREFILTERS, count),
                table.shown());
    RecordPrinter printer(table);
    for (std::uint32_t recno = 1; recno <= count; ++recno) printer.Print(recno);
    printer.Finish();
}

void Create(const TableSource& source, const std::string& fieldList) {
    OpenedTable table(source, NewTable{fieldList});
}

void Load(const TableSource& source) {
    OpenedTable table(source, TableAccess::Write);
    const std::vector<FieldShape> fields = ReadFieldShapes(table);
    std::string line;
    std::size_t lineNumber = 0;
    while (std::getline(std::cin, line)) {
        ++lineNumber;
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        try {
            AppendRecordFromJson(table, fields, nlohmann::json::parse(line));
        } catch (const nlohmann::json::exception& error) {
            throw CommandFailure("line " + std::to_string(lineNumber) + ": " + error.what());
        } catch (const CommandFailure& failure) {
            throw CommandFailure("line " + std::to_string(lineNumber) + ": " + failure.what());
        }
    }
    if (table.ops().FlushFileBuffers(table.handle()) != AE_SUCCESS)
        throw CommandFailure("cannot write " + table.shown());
}

void SetDeleted(const TableSource& source, std::uint32_t recno, bool deleted) {
    OpenedTable table(source, TableAccess::Write);
    engine::Operations& ops = table.ops();
    // A record number past the end leaves the table at its end, which the next line names.
    engine::IgnoreStatus(ops.GotoRecord(table.handle(), recno));
    bool atEnd = true;
    engine::IgnoreStatus(ops.AtEOF(table.handle(), atEnd));  // a failed answer stays "at the end"
    if (atEnd) throw CommandFailure("no record " + std::to_string(recno) + " in " + table.shown());
    const engine::Status status =
        deleted ? ops.DeleteRecord(table.handle()) : ops.RecallRecord(table.handle());
    if (status != AE_SUCCESS)
        throw CommandFailure("cannot change record " + std::to_string(recno) + ": status " +
                             std::to_string(status));
}

void Reorganise(const TableSource& source, bool zap) {
    OpenedTable table(source, TableAccess::Exclusive);
    engine::Operations& ops = table.ops();
    const engine::Status status =
        zap ? ops.ZapTable(table.handle()) : ops.PackTable(table.handle());
    CheckWithReason(ops, status, "status " + std::to_string(status));
}

void Check(const TableSource& source) {
    std::vector<std::string> problems =
        source.database.empty()
            ? engine::CheckTableFiles(source.file, source.passwordFile.empty()
                                                       ? std::string()
                                                       : ReadPasswordFile(source.passwordFile))
            : CheckSqlTable(source);
    if (problems.empty()) {
        std::cout << source.Shown() << ": ok\n";
        return;
    }
    std::string text = source.Shown() + ":";
    for (const std::string& problem : problems) text += "\n  " + problem;
    throw CommandFailure(text, 1);
}

void SetUpTableCommands(CLI::App& app) {
    auto* table = app.add_subcommand("table", "read, write and check DBF and SQL-kept tables");
    table->require_subcommand(1);
    auto options = std::make_shared<TableOptions>();
    auto addFile = [&](CLI::App* command) {
        command->add_option("FILE", options->source.file, "table file (.dbf)")->required();
        return command;
    };
    auto addSource = [&](CLI::App* command) { return AddTableSource(command, options->source); };

    addFile(table->add_subcommand("info", "print the structure as JSON"))->callback([options] {
        Info(options->source.file);
    });
    auto* dump = addSource(table->add_subcommand("dump", "print every record as one JSON line"));
    dump->add_option("--tag", options->tag, "in the order of this index tag");
    dump->callback([options] {
        options->tag.empty() ? Dump(options->source)
                             : DumpInTagOrder(options->source, options->tag);
    });
    auto* create = addSource(table->add_subcommand("create", "create an empty table"));
    create->add_option("--fields", options->fields, "NAME,TYPE,LENGTH,DECIMALS;...")->required();
    create->callback([options] { Create(options->source, options->fields); });
    addSource(table->add_subcommand("load", "append records read as JSON lines on standard input"))
        ->callback([options] { Load(options->source); });
    for (const bool deleted : {true, false}) {
        auto* command = addSource(
            table->add_subcommand(deleted ? "delete" : "recall",
                                  deleted ? "mark a record deleted" : "recall a deleted record"));
        command->add_option("--recno", options->recno, "record number")->required();
        command->callback(
            [options, deleted] { SetDeleted(options->source, options->recno, deleted); });
    }
    addSource(table->add_subcommand("pack", "remove deleted records"))->callback([options] {
        Reorganise(options->source, false);
    });
    addSource(table->add_subcommand("zap", "remove every record"))->callback([options] {
        Reorganise(options->source, true);
    });
    addSource(
        table->add_subcommand("check", "verify header, record count, memo blocks and index tags"))
        ->callback([options] { Check(options->source); });
}

const CommandRegistration registration("table", SetUpTableCommands);

}  // namespace
}  // namespace fnrk::cli
