// The operations this engine does not offer yet: data dictionaries.

#include "engine/engine.hpp"

namespace fnrk::engine {

Status Engine::DDCreate(std::string_view /*dictionaryPath*/, std::uint16_t /*encrypt*/,
                        std::string_view /*description*/, Handle& /*dictionary*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDAddTable(Handle /*dictionary*/, std::string_view /*tableName*/,
                          std::string_view /*tablePath*/, std::uint16_t /*tableType*/,
                          std::uint16_t /*charType*/, std::string_view /*indexFiles*/,
                          std::string_view /*comments*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDAddView(Handle /*dictionary*/, std::string_view /*name*/,
                         std::string_view /*comments*/, std::string_view /*sql*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDCreateUser(Handle /*dictionary*/, std::string_view /*groupName*/,
                            std::string_view /*userName*/, std::string_view /*password*/,
                            std::string_view /*description*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDSetDatabaseProperty(Handle /*dictionary*/, std::uint16_t /*propertyId*/,
                                     std::string_view /*value*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

Status Engine::DDSetUserProperty(Handle /*dictionary*/, std::string_view /*userName*/,
                                 std::uint16_t /*propertyId*/, std::string_view /*value*/) {
    return Report(AE_NOT_IMPLEMENTED);
}

}  // namespace fnrk::engine
