// AdsClass: the connections to the local server and the users' database, the engine's version
// and last error, and the layer's one timed wait.

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "platform/file_system.hpp"
#include "platform/messages.hpp"
#include "platform/paths.hpp"
#include "session/app_class.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

// The drive of a path: "C:" for a Windows path, the root folder for a native absolute one.
std::string DriveOf(const std::string& path) {
    if (path.size() >= 2 && path[1] == ':') return path.substr(0, 2);
    if (!path.empty() && path.front() == platform::kPathSep)
        return std::string(1, platform::kPathSep);
    return path;
}

std::string ApplicationDrive() {
    return DriveOf(session::SharedAppClass().RootPath());
}

}  // namespace

AdsClass::AdsClass(SqlDatabase& db) : db_(db) {}

AdsClass::~AdsClass() {
    RemoveTempIndexFiles();
}

void AdsClass::SetDossierPrefix(std::string prefix) {
    dossier_.prefix = std::move(prefix);
    db_.SetDossierFolder(std::filesystem::path(dossier_.prefix).parent_path().string());
}

Status AdsClass::Initialize() {
    if (initialized_) return AE_SUCCESS;
    initialized_ = true;
    // Fixed valid settings, and a start from no open table: nothing here can be refused that
    // the connect below would not report.
    IgnoreStatus(FirstFailure({db_.SetDateFormat("DD/MM/YYYY"), db_.CloseAllTables(),
                               db_.SetEpoch(2000), db_.ShowDeleted(false)}));
    // Where the installation keeps the organisation's tables and the descriptions of the user
    // and organisation databases ("users.data", "org.data"): the routing reads them.
    const session::AppClass& installation = session::SharedAppClass();
    db_.SetOrgPath(installation.OrgPath());
    db_.SetApplicationFolder(installation.RootPath());
    const std::string drive = ApplicationDrive();
    const Status status = db_.Connect26(drive, ADS_LOCAL_SERVER, localConnection_);
    if (status != AE_SUCCESS && usersConnection_ != kUsersSqlConnection) {
        platform::ShowMessage(
            EngineFailureText(status, GetAdsLastError(), {}) + "\r\nPath local server: " + drive,
            platform::message_style::kCritical, platform::kErrorTitle);
    }
    return status;
}

Status AdsClass::FindConnection() {
    const std::string drive = ApplicationDrive();
    Status status = db_.FindConnection25(drive, localConnection_);
    // A SQL-kept user register keeps its range base as the connection.
    if (usersConnection_ != kUsersSqlConnection) {
        const Status users = db_.FindConnection25(drive, usersConnection_);
        if (status == AE_SUCCESS) status = users;
    }
    return status;
}

Status AdsClass::disconnect() {
    Status first = AE_SUCCESS;
    auto drop = [&](Handle& connection) {
        // Disconnect(0) would drop every connection of the engine: only real handles go.
        if (connection == 0) return;
        const Status status = db_.Disconnect(connection);
        if (first == AE_SUCCESS) first = status;
        connection = 0;
    };
    // The tables this object opened are closed first, each by itself, so that nothing of them
    // outlives its connection.
    // Disconnecting goes on whatever a close answers: nothing may outlive the session.
    for (const auto& [table, index] : activeIndex_) IgnoreStatus(db_.CloseTable(table));
    activeIndex_.clear();
    RemoveTempIndexFiles();
    for (auto& [folder, connection] : folderConnections_) {
        if (connection != localConnection_ && connection != usersConnection_) drop(connection);
    }
    folderConnections_.clear();
    if (usersConnection_ != localConnection_) drop(usersConnection_);
    drop(localConnection_);
    usersConnection_ = 0;
    currentTable_ = 0;
    currentIndex_ = 0;
    currentAlias_.clear();
    return first;
}

bool AdsClass::IsClientServer() {
    std::uint16_t type = 0;
    return localConnection_ != 0 && db_.GetConnectionType(localConnection_, type) == AE_SUCCESS &&
           type == ADS_REMOTE_SERVER;
}

bool AdsClass::IsInternetServer() {
    std::uint16_t type = 0;
    return localConnection_ != 0 && db_.GetConnectionType(localConnection_, type) == AE_SUCCESS &&
           type == ADS_AIS_SERVER;
}

std::int32_t AdsClass::GetOpenTableCount() {
    std::uint16_t count = 0;
    return db_.GetNumOpenTables(count) == AE_SUCCESS ? count : 0;
}

std::string AdsClass::GetAdsLastError() {
    Status code = AE_SUCCESS;
    std::string text;
    // Asking for the last error cannot fail in a way worth telling: it answers nothing then.
    IgnoreStatus(db_.GetLastError(code, text));
    return text;
}

Status AdsClass::GetAdsLastErrorNumber() {
    Status code = AE_SUCCESS;
    std::string text;
    // Asking for the last error cannot fail in a way worth telling: it answers nothing then.
    IgnoreStatus(db_.GetLastError(code, text));
    return code;
}

std::string AdsClass::ConvertADSErrNumToString(std::int32_t number, std::string_view language) {
    return CatalogueText(number, session::MessageLanguageOf(language));
}

bool AdsClass::waitFileExist(std::string_view path, bool waitForExistence, double seconds) {
    using Clock = std::chrono::steady_clock;
    // Short enough to notice a file soon, long enough not to keep a core busy.
    constexpr auto kPoll = std::chrono::milliseconds(25);
    const auto deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(
                           std::chrono::duration<double>(seconds > 0 ? seconds : 0));
    for (;;) {
        if (platform::FileExists(path) == waitForExistence) return true;
        const auto now = Clock::now();
        if (now >= deadline) return false;
        std::this_thread::sleep_for(std::min<Clock::duration>(kPoll, deadline - now));
    }
}

std::string AdsClass::Version() {
    const double version = GetADSVersionNumber();
    if (version == 0) return {};
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", version);
    return text;
}

double AdsClass::GetADSVersionNumber() {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::string letter;
    std::string description;
    if (db_.GetVersion(major, minor, letter, description) != AE_SUCCESS) return 0;
    return major + (minor % 100) / 100.0;
}

}  // namespace fnrk::tables
