#include "engine/order/optimized_filter.hpp"

#include <stdexcept>

#include "engine/cursor/table_resolver.hpp"

namespace fnrk::engine::order {

namespace {

using expr::NodeKind;
using expr::Operator;
using expr::ValueType;

// The same comparison with its operands swapped (5 < X is X > 5).
Operator Mirrored(Operator op) {
    switch (op) {
        case Operator::Less:
            return Operator::Greater;
        case Operator::LessOrEqual:
            return Operator::GreaterOrEqual;
        case Operator::Greater:
            return Operator::Less;
        case Operator::GreaterOrEqual:
            return Operator::LessOrEqual;
        default:
            return op;
    }
}

std::optional<std::string> ConstantKey(const expr::Constant& constant, cdx::KeyKind kind) {
    switch (kind) {
        case cdx::KeyKind::Numeric:
            if (constant.type != ValueType::Numeric) return std::nullopt;
            return cdx::EncodeNumberKey(constant.number);
        case cdx::KeyKind::Date:
            if (constant.type != ValueType::Date) return std::nullopt;
            return cdx::EncodeNumberKey(constant.julian);
        case cdx::KeyKind::Logical:
            if (constant.type != ValueType::Logical) return std::nullopt;
            return cdx::EncodeLogicalKey(constant.logical);
        case cdx::KeyKind::Character:
            if (constant.type != ValueType::Character) return std::nullopt;
            return constant.text;
    }
    return std::nullopt;
}

}  // namespace

OptimizedFilter::OptimizedFilter(std::string_view condition, TableIndexes& indexes,
                                 cursor::TableCursor& table, const expr::DateSettings& dates)
    : text_(condition),
      indexes_(indexes),
      table_(table),
      dates_(dates),
      whole_(
          expr::Expression::Compile(condition, cursor::TableResolver(table.header(), ""), dates)) {
    if (whole_.type() != ValueType::Logical)
        throw std::invalid_argument("the filter is not a logical expression");
    ResolveFromTags();
}

void OptimizedFilter::ResolveFromTags() {
    seen_ = indexes_.ChangeStamp();
    exact_ = false;
    level_ = ADS_OPTIMIZED_NONE;
    nonOptimized_.clear();
    table_.file().RefreshRecordCount();
    records_ = table_.file().recordCount();
    if (auto resolved = Resolve(whole_.tree())) {
        candidates_ = std::move(resolved->bits);
        exact_ = resolved->exact;
        level_ = exact_ ? ADS_OPTIMIZED_FULL : ADS_OPTIMIZED_PART;
    } else {
        candidates_ = RecordBitmap(records_, true);
    }
    if (!exact_) CollectUnresolved(whole_.tree());
}

bool OptimizedFilter::Evaluate(std::uint32_t record, std::string_view bytes) {
    const std::string_view records[] = {bytes};
    return whole_.EvaluateLogical(expr::EvaluationContext{records, record, &dates_});
}

bool OptimizedFilter::Admits(std::uint32_t record, std::string_view bytes) {
    // Keys that another process changed make the bitmap stale: it is resolved again.
    if (indexes_.ChangeStamp() != seen_) {
        try {
            ResolveFromTags();
        } catch (const std::exception&) {
            // A tag that cannot be read now: every record is judged by the whole condition.
            candidates_ = RecordBitmap(records_, true);
            exact_ = false;
            level_ = ADS_OPTIMIZED_NONE;
            nonOptimized_ = text_;
        }
    }
    // Records appended since the filter was set have no bit yet: they are judged on the spot.
    if (record > candidates_.records()) return Evaluate(record, bytes);
    if (!candidates_.test(record)) return false;
    return exact_ || Evaluate(record, bytes);
}

void OptimizedFilter::RecordChanged(std::uint32_t record, std::string_view bytes) {
    candidates_.set(record, Evaluate(record, bytes));
}

OpenTag* OptimizedFilter::TagFor(const expr::Node& operand, ValueType type) {
    const std::string wanted = expr::CanonicalText(operand);
    for (const auto& open : indexes_.tags()) {
        const cdx::TagHeader& header = open->tag->header();
        // A tag with a FOR condition or a unique tag does not list every record.
        if (!open->keys || !header.forExpression.empty() || header.unique()) continue;
        if (KeyKindOf(type) != open->keys->kind()) continue;
        try {
            const auto key = expr::Expression::Compile(
                header.keyExpression, cursor::TableResolver(indexes_.table().header(), ""), dates_);
            if (expr::CanonicalText(key.tree()) == wanted) return open.get();
        } catch (const std::exception&) {
        }
    }
    return nullptr;
}

OptimizedFilter::Resolved OptimizedFilter::Walk(OpenTag& open, const std::optional<KeyBound>& lower,
                                                const std::optional<KeyBound>& upper) {
    cdx::IndexTag& tag = *open.tag;
    cdx::IndexFile::ReadGuard guard(open.file->file());
    Resolved result{RecordBitmap(records_), true};
    // A character constant compares on its own length; other keys on the whole key.
    const auto probeOf = [&](const KeyBound& bound) {
        return bound.partial ? bound.key : bound.key.substr(0, tag.shape().length);
    };
    const std::string low = lower ? probeOf(*lower) : std::string();
    const std::string high = upper ? probeOf(*upper) : std::string();
    std::uint64_t steps = 0;
    for (cdx::TagPosition at = lower ? tag.LowerBound(low) : tag.First(); at.valid();
         at = tag.Next(at)) {
        if (++steps > tag.WalkLimit()) throw cdx::IndexCorrupt("tag " + tag.name() + " loops");
        const cdx::IndexEntry& entry = tag.EntryAt(at);
        if (upper) {
            const int c = cdx::ComparePrefix(entry.key, high);
            if (upper->op == Operator::Less ? c >= 0 : c > 0) break;
        }
        if (lower && lower->op == Operator::Greater && cdx::ComparePrefix(entry.key, low) == 0)
            continue;
        result.bits.set(entry.record);
    }
    return result;
}

std::optional<OptimizedFilter::KeyCondition> OptimizedFilter::KeyConditionOf(
    const expr::Node& node) {
    if (node.kind != NodeKind::Binary || !expr::IsComparison(node.op)) return std::nullopt;
    const expr::Node* operand = &node.operands[0];
    const expr::Node* constant = &node.operands[1];
    Operator op = node.op;
    if (operand->kind == NodeKind::Constant) {
        std::swap(operand, constant);
        op = Mirrored(op);
    }
    if (constant->kind != NodeKind::Constant) return std::nullopt;
    const ValueType type = operand->type;
    // Character comparisons measure on the right operand's length: with the key on the left
    // that is a prefix of the key, which a walk of the tag answers exactly.
    if (type == ValueType::Character && operand != &node.operands[0]) return std::nullopt;
    if (op != Operator::Equal && op != Operator::NotEqual && op != Operator::Less &&
        op != Operator::LessOrEqual && op != Operator::Greater && op != Operator::GreaterOrEqual)
        return std::nullopt;
    OpenTag* tag = TagFor(*operand, type);
    if (tag == nullptr) return std::nullopt;
    auto key = ConstantKey(constant->constant, tag->keys->kind());
    if (!key) return std::nullopt;
    return KeyCondition{tag, KeyBound{op, std::move(*key), type == ValueType::Character}};
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::ResolveComparison(
    const expr::Node& node) {
    auto condition = KeyConditionOf(node);
    if (!condition) return std::nullopt;
    KeyBound& bound = condition->bound;
    switch (bound.op) {
        case Operator::Greater:
        case Operator::GreaterOrEqual:
            return Walk(*condition->tag, bound, std::nullopt);
        case Operator::Less:
        case Operator::LessOrEqual:
            return Walk(*condition->tag, std::nullopt, bound);
        default:
            break;
    }
    const KeyBound from{Operator::GreaterOrEqual, bound.key, bound.partial};
    const KeyBound to{Operator::LessOrEqual, bound.key, bound.partial};
    Resolved equal = Walk(*condition->tag, from, to);
    if (bound.op == Operator::NotEqual) equal.bits.Flip();
    return equal;
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::ResolveRange(const expr::Node& node) {
    auto first = KeyConditionOf(node.operands[0]);
    auto second = KeyConditionOf(node.operands[1]);
    if (!first || !second || first->tag != second->tag) return std::nullopt;
    const auto isLower = [](Operator op) {
        return op == Operator::Greater || op == Operator::GreaterOrEqual;
    };
    const auto isUpper = [](Operator op) {
        return op == Operator::Less || op == Operator::LessOrEqual;
    };
    const KeyBound* lower = &first->bound;
    const KeyBound* upper = &second->bound;
    if (isUpper(lower->op) && isLower(upper->op)) std::swap(lower, upper);
    if (!isLower(lower->op) || !isUpper(upper->op)) return std::nullopt;
    return Walk(*first->tag, *lower, *upper);
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::ResolveLogicalKey(
    const expr::Node& node) {
    OpenTag* tag = TagFor(node, ValueType::Logical);
    if (tag == nullptr) return std::nullopt;
    const KeyBound isTrue{Operator::GreaterOrEqual, cdx::EncodeLogicalKey(true), false};
    return Walk(*tag, isTrue, KeyBound{Operator::LessOrEqual, isTrue.key, false});
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::Resolve(const expr::Node& node) {
    if (node.kind == NodeKind::Binary && (node.op == Operator::And || node.op == Operator::Or)) {
        // A lower and an upper bound on one tag: one walk between them.
        if (node.op == Operator::And)
            if (auto range = ResolveRange(node)) return range;
        auto left = Resolve(node.operands[0]);
        auto right = Resolve(node.operands[1]);
        if (node.op == Operator::And) {
            if (left && right) {
                left->bits &= right->bits;
                left->exact = left->exact && right->exact;
                return left;
            }
            // One side narrows the candidates; the other is judged per record.
            auto& one = left ? left : right;
            if (one) one->exact = false;
            return std::move(one);
        }
        if (!left || !right) return std::nullopt;
        left->bits |= right->bits;
        left->exact = left->exact && right->exact;
        return left;
    }
    if (node.kind == NodeKind::Unary && node.op == Operator::Not) {
        auto inner = Resolve(node.operands[0]);
        if (!inner || !inner->exact) return std::nullopt;
        inner->bits.Flip();
        return inner;
    }
    if (node.kind == NodeKind::Binary && expr::IsComparison(node.op))
        return ResolveComparison(node);
    if (node.type == ValueType::Logical && node.kind != NodeKind::Constant)
        return ResolveLogicalKey(node);
    return std::nullopt;
}

void OptimizedFilter::CollectUnresolved(const expr::Node& node) {
    if (node.kind == NodeKind::Binary && node.op == Operator::And) {
        CollectUnresolved(node.operands[0]);
        CollectUnresolved(node.operands[1]);
        return;
    }
    if (auto resolved = Resolve(node); resolved && resolved->exact) return;
    if (!nonOptimized_.empty()) nonOptimized_ += ".AND.";
    nonOptimized_ += expr::CanonicalText(node);
}

}  // namespace fnrk::engine::order
