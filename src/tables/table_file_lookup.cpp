#include "tables/table_file_lookup.hpp"

#include "platform/file_system.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/xbase_literal.hpp"

namespace fnrk::tables {

bool LookUpTableFile(AdsClass& tables, std::string_view alias, const std::string& path,
                     const std::string& condition, const std::function<void(AdsClass&)>& read) {
    if (!platform::FileExists(path)) return false;
    const CurrentAliasGuard caller(tables);
    const bool wasOpen = tables.IsAlias(alias);
    if (!wasOpen &&
        tables.OpenFile(alias, path, {}, "READONLY", AdsClass::kOpenQuiet) != engine::AE_SUCCESS)
        return false;
    bool found = false;
    if (tables.ActivateAlias(alias) == engine::AE_SUCCESS) {
        engine::IgnoreStatus(tables.MoveTop());  // an empty table: the locate finds nothing
        found = tables.LocateInCurrentAlias("(" + condition + ") .AND. .NOT. DELETED()");
        if (found) read(tables);
    }
    // Read only: a failed close loses nothing.
    if (!wasOpen) engine::IgnoreStatus(tables.FileClose(alias));
    return found;
}

std::optional<std::string> FieldEquals(std::string_view field, std::string_view value) {
    const auto literal = XBaseStringLiteral(value);
    if (!literal) return std::nullopt;
    return "RTRIM(" + std::string(field) + ")==" + *literal;
}

}  // namespace fnrk::tables
