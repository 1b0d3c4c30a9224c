// A table with its memo file and compound index, damaged together: the input is a list of
// edits (file, offset, byte; or a cut) applied to a small sound set that the engine writes at
// start-up, so that every run starts from files deep enough to reach records, memos and tags.
// Each damaged set is opened read-only through the engine and walked in natural order and in
// every tag's order both ways, with seeks, key counts and every field read, then checked. The
// walks are bounded only by the records: a loop shows up as a timeout. Nothing may be written
// to the files.

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "engine/dbf/table_check.hpp"
#include "engine/engine.hpp"
#include "engine/io/fuzz_scratch_file.hpp"
#include "engine/order/table_indexes.hpp"

namespace {

using namespace fnrk::engine;

constexpr std::array<const char*, 3> kExtensions = {".dbf", ".fpt", ".cdx"};

std::string Folder() {
    static const std::string folder = [] {
        std::string path = io::ScratchPath("-tables");
        ::mkdir(path.c_str(), 0700);
        return path;
    }();
    return folder;
}

std::string FilePath(std::size_t which) {
    return Folder() + "/T" + kExtensions[which];
}

// Building the sound set must work: a step that fails makes fuzzing it moot.
void Must(Status status) {
    if (status != AE_SUCCESS) std::abort();
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    io::WriteScratch(path, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

// Thirty records with texts, numbers, dates, logicals and memos of several sizes, deleted ones
// among them, and tags of every kind: character, numeric, date, descending, unique, FOR.
std::array<std::string, 3> SoundSet() {
    Engine engine;
    Handle folder = 0;
    Handle table = 0;
    Must(engine.Connect26(Folder(), ADS_LOCAL_SERVER, folder));
    Must(engine.CreateTable(folder, "T", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                            ADS_IGNORERIGHTS, 0, "ID,N,6,0;NAME,C,12;BORN,D;OK,L;NOTE,M", table));
    for (std::int32_t id = 1; id <= 30; ++id) {
        Must(engine.AppendRecord(table));
        Must(engine.SetLong(table, "ID", id));
        Must(engine.SetString(table, "NAME",
                              std::string(1, static_cast<char>('A' + id % 7)) + "name"));
        Must(engine.SetJulian(table, "BORN", 2'450'000 + id * 37 % 500));
        Must(engine.SetLogical(table, "OK", id % 3 == 0));
        Must(engine.SetString(table, "NOTE",
                              std::string(static_cast<std::size_t>(id * 13 % 150), 'm')));
        if (id % 5 == 0) Must(engine.DeleteRecord(table));
    }
    const std::array<std::array<const char*, 3>, 5> tags = {{{"ID", "ID", ""},
                                                             {"NAME", "UPPER(NAME)+STR(ID,6)", ""},
                                                             {"BORN", "BORN", "OK"},
                                                             {"DOWN", "NAME", ""},
                                                             {"LIVE", "ID", ".NOT. DELETED()"}}};
    for (const auto& [tag, key, condition] : tags) {
        Handle index = 0;
        const std::string name = tag;
        const std::uint32_t options = ADS_COMPOUND | (name == "DOWN" ? ADS_DESCENDING : 0) |
                                      (name == "LIVE" ? ADS_UNIQUE : 0);
        Must(engine.CreateIndex(table, "", tag, key, condition, "", options, index));
    }
    Must(engine.CloseAllTables());
    std::array<std::string, 3> files;
    for (std::size_t i = 0; i < files.size(); ++i) {
        files[i] = ReadBytes(FilePath(i));
        if (files[i].empty()) std::abort();  // the sound set itself failed: fuzzing it is moot
    }
    return files;
}

// Reading damaged files, any refusal is a right answer; only a crash or an endless walk is not.
void ReadFields(Engine& engine, Handle table) {
    std::uint16_t count = 0;
    IgnoreStatus(engine.GetNumFields(table, count));
    for (std::uint16_t number = 1; number <= count; ++number) {
        std::string name;
        std::string value;
        IgnoreStatus(engine.GetFieldName(table, number, name));
        IgnoreStatus(engine.GetString(table, name, value, ADS_NONE));
    }
}

// Walks `object` (the table or one of its index handles) from one end to the other.
void Walk(Engine& engine, Handle table, Handle object, std::int32_t step, std::uint32_t limit) {
    if ((step > 0 ? engine.GotoTop(object) : engine.GotoBottom(object)) != AE_SUCCESS) return;
    for (std::uint32_t steps = 0; steps < limit; ++steps) {
        bool end = false;
        if ((step > 0 ? engine.AtEOF(table, end) : engine.AtBOF(table, end)) != AE_SUCCESS || end)
            return;
        ReadFields(engine, table);
        if (engine.Skip(object, step) != AE_SUCCESS) return;
    }
}

void Navigate() {
    Engine engine;
    Handle folder = 0;
    Handle table = 0;
    IgnoreStatus(engine.Connect26(Folder(), ADS_LOCAL_SERVER, folder));
    if (engine.OpenTable(folder, "T", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                         ADS_IGNORERIGHTS, ADS_READONLY, table) != AE_SUCCESS)
        return;
    std::uint32_t records = 0;
    IgnoreStatus(engine.GetRecordCount(table, ADS_IGNOREFILTERS, records));
    // Far more steps than a sound walk takes: reaching the limit is a walk that does not end.
    const std::uint32_t limit = 4 * std::min<std::uint32_t>(records, 100'000) + 64;
    for (const std::int32_t step : {1, -1}) Walk(engine, table, table, step, limit);
    std::vector<Handle> indexes;
    IgnoreStatus(engine.GetAllIndexes(table, indexes));
    for (const Handle index : indexes) {
        for (const std::int32_t step : {1, -1}) Walk(engine, table, index, step, limit);
        bool found = false;
        IgnoreStatus(engine.Seek(index, "C", ADS_STRINGKEY, ADS_SOFTSEEK, found));
        std::uint32_t keys = 0;
        IgnoreStatus(engine.GetKeyCount(index, ADS_RESPECTFILTERS, keys));
        double position = 0;
        IgnoreStatus(engine.GetRelKeyPos(index, position));
        IgnoreStatus(engine.SetRelKeyPos(index, 0.5));
    }
}

void Check() {
    dbf::CheckTable(FilePath(0));
    cursor::EngineSettings settings;
    cursor::TableCursor cursor(settings);
    std::string message;
    if (cursor.Open(FilePath(0), "T", {.exclusive = false, .readOnly = true}, message) !=
        AE_SUCCESS)
        return;
    order::TableIndexes indexes(cursor, settings.dates);
    if (indexes.OpenStructural(message) == AE_SUCCESS) indexes.Check();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::array<std::string, 3> sound = SoundSet();
    std::array<std::string, 3> files = sound;
    // Edits of four bytes: which file (and whether to cut it there), two offset bytes, a value.
    for (std::size_t at = 0; at + 4 <= size; at += 4) {
        std::string& file = files[data[at] % 3];
        if (file.empty()) continue;
        const std::size_t offset = (data[at + 1] | std::size_t{data[at + 2]} << 8) % file.size();
        if (data[at] & 0x80) {
            file.resize(offset);
        } else {
            file[offset] = static_cast<char>(data[at + 3]);
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) WriteBytes(FilePath(i), files[i]);
    Navigate();
    Check();
    // Read-only opens and checks leave the files as they were.
    for (std::size_t i = 0; i < files.size(); ++i)
        if (ReadBytes(FilePath(i)) != files[i]) std::abort();
    return 0;
}
