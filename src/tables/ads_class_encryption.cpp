// AdsClass: encryption of a dossier's tables and the data dictionary that puts an encrypted
// dossier under one password.

#include <filesystem>

#include "platform/file_system.hpp"
#include "platform/messages.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"
#include "tables/standard_tables.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

// Tables that stay readable without the dossier's password.
constexpr std::string_view kNeverEncrypted[] = {"PARAM", "USERS", "LOGUSERS", "CODEINV"};

// Dictionary properties set on a new dictionary, and the user property of its administrator.
constexpr std::uint16_t kDictionaryProperties[] = {107, 108, 109};
constexpr std::uint16_t kUserPassword = 1;

}  // namespace

bool AdsClass::FileIsEncrypted(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    bool encrypted = false;
    return table != 0 && db_.IsTableEncrypted(table, encrypted) == AE_SUCCESS && encrypted;
}

bool AdsClass::MakeFileEncrypt(bool encrypt, std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    if (table == 0) return false;
    if (!encrypt && !FileIsEncrypted(alias)) return false;
    if (db_.EnableEncryption(table, dossier_.tablePassword) != AE_SUCCESS) return false;
    return (encrypt ? db_.EncryptTable(table) : db_.DecryptTable(table)) == AE_SUCCESS;
}

bool AdsClass::IsAllFilesEncrypted() {
    for (const std::string& alias : EnumerateAlias()) {
        const std::string name = platform::UpperCase(alias);
        bool skipped = false;
        for (std::string_view never : kNeverEncrypted) skipped = skipped || name == never;
        if (!skipped && !FileIsEncrypted(name)) return false;
    }
    return true;
}

Status AdsClass::BuildDataDictionnary() {
    const std::string dictionaryPath = platform::Trim(dossier_.prefix) + ".add";
    const std::string folder = std::filesystem::path(dictionaryPath).parent_path().string();
    // A SQL-kept dossier builds it over the dossier's own connection, which stays.
    const bool sqlKept = platform::FileExists(folder + platform::kPathSep + "FRSQL.DBF");
    Handle connection = sqlKept ? ConnectionForFolder(folder, false) : 0;
    Status status = sqlKept ? (connection != 0 ? AE_SUCCESS : AE_NO_CONNECTION)
                            : db_.Connect26(folder, ADS_LOCAL_SERVER, connection);
    if (status != AE_SUCCESS) {
        platform::ShowMessage("Problem connection to local server",
                              platform::message_style::kCritical, platform::kErrorTitle);
        return status;
    }
    std::uint16_t type = 0;
    if (!sqlKept && db_.GetConnectionType(connection, type) == AE_SUCCESS &&
        type != ADS_LOCAL_SERVER) {
        IgnoreStatus(db_.SetServerType(ADS_LOCAL_SERVER));  // a fixed, valid server type
        Handle local = 0;
        status = db_.Connect26(folder, ADS_LOCAL_SERVER, local);
        IgnoreStatus(db_.Disconnect(connection));  // the remote one is done with either way
        connection = local;
        if (status != AE_SUCCESS) return status;
    }
    Handle dictionary = 0;
    status = db_.DDCreate(dictionaryPath, 1, "Data Dictionnary", dictionary);
    if (status != AE_SUCCESS) {
        ShowErrorBox("Error creating data dictionnary : " + GetAdsLastError());
        if (!sqlKept) IgnoreStatus(db_.Disconnect(connection));  // the failure shown is returned
        return status;
    }
    Handle administrator = 0;
    status = db_.Connect60(dictionaryPath, ADS_LOCAL_SERVER, "ADSSYS", dossier_.tablePassword, 0,
                           administrator);
    if (status == AE_SUCCESS) {
        for (std::uint16_t property : kDictionaryProperties) {
            status = db_.DDSetDatabaseProperty(administrator, property, dossier_.tablePassword);
            if (status != AE_SUCCESS) break;
        }
    }
    if (status == AE_SUCCESS) {
        status = db_.DDCreateUser(administrator, "", "SYSTEM", dossier_.tablePassword,
                                  "SYSTEM ADMINISTRATOR");
    }
    if (status == AE_SUCCESS) {
        status =
            db_.DDSetUserProperty(administrator, "SYSTEM", kUserPassword, dossier_.tablePassword);
    }
    // A dossier need not have every table of the list (nor every journal): those it has go in.
    auto add = [&](const std::string& alias) {
        const std::string path = StandardTablePath(alias);
        bool kept = false;
        if (status != AE_SUCCESS ||
            !(sqlKept ? db_.TableExists(connection, path, kept) == AE_SUCCESS && kept
                      : std::filesystem::exists(path)))
            return;
        const std::string index = StandardIndexPath(alias);
        status = db_.DDAddTable(administrator, alias, path, ADS_CDX, ADS_ANSI,
                                std::filesystem::exists(index) ? index : std::string(), "");
    };
    for (const std::string& name : DictionaryTableNames()) {
        if (name != "DBK") {
            add(name);
            continue;
        }
        for (int journal = 1; journal <= kJournalCount; ++journal) {
            add("DBK_0" + std::to_string(journal));
        }
    }
    if (status == AE_SUCCESS) {
        status = db_.DDAddView(administrator, "VIEWACF", "",
                               "SELECT * FROM ACF where ACF.SECRET = false");
    }
    if (status == AE_SUCCESS) {
        status = db_.DDAddView(
            administrator, "VIEWACT", "",
            "SELECT * FROM ACT,ACF WHERE ACT.accountgl = ACF.number and ACF.secret=false");
    }
    // The dictionary's status is the answer; its connections go whatever they answer.
    if (administrator != 0) IgnoreStatus(db_.Disconnect(administrator));
    if (!sqlKept) IgnoreStatus(db_.Disconnect(connection));
    return status;
}

}  // namespace fnrk::tables
