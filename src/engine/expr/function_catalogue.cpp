#include "engine/expr/function_catalogue.hpp"

#include <array>

#include "engine/expr/ascii.hpp"

namespace fnrk::engine::expr {
namespace {

constexpr std::array<FunctionInfo, 40> kFunctions = {{
    {"IIF", 3, 3},       {"DELETED", 0, 0}, {"RECNO", 0, 0},   {"UPPER", 1, 1},   {"LOWER", 1, 1},
    {"TRIM", 1, 1},      {"RTRIM", 1, 1},   {"LTRIM", 1, 1},   {"ALLTRIM", 1, 1}, {"SPACE", 1, 1},
    {"REPLICATE", 2, 2}, {"STR", 1, 3},     {"STRZERO", 1, 3}, {"VAL", 1, 1},     {"LEFT", 2, 2},
    {"RIGHT", 2, 2},     {"SUBSTR", 2, 3},  {"AT", 2, 2},      {"LEN", 1, 1},     {"PADL", 2, 3},
    {"PADR", 2, 3},      {"EMPTY", 1, 1},   {"DTOS", 1, 1},    {"DTOC", 1, 1},    {"CTOD", 1, 1},
    {"STOD", 1, 1},      {"DATE", 0, 0},    {"YEAR", 1, 1},    {"MONTH", 1, 1},   {"DAY", 1, 1},
    {"ABS", 1, 1},       {"INT", 1, 1},     {"ROUND", 2, 2},   {"MIN", 2, 2},     {"MAX", 2, 2},
    {"CHR", 1, 1},       {"ASC", 1, 1},     {"MOD", 2, 2},     {"SIGN", 1, 1},    {"IF", 3, 3},
}};

bool Matches(std::string_view full, std::string_view written) {
    if (written.size() > full.size()) return false;
    if (written.size() < full.size() && written.size() < 4) return false;
    for (std::size_t i = 0; i < written.size(); ++i) {
        if (AsciiUpper(written[i]) != full[i]) return false;
    }
    return true;
}

}  // namespace

const FunctionInfo* FindFunction(std::string_view written) {
    for (const FunctionInfo& info : kFunctions) {
        if (Matches(info.name, written)) return info.name == "IF" ? &kFunctions[0] : &info;
    }
    return nullptr;
}

}  // namespace fnrk::engine::expr
