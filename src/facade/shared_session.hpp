#pragma once

// The session objects the whole process shares: made on first use, kept until the process ends,
// reached by every FnrkRoutines instance. The table access, the configuration file and the
// application paths live in their own layers (SharedAdsClass, SharedApiIni, SharedAppClass);
// so do the company-parameter object (SharedSocParamColClassApi) and the current user
// (SharedUser); what is gathered here is what only the façade fills.

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "facade/table_registry.hpp"
#include "facade/variant.hpp"

namespace fnrk::facade {

class FnrkRoutines;

// The values `Initialize` hands on to the backend dispatch and the table-open layer
// (positions 12, 14 and 15 to 26 of its list), kept as given.
struct BackendSettings {
    std::string position12Text;
    std::int16_t backendSetting = 0;                          // position 14
    std::array<std::shared_ptr<VariantObject>, 4> objects{};  // positions 15 to 18
    std::array<std::int32_t, 3> openSettings{};               // positions 19 to 21
    std::array<bool, 4> dispatchFlags{};                      // positions 22 to 25
    std::int32_t lastSetting = 0;                             // position 26
};

struct FacadeSession {
    std::array<std::int32_t, 2> connectionHandles{};
    BackendSettings backend;
    TableRegistry registry;
};

FacadeSession& SharedSession();
// The second façade that receives the caller's settings (InitializeDLL, InitializeProperty).
FnrkRoutines& SharedFnrkRoutines();
// Points the table access at the current company (company::SharedSocParamColClassApi): its
// folder and short name make the prefix of its table files. Nothing while either is empty.
void ApplyCompanyToTables();

}  // namespace fnrk::facade
