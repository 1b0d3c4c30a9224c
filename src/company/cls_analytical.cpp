#include "company/cls_analytical.hpp"

#include "company/soc_param_col_class_api.hpp"

namespace fnrk::company {

std::string clsAnalytical::GetFormatforSectionQuantity(std::int16_t section) {
    if (section < 1 || section > params_.AnalyticalSectionsCount()) return {};
    const std::string mask = params_.AnalyticalSectionMask(section);
    if (!mask.empty()) return mask;
    const std::int16_t length = params_.AnalyticalSectionLength(section);
    return std::string(static_cast<std::size_t>(length > 0 ? length : 0), 'X');
}

bool clsAnalytical::IsAccountAnalytical(std::string_view account) {
    return params_.IsAccountAnalytical(account);
}

}  // namespace fnrk::company
