#include "intake/efff_type_labels.hpp"

#include "platform/file_system.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/app_class.hpp"
#include "session/session_user.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/xbase_literal.hpp"

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
    const std::string file =
        session::SharedAppClass().OrgPath() + platform::kPathSep + std::string(kLabelsFile);
    if (type.empty() || !platform::FileExists(file)) return false;
    const tables::CurrentAliasGuard caller(tables);
    const bool wasOpen = tables.IsAlias(kLabelsAlias);
    if (!wasOpen && tables.OpenFile(kLabelsAlias, file, {}, "READONLY",
                                    tables::AdsClass::kOpenQuiet) != engine::AE_SUCCESS)
        return false;
    std::string label;
    if (tables.ActivateAlias(kLabelsAlias) == engine::AE_SUCCESS && tables.FieldExist("TYPE")) {
        const auto literal =
            tables::XBaseStringLiteral(platform::PadRight(type, tables.FieldLength("TYPE")));
        engine::IgnoreStatus(tables.MoveTop());  // an empty table: the locate finds nothing
        if (literal && tables.LocateInCurrentAlias("TYPE=" + *literal + " .AND. .NOT. DELETED()")) {
            const std::string_view field = LabelField(language);
            if (tables.FieldExist(field)) label = platform::Trim(tables.GetStringValue(field));
            if (label.empty()) label = platform::Trim(tables.GetStringValue(kFrenchLabel));
        }
    }
    // Read only: a failed close loses nothing.
    if (!wasOpen) engine::IgnoreStatus(tables.FileClose(kLabelsAlias));
    if (label.empty()) return false;
    typeLabel = label;
    return true;
}

}  // namespace fnrk::intake
