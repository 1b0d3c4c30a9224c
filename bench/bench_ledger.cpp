// A journal as the accounting layers keep it, through the engine's operations, on 1,000,000
// records (ACCOUNTGL C10, DOCNUMBER C8, AMOUNT N17.2, DOCDATE D, COMMENT C40; tags
// ACCOUNTGL+DTOS(DOCDATE), AMOUNT, DOCNUMBER). The steps run once each, in this order, on one
// table: append without an index, build the tags, random seeks, a walk in account order reading
// every record (how every ledger list is shown), appends keeping the tags (exclusive, then
// shared), pack after deleting every third record, reindex.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>

#include "engine_folder.hpp"

namespace {

using namespace fnrk::engine;

// FNRK_BENCH_RECORDS shrinks the table for runs under a profiler such as callgrind.
const std::uint32_t kRecords = [] {
    const char* records = std::getenv("FNRK_BENCH_RECORDS");
    return records != nullptr ? static_cast<std::uint32_t>(std::stoul(records)) : 1'000'000u;
}();
const std::uint32_t kSeeks = kRecords / 5;
const std::uint32_t kAppends = kRecords / 10;
constexpr std::int32_t kFirstDay = 2460311;  // 1 January 2024

EngineFolder& Folder() {
    static EngineFolder folder("ledger");
    return folder;
}

Handle OpenLedger(std::uint32_t mode) {
    Handle table = 0;
    Must(Folder().engine.OpenTable(Folder().connection, "ledger", "", ADS_CDX, ADS_ANSI,
                                   ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, mode, table));
    return table;
}

// Entry `n`: accounts spread so that account order jumps about the file, document numbers
// unique.
std::string DocumentNumber(std::uint32_t n) {
    std::string number = std::to_string(10'000'000 + n);
    return number.substr(number.size() - 8);
}

void AppendEntry(Handle table, std::uint32_t n) {
    Engine& engine = Folder().engine;
    Must(engine.AppendRecord(table));
    Must(engine.SetString(table, "ACCOUNTGL", std::to_string(600000 + (n * 7919u) % 997)));
    Must(engine.SetString(table, "DOCNUMBER", DocumentNumber(n)));
    Must(engine.SetDouble(table, "AMOUNT", (n % 100000) / 100.0 - 250.0));
    Must(engine.SetJulian(table, "DOCDATE", kFirstDay + static_cast<std::int32_t>(n % 366)));
    Must(engine.SetString(table, "COMMENT", "entry " + std::to_string(n)));
}

void AppendEntries(std::uint32_t mode, std::uint32_t first, std::uint32_t count) {
    const Handle table = OpenLedger(mode);
    for (std::uint32_t n = first; n < first + count; ++n) AppendEntry(table, n);
    Must(Folder().engine.CloseTable(table));
}

void BM_AppendWithoutIndexExclusive(benchmark::State& state) {
    for (auto _ : state) {
        Handle table = 0;
        Must(Folder().engine.CreateTable(
            Folder().connection, "ledger", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
            ADS_IGNORERIGHTS, 0,
            "ACCOUNTGL,C,10;DOCNUMBER,C,8;AMOUNT,N,17,2;DOCDATE,D;COMMENT,C,40", table));
        Must(Folder().engine.CloseTable(table));
        AppendEntries(ADS_EXCLUSIVE, 1, kRecords);
    }
    state.counters["records"] = kRecords;
}
BENCHMARK(BM_AppendWithoutIndexExclusive)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_BuildThreeTags(benchmark::State& state) {
    for (auto _ : state) {
        const Handle table = OpenLedger(ADS_EXCLUSIVE);
        const std::pair<const char*, const char*> tags[] = {{"ACCDATE", "ACCOUNTGL+DTOS(DOCDATE)"},
                                                            {"AMOUNT", "AMOUNT"},
                                                            {"DOCNUMBER", "DOCNUMBER"}};
        for (const auto& [name, expression] : tags) {
            Handle index = 0;
            Must(Folder().engine.CreateIndex(table, "", name, expression, "", "", ADS_COMPOUND,
                                             index));
        }
        Must(Folder().engine.CloseTable(table));
    }
}
BENCHMARK(BM_BuildThreeTags)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_RandomSeeksOnDocNumber(benchmark::State& state) {
    const Handle table = OpenLedger(ADS_EXCLUSIVE);
    Handle index = 0;
    Must(Folder().engine.GetIndexHandle(table, "DOCNUMBER", index));
    std::mt19937 random(1);
    std::uint32_t found = 0;
    for (auto _ : state) {
        for (std::uint32_t i = 0; i < kSeeks; ++i) {
            bool hit = false;
            Must(Folder().engine.Seek(index, DocumentNumber(1 + random() % kRecords), ADS_STRINGKEY,
                                      ADS_HARDSEEK, hit));
            found += hit;
        }
    }
    Must(Folder().engine.CloseTable(table));
    state.counters["seeks"] = kSeeks;
    state.counters["found"] = found;
}
BENCHMARK(BM_RandomSeeksOnDocNumber)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_SkipInAccountOrderReadingEachRecord(benchmark::State& state) {
    const Handle table = OpenLedger(ADS_EXCLUSIVE);
    Engine& engine = Folder().engine;
    Handle index = 0;
    Must(engine.GetIndexHandle(table, "ACCDATE", index));
    std::uint32_t records = 0;
    std::string record;
    for (auto _ : state) {
        Must(engine.GotoTop(index));
        for (bool eof = false; Must(engine.AtEOF(index, eof)), !eof; Must(engine.Skip(index, 1))) {
            Must(engine.GetRecord(table, record));
            ++records;
        }
    }
    Must(engine.CloseTable(table));
    state.counters["records"] = records;
}
BENCHMARK(BM_SkipInAccountOrderReadingEachRecord)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_AppendsKeepingTagsExclusive(benchmark::State& state) {
    for (auto _ : state) AppendEntries(ADS_EXCLUSIVE, kRecords + 1, kAppends);
    state.counters["records"] = kAppends;
}
BENCHMARK(BM_AppendsKeepingTagsExclusive)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_AppendsKeepingTagsShared(benchmark::State& state) {
    for (auto _ : state) AppendEntries(ADS_SHARED, kRecords + kAppends + 1, kAppends);
    state.counters["records"] = kAppends;
}
BENCHMARK(BM_AppendsKeepingTagsShared)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_PackAfterDeletingEveryThird(benchmark::State& state) {
    const Handle table = OpenLedger(ADS_EXCLUSIVE);
    Engine& engine = Folder().engine;
    std::uint32_t count = 0;
    Must(engine.GetRecordCount(table, ADS_IGNOREFILTERS, count));
    for (std::uint32_t record = 3; record <= count; record += 3) {
        Must(engine.GotoRecord(table, record));
        Must(engine.DeleteRecord(table));
    }
    for (auto _ : state) Must(engine.PackTable(table));
    Must(engine.GetRecordCount(table, ADS_IGNOREFILTERS, count));
    Must(engine.CloseTable(table));
    state.counters["kept"] = count;
}
BENCHMARK(BM_PackAfterDeletingEveryThird)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Reindex(benchmark::State& state) {
    const Handle table = OpenLedger(ADS_EXCLUSIVE);
    for (auto _ : state) Must(Folder().engine.Reindex(table));
    Must(Folder().engine.CloseTable(table));
}
BENCHMARK(BM_Reindex)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
