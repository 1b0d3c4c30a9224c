// user: questions answered from the user register "USERS.DBF".

#include "engine/constants.hpp"
#include "platform/text.hpp"
#include "session/api_ini.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/xbase_literal.hpp"
#include "users/user.hpp"

namespace fnrk::users {

namespace {

constexpr std::string_view kUsersAlias = "USERS";
constexpr std::size_t kPasswordWidth = 15;

bool IsSystemName(std::string_view userName) {
    return platform::Trim(RegisterName(userName)) == "SYSTEM";
}

// The statement's text for a name: every quote doubled.
std::string QuotedForStatement(std::string_view text) {
    std::string quoted;
    for (char c : text) {
        quoted += c;
        if (c == '\'') quoted += '\'';
    }
    return quoted;
}

}  // namespace

std::string AlternateDossierStatement(std::string_view userName) {
    return "select codesoc,path from [USERS] where (NAME ='" +
           QuotedForStatement(platform::UpperCase(platform::Trim(userName))) +
           "' AND (LEFT(PATH,2)='11' OR LEFT(PATH,2)='02')) ORDER BY CODESOC";
}

bool user::OpenUsersTable() {
    if (tables_->IsAlias(kUsersAlias)) return true;
    const std::string path = session::SharedApiIni().GetUserDbfPath() + "USERS.DBF";
    return tables_->FileOpenExternal(kUsersAlias, path) == 0;
}

bool user::LocateUserRow(std::string_view userName, std::string_view companyCode, bool byCompany) {
    const auto name = tables::XBaseStringLiteral(RegisterName(userName));
    const auto company = tables::XBaseStringLiteral(RegisterName(companyCode));
    if (!name || !company || tables_->ActivateAlias(kUsersAlias) != 0) return false;
    std::string condition = "NAME=" + *name;
    if (byCompany || IsSystemName(userName)) condition += " .AND. CODESOC=" + *company;
    tables_->MoveTop();
    return tables_->LocateInCurrentAlias(condition + " .AND. .NOT. DELETED()");
}

bool user::IsUserAccessInDossier(std::string_view userName, std::string_view companyCode) {
    const tables::CurrentAliasGuard caller(*tables_);
    return OpenUsersTable() && LocateUserRow(userName, companyCode, true);
}

bool user::CheckPasswordOfUser(std::string_view userName, std::string_view companyCode) {
    const tables::CurrentAliasGuard caller(*tables_);
    if (!OpenUsersTable() || !LocateUserRow(userName, companyCode, false)) return false;
    const std::string stored =
        platform::UpperCase(platform::TrimRight(tables_->GetStringValue("PASSWORD")));
    if (platform::Trim(stored).empty()) return true;
    const std::string typed =
        platform::TrimRight(platform::PadRight(platform::UpperCase(password_), kPasswordWidth));
    return typed == stored;
}

std::string user::GetLanguageOfCurrentUser() {
    if (!tables_->IsAlias(kUsersAlias)) return {};
    const tables::CurrentAliasGuard caller(*tables_);
    if (!LocateUserRow(name_, "", false)) return {};
    return platform::Trim(tables_->GetStringValue("LANGUAGE"));
}

bool user::GetAlternateUsernameAndDossier(std::string_view userName, std::string& companyCode,
                                          std::string& folder) {
    if (IsSystemName(userName)) return false;
    const tables::CurrentAliasGuard caller(*tables_);
    if (!OpenUsersTable()) return false;
    std::string code;
    std::string path;
    const bool found = tables_->UsersConnection() >= engine::kEngineHandleStart
                           ? FirstAlternateByStatement(userName, code, path)
                           : FirstAlternateByWalk(userName, code, path);
    if (found) {
        companyCode = platform::Trim(code);
        folder = platform::Trim(path);
    }
    return found;
}

bool user::FirstAlternateByStatement(std::string_view userName, std::string& code,
                                     std::string& path) {
    const tables::AdsClass::Handle cursor =
        tables_->ExecuteUsersSQL(AlternateDossierStatement(userName));
    if (cursor == 0) return false;
    tables::SqlDatabase& db = tables_->Database();
    bool atEnd = true;
    const bool found =
        db.GotoTop(cursor) == engine::AE_SUCCESS && db.AtEOF(cursor, atEnd) == engine::AE_SUCCESS &&
        !atEnd && db.GetString(cursor, "CODESOC", code, engine::ADS_RTRIM) == engine::AE_SUCCESS &&
        db.GetString(cursor, "PATH", path, engine::ADS_RTRIM) == engine::AE_SUCCESS;
    tables_->CloseCursor(cursor);
    tables_->CloseSql(tables_->GetSQLStatementHandle());
    return found;
}

bool user::FirstAlternateByWalk(std::string_view userName, std::string& code, std::string& path) {
    if (tables_->ActivateAlias(kUsersAlias) != 0) return false;
    const std::string name = platform::TrimRight(RegisterName(userName));
    bool found = false;
    for (tables_->MoveTop(); !tables_->SelectionEof(); tables_->moveNext()) {
        const std::string rowPath = tables_->GetStringValue("PATH");
        const std::string rowCode = tables_->GetStringValue("CODESOC");
        if (platform::UpperCase(tables_->GetStringValue("NAME")) != name ||
            !(rowPath.starts_with("11") || rowPath.starts_with("02")) || (found && rowCode >= code))
            continue;
        code = rowCode;
        path = rowPath;
        found = true;
    }
    return found;
}

}  // namespace fnrk::users
