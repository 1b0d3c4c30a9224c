#include "engine/order/order_registry.hpp"

#include <algorithm>

namespace fnrk::engine::order {

TableOrders& OrderRegistry::Attach(Handle table, cursor::TableCursor& cursor,
                                   const expr::DateSettings& dates) {
    TableOrders& orders = tables_[table];
    orders.indexes = std::make_unique<TableIndexes>(cursor, dates);
    return orders;
}

void OrderRegistry::Detach(Handle table) {
    Forget();
    std::erase_if(orders_, [&](const auto& entry) { return entry.second.table == table; });
    auto found = tables_.find(table);
    if (found == tables_.end()) return;
    if (found->second.filter) found->second.indexes->table().SetRecordGate({});
    tables_.erase(found);
}

TableOrders* OrderRegistry::FindTable(Handle table) {
    const auto found = tables_.find(table);
    return found == tables_.end() ? nullptr : &found->second;
}

Handle OrderRegistry::HandleOf(Handle table, OpenTag* tag, Handle& nextHandle) {
    for (const auto& [handle, entry] : orders_)
        if (entry.table == table && &entry.order->tag() == tag) return handle;
    TableOrders* orders = FindTable(table);
    if (orders == nullptr || tag == nullptr) return 0;
    const Handle handle = nextHandle++;
    Forget();
    orders_[handle] =
        IndexEntry{table, std::make_unique<IndexOrder>(orders->indexes->table(), *tag)};
    return handle;
}

bool OrderRegistry::LookUp(Handle index) {
    const auto found = orders_.find(index);
    if (found == orders_.end()) {
        lastMissed_ = index;
        return false;
    }
    last_ = {index, &found->second};
    return true;
}

std::vector<Handle> OrderRegistry::HandlesOf(Handle table, Handle& nextHandle) {
    std::vector<Handle> handles;
    TableOrders* orders = FindTable(table);
    if (orders == nullptr) return handles;
    for (const auto& tag : orders->indexes->tags())
        handles.push_back(HandleOf(table, tag.get(), nextHandle));
    return handles;
}

void OrderRegistry::Prune(Handle table) {
    TableOrders* orders = FindTable(table);
    Forget();
    std::erase_if(orders_, [&](const auto& entry) {
        if (entry.second.table != table) return false;
        if (orders == nullptr) return true;
        const auto& tags = orders->indexes->tags();
        return std::none_of(tags.begin(), tags.end(), [&](const auto& tag) {
            return tag.get() == &entry.second.order->tag();
        });
    });
}

}  // namespace fnrk::engine::order
