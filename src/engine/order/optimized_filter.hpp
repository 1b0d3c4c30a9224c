#pragma once

// An optimized filter: the parts of a condition that compare a tag's key with a constant
// (equality and ranges, under .AND. / .OR. / .NOT.) are resolved from the tags into a record
// bitmap; whatever cannot be resolved is evaluated per record. A record passes exactly when the
// whole condition is true for it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/constants.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/expr/expression.hpp"
#include "engine/order/record_bitmap.hpp"
#include "engine/order/table_indexes.hpp"

namespace fnrk::engine::order {

class OptimizedFilter {
  public:
    // Throws expr::ExpressionError for a bad condition, std::invalid_argument when it is not
    // logical.
    OptimizedFilter(std::string_view condition, TableIndexes& indexes, cursor::TableCursor& table,
                    const expr::DateSettings& dates);

    const std::string& text() const { return text_; }
    // ADS_OPTIMIZED_FULL, ADS_OPTIMIZED_PART or ADS_OPTIMIZED_NONE.
    std::uint16_t level() const { return level_; }
    // The conditions left to per-record evaluation, as text (empty when fully optimized).
    const std::string& nonOptimizedPart() const { return nonOptimized_; }

    bool Admits(std::uint32_t record, std::string_view bytes);
    // A record changed: it is judged again so that the bitmap stays true to the condition.
    void RecordChanged(std::uint32_t record, std::string_view bytes);
    // Records the bitmap lets through, without reading them: the count when fully optimized.
    std::uint32_t CandidateCount() const { return candidates_.count(); }

  private:
    struct Resolved {
        RecordBitmap bits;
        bool exact = false;
    };
    // One side of a key range: the comparison and the constant's key bytes (partial for a
    // character constant, which compares on its own length).
    struct KeyBound {
        expr::Operator op = expr::Operator::Equal;
        std::string key;
        bool partial = false;
    };
    // A comparison of a tag's key expression with a constant.
    struct KeyCondition {
        OpenTag* tag = nullptr;
        KeyBound bound;
    };
    std::optional<Resolved> Resolve(const expr::Node& node);
    std::optional<Resolved> ResolveComparison(const expr::Node& node);
    // Two bounds on one tag joined by .AND.
    std::optional<Resolved> ResolveRange(const expr::Node& node);
    std::optional<Resolved> ResolveLogicalKey(const expr::Node& node);
    std::optional<KeyCondition> KeyConditionOf(const expr::Node& node);
    OpenTag* TagFor(const expr::Node& operand, expr::ValueType type);
    // The records whose keys lie within the bounds (> or >= below, < or <= above; either may be
    // missing), in one walk of the tag.
    Resolved Walk(OpenTag& tag, const std::optional<KeyBound>& lower,
                  const std::optional<KeyBound>& upper);
    bool Evaluate(std::uint32_t record, std::string_view bytes);
    // Builds the bitmap from the tags (again, when they changed).
    void ResolveFromTags();
    void CollectUnresolved(const expr::Node& node);

    std::string text_;
    TableIndexes& indexes_;
    cursor::TableCursor& table_;
    const expr::DateSettings& dates_;
    expr::Expression whole_;
    std::uint32_t records_ = 0;
    RecordBitmap candidates_;
    bool exact_ = false;
    std::uint16_t level_ = ADS_OPTIMIZED_NONE;
    std::string nonOptimized_;
    TableIndexes::ChangeStampValue seen_;  // of the index files when the bitmap was read
};

}  // namespace fnrk::engine::order
