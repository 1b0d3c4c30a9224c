#include "backend/mgmt_config_memory.hpp"

namespace fnrk::backend {

void MGMT_CONFIG_MEMORY::Set(std::string_view name, Value value) {
    for (auto& [existing, held] : properties_) {
        if (existing == name) {
            held = std::move(value);
            return;
        }
    }
    properties_.emplace_back(std::string(name), std::move(value));
}

std::optional<MGMT_CONFIG_MEMORY::Value> MGMT_CONFIG_MEMORY::Get(std::string_view name) const {
    for (const auto& [existing, held] : properties_) {
        if (existing == name) return held;
    }
    return std::nullopt;
}

std::string MGMT_CONFIG_MEMORY::Text(std::string_view name) const {
    auto value = Get(name);
    if (!value) return {};
    if (const auto* text = std::get_if<std::string>(&*value)) return *text;
    return {};
}

void CopyConfigInto(const engine::MgmtConfig& c, MGMT_CONFIG_MEMORY& m) {
    // Order and names are those of the management API's record.
    m.Set("ulConnectionMem", c.ulConnectionMem);
    m.Set("ulIndexMem", c.ulIndexMem);
    m.Set("ulLockMem", c.ulLockMem);
    m.Set("ulReceiveEcbMem", c.ulReceiveEcbMem);
    m.Set("ulSendEcbMem", c.ulSendEcbMem);
    m.Set("ulTableMem", c.ulTableMem);
    m.Set("ulTotalConfigMem", c.ulTotalConfigMem);
    m.Set("ulTPSHeaderElemMem", c.ulTPSHeaderElemMem);
    m.Set("ulTPSMemoTransElemMem", c.ulTPSMemoTransElemMem);
    m.Set("ulTPSVisibilityElemMem", c.ulTPSVisibilityElemMem);
    m.Set("ulUserBufferMem", c.ulUserBufferMem);
    m.Set("ulWorkAreaMem", c.ulWorkAreaMem);
    m.Set("ulWorkerThreadMem", c.ulWorkerThreadMem);
    m.Set("aucErLog", c.aucErLog);
    m.Set("aucSempho", c.aucSempho);
    m.Set("aucTrans", c.aucTrans);
    m.Set("ucDisplayNWLoginNames", c.ucDisplayNWLoginNames);
    m.Set("ucFlushEveryUpdate", c.ucFlushEveryUpdate);
    m.Set("ucReserved1", c.ucReserved1);
    m.Set("ucReserved2", c.ucReserved2);
    m.Set("ucReserved3", c.ucReserved3);
    m.Set("ucReserved4", c.ucReserved4);
    m.Set("ucUseDynamicAOFs", c.ucUseDynamicAOFs);
    m.Set("ucUseInternet", c.ucUseInternet);
    m.Set("ucUseIPProtocol", c.ucUseIPProtocol);
    m.Set("ucUseSemaphoreFiles", c.ucUseSemaphoreFiles);
    m.Set("lErrorLogMax", c.lErrorLogMax);
    m.Set("ulFlushFrequency", c.ulFlushFrequency);
    m.Set("ulGhostTimeout", c.ulGhostTimeout);
    m.Set("ulInternetKeepAlive", c.ulInternetKeepAlive);
    m.Set("ulKeepAliveTimeOut", c.ulKeepAliveTimeOut);
    m.Set("lNumConnections", c.lNumConnections);
    m.Set("lNumIndexes", c.lNumIndexes);
    m.Set("lNumLocks", c.lNumLocks);
    m.Set("lNumTables", c.lNumTables);
    m.Set("lNumTPSHeaderElems", c.lNumTPSHeaderElems);
    m.Set("lNumTPSMemoTransElems", c.lNumTPSMemoTransElems);
    m.Set("lNumTPSVisibilityElems", c.lNumTPSVisibilityElems);
    m.Set("lNumWorkAreas", c.lNumWorkAreas);
    m.Set("lStatDumpInterval", c.lStatDumpInterval);
    m.Set("lUsersBufferSize", c.lUsersBufferSize);
    m.Set("usInternetPort", c.usInternetPort);
    m.Set("usMaxConnFailures", c.usMaxConnFailures);
    m.Set("iNumBurstPackets", c.iNumBurstPackets);
    m.Set("iNumReceiveECBs", c.iNumReceiveECBs);
    m.Set("iNumSendECBs", c.iNumSendECBs);
    m.Set("usNumWorkerThreads", c.usNumWorkerThreads);
    m.Set("usReceiveIPPort", c.usReceiveIPPort);
    m.Set("usSendIPPort", c.usSendIPPort);
    m.Set("usSortBuffSize", c.usSortBuffSize);
}

}  // namespace fnrk::backend
