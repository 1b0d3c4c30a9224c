#include <algorithm>
#include <filesystem>
#include <initializer_list>

#include "engine/sql/statement_registry.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

// Sets a numeric setting when the value is one of `allowed`, else refuses it.
Status Choice(std::uint16_t& setting, std::uint16_t value,
              std::initializer_list<std::uint16_t> allowed, Status refusal) {
    if (std::find(allowed.begin(), allowed.end(), value) == allowed.end()) return refusal;
    setting = value;
    return AE_SUCCESS;
}

}  // namespace

Status SetCheckRights(StatementSettings& settings, std::uint16_t checkRights) {
    return Choice(settings.checkRights, checkRights, {ADS_CHECKRIGHTS, ADS_IGNORERIGHTS},
                  AE_INVALID_RIGHTSOPTION);
}

Status SetReadOnly(StatementSettings& settings, std::uint16_t readOnly) {
    return Choice(settings.readOnly, readOnly, {ADS_CURSOR_READONLY, ADS_CURSOR_READWRITE},
                  AE_INVALID_OPTION);
}

Status SetLockType(StatementSettings& settings, std::uint16_t lockType) {
    return Choice(settings.lockType, lockType, {ADS_COMPATIBLE_LOCKING, ADS_PROPRIETARY_LOCKING},
                  AE_INVALID_LOCKTYPE);
}

Status SetCharType(StatementSettings& settings, std::uint16_t charType) {
    return Choice(settings.charType, charType, {ADS_ANSI, ADS_DEFAULT}, AE_INVALID_CHARSETTYPE);
}

Status SetTableType(StatementSettings& settings, std::uint16_t tableType) {
    return Choice(settings.tableType, tableType, {ADS_CDX, ADS_VFP, ADS_DEFAULT},
                  AE_INVALID_TABLETYPE);
}

Status SetTablePassword(StatementSettings& settings, std::string_view table,
                        std::string_view password) {
    const std::string name =
        platform::UpperCase(std::filesystem::path(platform::Trim(table)).stem().string());
    if (name.empty()) return AE_INVALID_OBJECT_NAME;
    settings.passwords[name] = std::string(password);
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::sql
