#include "declarations/table_representative.hpp"

#include "tables/ads_class.hpp"

namespace fnrk::declarations {

std::string TableRepresentative::FieldText(std::string_view field) const {
    if (!tables_.IsAlias(alias_)) return {};
    const std::string saved = tables_.GetCurrentAlias();
    std::string text;
    if (tables_.ActivateAlias(alias_) == 0 && tables_.FieldExist(field))
        text = tables_.GetStringValue(field);
    if (!saved.empty() && tables_.IsAlias(saved)) tables_.ActivateAlias(saved);
    return text;
}

}  // namespace fnrk::declarations
