#include "engine/cursor/engine_settings.hpp"

#include <string>

#include "platform/text.hpp"

namespace fnrk::engine::cursor {

Status EngineSettings::SetDateFormat(std::string_view format) {
    const std::string upper = platform::UpperCase(format);
    if (upper.find("DD") == std::string::npos || upper.find("MM") == std::string::npos ||
        upper.find("YY") == std::string::npos)
        return AE_INVALID_DATEFORMAT;
    dates.format = upper;
    return AE_SUCCESS;
}

Status EngineSettings::SetEpoch(std::uint16_t century) {
    if (century < 100 || century > 9899) return AE_INVALID_CENTURY;
    dates.epoch = century;
    return AE_SUCCESS;
}

Status EngineSettings::SetServerType(std::uint16_t types) {
    constexpr std::uint16_t known = ADS_LOCAL_SERVER | ADS_REMOTE_SERVER | ADS_AIS_SERVER;
    if (types == 0 || (types & ~known) != 0) return AE_INVALID_OPTION;
    serverTypes = types;
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::cursor
