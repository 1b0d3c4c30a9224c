#include "intake/company_facts.hpp"

#include <cmath>
#include <filesystem>

#include "company/soc_param_col_class_api.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::intake {

namespace {

constexpr std::string_view kParamAlias = "PARAM";
constexpr std::size_t kParamKeyLength = 25;
// Period labels take 8-character slots, two more than there are ordinary periods.
constexpr std::size_t kPeriodSlot = 8;
constexpr double kExtraPeriodSlots = 2;
constexpr double kQuarterlyPeriods = 4;

std::string BookYearKey(std::int16_t bookYear, std::string_view suffix) {
    return "BOOKYEAR" + std::to_string(bookYear) + std::string(suffix);
}

}  // namespace

std::string CompanyFacts::GetParamValue(std::string_view key) {
    return params_.GetParamValue(key);
}

bool CompanyFacts::SaveParamValue(std::string_view key, std::string_view value) {
    if (!tables_.IsAlias(kParamAlias)) return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (tables_.ActivateAlias(kParamAlias) != 0 || !tables_.SetIndex("ID")) return false;
    const std::string id =
        platform::PadRight(platform::UpperCase(platform::Trim(key)), kParamKeyLength);
    tables_.MoveTop();
    if (tables_.seekKey(id)) {
        if (!tables_.RecLock(kParamAlias, tables_.recno())) return false;
    } else {
        if (tables_.RecordAdd() != 0 || !tables_.PutFieldValue("ID", id)) return false;
    }
    const std::size_t width = tables_.FieldLength("VALUE");
    const std::string text(value);
    const bool written =
        tables_.PutFieldValue("VALUE", platform::LeftChars(text, width)) &&
        tables_.PutFieldValue("VALUEEXT", text.substr(platform::LeftChars(text, width).size()));
    return tables_.FlushAndUnlock(kParamAlias) == 0 && written;
}

bool CompanyFacts::IsSocMensuel() {
    const std::int16_t bookYear = BookYearCount();
    const double slots =
        static_cast<double>(platform::CharCount(GetParamValue(BookYearKey(bookYear, ".PERLIB1")))) /
        kPeriodSlot;
    return platform::RoundHalfEven(slots - kExtraPeriodSlots, 0) > kQuarterlyPeriods;
}

std::int16_t CompanyFacts::BookYearCount() {
    try {
        return static_cast<std::int16_t>(
            std::lround(std::stod(platform::Trim(GetParamValue("Bookyearcount")))));
    } catch (const std::exception&) {
        return 0;
    }
}

std::string CompanyFacts::PerDate(std::int16_t bookYear) {
    return GetParamValue(BookYearKey(bookYear, ".PerDate"));
}

bool CompanyFacts::IsCoda() {
    const std::string value = platform::UpperCase(platform::Trim(GetParamValue("ISCODA")));
    return value == "TRUE" || value == "1" || value == "T" || value == "Y";
}

std::string CompanyFacts::ShortName() const {
    return std::filesystem::path(tables_.Dossier().prefix).filename().string();
}

std::string CompanyFacts::pathName() const {
    return std::filesystem::path(tables_.Dossier().prefix).parent_path().string();
}

std::string CompanyFacts::TableFile(std::string_view table, std::string_view extension) const {
    return tables_.Dossier().prefix + "_" + std::string(table) + std::string(extension);
}

}  // namespace fnrk::intake
