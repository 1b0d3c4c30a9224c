// AdsClass: the dossier's logbook, the audit trail of who opened, changed and approved what.

#include "tables/logbook.hpp"

#include <cstdio>
#include <fstream>

#include "platform/environment.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/session_user.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

constexpr const char* kLogbookAlias = "LOGBOOK";

// The table's own fields that carry a log of their changes.
constexpr std::string_view kTablesWithLogFields = "ACT,ACF,CSF,ANT,ANF,AST,ASF";

}  // namespace

std::string LogbookTime(std::string_view serverTime) {
    std::string time = platform::LeftChars(platform::Trim(serverTime), 8);
    const bool afternoon = platform::UpperCase(serverTime).find("PM") != std::string::npos;
    if (afternoon && time.size() >= 2) {
        const int hour = (time[0] - '0') * 10 + (time[1] - '0');
        if (hour >= 0 && hour < 12) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02d", hour + 12);
            time.replace(0, 2, digits);
        }
    }
    return time;
}

std::string LogbookCheck(std::string_view user, std::string_view action, std::string_view alias,
                         std::uint32_t record, std::string_view date, std::string_view time) {
    std::uint32_t digest = 2166136261u;
    auto add = [&](std::string_view part) {
        for (unsigned char c : part) {
            digest ^= c;
            digest *= 16777619u;
        }
        digest ^= '|';
        digest *= 16777619u;
    };
    add(platform::Trim(user));
    add(platform::Trim(action));
    add(platform::Trim(alias));
    add(std::to_string(record));
    add(date);
    add(time);
    char text[11];
    std::snprintf(text, sizeof text, "%010u", digest);
    return text;
}

bool IsOpenCloseOrApproval(std::string_view action) {
    for (std::string_view word :
         {"OPEN", "CLOSE", "OPENXLS", "CLOSEXLS", "APPRVAT", "APPRLIST", "APPRINTRA"}) {
        if (action == word) return true;
    }
    return false;
}

std::string WorkstationLoginName() {
    std::string name = platform::EnvironmentValue("USERNAME");
    if (name.empty()) name = platform::EnvironmentValue("USER");
    if (name.empty()) name = platform::EnvironmentValue("LOGNAME");
    return name;
}

bool AdsClass::ThisFileHasALogField(std::string_view alias) {
    // A substring test: "AC" counts as well, as it always has.
    return !alias.empty() && kTablesWithLogFields.find(alias) != std::string_view::npos;
}

bool AdsClass::WriteLogInFile(std::string_view path, std::string_view line) {
    std::ofstream file(platform::FileSystemPath(path), std::ios::app | std::ios::binary);
    if (!file) return false;
    file << line << "\r\n";
    return static_cast<bool>(file.flush());
}

bool AdsClass::CreateLogbook() {
    const std::string path = StandardTablePath(kLogbookAlias);
    const Handle connection = DossierConnection();
    if (connection == 0) return false;
    if (TableOfAlias(kLogbookAlias) != 0) CloseAlias(kLogbookAlias);
    Handle table = 0;
    if (db_.CreateTable(connection, path, kLogbookAlias, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                        ADS_IGNORERIGHTS, 0, kLogbookFields, table) != AE_SUCCESS) {
        return false;
    }
    SetActiveIndex(table, 0);
    return AppendLogEntry("CREATE", "INIT", kLogbookAlias, 1, "");
}

bool AdsClass::WriteInLogBook(std::string_view action, std::string_view program,
                              std::string_view alias, std::uint32_t record,
                              std::string_view param) {
    if (!dossier_.logbookOn) return false;
    return AppendLogEntry(action, program, alias, record, param);
}

bool AdsClass::AppendLogEntry(std::string_view action, std::string_view program,
                              std::string_view alias, std::uint32_t record,
                              std::string_view param) {
    const Handle callerTable = currentTable_;
    const Handle callerIndex = currentIndex_;
    const std::string callerAlias = currentAlias_;
    auto restore = [&](bool result) {
        currentTable_ = callerTable;
        currentIndex_ = callerIndex;
        currentAlias_ = callerAlias;
        return result;
    };
    Handle table = TableOfAlias(kLogbookAlias);
    if (table == 0) {
        if (OpenFile(kLogbookAlias, StandardTablePath(kLogbookAlias), {}, "SHARED", kOpenQuiet) !=
            AE_SUCCESS) {
            return restore(false);
        }
        table = TableOfAlias(kLogbookAlias);
    }
    if (db_.AppendRecord(table) != AE_SUCCESS) return restore(false);

    const Handle connection = DossierConnection();
    std::uint16_t connectionType = 0;
    // Once appended, the entry stays: a value that cannot be had or written is left blank
    // rather than losing the whole entry, so the statuses of its fields are not acted on.
    IgnoreStatus(db_.GetConnectionType(connection, connectionType));
    const std::string user = action == "CREATE" ? "SYSTEM" : session::CurrentUser().Name;
    IgnoreStatus(FirstFailure(
        {db_.SetDouble(table, "CONNECT", connectionType), db_.SetString(table, "USERNAME", user),
         db_.SetString(table, "LOGINNAME", WorkstationLoginName()),
         db_.SetString(table, "CODESOC", dossier_.companyCode),
         db_.SetString(table, "ACTION", action), db_.SetString(table, "PROGRAM", program),
         db_.SetString(table, "ALIAS", alias), db_.SetDouble(table, "RECNO", record),
         db_.SetString(table, "PARAM", param)}));

    std::string date;
    std::int32_t milliseconds = 0;
    std::string serverTime;
    IgnoreStatus(db_.GetServerTime(connection, date, milliseconds, serverTime));
    const std::string time = LogbookTime(serverTime);
    IgnoreStatus(FirstFailure(
        {db_.SetDate(table, "DATESTAMP", date), db_.SetString(table, "TIMESTAMP", time)}));
    const bool controlled = !IsOpenCloseOrApproval(action);
    if (controlled) {
        IgnoreStatus(
            db_.SetString(table, "CHECK", LogbookCheck(user, action, alias, record, date, time)));
    }
    std::uint32_t entry = 0;
    IgnoreStatus(FirstFailure({db_.GetRecordNum(table, ADS_IGNOREFILTERS, entry),
                               db_.UnlockRecord(table, entry), db_.FlushFileBuffers(table)}));
    if (controlled) FlushAndUnlock(kLogbookAlias);
    return restore(true);
}

}  // namespace fnrk::tables
