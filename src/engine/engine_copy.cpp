#include <algorithm>

#include "engine/engine.hpp"

namespace fnrk::engine {

namespace {

// Copies the fields of the current record of `from` into the current record of `to`, matching
// fields by name; values go through text so that lengths and types may differ.
Status CopyFields(cursor::TableCursor& from, cursor::TableCursor& to) {
    for (const dbf::Field& target : to.header().fields) {
        const dbf::Field* source = from.FindField(target.name);
        if (source == nullptr) continue;
        Status status = AE_SUCCESS;
        if (dbf::IsMemoType(target.type) && dbf::IsMemoType(source->type)) {
            memo::MemoBlock memo;
            status = from.GetMemo(*source, memo);
            if (status == AE_SUCCESS && !memo.data.empty())
                status = to.SetMemo(target, memo.type, memo.data);
        } else if (source->type == 'D' && target.type == 'D') {
            std::int32_t julian = 0;
            status = from.GetJulian(*source, julian);
            if (status == AE_SUCCESS) status = to.SetJulian(target, julian);
        } else {
            std::string text;
            status = from.GetText(*source, text, ADS_NONE);
            if (status == AE_SUCCESS) status = to.SetText(target, text);
        }
        if (status != AE_SUCCESS) return status;
    }
    return to.Commit();
}

}  // namespace

Status Engine::CopyTableContents(Handle from, Handle to, std::uint16_t filterOption) {
    cursor::TableCursor* source = FindTable(from);
    cursor::TableCursor* target = FindTable(to);
    if (source == nullptr || target == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    if (source == target) return Report(AE_INVALID_TABLE_HANDLE, "copy of a table onto itself");
    if (filterOption < ADS_RESPECTFILTERS || filterOption > ADS_REFRESHCOUNT)
        return Report(AE_INVALID_FILTER_OPTION);
    const bool respect = filterOption == ADS_RESPECTFILTERS || filterOption == ADS_RESPECTSCOPES;
    const std::uint32_t start = source->recordNumber();
    std::uint32_t total = 0;
    if (Status status = source->Count(false, total); status != AE_SUCCESS) return Report(status);
    // Respecting filters, the records come as navigation shows them: through an index handle
    // in its order and scope. Otherwise every record, in record order.
    std::uint32_t done = 0;
    Status status = respect ? GotoTop(from) : source->GotoRecord(1);
    while (status == AE_SUCCESS && !source->atEof()) {
        if ((status = target->Append()) != AE_SUCCESS) break;
        if ((status = CopyFields(*source, *target)) != AE_SUCCESS) break;
        ++done;
        if (progress_ &&
            progress_(static_cast<std::uint16_t>(std::min(done, total) * 100ULL / total),
                      progressId_) != 0)
            break;
        status = respect ? Skip(from, 1) : source->GotoRecord(source->recordNumber() + 1);
    }
    // Back where the copy started; the copy's own status is the answer.
    const Status back = source->GotoRecord(start);
    return Report(FirstFailure({status, back}));
}

}  // namespace fnrk::engine
