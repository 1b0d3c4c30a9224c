#pragma once

// Adding a wrapped service member in one line: the first argument is the caller's table registry,
// the work runs under the wrapper protocol, and `work` turns the remaining arguments into the
// result.

#include <utility>
#include <vector>

#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

template <typename Work>
void AddWrapped(MemberTable& table, std::string name, std::vector<ArgSpec> rest, Work work) {
    std::vector<ArgSpec> specs{args::kRegistry};
    specs.insert(specs.end(), rest.begin(), rest.end());
    table.Method(std::move(name), std::move(specs),
                 [work = std::move(work)](FnrkRoutines& r, CallArgs& a) {
                     return r.Wrapped(a.Value(0), [&] { return Variant(work(r, a)); });
                 });
}

}  // namespace fnrk::facade
