#include "intake/efff_type_labels.hpp"

#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/app_class.hpp"
#include "session/session_user.hpp"
#include "tables/ads_class.hpp"
#include "tables/table_file_lookup.hpp"

namespace fnrk::intake {

namespace {

constexpr std::string_view kLabelsAlias = "EFFFTYPE";
constexpr std::string_view kLabelsFile = "EFFFTYPE.ORG";
constexpr std::string_view kFrenchLabel = "LABELFR";

std::string_view LabelField(std::string_view language) {
    switch (session::MessageLanguageOf(platform::UpperCase(platform::Trim(language)))) {
        case session::MessageLanguage::Dutch:
            return "LABELNL";
        case session::MessageLanguage::English:
            return "LABELEN";
        case session::MessageLanguage::French:
            break;
    }
    return kFrenchLabel;
}

}  // namespace

bool EfffTypeLabel(tables::AdsClass& tables, std::string_view typeEfff, std::string_view language,
                   std::string& typeLabel) {
    const std::string type = platform::Trim(typeEfff);
    const auto condition = tables::FieldEquals("TYPE", type);
    if (type.empty() || !condition) return false;
    const std::string file =
        session::SharedAppClass().OrgPath() + platform::kPathSep + std::string(kLabelsFile);
    std::string label;
    const std::string_view field = LabelField(language);
    tables::LookUpTableFile(tables, kLabelsAlias, file, *condition, [&](tables::AdsClass& table) {
        if (table.FieldExist(field)) label = platform::Trim(table.GetStringValue(field));
        if (label.empty()) label = platform::Trim(table.GetStringValue(kFrenchLabel));
    });
    if (label.empty()) return false;
    typeLabel = label;
    return true;
}

}  // namespace fnrk::intake
