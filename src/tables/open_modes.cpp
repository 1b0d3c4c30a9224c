#include "tables/open_modes.hpp"

#include <string>

#include "engine/constants.hpp"
#include "platform/text.hpp"

namespace fnrk::tables {

bool OpenOptionsOf(std::string_view mode, std::uint32_t& options) {
    const std::string upper = platform::UpperCase(platform::Trim(mode));
    if (upper == "SHARED") {
        options = engine::ADS_SHARED;
    } else if (upper == "EXCLUSIVE") {
        options = engine::ADS_EXCLUSIVE;
    } else if (upper == "READONLY") {
        options = engine::ADS_SHARED | engine::ADS_READONLY;
    } else {
        return false;
    }
    return true;
}

}  // namespace fnrk::tables
