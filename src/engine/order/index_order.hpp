#pragma once

// Navigation of a table in the order of one tag: top, bottom, skips, seeks, scopes, key counts
// and relative key positions. The table's own cursor holds the position; filters, the deleted
// setting and optimized filters decide which records are visible. A descending tag is its stored
// order read backwards.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/cdx/index_tag.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/errors.hpp"
#include "engine/order/table_indexes.hpp"

namespace fnrk::engine::order {

enum class ScopeEnd { Top, Bottom };

class IndexOrder {
  public:
    IndexOrder(cursor::TableCursor& table, OpenTag& tag) : table_(table), tag_(tag) {}

    OpenTag& tag() const { return tag_; }

    [[nodiscard]] Status GotoTop();
    [[nodiscard]] Status GotoBottom();
    [[nodiscard]] Status Skip(std::int32_t count);
    // `probe` is key bytes; shorter than the key it is a partial key. A soft seek that finds no
    // equal key stays on the next key; a hard one goes to EOF. `last` finds the last equal key.
    [[nodiscard]] Status Seek(std::string_view probe, bool soft, bool last, bool& found);
    // The first key after every key equal to the probe; `found` tells whether there is one.
    [[nodiscard]] Status SeekAfter(std::string_view probe, bool& found);

    void SetScope(ScopeEnd end, std::string key);
    void ClearScope(ScopeEnd end);
    const std::optional<std::string>& scope(ScopeEnd end) const {
        return end == ScopeEnd::Top ? top_ : bottom_;
    }

    // ADS_IGNOREFILTERS: every key; ADS_RESPECTSCOPES: keys within the scopes;
    // ADS_RESPECTFILTERS: visible records within the scopes.
    [[nodiscard]] Status CountKeys(std::uint16_t filterOption, std::uint32_t& count);
    [[nodiscard]] Status GetRelKeyPos(double& position);
    [[nodiscard]] Status SetRelKeyPos(double position);
    // The current record's key in this tag (empty when it does not qualify).
    [[nodiscard]] Status ExtractKey(std::string& key);
    // The current record has a key in this tag, within the scopes.
    bool CurrentRecordInScope();

  private:
    cdx::IndexTag& indexTag() { return *tag_.tag; }
    bool descending() { return indexTag().header().descending; }
    cdx::TagPosition LogicalFirst();
    cdx::TagPosition LogicalLast();
    cdx::TagPosition Step(cdx::TagPosition at, int direction) {
        return (direction > 0) != descending() ? indexTag().Next(at) : indexTag().Previous(at);
    }
    // First entry (in tag order) whose key is not before the probe / last one not after it.
    cdx::TagPosition FirstFrom(std::string_view probe);
    cdx::TagPosition LastUpTo(std::string_view probe);
    int LogicalCompare(std::string_view key, std::string_view probe);
    bool InScope(std::string_view key);
    cdx::TagPosition ScopeStart();
    cdx::TagPosition ScopeEnd();
    // The tag entry of the table's current record, if it has one. Throws IndexCorrupt when
    // the tag holds the record under its key and also under the key this order last landed on.
    cdx::TagPosition Current();
    // Current() without searching when the table is still on the entry the last navigation
    // settled on and the tag has not changed since: the walk in tag order goes on from the leaf.
    cdx::TagPosition Here();
    // Whether the current record, `record`, still makes the key the last navigation landed on.
    bool StillHasLandedKey(std::uint32_t record);
    // One step of a skip from `at` in `direction`; landing on the record it started from means
    // the tag holds that record twice, and the walk would never end.
    cdx::TagPosition StepOnce(cdx::TagPosition at, int direction);
    // From `at` on (itself included) in `direction`, the first entry in scope whose record is
    // visible; the table is left on it. Invalid when none.
    cdx::TagPosition Settle(cdx::TagPosition at, int direction);
    [[nodiscard]] Status GoEof();

    cursor::TableCursor& table_;
    OpenTag& tag_;
    std::optional<std::string> top_;
    std::optional<std::string> bottom_;
    // The entry the last navigation settled on: a skip goes on from there, not from wherever
    // the record's key would put it, so that a stale second key cannot send the walk back.
    struct Landing {
        std::uint32_t record = 0;
        cdx::KeyBytes key;
        cdx::TagPosition at;
        cdx::IndexTag::Version version;
    };
    std::optional<Landing> landed_;
    std::string hereKey_;  // scratch of Here(), kept to spare allocations
};

}  // namespace fnrk::engine::order
