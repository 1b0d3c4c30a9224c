// The SQL backend (SQLite) on a table of 1,000,000 records with one character tag: seeks,
// walks in tag order, reads by record number, appends. Items per second are the figures.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "backend/frc_database.hpp"
#include "must_succeed.hpp"

namespace {

using namespace fnrk::engine;  // option and status numbers
using fnrk::backend::FRCDatabase;

constexpr std::uint32_t kRecords = 1'000'000;

std::string KeyOf(std::uint32_t n) {
    char key[16];
    std::snprintf(key, sizeof key, "K%07u", n);
    return key;
}

// One table for every benchmark, built on first use (keys in shuffled order, so that tag order
// and record order differ).
struct Sample {
    std::filesystem::path folder;
    FRCDatabase backend;
    Handle connection = 0;
    Handle table = 0;
    Handle byCode = 0;

    Sample() {
        folder = std::filesystem::temp_directory_path() / "fnrk-bench-backend";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        backend.handleStart(300'000);
        Must(backend.Connect26(folder.string(), ADS_LOCAL_SERVER, connection));
        Must(backend.CreateTable(connection, "sample.dbf", "", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                 "CODE,C,8,0;NAME,C,30,0;AMOUNT,N,12,2", table));
        Must(backend.CreateIndex(table, "", "CODE", "CODE", "", "", ADS_COMPOUND, byCode));
        std::vector<std::uint32_t> order(kRecords);
        for (std::uint32_t i = 0; i < kRecords; ++i) order[i] = i;
        std::shuffle(order.begin(), order.end(), std::mt19937(42));
        Must(backend.InitCopyTableContents(table));
        for (std::uint32_t n : order) {
            Must(backend.AppendRecord(table));
            Must(backend.SetString(table, "CODE", KeyOf(n)));
            Must(backend.SetString(table, "NAME", "customer " + std::to_string(n)));
            Must(backend.SetDouble(table, "AMOUNT", n % 1000));
        }
        Must(backend.FlushFileBuffers(table));
        Must(backend.CloseCopyTableContents(table));
    }
    ~Sample() {
        Must(backend.Disconnect(0));
        std::filesystem::remove_all(folder);
    }
};

Sample& TheSample() {
    static Sample sample;
    return sample;
}

void SeekByKey(benchmark::State& state) {
    Sample& s = TheSample();
    std::mt19937 random(7);
    std::uniform_int_distribution<std::uint32_t> pick(0, kRecords - 1);
    for (auto _ : state) {
        bool found = false;
        Must(s.backend.Seek(s.byCode, KeyOf(pick(random)), ADS_STRINGKEY, ADS_HARDSEEK, found));
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SeekByKey);

void SkipInTagOrder(benchmark::State& state) {
    Sample& s = TheSample();
    Must(s.backend.GotoTop(s.byCode));
    for (auto _ : state) {
        bool atEof = false;
        Must(s.backend.Skip(s.byCode, 1));
        Must(s.backend.AtEOF(s.table, atEof));
        if (atEof) Must(s.backend.GotoTop(s.byCode));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SkipInTagOrder);

void GotoRecordAndRead(benchmark::State& state) {
    Sample& s = TheSample();
    std::mt19937 random(11);
    std::uniform_int_distribution<std::uint32_t> pick(1, kRecords);
    std::string name;
    for (auto _ : state) {
        Must(s.backend.GotoRecord(s.table, pick(random)));
        Must(s.backend.GetString(s.table, "NAME", name, ADS_RTRIM));
        benchmark::DoNotOptimize(name);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(GotoRecordAndRead);

void AppendWithOneTag(benchmark::State& state) {
    Sample& s = TheSample();
    std::uint32_t n = kRecords;
    for (auto _ : state) {
        Must(s.backend.AppendRecord(s.table));
        Must(s.backend.SetString(s.table, "CODE", KeyOf(n++)));
    }
    Must(s.backend.FlushFileBuffers(s.table));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(AppendWithOneTag);

}  // namespace

BENCHMARK_MAIN();
