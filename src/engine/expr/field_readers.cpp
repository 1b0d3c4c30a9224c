// Reading a field of the current record as a typed value.

#include <algorithm>
#include <bit>
#include <cstring>

#include "engine/expr/compile_scope.hpp"
#include "engine/expr/expression_error.hpp"
#include "engine/expr/number_text.hpp"

namespace fnrk::engine::expr {
namespace {

// Little-endian integers as the table files store them, whatever the host.
template <class Unsigned>
Unsigned ReadLittleEndian(const char* bytes) {
    Unsigned value = 0;
    for (std::size_t i = sizeof(Unsigned); i > 0; --i) {
        value = static_cast<Unsigned>(value << 8) | static_cast<unsigned char>(bytes[i - 1]);
    }
    return value;
}

std::uint32_t MinimumLength(char type) {
    switch (type) {
        case 'D':
            return 8;
        case 'I':
            return 4;
        case 'B':
        case 'Y':
        case 'T':
            return 8;
        default:
            return 1;
    }
}

}  // namespace

Operand CompileField(Node& field, CompileScope& scope) {
    const std::optional<FieldBinding> found = scope.resolver.Resolve(field.alias, field.name);
    const std::string written = field.alias.empty() ? field.name : field.alias + "->" + field.name;
    if (!found) throw ExpressionError(field.position, "unknown field " + written);
    const FieldBinding binding = *found;
    field.binding = binding;
    if (binding.source < 0) throw ExpressionError(field.position, "unknown table of " + written);
    if (binding.type == 'M') {
        throw ExpressionError(field.position, "memo field " + written + " not allowed here");
    }
    if (binding.length < MinimumLength(binding.type) || binding.length > kMaxTextLength) {
        throw ExpressionError(field.position, "field " + written + " has an invalid length");
    }

    const int source = binding.source;
    const std::uint32_t offset = binding.offset;
    const std::uint32_t length = binding.length;
    Program& program = scope.program;
    switch (binding.type) {
        case 'C':
            return program.Text(length, [=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, length);
                return bytes ? std::string_view(bytes, length) : std::string_view();
            });
        case 'N':
        case 'F':
            return program.Number([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, length);
                return bytes ? ReadNumber(std::string_view(bytes, length)) : 0.0;
            });
        case 'I':
            return program.Number([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, 4);
                if (!bytes) return 0.0;
                return static_cast<double>(
                    static_cast<std::int32_t>(ReadLittleEndian<std::uint32_t>(bytes)));
            });
        case 'B':
            return program.Number([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, 8);
                return bytes ? std::bit_cast<double>(ReadLittleEndian<std::uint64_t>(bytes)) : 0.0;
            });
        case 'Y':
            // Currency: a 64-bit integer of ten-thousandths.
            return program.Number([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, 8);
                if (!bytes) return 0.0;
                const auto units =
                    static_cast<std::int64_t>(ReadLittleEndian<std::uint64_t>(bytes));
                return static_cast<double>(units) / 10000.0;
            });
        case 'D':
            return program.Date([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, 8);
                return bytes ? Stod(std::string_view(bytes, 8)).value_or(0) : 0;
            });
        case 'T':
            // Date and time: the julian day comes first; expressions see the day only.
            return program.Date([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, 4);
                if (!bytes) return 0;
                const auto julian =
                    static_cast<std::int32_t>(ReadLittleEndian<std::uint32_t>(bytes));
                return CivilFromJulian(julian).year == 0 ? 0 : julian;
            });
        case 'L':
            return program.Logical([=](const EvaluationContext& context) {
                const char* bytes = FieldBytes(context, source, offset, 1);
                if (!bytes) return false;
                const char c = *bytes;
                return c == 'T' || c == 't' || c == 'Y' || c == 'y';
            });
        default:
            throw ExpressionError(field.position, "field " + written + " has an unsupported type " +
                                                      std::string(1, binding.type));
    }
}

std::optional<Operand> CompileEmptyMemo(Node& call, CompileScope& scope) {
    Node& field = call.operands[0];
    if (field.kind != NodeKind::Field) return std::nullopt;
    const std::optional<FieldBinding> found = scope.resolver.Resolve(field.alias, field.name);
    if (!found || found->type != 'M' || found->source < 0) return std::nullopt;
    field.binding = *found;
    const int source = found->source;
    const std::uint32_t offset = found->offset;
    const std::uint32_t length = std::min<std::uint32_t>(found->length, kMaxTextLength);
    // The pointer is a block number: ten ASCII digits, or four binary bytes in newer tables;
    // blank or zero means no memo (a blank record holds blanks in binary pointers too).
    return scope.program.Logical([=](const EvaluationContext& context) {
        const char* bytes = FieldBytes(context, source, offset, length);
        if (!bytes) return true;
        if (length == 4) {
            const std::uint32_t block = ReadLittleEndian<std::uint32_t>(bytes);
            return block == 0 || block == 0x20202020;
        }
        const double block = ReadNumber(std::string_view(bytes, length));
        return block == 0;
    });
}

}  // namespace fnrk::engine::expr
