// The management call's configuration record: the figures this in-process engine has (its
// connections, open tables and cursors, index orders and locks); the server's memory, thread
// and network settings do not exist here and stay zero.

#include "engine/engine.hpp"

namespace fnrk::engine {

Status Engine::MgGetConfigInfo(Handle /*managementConnection*/, MgmtConfig& config) {
    config = MgmtConfig{};
    config.lNumConnections = static_cast<std::int32_t>(connections_.size());
    config.lNumTables = static_cast<std::int32_t>(tables_.size());
    config.lNumWorkAreas = static_cast<std::int32_t>(tables_.size());
    std::int32_t locks = 0;
    std::int32_t indexes = 0;
    for (const auto& [handle, table] : tables_) {
        locks += table.cursor->lockCount();
        std::vector<Handle> orders;
        if (GetAllIndexes(handle, orders) == AE_SUCCESS)
            indexes += static_cast<std::int32_t>(orders.size());
    }
    config.lNumLocks = locks;
    config.lNumIndexes = indexes;
    return AE_SUCCESS;
}

}  // namespace fnrk::engine
