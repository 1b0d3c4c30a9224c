#include "intake/company_facts.hpp"

#include <filesystem>

#include "company/soc_param_col_class_api.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::intake {

std::string CompanyFacts::GetParamValue(std::string_view key) {
    return params_.GetParamValue(key);
}

bool CompanyFacts::SaveParamValue(std::string_view key, std::string_view value) {
    return params_.SaveParamNewsoc({{std::string(key), std::string(value)}});
}

bool CompanyFacts::IsSocMensuel() {
    return params_.IsSocMensuel(params_.CurrentbookYearNum1());
}

std::int16_t CompanyFacts::BookYearCount() {
    return params_.BookYearCount();
}

std::string CompanyFacts::PerDate(std::int16_t bookYear) {
    return params_.PerDate(bookYear);
}

bool CompanyFacts::IsCoda() {
    return params_.IsCoda();
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
