// fennrick table tags|seek|index|reindex FILE, and dump FILE --tag T

#include "cli/table_index_commands.hpp"

#include <unistd.h>

#include <iostream>
#include <memory>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "cli/table_json.hpp"
#include "engine/constants.hpp"
#include "engine/order/index_order.hpp"
#include "engine/order/seek_key.hpp"
#include "engine/order/table_indexes.hpp"
#include "platform/codepage.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;
using engine::cursor::TableCursor;
using engine::order::OpenTag;
using engine::order::TableIndexes;

struct IndexOptions {
    std::string file;
    std::string tag;
    std::string key;
    std::string condition;
    bool soft = false;
    bool last = false;
    bool unique = false;
    bool descending = false;
};

const engine::cursor::EngineSettings& Settings() {
    static const engine::cursor::EngineSettings settings;
    return settings;
}

// A table with its structural index open.
struct IndexedTable {
    std::unique_ptr<TableCursor> cursor;
    std::unique_ptr<TableIndexes> indexes;
};

IndexedTable OpenIndexed(const std::string& file, engine::dbf::OpenRequest request) {
    IndexedTable table;
    table.cursor = std::make_unique<TableCursor>(Settings());
    std::string message;
    if (table.cursor->Open(file, "T", request, message) != AE_SUCCESS)
        throw CommandFailure(message.empty() ? "cannot open " + file : message);
    table.indexes = FollowIndexes(*table.cursor);
    return table;
}

OpenTag& FindTag(IndexedTable& table, const std::string& name) {
    OpenTag* tag = table.indexes->FindTag(platform::Utf8ToCp1252(name));
    if (tag == nullptr) throw CommandFailure("no tag " + name + " in the index of this table");
    return *tag;
}

// Record numbers in the tag's order, deleted records included.
std::vector<std::uint32_t> RecordsInOrder(OpenTag& open) {
    engine::cdx::IndexTag& tag = *open.tag;
    engine::cdx::IndexFile::ReadGuard guard(open.file->file());
    std::vector<std::uint32_t> records;
    for (auto at = tag.First(); at.valid(); at = tag.Next(at)) {
        if (records.size() > tag.WalkLimit()) throw CommandFailure("tag " + tag.name() + " loops");
        records.push_back(tag.EntryAt(at).record);
    }
    if (tag.header().descending) std::reverse(records.begin(), records.end());
    return records;
}

void Tags(const std::string& file) {
    IndexedTable table = OpenIndexed(file, {.exclusive = false, .readOnly = true});
    for (const auto& open : table.indexes->tags()) {
        const auto& header = open->tag->header();
        const std::vector<std::uint32_t> order = RecordsInOrder(*open);
        nlohmann::ordered_json tag;
        tag["tag"] = platform::Cp1252ToUtf8(open->tag->name());
        tag["key"] = platform::Cp1252ToUtf8(header.keyExpression);
        tag["for"] = platform::Cp1252ToUtf8(header.forExpression);
        tag["unique"] = header.unique();
        tag["descending"] = header.descending;
        tag["keycount"] = order.size();
        tag["order"] = order;
        std::cout << tag.dump() << "\n";
    }
}

}  // namespace

void DumpInTagOrder(const std::string& file, const std::string& tagName) {
    IndexedTable table = OpenIndexed(file, {.exclusive = false, .readOnly = true});
    RecordPrinter printer(*table.cursor);
    for (const std::uint32_t record : RecordsInOrder(FindTag(table, tagName)))
        printer.Print(record);
    printer.Finish();
}

namespace {

void Seek(const IndexOptions& options) {
    IndexedTable table = OpenIndexed(options.file, {.exclusive = false, .readOnly = true});
    OpenTag& tag = FindTag(table, options.tag);
    std::string probe;
    if (engine::order::SeekKeyBytes(tag, options.key, engine::ADS_STRINGKEY, probe) != AE_SUCCESS)
        throw CommandFailure("the key does not suit tag " + options.tag);
    engine::order::IndexOrder order(*table.cursor, tag);
    bool found = false;
    if (order.Seek(probe, options.soft, options.last, found) != AE_SUCCESS)
        throw CommandFailure("seek failed");
    std::cout << table.cursor->recordNumber() << "\n";
}

void Index(const IndexOptions& options) {
    IndexedTable table = OpenIndexed(options.file, {.exclusive = true, .readOnly = false});
    const engine::order::TagRequest request{options.tag, platform::Utf8ToCp1252(options.key),
                                            platform::Utf8ToCp1252(options.condition),
                                            options.unique, options.descending};
    std::string message;
    OpenTag* created = nullptr;
    if (table.indexes->CreateTag({}, request, message, created) != AE_SUCCESS)
        throw CommandFailure(message);
}

// A bar on standard error when it is a terminal.
void ShowProgress(std::uint32_t done, std::uint32_t total) {
    constexpr int kWidth = 40;
    const int filled = total == 0 ? kWidth : static_cast<int>(std::uint64_t{done} * kWidth / total);
    std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
              << done << "/" << total << (done == total ? "\n" : "") << std::flush;
}

void Reindex(const std::string& file) {
    IndexedTable table = OpenIndexed(file, {.exclusive = true, .readOnly = false});
    if (::isatty(STDERR_FILENO)) table.indexes->SetProgress(ShowProgress);
    std::string message;
    if (table.indexes->Reindex(message) != AE_SUCCESS) throw CommandFailure(message);
}

void SetUpTableIndexCommands(CLI::App& app) {
    CLI::App* table = app.get_subcommand("table");
    auto options = std::make_shared<IndexOptions>();
    auto addFile = [&](CLI::App* command) {
        command->add_option("FILE", options->file, "table file (.dbf)")->required();
        return command;
    };
    auto addTag = [&](CLI::App* command) {
        command->add_option("--tag", options->tag, "tag name")->required();
        return command;
    };
    addFile(table->add_subcommand("tags", "print every tag of the index as one JSON line"))
        ->callback([options] { Tags(options->file); });
    auto* seek =
        addTag(addFile(table->add_subcommand("seek", "print the record a key finds, or 0")));
    seek->add_option("--key", options->key, "key text (partial keys allowed)")->required();
    seek->add_flag("--soft", options->soft, "stay on the next key when none is equal");
    seek->add_flag("--last", options->last, "find the last equal key");
    seek->callback([options] { Seek(*options); });
    auto* index = addTag(addFile(table->add_subcommand("index", "build a tag of the index")));
    index->add_option("--key", options->key, "key expression")->required();
    index->add_option("--for", options->condition, "FOR condition");
    index->add_flag("--unique", options->unique, "one record per key");
    index->add_flag("--descending", options->descending, "descending order");
    index->callback([options] { Index(*options); });
    addFile(table->add_subcommand("reindex", "rebuild every tag of the index"))
        ->callback([options] { Reindex(options->file); });
}

}  // namespace

std::unique_ptr<TableIndexes> FollowIndexes(TableCursor& table) {
    auto indexes = std::make_unique<TableIndexes>(table, Settings().dates);
    std::string message;
    if (indexes->OpenStructural(message) != AE_SUCCESS)
        throw CommandFailure(message.empty() ? "cannot open the index of the table" : message);
    return indexes;
}

std::vector<std::string> CheckTableIndexes(const std::string& file) {
    IndexedTable table = OpenIndexed(file, {.exclusive = false, .readOnly = true});
    return table.indexes->Check();
}

const CommandRegistration registration("table_index", SetUpTableIndexCommands);

}  // namespace fnrk::cli
