// AdsClass: moving through the current table (in its active order) and testing its records.

#include "tables/ads_class.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

Status AdsClass::moveNext() {
    return db_.Skip(NavigationHandle(), 1);
}

Status AdsClass::MovePrevious() {
    return db_.Skip(NavigationHandle(), -1);
}

Status AdsClass::MoveTop() {
    return db_.GotoTop(NavigationHandle());
}

Status AdsClass::MoveBottom() {
    return db_.GotoBottom(NavigationHandle());
}

Status AdsClass::MoveAbsolute(std::uint32_t record) {
    return db_.GotoRecord(currentTable_, record);
}

Status AdsClass::MoveRelative(std::int32_t records) {
    return db_.Skip(NavigationHandle(), records);
}

bool AdsClass::seekKey(std::string_view key, bool softSeek) {
    bool found = false;
    return currentIndex_ != 0 &&
           db_.Seek(currentIndex_, key, ADS_STRINGKEY, softSeek ? ADS_SOFTSEEK : ADS_HARDSEEK,
                    found) == AE_SUCCESS &&
           found;
}

bool AdsClass::LocateInCurrentAlias(std::string_view expression, bool forward) {
    bool found = false;
    return db_.Locate(currentTable_, expression, forward, found) == AE_SUCCESS && found;
}

std::uint32_t AdsClass::recno() {
    std::uint32_t record = 0;
    return db_.GetRecordNum(currentTable_, ADS_IGNOREFILTERS, record) == AE_SUCCESS ? record : 0;
}

std::uint32_t AdsClass::CurRecOrder() {
    // Counted from the top of the active order: the API offers no key number.
    if (SelectionEof()) return 0;
    const std::uint32_t record = recno();
    std::uint32_t position = 0;
    bool atEof = false;
    for (Status status = db_.GotoTop(NavigationHandle());
         status == AE_SUCCESS && db_.AtEOF(currentTable_, atEof) == AE_SUCCESS && !atEof;
         status = db_.Skip(NavigationHandle(), 1)) {
        ++position;
        if (recno() == record) return position;
    }
    IgnoreStatus(db_.GotoRecord(currentTable_, record));  // back where it was, as far as it can
    return 0;
}

bool AdsClass::SelectionEof() {
    bool atEof = true;
    IgnoreStatus(db_.AtEOF(currentTable_, atEof));  // a table it cannot ask about is at its end
    return atEof;
}

bool AdsClass::SelectionBof() {
    bool atBof = true;
    IgnoreStatus(db_.AtBOF(currentTable_, atBof));
    return atBof;
}

std::uint32_t AdsClass::SelectionRecCount() {
    std::uint32_t count = 0;
    if (currentIndex_ != 0) {
        return db_.GetKeyCount(currentIndex_, ADS_RESPECTSCOPES, count) == AE_SUCCESS ? count : 0;
    }
    return db_.GetRecordCount(currentTable_, ADS_RESPECTFILTERS, count) == AE_SUCCESS ? count : 0;
}

double AdsClass::GetApproximatePositionInGrid() {
    double position = 0;
    return currentIndex_ != 0 && db_.GetRelKeyPos(currentIndex_, position) == AE_SUCCESS ? position
                                                                                         : 0;
}

bool AdsClass::IsDeleted() {
    bool deleted = false;
    return db_.IsRecordDeleted(currentTable_, deleted) == AE_SUCCESS && deleted;
}

bool AdsClass::IsLocked() {
    bool locked = false;
    return db_.IsRecordLocked(currentTable_, recno(), locked) == AE_SUCCESS && locked;
}

bool AdsClass::IsRecordInCurrentScope() {
    bool visible = false;
    return db_.IsRecordVisible(NavigationHandle(), visible) == AE_SUCCESS && visible;
}

bool AdsClass::IsRecordInCursor() {
    bool visible = false;
    return db_.IsRecordVisible(currentTable_, visible) == AE_SUCCESS && visible;
}

}  // namespace fnrk::tables
