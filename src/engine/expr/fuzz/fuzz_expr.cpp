// Any text must compile or be refused with an ExpressionError, and whatever compiles must
// evaluate over any record bytes (also too short, also missing) without fault.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/expr/expression.hpp"

namespace {

using namespace fnrk::engine::expr;

// One field of every type; "B->" names a second table with the same layout.
class EveryType : public FieldResolver {
  public:
    std::optional<FieldBinding> Resolve(std::string_view alias,
                                        std::string_view field) const override {
        const int source = alias.empty() ? 0 : (alias == "B" || alias == "b" ? 1 : -1);
        if (source < 0 || field.size() != 1) return std::nullopt;
        static constexpr FieldBinding kFields[] = {
            {0, 'C', 1, 10, 0}, {0, 'N', 11, 8, 2}, {0, 'D', 19, 8, 0},
            {0, 'L', 27, 1, 0}, {0, 'I', 28, 4, 0}, {0, 'B', 32, 8, 0},
            {0, 'Y', 40, 8, 0}, {0, 'T', 48, 8, 0}, {0, 'M', 56, 10, 0}};
        for (FieldBinding binding : kFields) {
            if ((field[0] & ~0x20) != binding.type) continue;
            binding.source = source;
            return binding;
        }
        return std::nullopt;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static const EveryType resolver;
    static const DateSettings dates{"DD/MM/YY", 1950};
    try {
        Expression expression = Expression::Compile(text, resolver, dates);
        (void)CanonicalText(expression.tree());
        // Records made of the input's own bytes: a full one and a cut one.
        std::string record(66, ' ');
        for (std::size_t i = 0; i < record.size() && size > 0; ++i) {
            record[i] = static_cast<char>(data[i % size]);
        }
        const std::string_view full[] = {record, "*20240131"};
        const std::string_view cut[] = {std::string_view(record).substr(0, size % 66)};
        expression.Evaluate(EvaluationContext{full, 7, &dates});
        expression.Evaluate(EvaluationContext{cut, 0, nullptr});
        expression.Evaluate(EvaluationContext{{}, 1, nullptr});
        if (expression.type() == ValueType::Character) {
            (void)expression.EvaluateKey(EvaluationContext{full, 7, &dates});
        }
    } catch (const ExpressionError&) {
        // Refused with a position and a reason: the expected outcome for bad text.
    }
    return 0;
}
