// Throughput of the embedded table engine on a 1,000,000-record table: appends, natural scan
// with a field read, random record positioning, field reads and a filtered count.

#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "engine_folder.hpp"
#include "must_succeed.hpp"

namespace {

using namespace fnrk::engine;

constexpr std::uint32_t kRecords = 1'000'000;
constexpr const char* kFields = "ID,N,10,0;NAME,C,20;AMOUNT,N,12,2;BOOKED,D;PAID,L";

// One folder, one engine and the big table, built on first use and removed at exit.
struct BenchTable : EngineFolder {
    BenchTable() : EngineFolder("table") {
        Handle created = 0;
        Must(engine.CreateTable(connection, "big", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                ADS_IGNORERIGHTS, 0, kFields, created));
        for (std::uint32_t i = 1; i <= kRecords; ++i) {
            Must(engine.AppendRecord(created));
            Must(engine.SetLong(created, "ID", static_cast<std::int32_t>(i)));
            Must(engine.SetString(created, "NAME", "N" + std::to_string(i % 1000)));
            Must(engine.SetDouble(created, "AMOUNT", (i % 100000) / 100.0));
        }
        Must(engine.CloseTable(created));
        Must(engine.OpenTable(connection, "big", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                              ADS_IGNORERIGHTS, ADS_SHARED, table));
    }

    Handle table = 0;
};

BenchTable& Big() {
    static BenchTable big;
    return big;
}

void BM_AppendWithoutIndex(benchmark::State& state) {
    BenchTable& big = Big();
    Handle table = 0;
    Must(big.engine.CreateTable(big.connection, "appends", "", ADS_CDX, ADS_ANSI,
                                ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, kFields, table));
    std::int32_t id = 0;
    for (auto _ : state) {
        Must(big.engine.AppendRecord(table));
        Must(big.engine.SetLong(table, "ID", ++id));
    }
    Must(big.engine.CloseTable(table));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AppendWithoutIndex);

void BM_NaturalScanOneField(benchmark::State& state) {
    BenchTable& big = Big();
    double sum = 0;
    std::int64_t records = 0;
    for (auto _ : state) {
        bool eof = false;
        for (Must(big.engine.GotoTop(big.table)); (Must(big.engine.AtEOF(big.table, eof)), !eof);
             Must(big.engine.Skip(big.table, 1))) {
            double amount = 0;
            Must(big.engine.GetDouble(big.table, "AMOUNT", amount));
            sum += amount;
            ++records;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(records);
}
BENCHMARK(BM_NaturalScanOneField)->Unit(benchmark::kMillisecond);

void BM_RandomGotoRecord(benchmark::State& state) {
    BenchTable& big = Big();
    std::mt19937 random(42);
    std::uniform_int_distribution<std::uint32_t> pick(1, kRecords);
    double sum = 0;
    for (auto _ : state) {
        Must(big.engine.GotoRecord(big.table, pick(random)));
        double amount = 0;
        Must(big.engine.GetDouble(big.table, "AMOUNT", amount));
        sum += amount;
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RandomGotoRecord);

void BM_FieldReads(benchmark::State& state) {
    BenchTable& big = Big();
    Must(big.engine.GotoRecord(big.table, kRecords / 2));
    std::string name;
    double amount = 0;
    for (auto _ : state) {
        Must(big.engine.GetString(big.table, "NAME", name, ADS_RTRIM));
        Must(big.engine.GetDouble(big.table, "AMOUNT", amount));
        benchmark::DoNotOptimize(name.data());
        benchmark::DoNotOptimize(amount);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_FieldReads);

void BM_FilteredCount(benchmark::State& state) {
    BenchTable& big = Big();
    Must(big.engine.SetFilter(big.table, "AMOUNT > 500 .AND. NAME = 'N1'"));
    std::uint32_t count = 0;
    for (auto _ : state) Must(big.engine.GetRecordCount(big.table, ADS_RESPECTFILTERS, count));
    Must(big.engine.ClearFilter(big.table));
    state.counters["matching"] = count;
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(BM_FilteredCount)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
