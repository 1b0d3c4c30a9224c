#pragma once

// How the expression compiler learns where a field lives in a record.

#include <cstdint>
#include <optional>
#include <string_view>

namespace fnrk::engine::expr {

struct FieldBinding {
    // 0 is the table the expression belongs to; other numbers are the tables named by
    // "ALIAS->FIELD", numbered by the resolver; they index EvaluationContext::records.
    int source = 0;
    // Field type letter: C, N, F, D, L, I, B, Y, T; M only as the argument of EMPTY().
    char type = 'C';
    // Byte offset from the start of the record (byte 0 is the deletion flag).
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    std::uint16_t decimals = 0;
};

class FieldResolver {
  public:
    virtual ~FieldResolver() = default;
    // `alias` is empty for a plain field name. Names come as written (any case); the resolver
    // compares them without regard to case. No value: no such field.
    virtual std::optional<FieldBinding> Resolve(std::string_view alias,
                                                std::string_view field) const = 0;
};

}  // namespace fnrk::engine::expr
