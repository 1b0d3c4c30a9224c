// fennrick table tags|seek|index|reindex FILE, and dump FILE --tag T

#include "cli/table_index_commands.hpp"

#include <unistd.h>

#include <iostream>
#include <memory>
#include <set>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "cli/table_json.hpp"
#include "engine/constants.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;
using engine::Handle;

struct IndexOptions {
    TableSource source;
    std::string tag;
    std::string key;
    std::string condition;
    bool soft = false;
    bool last = false;
    bool unique = false;
    bool descending = false;
};

Handle FindTag(const OpenedTable& table, const std::string& name) {
    Handle index = 0;
    if (table.ops().GetIndexHandle(table.handle(), name, index) != AE_SUCCESS || index == 0)
        throw CommandFailure("no tag " + name + " in the index of this table");
    return index;
}

std::uint32_t RecordCount(const OpenedTable& table) {
    std::uint32_t count = 0;
    CheckStatus(table.ops().GetRecordCount(table.handle(), engine::ADS_IGNOREFILTERS, count),
                table.shown());
    return count;
}

// Record numbers in the tag's order, deleted records included (the commands show them all).
std::vector<std::uint32_t> RecordsInOrder(const OpenedTable& table, Handle index,
                                          const std::string& name) {
    engine::Operations& ops = table.ops();
    const std::string walking = "walking tag " + name;
    // A tag lists a record at most once: a longer walk goes round in circles.
    const std::uint32_t limit = RecordCount(table);
    std::vector<std::uint32_t> records;
    CheckEngineStatus(ops, ops.GotoTop(index), walking);
    for (bool atEnd = false;; CheckEngineStatus(ops, ops.Skip(index, 1), walking)) {
        CheckEngineStatus(ops, ops.AtEOF(index, atEnd), walking);
        if (atEnd) break;
        if (records.size() >= limit) throw CommandFailure("tag " + name + " loops");
        std::uint32_t record = 0;
        CheckEngineStatus(ops, ops.GetRecordNum(index, engine::ADS_IGNOREFILTERS, record), walking);
        records.push_back(record);
    }
    return records;
}

struct TagFacts {
    std::string name;
    std::string key;
    std::string condition;
    bool unique = false;
    bool descending = false;
};

TagFacts ReadTagFacts(engine::Operations& ops, Handle index) {
    TagFacts tag;
    CheckEngineStatus(ops, ops.GetIndexName(index, tag.name), "reading a tag");
    CheckEngineStatus(ops, ops.GetIndexExpr(index, tag.key), tag.name);
    CheckEngineStatus(ops, ops.GetIndexCondition(index, tag.condition), tag.name);
    CheckEngineStatus(ops, ops.IsIndexUnique(index, tag.unique), tag.name);
    CheckEngineStatus(ops, ops.IsIndexDescending(index, tag.descending), tag.name);
    return tag;
}

std::vector<Handle> AllTags(const OpenedTable& table) {
    std::vector<Handle> indexes;
    CheckEngineStatus(table.ops(), table.ops().GetAllIndexes(table.handle(), indexes),
                      "reading the tags of " + table.shown());
    return indexes;
}

void Tags(const TableSource& source) {
    OpenedTable table(source, TableAccess::Read);
    for (const Handle index : AllTags(table)) {
        const TagFacts facts = ReadTagFacts(table.ops(), index);
        const std::vector<std::uint32_t> order = RecordsInOrder(table, index, facts.name);
        nlohmann::ordered_json tag;
        tag["tag"] = facts.name;
        tag["key"] = facts.key;
        tag["for"] = facts.condition;
        tag["unique"] = facts.unique;
        tag["descending"] = facts.descending;
        tag["keycount"] = order.size();
        tag["order"] = order;
        std::cout << tag.dump() << "\n";
    }
}

// What is wrong with one tag of a table of `count` records.
void CheckTag(const OpenedTable& table, Handle index, std::uint32_t count,
              std::vector<std::string>& problems) {
    const TagFacts facts = ReadTagFacts(table.ops(), index);
    std::vector<std::uint32_t> order;
    try {
        order = RecordsInOrder(table, index, facts.name);
    } catch (const CommandFailure& failure) {
        problems.push_back(failure.what());
        return;
    }
    std::set<std::uint32_t> seen;
    for (const std::uint32_t record : order)
        if (record < 1 || record > count || !seen.insert(record).second)
            problems.push_back("tag " + facts.name + ": record " + std::to_string(record) +
                               " is listed twice or does not exist");
    // Only a tag without condition or uniqueness lists every record.
    if (!facts.condition.empty() || facts.unique) return;
    for (std::uint32_t record = 1; record <= count; ++record)
        if (!seen.contains(record))
            problems.push_back("tag " + facts.name + ": record " + std::to_string(record) +
                               " is missing");
}

}  // namespace

void DumpInTagOrder(const TableSource& source, const std::string& tagName) {
    OpenedTable table(source, TableAccess::Read);
    RecordPrinter printer(table);
    for (const std::uint32_t record : RecordsInOrder(table, FindTag(table, tagName), tagName))
        printer.Print(record);
    printer.Finish();
}

std::vector<std::string> CheckSqlTable(const TableSource& source) {
    OpenedTable table(source, TableAccess::Read);
    std::vector<std::string> problems;
    const std::uint32_t count = RecordCount(table);
    const std::vector<FieldShape> fields = ReadFieldShapes(table);
    for (std::uint32_t record = 1; record <= count; ++record) {
        try {
            CheckStatus(table.ops().GotoRecord(table.handle(), record), "reading");
            static_cast<void>(RecordToJson(table, fields));
        } catch (const CommandFailure& failure) {
            problems.push_back("record " + std::to_string(record) + ": " + failure.what());
        }
    }
    for (const Handle index : AllTags(table)) CheckTag(table, index, count, problems);
    return problems;
}

namespace {

void Seek(const IndexOptions& options) {
    OpenedTable table(options.source, TableAccess::Read);
    engine::Operations& ops = table.ops();
    const Handle index = FindTag(table, options.tag);
    bool found = false;
    const engine::Status status =
        options.last ? ops.SeekLast(index, options.key, engine::ADS_STRINGKEY, found)
                     : ops.Seek(index, options.key, engine::ADS_STRINGKEY,
                                options.soft ? engine::ADS_SOFTSEEK : engine::ADS_HARDSEEK, found);
    CheckWithReason(ops, status, "the key does not suit tag " + options.tag);
    std::uint32_t record = 0;
    bool atEnd = false;
    CheckEngineStatus(ops, ops.AtEOF(index, atEnd), "seek");
    if (!atEnd)
        CheckEngineStatus(ops, ops.GetRecordNum(index, engine::ADS_IGNOREFILTERS, record), "seek");
    std::cout << record << "\n";
}

void Index(const IndexOptions& options) {
    OpenedTable table(options.source, TableAccess::Exclusive);
    std::uint32_t flags = engine::ADS_COMPOUND;
    if (options.unique) flags |= engine::ADS_UNIQUE;
    if (options.descending) flags |= engine::ADS_DESCENDING;
    Handle created = 0;
    CheckWithReason(table.ops(),
                    table.ops().CreateIndex(table.handle(), "", options.tag, options.key,
                                            options.condition, "", flags, created),
                    "cannot build tag " + options.tag);
}

// A bar on standard error, drawn while standard error is a terminal.
std::uint32_t ShowProgress(std::uint16_t percent, std::uint32_t /*id*/) {
    constexpr int kWidth = 40;
    const int filled = std::min<int>(percent, 100) * kWidth / 100;
    std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
              << percent << "%" << (percent >= 100 ? "\n" : "") << std::flush;
    return 0;  // go on
}

void Reindex(const TableSource& source) {
    OpenedTable table(source, TableAccess::Exclusive);
    engine::Operations& ops = table.ops();
    const bool progress = ::isatty(STDERR_FILENO) != 0;
    if (progress) CheckEngineStatus(ops, ops.RegisterCallbackFunction(ShowProgress, 0), "progress");
    const engine::Status status = ops.Reindex(table.handle());
    if (progress) engine::IgnoreStatus(ops.ClearCallbackFunction());  // the bar only stops
    CheckWithReason(ops, status, "cannot rebuild the index of " + table.shown());
}

void SetUpTableIndexCommands(CLI::App& app) {
    CLI::App* table = app.get_subcommand("table");
    auto options = std::make_shared<IndexOptions>();
    auto addSource = [&](CLI::App* command) { return AddTableSource(command, options->source); };
    auto addTag = [&](CLI::App* command) {
        command->add_option("--tag", options->tag, "tag name")->required();
        return command;
    };
    addSource(table->add_subcommand("tags", "print every tag of the index as one JSON line"))
        ->callback([options] { Tags(options->source); });
    auto* seek =
        addTag(addSource(table->add_subcommand("seek", "print the record a key finds, or 0")));
    seek->add_option("--key", options->key, "key text (partial keys allowed)")->required();
    seek->add_flag("--soft", options->soft, "stay on the next key when none is equal");
    seek->add_flag("--last", options->last, "find the last equal key");
    seek->callback([options] { Seek(*options); });
    auto* index = addTag(addSource(table->add_subcommand("index", "build a tag of the index")));
    index->add_option("--key", options->key, "key expression")->required();
    index->add_option("--for", options->condition, "FOR condition");
    index->add_flag("--unique", options->unique, "one record per key");
    index->add_flag("--descending", options->descending, "descending order");
    index->callback([options] { Index(*options); });
    addSource(table->add_subcommand("reindex", "rebuild every tag of the index"))
        ->callback([options] { Reindex(options->source); });
}

}  // namespace

const CommandRegistration registration("table_index", SetUpTableIndexCommands);

}  // namespace fnrk::cli
