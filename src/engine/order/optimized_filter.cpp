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
      dates_(dates),
      whole_(
          expr::Expression::Compile(condition, cursor::TableResolver(table.header(), ""), dates)) {
    if (whole_.type() != ValueType::Logical)
        throw std::invalid_argument("the filter is not a logical expression");
    table.file().RefreshRecordCount();
    records_ = table.file().recordCount();
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

OptimizedFilter::Resolved OptimizedFilter::Range(OpenTag& open, Operator op, const std::string& key,
                                                 bool partial) {
    cdx::IndexTag& tag = *open.tag;
    cdx::IndexFile::ReadGuard guard(open.file->file());
    Resolved result{RecordBitmap(records_), true};
    const std::string probe = partial ? key : key.substr(0, tag.shape().length);
    std::uint64_t steps = 0;
    auto take = [&](cdx::TagPosition from, auto keep) {
        for (cdx::TagPosition at = from; at.valid(); at = tag.Next(at)) {
            if (++steps > tag.WalkLimit()) throw cdx::IndexCorrupt("tag " + tag.name() + " loops");
            const cdx::IndexEntry& entry = tag.EntryAt(at);
            const int c = cdx::ComparePrefix(entry.key, probe);
            if (!keep(c)) {
                if (c > 0) break;
                continue;
            }
            result.bits.set(entry.record);
        }
    };
    switch (op) {
        case Operator::Equal:
            take(tag.LowerBound(probe), [](int c) { return c == 0; });
            break;
        case Operator::NotEqual:
            take(tag.LowerBound(probe), [](int c) { return c == 0; });
            result.bits.Flip();
            break;
        case Operator::Greater:
            take(tag.LowerBound(probe), [](int c) { return c > 0; });
            break;
        case Operator::GreaterOrEqual:
            take(tag.LowerBound(probe), [](int c) { return c >= 0; });
            break;
        case Operator::Less:
            take(tag.First(), [](int c) { return c < 0; });
            break;
        case Operator::LessOrEqual:
            take(tag.First(), [](int c) { return c <= 0; });
            break;
        default:
            break;
    }
    return result;
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::ResolveComparison(
    const expr::Node& node) {
    const expr::Node* operand = &node.operands[0];
    const expr::Node* constant = &node.operands[1];
    Operator op = node.op;
    if (operand->kind == NodeKind::Constant) {
        std::swap(operand, constant);
        op = Mirrored(op);
    }
    if (constant->kind != NodeKind::Constant) return std::nullopt;
    const ValueType type = operand->type;
    // Character keys: only "=" has the prefix meaning that a key range gives exactly.
    if (type == ValueType::Character && (op != Operator::Equal || operand != &node.operands[0]))
        return std::nullopt;
    if (op != Operator::Equal && op != Operator::NotEqual && op != Operator::Less &&
        op != Operator::LessOrEqual && op != Operator::Greater && op != Operator::GreaterOrEqual)
        return std::nullopt;
    OpenTag* tag = TagFor(*operand, type);
    if (tag == nullptr) return std::nullopt;
    const auto key = ConstantKey(constant->constant, tag->keys->kind());
    if (!key) return std::nullopt;
    return Range(*tag, op, *key, type == ValueType::Character);
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::ResolveLogicalKey(
    const expr::Node& node) {
    OpenTag* tag = TagFor(node, ValueType::Logical);
    if (tag == nullptr) return std::nullopt;
    return Range(*tag, Operator::Equal, cdx::EncodeLogicalKey(true), false);
}

std::optional<OptimizedFilter::Resolved> OptimizedFilter::Resolve(const expr::Node& node) {
    if (node.kind == NodeKind::Binary && (node.op == Operator::And || node.op == Operator::Or)) {
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
