#include "declarations/table_representative.hpp"

#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::declarations {

std::string TableRepresentative::FieldText(std::string_view field) const {
    if (!tables_.IsAlias(alias_)) return {};
    const tables::CurrentAliasGuard caller(tables_);
    std::string text;
    if (tables_.ActivateAlias(alias_) == 0 && tables_.FieldExist(field))
        text = tables_.GetStringValue(field);
    return text;
}

}  // namespace fnrk::declarations
