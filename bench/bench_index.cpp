// Compound index throughput on a 1,000,000-record table with 3 tags (upper-cased name, number,
// date): building the tags, random seeks, a walk in tag order, appends in SHARED mode with the
// tags kept up to date, and an optimized filter count against per-record evaluation.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "engine/cursor/table_cursor.hpp"
#include "engine/dbf/field_list.hpp"
#include "engine/dbf/table_file.hpp"
#include "engine/order/optimized_filter.hpp"
#include "engine/order/table_indexes.hpp"
#include "must_succeed.hpp"

namespace {

using namespace fnrk::engine;

// FNRK_BENCH_RECORDS shrinks the table for runs under a profiler such as callgrind.
const std::uint32_t kRecords = [] {
    const char* records = std::getenv("FNRK_BENCH_RECORDS");
    return records != nullptr ? static_cast<std::uint32_t>(std::stoul(records)) : 1'000'000u;
}();
constexpr const char* kFields = "NAME,C,20;QTY,N,8,0;DAY,D";

const cursor::EngineSettings& Settings() {
    static const cursor::EngineSettings settings;
    return settings;
}

std::string NameOf(std::uint32_t n) {
    std::string name = "name" + std::to_string((n * 2654435761u) % 9'999'991);
    name.resize(20, ' ');
    return name;
}

// The run's folder goes when the program ends: a million-record table is too big to leave.
struct RunFolder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("fnrk_bench_index_" + std::to_string(::getpid()));
    ~RunFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

// The table, written once per run, in a folder of its own.
const std::filesystem::path& TablePath() {
    static const RunFolder runFolder;
    static const std::filesystem::path path = [] {
        const auto& folder = runFolder.path;
        std::filesystem::create_directories(folder);
        const auto table = folder / "big.dbf";
        std::vector<dbf::Field> fields;
        dbf::ParseFieldList(kFields, fields);
        std::string message;
        Must(dbf::TableFile::Create(table.string(), fields, 0, message));
        dbf::TableFile file;
        Must(file.Open(table.string(), {.exclusive = true}, message));
        std::string record(file.header().recordLength, ' ');
        for (std::uint32_t n = 1; n <= kRecords; ++n) {
            record.replace(1, 20, NameOf(n));
            const std::string qty = std::to_string(n % 5000);
            record.replace(21, 8, std::string(8 - qty.size(), ' ') + qty);
            record.replace(29, 8,
                           "2024" + std::string(n % 9 < 1 ? "01" : "0" + std::to_string(n % 9)) +
                               std::to_string(10 + n % 18));
            std::uint32_t at = 0;
            Must(file.AppendRecord(record, at));
        }
        Must(file.Flush());
        return table;
    }();
    return path;
}

struct Indexed {
    std::unique_ptr<cursor::TableCursor> cursor;
    std::unique_ptr<order::TableIndexes> indexes;
};

Indexed OpenIndexed(bool exclusive) {
    Indexed table;
    table.cursor = std::make_unique<cursor::TableCursor>(Settings());
    std::string message;
    Must(table.cursor->Open(TablePath().string(), "BIG", {.exclusive = exclusive}, message));
    table.indexes = std::make_unique<order::TableIndexes>(*table.cursor, Settings().dates);
    // The first open, before any tag is built, finds no index file yet.
    const Status structural = table.indexes->OpenStructural(message);
    if (structural != AE_FILE_NOT_FOUND) Must(structural);
    return table;
}

void BuildTags() {
    std::filesystem::remove(std::filesystem::path(TablePath()).replace_extension(".cdx"));
    Indexed table = OpenIndexed(true);
    const order::TagRequest tags[] = {{"NAME", "upper(NAME)", "", false, false},
                                      {"QTY", "QTY", "", false, false},
                                      {"DAY", "DAY", "", false, false}};
    for (const auto& request : tags) {
        std::string message;
        order::OpenTag* created = nullptr;
        Must(table.indexes->CreateTag({}, request, message, created));
    }
}

void EnsureTags() {
    static const bool built = (BuildTags(), true);
    (void)built;
}

void BM_BuildThreeTags(benchmark::State& state) {
    TablePath();
    for (auto _ : state) BuildTags();
    state.counters["records"] = kRecords;
}
BENCHMARK(BM_BuildThreeTags)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_RandomSeeks(benchmark::State& state) {
    EnsureTags();
    Indexed table = OpenIndexed(true);
    cdx::IndexTag& tag = *table.indexes->FindTag("NAME")->tag;
    std::mt19937 random(1);
    std::uint64_t found = 0;
    for (auto _ : state) {
        std::string probe = NameOf(1 + random() % kRecords);
        for (char& c : probe) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        found += tag.LowerBound(probe).valid();
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RandomSeeks);

void BM_WalkInTagOrder(benchmark::State& state) {
    EnsureTags();
    Indexed table = OpenIndexed(true);
    cdx::IndexTag& tag = *table.indexes->FindTag("QTY")->tag;
    std::uint64_t keys = 0;
    for (auto _ : state) {
        for (auto at = tag.First(); at.valid(); at = tag.Next(at)) ++keys;
    }
    benchmark::DoNotOptimize(keys);
    state.SetItemsProcessed(static_cast<std::int64_t>(keys));
}
BENCHMARK(BM_WalkInTagOrder)->Unit(benchmark::kMillisecond);

void BM_AppendsWithUpkeepShared(benchmark::State& state) {
    EnsureTags();
    Indexed table = OpenIndexed(false);
    const dbf::Field* name = table.cursor->FindField("NAME");
    const dbf::Field* qty = table.cursor->FindField("QTY");
    std::uint32_t n = kRecords;
    for (auto _ : state) {
        Must(table.cursor->Append());
        Must(table.cursor->SetText(*name, NameOf(++n)));
        Must(table.cursor->SetNumber(*qty, n % 5000));
        Must(table.cursor->Commit());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AppendsWithUpkeepShared)->Iterations(kRecords / 50);

void BM_OptimizedFilterCount(benchmark::State& state) {
    EnsureTags();
    Indexed table = OpenIndexed(true);
    std::uint32_t count = 0;
    for (auto _ : state) {
        order::OptimizedFilter filter("QTY >= 100 .AND. QTY < 200", *table.indexes, *table.cursor,
                                      Settings().dates);
        count = filter.CandidateCount();
    }
    state.counters["count"] = count;
}
BENCHMARK(BM_OptimizedFilterCount)->Unit(benchmark::kMillisecond);

void BM_PerRecordFilterCount(benchmark::State& state) {
    EnsureTags();
    Indexed table = OpenIndexed(true);
    std::string message;
    Must(table.cursor->SetFilter("QTY >= 100 .AND. QTY < 200", message));
    std::uint32_t count = 0;
    for (auto _ : state) Must(table.cursor->Count(true, count));
    state.counters["count"] = count;
}
BENCHMARK(BM_PerRecordFilterCount)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
