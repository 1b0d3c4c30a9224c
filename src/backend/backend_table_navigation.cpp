#include <cstring>

#include "backend/backend_table.hpp"
#include "engine/cdx/index_key.hpp"
#include "engine/constants.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

namespace {

// The highest key that starts with `prefix`: scopes and seeks take a partial key as a prefix.
std::string UpperBound(const std::string& prefix, std::size_t keyLength) {
    std::string bound = prefix;
    if (bound.size() < keyLength) bound.append(keyLength - bound.size(), '\xFF');
    return bound;
}

}  // namespace

WalkLimits BackendTable::Limits(Order order, bool withScopes) const {
    WalkLimits limits;
    limits.tag = order;
    limits.includeDeleted = settings_.showDeleted;
    if (!order || !withScopes) return limits;
    const IndexTag& tag = layout_.tags[*order];
    const TagScope& scope = scopes_[*order];
    // The top of a descending tag is its highest key.
    const auto& lowScope = tag.descending() ? scope.bottom : scope.top;
    const auto& highScope = tag.descending() ? scope.top : scope.bottom;
    if (lowScope) limits.low = *lowScope;
    if (highScope) limits.high = UpperBound(*highScope, tag.keyLength);
    return limits;
}

bool BackendTable::Passes(const StoredRow& row) {
    if (!filter_ && !aof_) return true;
    const std::string_view records[] = {row.record};
    const expr::EvaluationContext context{records, row.recno, &settings_.dates};
    if (filter_ && !filter_->EvaluateLogical(context)) return false;
    return !aof_ || aof_->EvaluateLogical(context);
}

std::optional<std::string> BackendTable::CurrentKey(std::size_t tag) const {
    return KeyOf(layout_.tags[tag], current_.record, current_.recno);
}

std::optional<StoredRow> BackendTable::From(Order order) const {
    if (atEof_) return std::nullopt;
    StoredRow from;
    from.recno = current_.recno;
    if (order) from.key = CurrentKey(*order).value_or(std::string());
    return from;
}

std::optional<StoredRow> BackendTable::Next(const WalkLimits& limits, bool forward,
                                            std::optional<StoredRow> from, bool applyFilters) {
    const bool filtering = applyFilters && (filter_ || aof_);
    // Without filters the first row is the answer; with them, read ahead a little.
    const int batch = filtering ? 32 : 1;
    for (;;) {
        auto rows = store_.Walk(limits, forward, from, batch);
        for (auto& row : rows) {
            if (!filtering || Passes(row)) return std::move(row);
        }
        if (static_cast<int>(rows.size()) < batch) return std::nullopt;
        from = std::move(rows.back());
    }
}

Status BackendTable::GotoTop(Order order) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (auto first = Next(Limits(order), true, std::nullopt)) {
        MoveTo(std::move(*first));
    } else {
        MoveToEof();
        atBof_ = true;
    }
    return AE_SUCCESS;
}

Status BackendTable::GotoBottom(Order order) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (auto last = Next(Limits(order), false, std::nullopt)) {
        MoveTo(std::move(*last));
    } else {
        MoveToEof();
        atBof_ = true;
    }
    return AE_SUCCESS;
}

Status BackendTable::GotoRecord(std::uint32_t record) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    std::optional<StoredRow> row;
    if (record != 0) row = store_.Read(record);
    if (!row) {
        MoveToEof();
        atBof_ = false;
        return AE_SUCCESS;
    }
    MoveTo(std::move(*row));
    return AE_SUCCESS;
}

Status BackendTable::Skip(Order order, std::int32_t records) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (records == 0) return Refresh();
    const WalkLimits limits = Limits(order);
    if (records > 0) {
        if (atEof_) return AE_SUCCESS;
        std::optional<StoredRow> at = From(order);
        for (std::int32_t i = 0; i < records; ++i) {
            at = Next(limits, true, std::move(at));
            if (!at) {
                MoveToEof();
                return AE_SUCCESS;
            }
        }
        MoveTo(std::move(*at));
        return AE_SUCCESS;
    }
    // Backwards; from EOF the first step lands on the last visible record.
    bool onRecord = !atEof_;
    std::optional<StoredRow> at = From(order);
    for (std::int32_t i = 0; i > records; --i) {
        auto previous = Next(limits, false, at);
        if (!previous) {
            // Before the first record: BOF, positioned on the first visible record.
            auto first = onRecord ? Next(limits, true, std::nullopt) : std::nullopt;
            if (first) {
                MoveTo(std::move(*first));
            } else {
                MoveToEof();
            }
            atBof_ = true;
            return AE_SUCCESS;
        }
        at = std::move(previous);
        onRecord = true;
    }
    MoveTo(std::move(*at));
    return AE_SUCCESS;
}

bool BackendTable::IsVisible(Order order) {
    if (atEof_) return false;
    if (!settings_.showDeleted && IsDeleted()) return false;
    if (order) {
        auto key = CurrentKey(*order);
        const WalkLimits limits = Limits(order);
        if (!key || (limits.low && *key < *limits.low) || (limits.high && *key > *limits.high)) {
            return false;
        }
    }
    return Passes(current_);
}

// --- filters and searches

std::unique_ptr<expr::FieldResolver> BackendTable::FieldNames() const {
    return std::make_unique<LayoutResolver>(layout_);
}

Status BackendTable::SetFilter(std::string_view expression, std::string& message) {
    auto compiled = CompileCondition(expression, message);
    if (!compiled) return AE_INVALID_EXPRESSION;
    filter_ = std::move(compiled);
    filterText_ = expression;
    return AE_SUCCESS;
}

void BackendTable::ClearFilter() {
    filter_.reset();
    filterText_.clear();
}

Status BackendTable::SetAof(std::string_view expression, std::string& message) {
    auto compiled = CompileCondition(expression, message);
    if (!compiled) return AE_INVALID_EXPRESSION;
    aof_ = std::move(compiled);
    aofText_ = expression;
    return AE_SUCCESS;
}

void BackendTable::ClearAof() {
    aof_.reset();
    aofText_.clear();
}

// --- indexes

Status BackendTable::AddTag(IndexTag tag) {
    if (store_.locked()) return AE_ENCRYPTION_NOT_ENABLED;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (auto existing = layout_.TagIndex(tag.name)) {
        store_.RemoveTag(layout_.tags[*existing]);
        layout_.tags.erase(layout_.tags.begin() + static_cast<std::ptrdiff_t>(*existing));
        scopes_.erase(scopes_.begin() + static_cast<std::ptrdiff_t>(*existing));
    }
    layout_.tags.push_back(std::move(tag));
    scopes_.emplace_back();
    try {
        store_.AddTag(layout_.tags.back(), layout_.tags.size() - 1);
    } catch (...) {
        layout_.tags.pop_back();
        scopes_.pop_back();
        throw;
    }
    return AE_SUCCESS;
}

Status BackendTable::Seek(std::size_t tagIndex, std::string_view key, bool soft, bool greater,
                          bool& found) {
    found = false;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    const IndexTag& tag = layout_.tags[tagIndex];
    const std::string probe(key);
    WalkLimits limits = Limits(tagIndex);
    const std::string low = greater ? UpperBound(probe, tag.keyLength) : probe;
    if (!limits.low || *limits.low < low) limits.low = low;
    // Keys are searched in ascending order whatever the tag's direction.
    auto row = Next(limits, !tag.descending(), std::nullopt);
    if (row && greater) {
        found = row->key > low;
    } else if (row) {
        found = row->key.compare(0, probe.size(), probe) == 0;
    }
    if (found || (soft && row)) {
        MoveTo(std::move(*row));
    } else {
        MoveToEof();
    }
    return AE_SUCCESS;
}

Status BackendTable::SeekLast(std::size_t tagIndex, std::string_view key, bool& found) {
    found = false;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    const IndexTag& tag = layout_.tags[tagIndex];
    const std::string probe(key);
    WalkLimits limits = Limits(tagIndex);
    const std::string high = UpperBound(probe, tag.keyLength);
    if (!limits.high || *limits.high > high) limits.high = high;
    auto row = Next(limits, tag.descending(), std::nullopt);
    found = row && row->key.compare(0, probe.size(), probe) == 0;
    if (found) {
        MoveTo(std::move(*row));
    } else {
        MoveToEof();
    }
    return AE_SUCCESS;
}

std::optional<std::string> ProbeKey(const IndexTag& tag, std::string_view key,
                                    std::uint16_t dataType, const expr::DateSettings& dates) {
    if (dataType == ADS_RAWKEY) return std::string(key);
    std::optional<double> number;
    if (dataType == ADS_DOUBLEKEY) {
        if (key.size() != sizeof(double)) return std::nullopt;
        double value = 0;
        std::memcpy(&value, key.data(), sizeof value);
        number = value;
    } else if (dataType != ADS_STRINGKEY) {
        return std::nullopt;
    }
    switch (tag.keyType) {
        case KeyType::Character:
            if (number) return std::nullopt;
            return platform::Utf8ToCp1252(key);
        case KeyType::Logical: {
            if (number) return cdx::EncodeLogicalKey(*number != 0);
            const std::string text = platform::UpperCase(platform::Trim(key));
            return cdx::EncodeLogicalKey(text == "T" || text == ".T." || text == "Y");
        }
        case KeyType::Date:
            if (!number) {
                auto julian = expr::ParseDate(key, dates);
                if (!julian) julian = expr::Stod(key);
                if (!julian) return std::nullopt;
                number = *julian;
            }
            return cdx::EncodeNumberKey(*number);
        case KeyType::Numeric:
            if (!number) {
                const std::string text = platform::Trim(key);
                char* end = nullptr;
                number = std::strtod(text.c_str(), &end);
                if (text.empty() || end != text.c_str() + text.size()) return std::nullopt;
            }
            return cdx::EncodeNumberKey(*number);
    }
    return std::nullopt;
}

}  // namespace fnrk::backend
