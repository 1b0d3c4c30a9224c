// user: log-ons in "USERSLOG.DBF" (see user.hpp for who writes LOGGED and holds the row lock).

#include "engine/constants.hpp"
#include "platform/file_system.hpp"
#include "platform/messages.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/api_ini.hpp"
#include "session/session_user.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/xbase_literal.hpp"
#include "users/user.hpp"

namespace fnrk::users {

namespace {

// The table is kept open under this alias by the workstation holding a log-on; a second,
// short-lived alias looks at it for the question "is the user logged on".
constexpr std::string_view kLogAlias = "LOGUSERS";
constexpr std::string_view kProbeAlias = "TMPLOG";
constexpr const char* kLogFields = "NAME,C,15,0;LOGGED,L,1,0";
constexpr int kLogOpenError = 10;

// "<users folder>USERS"; empty when the users folder is not known.
std::string LogFolder() {
    const std::string usersFolder = platform::TrimRight(session::SharedApiIni().GetUserDbfPath());
    if (usersFolder.empty() || usersFolder == std::string(1, platform::kPathSep)) return {};
    return usersFolder +
           (usersFolder.back() == platform::kPathSep ? "" : std::string(1, platform::kPathSep)) +
           "USERS";
}

std::string LogTablePath(const std::string& folder) {
    return folder + platform::kPathSep + "USERSLOG.DBF";
}

// Keeps the table access's interaction switch and sets it off: a lock probe never asks.
class QuietLocks {
  public:
    explicit QuietLocks(tables::AdsClass& tables)
        : tables_(tables), interactive_(tables.Interactive()) {
        tables_.SetInteractive(false);
    }
    ~QuietLocks() { tables_.SetInteractive(interactive_); }
    QuietLocks(const QuietLocks&) = delete;
    QuietLocks& operator=(const QuietLocks&) = delete;

  private:
    tables::AdsClass& tables_;
    bool interactive_;
};

// Positions the table open under `alias` on the row of the (padded) name; false when missing.
bool LocateLogRow(tables::AdsClass& tables, std::string_view alias, const std::string& name) {
    const auto literal = tables::XBaseStringLiteral(name);
    if (!literal || tables.ActivateAlias(alias) != 0) return false;
    tables.MoveTop();
    return tables.LocateInCurrentAlias("NAME=" + *literal + " .AND. .NOT. DELETED()");
}

// Another open of the table holds the lock of the current row of `alias`.
bool RowHeldElsewhere(tables::AdsClass& tables, std::string_view alias) {
    const QuietLocks quiet(tables);
    if (!tables.RecLock(alias, tables.recno())) return true;
    tables.FlushAndUnlock(alias);
    return false;
}

// Creates the log-on table when it is missing; two workstations racing both end up with it.
bool EnsureLogTable(tables::AdsClass& tables, const std::string& path) {
    if (tables.OpenFile(kLogAlias, path, "", "SHARED", tables::AdsClass::kOpenQuiet) == 0)
        return true;
    tables::SqlDatabase& db = tables.Database();
    const tables::AdsClass::Handle connection = tables.ConnectionOfTableFile(kLogAlias, path);
    tables::AdsClass::Handle table = 0;
    if (connection != 0 &&
        db.CreateTable(connection, path, kLogAlias, engine::ADS_CDX, engine::ADS_ANSI,
                       engine::ADS_COMPATIBLE_LOCKING, engine::ADS_IGNORERIGHTS, 0, kLogFields,
                       table) == engine::AE_SUCCESS)
        engine::IgnoreStatus(db.CloseTable(table));  // the open below tells what went wrong
    return tables.OpenFile(kLogAlias, path, "", "SHARED") == 0;
}

}  // namespace

std::string LogFileMessage(int errorCode) {
    if (errorCode != kLogOpenError) return {};
    switch (session::CurrentMessageLanguage()) {
        case session::MessageLanguage::Dutch:
            return "Een fout is ontstaan bij het openen van het bestand LOG (";
        case session::MessageLanguage::English:
            return "An error has been occured when opening the LOG file (";
        case session::MessageLanguage::French:
            break;
    }
    return "Une erreur est survenue à l'ouverture du fichier LOG (";
}

bool user::CheckAccess(std::string_view userName) {
    const tables::CurrentAliasGuard caller(*tables_);
    const std::string name = RegisterName(userName);
    if (platform::Trim(name).empty()) return false;
    // A dossier without its parameter table is no company to enter.
    if (!platform::Trim(tables_->Dossier().prefix).empty() && !tables_->FileExistParam())
        return false;
    const std::string folder = LogFolder();
    if (folder.empty()) return false;
    if (!platform::FolderExists(folder)) platform::CreateFolder(folder);
    if (!loggedOn_.empty() && loggedOn_ != name) LogOff();

    if (!tables_->IsAlias(kLogAlias) && !EnsureLogTable(*tables_, LogTablePath(folder)))
        return false;
    if (!LocateLogRow(*tables_, kLogAlias, name)) {
        const bool added = tables_->RecordAdd() == 0 && tables_->PutFieldValue("NAME", name) &&
                           tables_->PutFieldValue("LOGGED", false);
        if (tables_->FlushAndUnlock(kLogAlias) != 0 || !added ||
            !LocateLogRow(*tables_, kLogAlias, name))
            return false;
    }
    {
        const QuietLocks quiet(*tables_);
        // Held by another workstation: that one has the user logged on.
        if (!tables_->RecLock(kLogAlias, tables_->recno())) return false;
    }
    if (!tables_->PutFieldValue("LOGGED", true) || tables_->FlushButDontUnlock(kLogAlias) != 0) {
        tables_->FlushAndUnlock(kLogAlias);
        return false;
    }
    loggedOn_ = name;
    return true;
}

void user::LogOff() {
    if (loggedOn_.empty()) return;
    const tables::CurrentAliasGuard caller(*tables_);
    if (LocateLogRow(*tables_, kLogAlias, loggedOn_)) {
        tables_->PutFieldValue("LOGGED", false);
        tables_->FlushAndUnlock(kLogAlias);
    }
    tables_->CloseAlias(kLogAlias);
    loggedOn_.clear();
}

bool user::IsUserLoggedInDossier(std::string_view userName) {
    const tables::CurrentAliasGuard caller(*tables_);
    const std::string folder = LogFolder();
    const std::string path = folder.empty() ? std::string("USERSLOG.DBF") : LogTablePath(folder);
    if (folder.empty() ||
        tables_->OpenFile(kProbeAlias, path, "", "SHARED", tables::AdsClass::kOpenQuiet) != 0) {
        platform::ShowMessage(LogFileMessage(kLogOpenError) + path + ")",
                              platform::message_style::kCritical, platform::kErrorTitle);
        return false;
    }
    const bool loggedOn = LocateLogRow(*tables_, kProbeAlias, RegisterName(userName)) &&
                          tables_->GetLogicalValue("LOGGED") &&
                          RowHeldElsewhere(*tables_, kProbeAlias);
    tables_->CloseAlias(kProbeAlias);
    return loggedOn;
}

}  // namespace fnrk::users
