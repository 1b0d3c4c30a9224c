#pragma once

// The engine's configuration record (MgGetConfigInfo): figures the engine has, zeros otherwise.
// Member names are those of the management API, in its order; the dispatch copies them by name.

#include <cstdint>
#include <string>

namespace fnrk::engine {

struct MgmtConfig {
    std::uint32_t ulConnectionMem = 0;
    std::uint32_t ulIndexMem = 0;
    std::uint32_t ulLockMem = 0;
    std::uint32_t ulReceiveEcbMem = 0;
    std::uint32_t ulSendEcbMem = 0;
    std::uint32_t ulTableMem = 0;
    std::uint32_t ulTotalConfigMem = 0;
    std::uint32_t ulTPSHeaderElemMem = 0;
    std::uint32_t ulTPSMemoTransElemMem = 0;
    std::uint32_t ulTPSVisibilityElemMem = 0;
    std::uint32_t ulUserBufferMem = 0;
    std::uint32_t ulWorkAreaMem = 0;
    std::uint32_t ulWorkerThreadMem = 0;
    std::string aucErLog;
    std::string aucSempho;
    std::string aucTrans;
    std::uint8_t ucDisplayNWLoginNames = 0;
    std::uint8_t ucFlushEveryUpdate = 0;
    std::uint8_t ucReserved1 = 0;
    std::uint8_t ucReserved2 = 0;
    std::uint8_t ucReserved3 = 0;
    std::uint8_t ucReserved4 = 0;
    std::uint8_t ucUseDynamicAOFs = 0;
    std::uint8_t ucUseInternet = 0;
    std::uint8_t ucUseIPProtocol = 0;
    std::uint8_t ucUseSemaphoreFiles = 0;
    std::int32_t lErrorLogMax = 0;
    std::uint32_t ulFlushFrequency = 0;
    std::uint32_t ulGhostTimeout = 0;
    std::uint32_t ulInternetKeepAlive = 0;
    std::uint32_t ulKeepAliveTimeOut = 0;
    std::int32_t lNumConnections = 0;
    std::int32_t lNumIndexes = 0;
    std::int32_t lNumLocks = 0;
    std::int32_t lNumTables = 0;
    std::int32_t lNumTPSHeaderElems = 0;
    std::int32_t lNumTPSMemoTransElems = 0;
    std::int32_t lNumTPSVisibilityElems = 0;
    std::int32_t lNumWorkAreas = 0;
    std::int32_t lStatDumpInterval = 0;
    std::int32_t lUsersBufferSize = 0;
    std::uint16_t usInternetPort = 0;
    std::uint16_t usMaxConnFailures = 0;
    std::int16_t iNumBurstPackets = 0;
    std::int16_t iNumReceiveECBs = 0;
    std::int16_t iNumSendECBs = 0;
    std::uint16_t usNumWorkerThreads = 0;
    std::uint16_t usReceiveIPPort = 0;
    std::uint16_t usSendIPPort = 0;
    std::uint16_t usSortBuffSize = 0;
};

}  // namespace fnrk::engine
