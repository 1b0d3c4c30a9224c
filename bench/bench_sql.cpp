// SQL over engine tables: an equality WHERE on a 1,000,000-record table answered through the
// index tag of the field, against the same query on a copy of the table without the index.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "engine/engine.hpp"
#include "must_succeed.hpp"

namespace {

using namespace fnrk::engine;

constexpr std::uint32_t kRecords = 1'000'000;

// The folder with BIG (tag AMOUNT) and PLAIN (the same records, no index), built once.
class Tables {
  public:
    Tables() {
        folder_ = std::filesystem::temp_directory_path() /
                  ("fennrick-bench-sql-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder_);
        Expect(engine_.Connect26(folder_.string(), ADS_LOCAL_SERVER, connection_));
        Handle table = 0;
        Expect(engine_.CreateTable(connection_, "BIG", "", ADS_CDX, ADS_ANSI,
                                   ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                   "CODE,C,10,0;AMOUNT,N,12,2;NOTE,C,20,0", table));
        for (std::uint32_t i = 0; i < kRecords; ++i) {
            char code[16];
            std::snprintf(code, sizeof code, "C%07u", i);
            Expect(engine_.AppendRecord(table));
            Expect(engine_.SetString(table, "CODE", code));
            // 100,000 distinct amounts, ten records each.
            Expect(engine_.SetDouble(table, "AMOUNT", static_cast<double>(i * 7919 % 100'000) / 4));
        }
        Expect(engine_.CloseTable(table));
        std::filesystem::copy_file(folder_ / "BIG.dbf", folder_ / "PLAIN.dbf");
        Expect(engine_.OpenTable(connection_, "BIG", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                 ADS_IGNORERIGHTS, ADS_EXCLUSIVE, table));
        Handle index = 0;
        Expect(engine_.CreateIndex(table, "", "AMOUNT", "AMOUNT", "", "", ADS_COMPOUND, index));
        Expect(engine_.CloseTable(table));
        Expect(engine_.CreateSQLStatement(connection_, statement_));
    }
    ~Tables() {
        Must(engine_.CloseSQLStatement(statement_));
        Must(engine_.CloseAllTables());
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    // Runs the query and returns the number of rows of its cursor.
    std::uint32_t Rows(const std::string& sql) {
        Handle cursor = 0;
        Expect(engine_.ExecuteSQLDirect(statement_, sql, cursor));
        std::uint32_t count = 0;
        Expect(engine_.GetRecordCount(cursor, ADS_IGNOREFILTERS, count));
        Expect(engine_.CloseTable(cursor));
        return count;
    }

  private:
    void Expect(Status status) {
        if (status == AE_SUCCESS) return;
        Status code = status;
        std::string text;
        Must(engine_.GetLastError(code, text));
        std::fprintf(stderr, "benchmark setup failed: %d %s\n", status, text.c_str());
        std::abort();
    }

    std::filesystem::path folder_;
    Engine engine_;
    Handle connection_ = 0;
    Handle statement_ = 0;
};

Tables& Shared() {
    static Tables tables;
    return tables;
}

void Query(benchmark::State& state, const char* table) {
    Tables& tables = Shared();
    const std::string sql = std::string("select CODE, AMOUNT from ") + table +
                            " where AMOUNT = " + std::to_string(state.range(0) / 4.0);
    std::uint32_t rows = 0;
    for (auto _ : state) {
        rows = tables.Rows(sql);
        benchmark::DoNotOptimize(rows);
    }
    state.counters["rows"] = rows;
}

void BM_WhereThroughTag(benchmark::State& state) {
    Query(state, "BIG");
}
void BM_WhereWithIndexDropped(benchmark::State& state) {
    Query(state, "PLAIN");
}

BENCHMARK(BM_WhereThroughTag)->Arg(12345)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WhereWithIndexDropped)->Arg(12345)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
