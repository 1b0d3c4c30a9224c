// AdsClass: record and table locks with the user's Retry / Cancel, flushing, and the locks of a
// whole document.

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
        if (currentAlias_ == "ACT" || currentAlias_ == "ANT") {
            which = GetStringValue("DBKCODE") + " " + GetStringValue("DOCNUMBER") + " " +
                    GetStringValue("ACCOUNTGL") + ",rn=" + std::to_string(record);
        } else if (currentAlias_ == "ACF" || currentAlias_ == "CSF") {
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

bool AdsClass::SetAllLocksInExistingDocument(std::string_view journalCode,
                                             std::string_view docNumber) {
    // A document is the set of entries (ACT) with its journal code and document number. Each is
    // found by a locate on those two fields over the whole table, so no particular index tag is
    // needed; every one found is locked (with the user's Retry / Cancel). The lock tables
    // "CSFLOCKS", "ACFLOCKS" and "ACTLOCKS" are other screens' concern and are not touched.
    // A quote would end the expression's text early.
    if (journalCode.find('"') != std::string_view::npos ||
        docNumber.find('"') != std::string_view::npos || !MakeCurrent("ACT")) {
        return false;
    }
    const std::string condition =
        "UPPER(DBKCODE)=\"" + platform::UpperCase(platform::Trim(journalCode)) +
        "\" .AND. ALLTRIM(DOCNUMBER)==\"" + platform::Trim(docNumber) + "\"";
    std::vector<std::uint32_t> records;
    bool found = false;
    IgnoreStatus(db_.GotoTop(currentTable_));  // Locate reports a table it cannot walk
    for (Status status = db_.Locate(currentTable_, condition, true, found);
         status == AE_SUCCESS && found; status = db_.Continue(currentTable_, found)) {
        records.push_back(recno());
    }
    if (records.empty()) return false;
    for (std::uint32_t record : records) {
        if (!RecLock("ACT", record)) return false;
    }
    return true;
}

}  // namespace fnrk::tables
