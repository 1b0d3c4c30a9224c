// Expression evaluation over in-memory records: the per-record cost of filters, FOR
// conditions and index keys.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "engine/expr/expression.hpp"

namespace {

using fnrk::engine::expr::EvaluationContext;
using fnrk::engine::expr::Expression;
using fnrk::engine::expr::FieldBinding;
using fnrk::engine::expr::FieldResolver;

// NAME C15, CODE C4, AMOUNT N12.2, DOCNUMBER C8, DOCDATE D, DBKCODE C6.
class Layout : public FieldResolver {
  public:
    std::optional<FieldBinding> Resolve(std::string_view, std::string_view field) const override {
        std::string upper(field);
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        static const std::map<std::string, FieldBinding> kFields = {
            {"NAME", {0, 'C', 1, 15, 0}},    {"CODE", {0, 'C', 16, 4, 0}},
            {"AMOUNT", {0, 'N', 20, 12, 2}}, {"DOCNUMBER", {0, 'C', 32, 8, 0}},
            {"DOCDATE", {0, 'D', 40, 8, 0}}, {"DBKCODE", {0, 'C', 48, 6, 0}},
        };
        const auto found = kFields.find(upper);
        if (found == kFields.end()) return std::nullopt;
        return found->second;
    }
};

std::vector<std::string> MakeRecords() {
    std::vector<std::string> records;
    for (int i = 0; i < 4096; ++i) {
        char record[64];
        std::snprintf(record, sizeof record, "%c%-15s%-4s%12.2f%8d%04d%02d%02d%-6s",
                      i % 7 == 0 ? '*' : ' ', ("NAME" + std::to_string(i * 7919 % 1000)).c_str(),
                      i % 3 == 0 ? "AB" : "CD", (i % 400) - 50.25, i, 2000 + i % 20, 1 + i % 12,
                      1 + i % 28, "VEN");
        records.emplace_back(record, 54);
    }
    return records;
}

template <class Evaluate>
void RunOverRecords(benchmark::State& state, const char* text, Evaluate evaluate) {
    const Layout layout;
    Expression expression = Expression::Compile(text, layout);
    const std::vector<std::string> records = MakeRecords();
    std::size_t index = 0;
    for (auto _ : state) {
        const std::string_view current[] = {records[index]};
        const EvaluationContext context{current, static_cast<std::uint32_t>(index + 1), nullptr};
        benchmark::DoNotOptimize(evaluate(expression, context));
        index = (index + 1) % records.size();
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_Condition(benchmark::State& state) {
    RunOverRecords(state, "AMOUNT > 100 .AND. CODE = 'AB'",
                   [](Expression& e, const EvaluationContext& c) { return e.EvaluateLogical(c); });
}
BENCHMARK(BM_Condition);

void BM_ConditionNotDeleted(benchmark::State& state) {
    RunOverRecords(state, "UPPER(NAME) = 'NAME1' .AND. .NOT. DELETED()",
                   [](Expression& e, const EvaluationContext& c) { return e.EvaluateLogical(c); });
}
BENCHMARK(BM_ConditionNotDeleted);

void BM_KeyHidingDeleted(benchmark::State& state) {
    RunOverRecords(state, "IIf(.not.deleted(),'X' + NAME,'X' + space(15))",
                   [](Expression& e, const EvaluationContext& c) { return e.EvaluateKey(c); });
}
BENCHMARK(BM_KeyHidingDeleted);

void BM_KeyWithStrVal(benchmark::State& state) {
    RunOverRecords(state, "DBKCODE + STR(VAL(DOCNUMBER), 8)",
                   [](Expression& e, const EvaluationContext& c) { return e.EvaluateKey(c); });
}
BENCHMARK(BM_KeyWithStrVal);

void BM_KeyWithDtos(benchmark::State& state) {
    RunOverRecords(state, "CODE + DTOS(DOCDATE)",
                   [](Expression& e, const EvaluationContext& c) { return e.EvaluateKey(c); });
}
BENCHMARK(BM_KeyWithDtos);

void BM_Compile(benchmark::State& state) {
    const Layout layout;
    for (auto _ : state) {
        Expression expression = Expression::Compile(
            "iif(.not. deleted(), dbkcode + str(val(docnumber), 8) + dtos(docdate), space(22))",
            layout);
        benchmark::DoNotOptimize(expression.length());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Compile);

}  // namespace

BENCHMARK_MAIN();
