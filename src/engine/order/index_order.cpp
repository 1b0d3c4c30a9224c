#include "engine/order/index_order.hpp"

#include <cmath>

#include "engine/constants.hpp"

namespace fnrk::engine::order {

using cdx::TagPosition;

namespace {

constexpr std::size_t kPrefetchDistance = 8;

}  // namespace

cdx::TagPosition IndexOrder::LogicalFirst() {
    return descending() ? indexTag().Last() : indexTag().First();
}

cdx::TagPosition IndexOrder::LogicalLast() {
    return descending() ? indexTag().First() : indexTag().Last();
}

cdx::TagPosition IndexOrder::FirstFrom(std::string_view probe) {
    return descending() ? indexTag().LastNotAbove(probe) : indexTag().LowerBound(probe);
}

cdx::TagPosition IndexOrder::LastUpTo(std::string_view probe) {
    return descending() ? indexTag().LowerBound(probe) : indexTag().LastNotAbove(probe);
}

int IndexOrder::LogicalCompare(std::string_view key, std::string_view probe) {
    const int c = cdx::ComparePrefix(key, probe);
    return descending() ? -c : c;
}

bool IndexOrder::InScope(std::string_view key) {
    if (top_ && LogicalCompare(key, *top_) < 0) return false;
    if (bottom_ && LogicalCompare(key, *bottom_) > 0) return false;
    return true;
}

cdx::TagPosition IndexOrder::ScopeStart() {
    return top_ ? FirstFrom(*top_) : LogicalFirst();
}

cdx::TagPosition IndexOrder::ScopeEnd() {
    return bottom_ ? LastUpTo(*bottom_) : LogicalLast();
}

cdx::TagPosition IndexOrder::Current() {
    const std::uint32_t record = table_.recordNumber();
    if (record == 0 || !tag_.keys) return {};
    const auto key = tag_.keys->KeyOf(table_.CurrentRecordBytes(), record);
    const TagPosition at = key ? indexTag().Find(*key, record) : TagPosition{};
    if (!landed_ || landed_->record != record) return at;
    const TagPosition landed = indexTag().Find(landed_->key, record);
    if (!landed.valid()) return at;  // the record moved since: its own key is the place
    if (!at.valid()) return landed;
    if (at.leaf != landed.leaf || at.index != landed.index)
        throw cdx::IndexCorrupt("tag " + indexTag().name() + " holds record " +
                                std::to_string(record) + " twice");
    return at;
}

cdx::TagPosition IndexOrder::Here() {
    const std::uint32_t record = table_.recordNumber();
    if (landed_ && record != 0 && tag_.keys && landed_->record == record &&
        landed_->version == indexTag().version()) {
        // The tag is as it was at the landing (same version): the entry there is still the one
        // landed on. It is the record's own when the record still has that key: then a search
        // would find that very entry. Anything else (a key held twice) is Current()'s to judge.
        // Alone on the table, every change of a key went through this tag and changed its
        // version: the record's key needs no second look.
        if (table_.file().exclusive() || StillHasLandedKey(record)) return landed_->at;
    }
    return Current();
}

bool IndexOrder::StillHasLandedKey(std::uint32_t record) {
    hereKey_.resize(landed_->key.size());
    return tag_.keys->WriteKey(table_.CurrentRecordBytes(), record, hereKey_.data()) &&
           hereKey_ == landed_->key;
}

cdx::TagPosition IndexOrder::StepOnce(TagPosition at, int direction) {
    if (!at.valid()) return {};
    const std::uint32_t from = indexTag().EntryAt(at).record;
    const TagPosition next = Settle(Step(at, direction), direction);
    if (next.valid() && indexTag().EntryAt(next).record == from)
        throw cdx::IndexCorrupt("tag " + indexTag().name() + " holds record " +
                                std::to_string(from) + " twice");
    return next;
}

bool IndexOrder::CurrentRecordInScope() {
    const TagPosition at = Current();
    return at.valid() && InScope(indexTag().EntryAt(at).key);
}

cdx::TagPosition IndexOrder::Settle(TagPosition at, int direction) {
    const std::uint64_t limit = indexTag().WalkLimit();
    for (std::uint64_t steps = 0; at.valid(); at = Step(at, direction)) {
        if (++steps > limit) throw cdx::IndexCorrupt("tag " + indexTag().name() + " loops");
        const cdx::IndexEntry& entry = indexTag().EntryAt(at);
        if (!InScope(entry.key)) return {};
        const std::uint32_t record = entry.record;
        if (table_.GotoRecord(record) != AE_SUCCESS) return {};
        if (table_.IsVisible()) {
            // Filled in place: a walk lands on every entry, and the key keeps its buffer.
            Landing& landing = landed_ ? *landed_ : landed_.emplace(Landing{});
            landing.record = record;
            landing.key.assign(indexTag().EntryAt(at).key);
            landing.at = at;
            landing.version = indexTag().version();
            // A walk's next steps most likely land on the following entries: the record a few
            // steps ahead is brought in now, so that it has arrived when the walk gets there
            // (one step is shorter than a read from memory).
            table_.file().Prefetch(
                indexTag().NeighbourRecord(at, (direction > 0) != descending(), kPrefetchDistance));
            return at;
        }
    }
    return {};
}

Status IndexOrder::GoEof() {
    return table_.GotoRecord(0);
}

Status IndexOrder::GotoTop() {
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    return Settle(ScopeStart(), 1).valid() ? AE_SUCCESS : GoEof();
}

Status IndexOrder::GotoBottom() {
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    return Settle(ScopeEnd(), -1).valid() ? AE_SUCCESS : GoEof();
}

Status IndexOrder::Skip(std::int32_t count) {
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    const bool atEof = table_.atEof();
    TagPosition at = Here();
    if (count == 0) return at.valid() ? table_.GotoRecord(table_.recordNumber()) : AE_SUCCESS;
    if (count > 0) {
        if (atEof) return AE_SUCCESS;
        for (std::int32_t i = 0; i < count; ++i) {
            at = StepOnce(at, 1);
            if (!at.valid()) return GoEof();
        }
        return AE_SUCCESS;
    }
    // Backwards; from EOF the first step lands on the last visible record.
    for (std::int32_t i = 0; i > count; --i) {
        at = atEof && i == 0 ? Settle(ScopeEnd(), -1) : StepOnce(at, -1);
        if (!at.valid()) {
            // Before the first key: BOF, on the first visible record.
            if (!Settle(ScopeStart(), 1).valid()) return GoEof();
            table_.MarkBof();
            return AE_SUCCESS;
        }
    }
    return AE_SUCCESS;
}

Status IndexOrder::Seek(std::string_view probe, bool soft, bool last, bool& found) {
    found = false;
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    probe = probe.substr(0, indexTag().shape().length);
    const TagPosition at = last ? Settle(LastUpTo(probe), -1) : Settle(FirstFrom(probe), 1);
    if (at.valid()) found = cdx::ComparePrefix(indexTag().EntryAt(at).key, probe) == 0;
    if (found || (soft && !last && at.valid())) return AE_SUCCESS;
    return GoEof();
}

Status IndexOrder::SeekAfter(std::string_view probe, bool& found) {
    found = false;
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    probe = probe.substr(0, indexTag().shape().length);
    const TagPosition last = LastUpTo(probe);
    found = Settle(last.valid() ? Step(last, 1) : ScopeStart(), 1).valid();
    return found ? AE_SUCCESS : GoEof();
}

void IndexOrder::SetScope(order::ScopeEnd end, std::string key) {
    (end == ScopeEnd::Top ? top_ : bottom_) = std::move(key);
}

void IndexOrder::ClearScope(order::ScopeEnd end) {
    (end == ScopeEnd::Top ? top_ : bottom_).reset();
}

Status IndexOrder::CountKeys(std::uint16_t filterOption, std::uint32_t& count) {
    count = 0;
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    if (filterOption == ADS_IGNOREFILTERS) {
        count = static_cast<std::uint32_t>(indexTag().CountKeys());
        return AE_SUCCESS;
    }
    const std::uint32_t saved = table_.recordNumber();
    std::uint64_t steps = 0;
    for (TagPosition at = ScopeStart(); at.valid(); at = Step(at, 1)) {
        if (++steps > indexTag().WalkLimit())
            throw cdx::IndexCorrupt("tag " + indexTag().name() + " loops");
        const cdx::IndexEntry entry = indexTag().EntryAt(at);
        if (!InScope(entry.key)) break;
        if (filterOption == ADS_RESPECTFILTERS) {
            if (Status status = table_.GotoRecord(entry.record); status != AE_SUCCESS)
                return status;
            if (!table_.IsVisible()) continue;
        }
        ++count;
    }
    if (filterOption == ADS_RESPECTFILTERS) return table_.GotoRecord(saved);
    return AE_SUCCESS;
}

Status IndexOrder::GetRelKeyPos(double& position) {
    position = 0;
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    if (table_.atEof()) {
        position = 1.0;
        return AE_SUCCESS;
    }
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    const TagPosition current = Current();
    std::uint64_t before = 0;
    std::uint64_t total = 0;
    bool passed = false;
    for (TagPosition at = ScopeStart(); at.valid() && InScope(indexTag().EntryAt(at).key);
         at = Step(at, 1)) {
        if (total > indexTag().WalkLimit())
            throw cdx::IndexCorrupt("tag " + indexTag().name() + " loops");
        if (current.valid() && at.leaf == current.leaf && at.index == current.index) passed = true;
        if (!passed) ++before;
        ++total;
    }
    position = total <= 1 ? 0.0 : static_cast<double>(before) / static_cast<double>(total - 1);
    return AE_SUCCESS;
}

Status IndexOrder::SetRelKeyPos(double position) {
    if (position < 0 || position > 1) return AE_INVALID_VALUE;
    if (Status status = table_.Commit(); status != AE_SUCCESS) return status;
    cdx::IndexFile::ReadGuard guard(tag_.file->file());
    std::uint64_t total = 0;
    for (TagPosition at = ScopeStart(); at.valid() && InScope(indexTag().EntryAt(at).key);
         at = Step(at, 1)) {
        if (++total > indexTag().WalkLimit())
            throw cdx::IndexCorrupt("tag " + indexTag().name() + " loops");
    }
    if (total == 0) return GoEof();
    auto target =
        static_cast<std::uint64_t>(std::llround(position * static_cast<double>(total - 1)));
    TagPosition at = ScopeStart();
    for (; target > 0 && at.valid(); --target) at = Step(at, 1);
    return Settle(at, 1).valid() ? AE_SUCCESS : GoEof();
}

Status IndexOrder::ExtractKey(std::string& key) {
    key.clear();
    const std::uint32_t record = table_.recordNumber();
    if (record == 0) return AE_NO_CURRENT_RECORD;
    if (!tag_.keys) return AE_INVALID_EXPRESSION;
    key = tag_.keys->KeyOf(table_.CurrentRecordBytes(), record).value_or("");
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::order
