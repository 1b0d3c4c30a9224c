#pragma once

// Header-only, for the engine's own units: runs an operation on the order behind an index
// handle, turning a damaged tag (cdx::IndexCorrupt, a walk that loops included) into
// AE_CORRUPT_INDEX, with what is wrong in `problem` when one is given.

#include <string>

#include "engine/cdx/index_format.hpp"
#include "engine/order/order_registry.hpp"

namespace fnrk::engine {

template <class Body>
Status OnOrder(order::IndexOrder& order, Body body, std::string* problem = nullptr) {
    try {
        return body(order);
    } catch (const cdx::IndexCorrupt& error) {
        if (problem != nullptr) *problem = error.what();
        return AE_CORRUPT_INDEX;
    }
}

template <class Body>
Status OnOrder(order::OrderRegistry& orders, Handle index, Body body,
               std::string* problem = nullptr) {
    order::IndexOrder* found = orders.FindOrder(index);
    if (found == nullptr) return AE_INVALID_INDEX_HANDLE;
    return OnOrder(*found, body, problem);
}

}  // namespace fnrk::engine
