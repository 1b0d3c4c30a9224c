#include "company/soc_param_col_class_api.hpp"

#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::company {

namespace {

constexpr std::string_view kParamAlias = "PARAM";
// The keyed view every reader of the parameter table shares: "PARAM" in key order.
constexpr std::string_view kSeekParamQuery = "SEEKPARAM";
constexpr std::int32_t kSeekParamForm = 0;
constexpr std::size_t kKeyLength = 25;

std::string PaddedKey(std::string_view key) {
    std::string padded = platform::UpperCase(platform::Trim(key));
    padded.resize(kKeyLength, ' ');
    return padded;
}

}  // namespace

std::string SocParamColClassApi::GetParamValue(std::string_view key) {
    if (!tables_.IsAlias(kParamAlias)) return {};
    const tables::CurrentAliasGuard caller(tables_);
    if (!tables_.IsQuery(kSeekParamQuery, kSeekParamForm)) {
        // Building the view moves off "PARAM" first, so that the engine re-reads its work area.
        if (caller.alias() == kParamAlias && tables_.IsAlias("CSF")) tables_.ActivateAlias("CSF");
        tables_.AddQuery(kSeekParamQuery, kSeekParamForm, kParamAlias, "ID", "", 0, "NO COMMENT");
        tables_.ActivateQuery(kSeekParamQuery, kSeekParamForm);
    }
    std::string value;
    if (tables_.ActivateAlias(kParamAlias) == 0) {
        tables_.MoveTop();
        if (tables_.seekKey(PaddedKey(key))) {
            value = platform::TrimRight(tables_.GetStringValue("VALUE")) +
                    platform::TrimRight(tables_.GetStringValue("VALUEEXT"));
        }
    }
    return value;
}

}  // namespace fnrk::company
