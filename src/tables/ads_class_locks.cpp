// AdsClass: record and table locks with the user's Retry / Cancel, flushing, and the locks of a
// whole document.

#include <algorithm>

#include "platform/messages.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

// Retry / Cancel, exclamation, Cancel as default.
constexpr platform::MessageStyle kRetryCancelStyle = platform::message_style::kRetryCancel +
                                                     platform::message_style::kExclamation +
                                                     platform::message_style::kDefaultButton2;

// Catalogue codes: "It is blocked by another user." for a record, "The file is blocked by
// another user" for a table, "Impossible to update the reference !" for a read-only table.
constexpr std::int32_t kRecordBlocked = 50;
constexpr std::int32_t kTableBlocked = 20;
constexpr std::int32_t kReadOnlyTable = 40;

bool AskRetry(const std::string& text) {
    return platform::ShowMessage(text, kRetryCancelStyle, platform::kErrorTitle) ==
           platform::MessageAnswer::Retry;
}

}  // namespace

bool AdsClass::RecLock(std::string_view alias, std::uint32_t record) {
    if (!MakeCurrent(alias)) {
        ShowErrorBox("Alias " + std::string(alias) + " not found (ActivateAlias)");
        return false;
    }
    std::uint32_t options = 0;
    if (db_.GetTableOpenOptions(currentTable_, options) == AE_SUCCESS &&
        (options & ADS_READONLY) != 0) {
        ShowErrorBox(CatalogueText(kReadOnlyTable));
        return false;
    }
    // A record that cannot be reached is refused by the lock below.
    IgnoreStatus(db_.GotoRecord(currentTable_, record));
    for (;;) {
        if (db_.LockRecord(currentTable_, record) == AE_SUCCESS) return true;
        if (!interactive_) return false;
        // Tell the user which record: the entry's journal, document and account, or the
        // account's or customer's number.
        std::string which;
        // A document's lock alias ("ACTLOCKS") tells the same as its table's.
        const std::string table = currentAlias_.ends_with("LOCKS")
                                      ? currentAlias_.substr(0, currentAlias_.size() - 5)
                                      : currentAlias_;
        if (table == "ACT" || table == "ANT") {
            which = GetStringValue("DBKCODE") + " " + GetStringValue("DOCNUMBER") + " " +
                    GetStringValue("ACCOUNTGL") + ",rn=" + std::to_string(record);
        } else if (table == "ACF" || table == "CSF") {
            which = GetStringValue("NUMBER") + ", rn:" + std::to_string(record);
        }
        std::string text = CatalogueText(kRecordBlocked);
        if (!which.empty()) text += "\r\n" + which;
        if (!AskRetry(text)) return false;
    }
}

bool AdsClass::LockTable(std::string_view alias) {
    if (!MakeCurrent(alias)) return false;
    for (;;) {
        if (db_.LockTable(currentTable_) == AE_SUCCESS) return true;
        if (!interactive_ || !AskRetry(CatalogueText(kTableBlocked))) return false;
    }
}

Status AdsClass::FlushAndUnlock(std::string_view alias) {
    if (!MakeCurrent(alias)) return AE_TABLE_NOT_FOUND;
    // Unlocking first is deliberate: the flush must not keep other users waiting.
    const Status unlocked = db_.UnlockTable(currentTable_);
    const Status flushed = db_.FlushFileBuffers(currentTable_);
    // A table without locks is not an error here.
    if (unlocked != AE_SUCCESS && unlocked != AE_TABLE_NOT_LOCKED) return unlocked;
    return flushed;
}

Status AdsClass::FlushButDontUnlock(std::string_view alias) {
    if (!MakeCurrent(alias)) return AE_TABLE_NOT_FOUND;
    return db_.FlushFileBuffers(currentTable_);
}

std::uint16_t AdsClass::GetLockNumberOnServer() {
    std::uint16_t count = 0;
    return db_.GetNumLocks(currentTable_, count) == AE_SUCCESS ? count : 0;
}

namespace {

// The tables of a document and the aliases under which each is opened a second time to hold the
// document's locks, so that flushing and unlocking the table's own alias does not free them.
struct DocumentLockTable {
    std::string_view alias;
    std::string_view lockAlias;
};
constexpr DocumentLockTable kEntriesLocks = {"ACT", "ACTLOCKS"};
constexpr DocumentLockTable kAccountLocks[] = {{"ACF", "ACFLOCKS"}, {"CSF", "CSFLOCKS"}};

}  // namespace

std::vector<std::uint32_t> AdsClass::LocateAll(std::string_view alias,
                                               const std::string& condition) {
    std::vector<std::uint32_t> records;
    if (!MakeCurrent(alias)) return records;
    bool found = false;
    IgnoreStatus(db_.GotoTop(currentTable_));  // Locate reports a table it cannot walk
    for (Status status = db_.Locate(currentTable_, condition, true, found);
         status == AE_SUCCESS && found; status = db_.Continue(currentTable_, found)) {
        records.push_back(recno());
    }
    return records;
}

bool AdsClass::OpenLockAlias(std::string_view alias, std::string_view lockAlias) {
    if (IsAlias(lockAlias)) return true;
    const Handle table = TableOfAlias(alias);
    std::string path;
    if (table == 0 || db_.GetTableFilename(table, ADS_FULLPATHNAME, path) != AE_SUCCESS) {
        return false;
    }
    return OpenFile(lockAlias, path, "", "SHARED", kOpenQuiet) == AE_SUCCESS;
}

bool AdsClass::SetAllLocksInExistingDocument(std::string_view journalCode,
                                             std::string_view docNumber) {
    // A document is the set of entries (ACT) with its journal code and document number, and
    // the accounts they post to: the general-ledger accounts (ACF) and the customer or supplier
    // accounts (CSF) whose NUMBER is the entries' ACCOUNTGL, in whichever of those tables the
    // session has open. Records are found by locates, so no particular index tag is needed.
    // Every record is locked through the table's lock alias ("ACTLOCKS", "ACFLOCKS",
    // "CSFLOCKS"), with the user's Retry / Cancel; when one cannot be locked, the locks taken
    // here are released again and the document stays free.
    const auto quoted = [](std::string_view text) {
        return text.find('"') != std::string_view::npos;
    };
    if (quoted(journalCode) || quoted(docNumber)) return false;
    const std::vector<std::uint32_t> entries =
        LocateAll(kEntriesLocks.alias,
                  "UPPER(DBKCODE)=\"" + platform::UpperCase(platform::Trim(journalCode)) +
                      "\" .AND. ALLTRIM(DOCNUMBER)==\"" + platform::Trim(docNumber) + "\"");
    if (entries.empty()) return false;

    std::vector<std::pair<const DocumentLockTable*, std::uint32_t>> wanted;
    std::vector<std::string> accounts;
    for (std::uint32_t entry : entries) {
        wanted.emplace_back(&kEntriesLocks, entry);
        if (db_.GotoRecord(currentTable_, entry) != AE_SUCCESS) return false;
        const std::string account = platform::Trim(GetStringValue("ACCOUNTGL"));
        if (!account.empty() && !quoted(account) &&
            std::find(accounts.begin(), accounts.end(), account) == accounts.end()) {
            accounts.push_back(account);
        }
    }
    for (const DocumentLockTable& table : kAccountLocks) {
        if (!IsAlias(table.alias)) continue;
        for (const std::string& account : accounts) {
            for (std::uint32_t record :
                 LocateAll(table.alias, "ALLTRIM(NUMBER)==\"" + account + "\"")) {
                wanted.emplace_back(&table, record);
            }
        }
    }

    std::vector<std::pair<std::string_view, std::uint32_t>> taken;
    for (const auto& [table, record] : wanted) {
        if (!OpenLockAlias(table->alias, table->lockAlias) || !RecLock(table->lockAlias, record)) {
            for (const auto& [lockAlias, held] : taken) {
                IgnoreStatus(
                    db_.UnlockRecord(TableOfAlias(lockAlias), held));  // refusal is the answer
            }
            return false;
        }
        taken.emplace_back(table->lockAlias, record);
    }
    return true;
}

}  // namespace fnrk::tables
