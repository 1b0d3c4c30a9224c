// SocParamColClassApi: analytical plans, kept in the analytical zone table "ZONANA" rather than
// in the parameters, and the analytical marks of general-ledger accounts ("ACF").

#include <set>

#include "company/param_table.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/xbase_literal.hpp"

namespace fnrk::company {

namespace {

constexpr std::string_view kZonesAlias = "ZONANA";
constexpr std::string_view kAccountsAlias = "ACF";

// Calls `visit` for each section of "ZONANA" in natural order until it returns false; the
// caller's current alias is kept.
template <class Visit>
void ForEachSection(tables::AdsClass& tables, Visit visit) {
    if (!tables.IsAlias(kZonesAlias)) return;
    const tables::CurrentAliasGuard caller(tables);
    if (tables.ActivateAlias(kZonesAlias) != 0) return;
    const std::string order = tables.GetIndexTagName();
    tables.SetIndex("");
    std::int16_t section = 0;
    for (tables.MoveTop(); !tables.SelectionEof() && visit(++section); tables.moveNext()) {
    }
    tables.SetIndex(order);
}

}  // namespace

std::int16_t SocParamColClassApi::AnalyticalSectionsCount() {
    std::int16_t count = 0;
    ForEachSection(tables_, [&](std::int16_t section) {
        count = section;
        return true;
    });
    return count;
}

std::int16_t SocParamColClassApi::AnalyticalPlansCount() {
    std::set<std::string> plans;
    ForEachSection(tables_, [&](std::int16_t) {
        if (std::string plan = platform::Trim(tables_.GetStringValue("GEN")); !plan.empty())
            plans.insert(std::move(plan));
        return true;
    });
    return static_cast<std::int16_t>(plans.size());
}

std::string SocParamColClassApi::SectionField(std::int16_t section, std::string_view field) {
    std::string value;
    ForEachSection(tables_, [&](std::int16_t at) {
        if (at != section) return true;
        value = platform::Trim(tables_.GetStringValue(field));
        return false;
    });
    return value;
}

std::int16_t SocParamColClassApi::AnalyticalSectionLength(std::int16_t section) {
    return AsShort(ParamNumber(SectionField(section, "LEN")));
}

std::string SocParamColClassApi::AnalyticalSectionName(std::int16_t section) {
    return SectionField(section, "TIT1");
}

std::string SocParamColClassApi::AnalyticalSectionMask(std::int16_t section) {
    return SectionField(section, "MSK");
}

std::string SocParamColClassApi::AnalyticalSectionType(std::int16_t section) {
    return SectionField(section, "USRTYP");
}

bool SocParamColClassApi::SeekAccount(std::string_view account) {
    if (tables_.ActivateAlias(kAccountsAlias) != 0 || !tables_.FieldExist("GLNUMBER")) return false;
    const std::string number = platform::Trim(account);
    if (number.empty()) return false;
    // Compared at the field's width, so that "40" does not match account "400000".
    const auto literal =
        tables::XBaseStringLiteral(platform::PadRight(number, tables_.FieldLength("GLNUMBER")));
    if (!literal) return false;
    tables_.MoveTop();
    return tables_.LocateInCurrentAlias("GLNUMBER=" + *literal + " .AND. .NOT. DELETED()");
}

bool SocParamColClassApi::IsAccountAnalytical(std::string_view account) {
    if (!tables_.IsAlias(kAccountsAlias)) return false;
    const tables::CurrentAliasGuard caller(tables_);
    return SeekAccount(account) && tables_.GetLogicalValue("ISANALYT");
}

std::string SocParamColClassApi::AccountAnalyticalPlan(std::string_view account) {
    if (!tables_.IsAlias(kAccountsAlias)) return {};
    const tables::CurrentAliasGuard caller(tables_);
    return SeekAccount(account) ? platform::Trim(tables_.GetStringValue("PLANANALYT"))
                                : std::string();
}

bool SocParamColClassApi::AccountExists(std::string_view account) {
    if (!tables_.IsAlias(kAccountsAlias)) return false;
    const tables::CurrentAliasGuard caller(tables_);
    return SeekAccount(account);
}

}  // namespace fnrk::company
