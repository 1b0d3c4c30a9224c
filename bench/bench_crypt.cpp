// What encryption costs: the same 200,000-record table with a NAME tag, plain (argument 0) and
// encrypted (argument 1), scanned in record order with a field read, and searched by key.

#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "engine_folder.hpp"
#include "must_succeed.hpp"

namespace {

using namespace fnrk::engine;

constexpr std::uint32_t kRecords = 200'000;

std::string NameOf(std::uint32_t i) {
    return "N" + std::to_string(i * 7919 % kRecords);
}

// A folder with the table twice, the second copy encrypted, both open with their index.
struct BenchTables : EngineFolder {
    BenchTables() : EngineFolder("crypt") {
        for (int encrypted = 0; encrypted < 2; ++encrypted) {
            const std::string name = encrypted ? "sealed" : "plain";
            Handle created = 0;
            Must(engine.CreateTable(connection, name, "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                    ADS_IGNORERIGHTS, 0, "NAME,C,20;AMOUNT,N,12,2", created));
            for (std::uint32_t i = 1; i <= kRecords; ++i) {
                Must(engine.AppendRecord(created));
                Must(engine.SetString(created, "NAME", NameOf(i)));
                Must(engine.SetDouble(created, "AMOUNT", (i % 100000) / 100.0));
            }
            Handle index = 0;
            Must(engine.CreateIndex(created, "", "NAME", "NAME", "", "", ADS_COMPOUND, index));
            if (encrypted) {
                Must(engine.EnableEncryption(created, "bench password"));
                Must(engine.EncryptTable(created));
            }
            Must(engine.CloseTable(created));
            Must(engine.OpenTable(connection, name, "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                  ADS_IGNORERIGHTS, ADS_SHARED, tables[encrypted]));
            if (encrypted) Must(engine.EnableEncryption(tables[encrypted], "bench password"));
        }
    }

    Handle tables[2] = {0, 0};
};

BenchTables& Tables() {
    static BenchTables tables;
    return tables;
}

void BM_ScanOneField(benchmark::State& state) {
    BenchTables& bench = Tables();
    const Handle table = bench.tables[state.range(0)];
    double sum = 0;
    for (auto _ : state) {
        bool eof = false;
        for (Must(bench.engine.GotoTop(table)); (Must(bench.engine.AtEOF(table, eof)), !eof);
             Must(bench.engine.Skip(table, 1))) {
            double amount = 0;
            Must(bench.engine.GetDouble(table, "AMOUNT", amount));
            sum += amount;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * kRecords);
}
BENCHMARK(BM_ScanOneField)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_SeekByName(benchmark::State& state) {
    BenchTables& bench = Tables();
    Handle index = 0;
    Must(bench.engine.GetIndexHandle(bench.tables[state.range(0)], "NAME", index));
    std::mt19937 random(7);
    std::uniform_int_distribution<std::uint32_t> pick(1, kRecords);
    std::int64_t found = 0;
    for (auto _ : state) {
        bool hit = false;
        Must(bench.engine.Seek(index, NameOf(pick(random)), ADS_STRINGKEY, ADS_HARDSEEK, hit));
        found += hit;
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SeekByName)->Arg(0)->Arg(1);

}  // namespace

BENCHMARK_MAIN();
