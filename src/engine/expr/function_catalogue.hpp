#pragma once

// The functions the language knows, with how many arguments each takes.

#include <string_view>

namespace fnrk::engine::expr {

struct FunctionInfo {
    std::string_view name;
    int minArguments;
    int maxArguments;
};

// By the name as written, in any case; names of more than four letters may be cut to four or
// more ("SUBS", "ALLT"), and "IF" stands for "IIF". Null when unknown.
const FunctionInfo* FindFunction(std::string_view written);

}  // namespace fnrk::engine::expr
