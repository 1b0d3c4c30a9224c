// Work areas: moving through the current table in its order, choosing and creating orders.

#include "platform/text.hpp"
#include "tables/work_area.hpp"

namespace fnrk::tables {

using namespace engine;  // option and status numbers

namespace {

constexpr const char* kDescendingRefused =
    "Descending index not currently supported in this function";

}  // namespace

std::string IndexTagName(SqlDatabase& db, Handle table, std::string_view name) {
    const std::string wanted = platform::UpperCase(platform::Trim(name));
    if (wanted.empty()) return {};
    std::vector<Handle> indexes;
    if (db.GetAllIndexes(table, indexes) == AE_SUCCESS) {
        for (Handle index : indexes) {
            std::string tag;
            if (db.GetIndexName(index, tag) != AE_SUCCESS) continue;
            tag = platform::Trim(tag);
            if (platform::UpperCase(tag).starts_with(wanted)) return tag;
        }
    }
    return "tag_err";
}

Handle WorkAreas::NavigationHandle() const {
    const auto order = orders_.find(current_);
    return order != orders_.end() ? order->second : current_;
}

Status WorkAreas::sx_GoTop() {
    return db_.GotoTop(NavigationHandle());
}

Status WorkAreas::sx_GoBottom() {
    return db_.GotoBottom(NavigationHandle());
}

Status WorkAreas::sx_Skip(std::int32_t records) {
    return db_.Skip(NavigationHandle(), records);
}

Status WorkAreas::sx_Go(std::uint32_t record) {
    return db_.GotoRecord(current_, record);
}

bool WorkAreas::sx_Bof() {
    bool atBof = true;
    return db_.AtBOF(current_, atBof) != AE_SUCCESS || atBof;
}

bool WorkAreas::sx_Eof() {
    bool atEof = true;
    return db_.AtEOF(current_, atEof) != AE_SUCCESS || atEof;
}

std::uint32_t WorkAreas::sx_RecNo() {
    std::uint32_t record = 0;
    return db_.GetRecordNum(current_, ADS_IGNOREFILTERS, record) == AE_SUCCESS ? record : 0;
}

std::uint32_t WorkAreas::sx_RecCount() {
    std::uint32_t count = 0;
    return db_.GetRecordCount(current_, ADS_IGNOREFILTERS, count) == AE_SUCCESS ? count : 0;
}

std::string WorkAreas::sx_TagName(std::string_view tag) {
    return IndexTagName(db_, current_, tag);
}

bool WorkAreas::UsableOrder(Handle index) {
    bool descending = false;
    if (db_.IsIndexDescending(index, descending) != AE_SUCCESS) return false;
    if (descending) {
        ShowError(kDescendingRefused);
        return false;
    }
    return true;
}

bool WorkAreas::sx_SetOrder(std::string_view tag) {
    const std::string name = sx_TagName(tag);
    if (name.empty()) {
        orders_.erase(current_);
        return current_ != 0;
    }
    Handle index = 0;
    if (name == "tag_err" || db_.GetIndexHandle(current_, name, index) != AE_SUCCESS ||
        !UsableOrder(index))
        return false;
    orders_[current_] = index;
    return true;
}

std::string WorkAreas::sx_OrderName() {
    const auto order = orders_.find(current_);
    std::string name;
    if (order == orders_.end() || db_.GetIndexName(order->second, name) != AE_SUCCESS) return {};
    return platform::Trim(name);
}

Status WorkAreas::sx_IndexTag(std::string_view indexFile, std::string_view tag,
                              std::string_view expression, std::string_view condition,
                              std::uint32_t options) {
    if (options & ADS_DESCENDING) {
        ShowError(kDescendingRefused);
        return AE_INVALID_OPTION;
    }
    Handle index = 0;
    const Status status =
        db_.CreateIndex(current_, indexFile, tag, expression, condition, "", options, index);
    if (status == AE_SUCCESS) orders_[current_] = index;
    return status;
}

bool WorkAreas::sx_Seek(std::string_view key, bool softSeek) {
    bool found = false;
    return db_.Seek(NavigationHandle(), key, ADS_STRINGKEY, softSeek ? ADS_SOFTSEEK : ADS_HARDSEEK,
                    found) == AE_SUCCESS &&
           found;
}

}  // namespace fnrk::tables
