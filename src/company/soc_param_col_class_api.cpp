#include "company/soc_param_col_class_api.hpp"

#include <cctype>
#include <cstdlib>
#include <limits>

#include "company/param_table.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/path_rules.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::company {

namespace {

constexpr std::string_view kSqlMarker = "<SQL>";
constexpr std::size_t kKeyLength = 25;

}  // namespace

bool IsSwitchOn(std::string_view value) {
    const std::string text = platform::UpperCase(platform::Trim(value));
    return text == "TRUE" || text == "T" || text == ".T." || text == "Y" || text == "YES" ||
           text == "1";
}

std::int16_t AsShort(double number) {
    const double rounded = platform::RoundHalfEven(number, 0);
    if (rounded > std::numeric_limits<std::int16_t>::max())
        return std::numeric_limits<std::int16_t>::max();
    if (rounded < std::numeric_limits<std::int16_t>::min())
        return std::numeric_limits<std::int16_t>::min();
    return static_cast<std::int16_t>(rounded);
}

std::string ParamKey(std::string_view key) {
    return platform::PadRight(platform::UpperCase(platform::Trim(key)), kKeyLength);
}

double ParamNumber(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    // Only a plain decimal number counts: no hexadecimal, infinity or exponent forms.
    std::size_t end = 0;
    if (end < trimmed.size() && (trimmed[end] == '-' || trimmed[end] == '+')) ++end;
    bool digits = false;
    while (end < trimmed.size() && std::isdigit(static_cast<unsigned char>(trimmed[end]))) {
        ++end;
        digits = true;
    }
    if (end < trimmed.size() && trimmed[end] == '.') {
        ++end;
        while (end < trimmed.size() && std::isdigit(static_cast<unsigned char>(trimmed[end]))) {
            ++end;
            digits = true;
        }
    }
    return digits ? std::strtod(trimmed.substr(0, end).c_str(), nullptr) : 0.0;
}

std::string SocParamColClassApi::pathName() const {
    return session::StrSwap(pathName_, kSqlMarker, "");
}

void SocParamColClassApi::pathName(std::string_view folder) {
    std::string trimmed = platform::Trim(folder);
    if (!trimmed.empty() && (trimmed.back() == '\\' || trimmed.back() == platform::kPathSep))
        trimmed.pop_back();
    pathName_ = std::move(trimmed);
}

std::string SocParamColClassApi::GetConnect26Path() const {
    if (pathName_.empty()) return {};
    if (pathName_.find(kSqlMarker) != std::string::npos) return pathName_;
    return pathName_ + platform::kPathSep;
}

bool SocParamColClassApi::IsNetwork() const {
    const std::string folder = pathName();
    return folder.starts_with("\\\\") || folder.starts_with("//");
}

bool SocParamColClassApi::ActivateKeyedParam() {
    if (!tables_.IsAlias(kParamAlias)) return false;
    if (!tables_.IsQuery(kSeekParamQuery, kSeekParamForm)) {
        // Building the view moves off "PARAM" first, so that the engine re-reads its work area.
        if (tables_.GetCurrentAlias() == kParamAlias && tables_.IsAlias("CSF"))
            tables_.ActivateAlias("CSF");
        tables_.AddQuery(kSeekParamQuery, kSeekParamForm, kParamAlias, "ID", "", 0, "NO COMMENT");
        tables_.ActivateQuery(kSeekParamQuery, kSeekParamForm);
    }
    if (tables_.ActivateAlias(kParamAlias) != 0) return false;
    // The keyed view's order, even when somebody changed the order of "PARAM" since.
    return tables_.SetIndex("ID");
}

bool SocParamColClassApi::SeekParam(std::string_view key) {
    if (!ActivateKeyedParam()) return false;
    tables_.MoveTop();
    return tables_.seekKey(ParamKey(key));
}

std::string SocParamColClassApi::GetParamValue(std::string_view key) {
    if (!tables_.IsAlias(kParamAlias)) return {};
    const tables::CurrentAliasGuard caller(tables_);
    if (!SeekParam(key)) return {};
    return platform::TrimRight(tables_.GetStringValue("VALUE")) +
           platform::TrimRight(tables_.GetStringValue("VALUEEXT"));
}

std::string SocParamColClassApi::socname() {
    return GetParamValue("SocName");
}
std::string SocParamColClassApi::SocAdr() {
    return GetParamValue("SocAdr1");
}
std::string SocParamColClassApi::SocVatNo() {
    return GetParamValue("SocVatNo");
}
std::string SocParamColClassApi::SocZip() {
    return GetParamValue("SocZip");
}
std::string SocParamColClassApi::SocCity() {
    return GetParamValue("SocCity");
}
std::string SocParamColClassApi::SocCountry() {
    return GetParamValue("SocCountry");
}
std::string SocParamColClassApi::CompanyCurrency() {
    return GetParamValue("COMPANY.CURRENCY");
}
std::string SocParamColClassApi::Vatparam() {
    return GetParamValue("VatParam");
}
std::string SocParamColClassApi::Langofcreation() {
    return GetParamValue("LANGCREATION");
}

std::int32_t SocParamColClassApi::FileRevisionNumber() {
    return static_cast<std::int32_t>(
        platform::RoundHalfEven(ParamNumber(GetParamValue("FileRevision")), 0));
}

bool SocParamColClassApi::Is2Language() {
    return IsSwitchOn(GetParamValue("IS2LANGUAGE"));
}
bool SocParamColClassApi::Inv_DescUse() {
    return IsSwitchOn(GetParamValue("INV_DESCUSE"));
}
bool SocParamColClassApi::IsInvoice() {
    return IsSwitchOn(GetParamValue("ISINVOICE"));
}
bool SocParamColClassApi::IsScanModule() {
    return IsSwitchOn(GetParamValue("ISSCAN"));
}
bool SocParamColClassApi::IsAsset() {
    return IsSwitchOn(GetParamValue("ISASSET"));
}
bool SocParamColClassApi::IsAutomate() {
    return IsSwitchOn(GetParamValue("ISAUTO"));
}
bool SocParamColClassApi::IsCoda() {
    return IsSwitchOn(GetParamValue("ISCODA"));
}
bool SocParamColClassApi::IsSoda() {
    return IsSwitchOn(GetParamValue("ISSODA"));
}
bool SocParamColClassApi::IsAnalytical() {
    return IsSwitchOn(GetParamValue("ISANA"));
}

bool SocParamColClassApi::IsDossierLocked() {
    const std::string office = platform::Trim(GetParamValue("PROTECTEDBY"));
    return !office.empty() && !platform::EqualsNoCase(office, platform::Trim(protectedBy_));
}

std::int16_t SocParamColClassApi::SigCSParamZoneCount() {
    return AsShort(ParamNumber(GetParamValue("SigCSParamZoneCount")));
}
std::int16_t SocParamColClassApi::SigGlStdZoneCount() {
    return AsShort(ParamNumber(GetParamValue("SigGLStdZoneCount")));
}
std::int16_t SocParamColClassApi::SigGlParamZoneCount() {
    return AsShort(ParamNumber(GetParamValue("SigGlParamZoneCount")));
}
std::int16_t SocParamColClassApi::SigArStdZoneCount() {
    return AsShort(ParamNumber(GetParamValue("SigArStdZoneCount")));
}
std::int16_t SocParamColClassApi::SigArParamZoneCount() {
    return AsShort(ParamNumber(GetParamValue("SigArParamZoneCount")));
}
std::int16_t SocParamColClassApi::SigAssetParamZoneCount() {
    return AsShort(ParamNumber(GetParamValue("SigAsParamZoneCount")));
}

std::string SocParamColClassApi::GetSigParamItemValue(std::string_view file, std::int16_t item) {
    const std::string name = platform::UpperCase(platform::Trim(file));
    std::string prefix;
    if (name == "CLIFOU") {
        prefix = "Cs";
    } else if (name == "GEN") {
        prefix = "Gl";
    } else if (name == "ART") {
        prefix = "Ar";
    } else if (name == "ASSET") {
        prefix = "As";
    } else {
        return {};
    }
    return GetParamValue("Sig" + prefix + "ParamZone" + std::to_string(item) + ".Params");
}

}  // namespace fnrk::company
