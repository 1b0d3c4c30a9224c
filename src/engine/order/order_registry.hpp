#pragma once

// The engine's bookkeeping of index orders: per open table its index files and optimized
// filter, and per index handle the order it stands for.

#include <map>
#include <memory>
#include <vector>

#include "engine/constants.hpp"
#include "engine/order/index_order.hpp"
#include "engine/order/optimized_filter.hpp"
#include "engine/order/table_indexes.hpp"

namespace fnrk::engine::order {

struct TableOrders {
    std::unique_ptr<TableIndexes> indexes;
    std::unique_ptr<OptimizedFilter> filter;
};

class OrderRegistry {
  public:
    TableOrders& Attach(Handle table, cursor::TableCursor& cursor, const expr::DateSettings& dates);
    // Forgets a table and the handles of its orders.
    void Detach(Handle table);
    TableOrders* FindTable(Handle table);

    // The handle of a tag's order, made on first request from `nextHandle`.
    Handle HandleOf(Handle table, OpenTag* tag, Handle& nextHandle);
    // The order behind an index handle and the table it belongs to, or null.
    IndexOrder* FindOrder(Handle index, Handle* table = nullptr) {
        if (index == 0 || index == lastMissed_) return nullptr;
        if (index != last_.handle && !LookUp(index)) return nullptr;
        if (table != nullptr) *table = last_.entry->table;
        return last_.entry->order.get();
    }
    // Handles of the table's tags, in tag order.
    std::vector<Handle> HandlesOf(Handle table, Handle& nextHandle);
    // Drops handles whose tags are gone (their file was closed or rebuilt without them).
    void Prune(Handle table);

  private:
    // Remembers the handle's entry in last_, or the handle in lastMissed_ when it has none.
    bool LookUp(Handle index);
    void Forget() {
        last_ = {};
        lastMissed_ = 0;
    }

    struct IndexEntry {
        Handle table = 0;
        std::unique_ptr<IndexOrder> order;
    };
    std::map<Handle, TableOrders> tables_;
    std::map<Handle, IndexEntry> orders_;
    // The last index handle FindOrder found and its entry, and the last handle it did not find:
    // a walk asks for its index handle and its table handle several times a step. Every change
    // to orders_ clears both.
    struct LastLookup {
        Handle handle = 0;
        IndexEntry* entry = nullptr;
    };
    LastLookup last_;
    Handle lastMissed_ = 0;
};

}  // namespace fnrk::engine::order
