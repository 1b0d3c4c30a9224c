// Eight workstation processes on one dossier at once, each seeking a random key, reading the
// record and updating it under its record lock, for a few seconds: operations per second of a
// PostgreSQL-kept dossier (a throwaway server of this program) next to the same load on a
// file-kept one (the embedded engine). Counters: "ops" (per second, all workstations) and
// "conflicts" (refused locks, retried).

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "support/postgres_server.hpp"
#include "support/temp_dir.hpp"

namespace {

using namespace fnrk::engine;  // option and status numbers

constexpr int kWorkstations = 8;
constexpr std::uint32_t kRecords = 10'000;
constexpr auto kDuration = std::chrono::seconds(3);

std::string KeyOf(std::uint32_t n) {
    char key[16];
    std::snprintf(key, sizeof key, "K%07u", n);
    return key;
}

struct Kind {
    std::function<std::unique_ptr<Operations>()> make;
    std::string where;  // connection path
};

struct Counts {
    long operations = 0;
    long conflicts = 0;
};

void CreateDossier(const Kind& kind) {
    auto ops = kind.make();
    ops->SetDateFormat("DD/MM/YYYY");
    Handle connection = 0;
    Handle table = 0;
    Handle index = 0;
    if (ops->Connect26(kind.where, ADS_LOCAL_SERVER, connection) != AE_SUCCESS ||
        ops->CreateTable(connection, "stock.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                         ADS_IGNORERIGHTS, 0, "CODE,C,8,0;NAME,C,30,0;COUNTER,N,10,0",
                         table) != AE_SUCCESS ||
        ops->CreateIndex(table, "", "CODE", "CODE", "", "", ADS_COMPOUND, index) != AE_SUCCESS)
        throw std::runtime_error("cannot create the dossier at " + kind.where);
    for (std::uint32_t n = 0; n < kRecords; ++n) {
        ops->AppendRecord(table);
        ops->SetString(table, "CODE", KeyOf(n));
        ops->SetString(table, "NAME", "article " + std::to_string(n));
        ops->SetDouble(table, "COUNTER", 0);
    }
    ops->CloseTable(table);
    ops->Disconnect(connection);
}

// One workstation's loop; its counts, or -1 operations when it could not start.
Counts Workstation(const Kind& kind, unsigned seed) {
    Counts counts;
    auto ops = kind.make();
    Handle connection = 0;
    Handle table = 0;
    Handle index = 0;
    if (ops->Connect26(kind.where, ADS_LOCAL_SERVER, connection) != AE_SUCCESS ||
        ops->OpenTable(connection, "stock.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                       ADS_IGNORERIGHTS, ADS_SHARED, table) != AE_SUCCESS ||
        ops->GetIndexHandle(table, "CODE", index) != AE_SUCCESS) {
        counts.operations = -1;
        return counts;
    }
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::uint32_t> pick(0, kRecords - 1);
    std::string name;
    const auto until = std::chrono::steady_clock::now() + kDuration;
    while (std::chrono::steady_clock::now() < until) {
        bool found = false;
        ops->Seek(index, KeyOf(pick(random)), ADS_STRINGKEY, ADS_HARDSEEK, found);
        if (!found) continue;
        ops->GetString(table, "NAME", name, ADS_RTRIM);
        if (ops->LockRecord(table, 0) != AE_SUCCESS) {
            ++counts.conflicts;
            continue;
        }
        double value = 0;
        ops->GetDouble(table, "COUNTER", value);
        ops->SetDouble(table, "COUNTER", value + 1);
        ops->UnlockRecord(table, 0);
        ++counts.operations;
    }
    return counts;
}

void RunWorkstations(benchmark::State& state, const Kind& kind) {
    CreateDossier(kind);
    for (auto _ : state) {
        int pipes[kWorkstations][2];
        pid_t children[kWorkstations];
        for (int i = 0; i < kWorkstations; ++i) {
            if (pipe(pipes[i]) != 0) throw std::runtime_error("pipe failed");
            children[i] = fork();
            if (children[i] == 0) {
                Counts counts = Workstation(kind, static_cast<unsigned>(i + 1));
                ssize_t written = write(pipes[i][1], &counts, sizeof counts);
                _exit(written == static_cast<ssize_t>(sizeof counts) ? 0 : 1);
            }
            close(pipes[i][1]);
        }
        Counts total;
        for (int i = 0; i < kWorkstations; ++i) {
            Counts counts;
            if (read(pipes[i][0], &counts, sizeof counts) != static_cast<ssize_t>(sizeof counts) ||
                counts.operations < 0) {
                state.SkipWithError("a workstation could not start");
            } else {
                total.operations += counts.operations;
                total.conflicts += counts.conflicts;
            }
            close(pipes[i][0]);
            waitpid(children[i], nullptr, 0);
        }
        state.SetIterationTime(std::chrono::duration<double>(kDuration).count());
        state.counters["ops"] =
            benchmark::Counter(static_cast<double>(total.operations), benchmark::Counter::kIsRate);
        state.counters["conflicts"] = static_cast<double>(total.conflicts);
    }
}

void FileKeptDossier(benchmark::State& state) {
    fnrk::testing::TempDir folder;
    RunWorkstations(state, {[] { return std::make_unique<Engine>(); }, folder.path().string()});
}
BENCHMARK(FileKeptDossier)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

void PostgresKeptDossier(benchmark::State& state) {
    const std::string where = fnrk::testing::PostgresServer::Shared().ConnectionPath("bench");
    RunWorkstations(state, {[] {
                                auto backend = std::make_unique<fnrk::backend::FRCDatabase>();
                                backend->handleStart(300'000);
                                return backend;
                            },
                            where});
}
BENCHMARK(PostgresKeptDossier)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
