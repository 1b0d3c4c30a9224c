// Engine operations on the records, fields, filters and locks of one open table.

#include <cstring>
#include <limits>

#include "engine/engine.hpp"
#include "engine/field_type_code.hpp"
#include "engine/order_call.hpp"
#include "platform/codepage.hpp"

namespace fnrk::engine {

Status Engine::TableField(Handle table, std::string_view field, cursor::TableCursor*& cursor,
                          const dbf::Field*& found) {
    cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    // Names cross the API as UTF-8; the table holds them in Windows-1252.
    found = cursor->FindField(platform::Utf8ToCp1252(field));
    if (found == nullptr) return Report(AE_INVALID_FIELDNAME, "no field " + std::string(field));
    return AE_SUCCESS;
}

Status Engine::GetRecordCount(Handle table, std::uint16_t filterOption, std::uint32_t& count) {
    if (filterOption < ADS_RESPECTFILTERS || filterOption > ADS_REFRESHCOUNT)
        return Report(AE_INVALID_FILTER_OPTION);
    // Through an index handle the scopes bound the count as they bound the navigation.
    if (filterOption == ADS_RESPECTSCOPES && orders_ != nullptr &&
        orders_->FindOrder(table) != nullptr)
        return GetKeyCount(table, ADS_RESPECTFILTERS, count);
    const bool respect = filterOption == ADS_RESPECTFILTERS || filterOption == ADS_RESPECTSCOPES;
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return cursor->Count(respect, count);
    });
}

Status Engine::GetRecordLength(Handle table, std::uint32_t& length) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (length = cursor->header().recordLength, AE_SUCCESS);
    });
}

Status Engine::GetNumFields(Handle table, std::uint16_t& count) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (count = static_cast<std::uint16_t>(cursor->header().fields.size()), AE_SUCCESS);
    });
}

Status Engine::GetFieldName(Handle table, std::uint16_t fieldNumber, std::string& name) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    const auto& fields = cursor->header().fields;
    if (fieldNumber < 1 || fieldNumber > fields.size()) return Report(AE_INVALID_FIELDNUMBER);
    name = platform::Cp1252ToUtf8(fields[fieldNumber - 1].name);
    return AE_SUCCESS;
}

Status Engine::GetFieldNum(Handle table, std::string_view field, std::uint16_t& number) {
    cursor::TableCursor* cursor = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = TableField(table, field, cursor, found); status != AE_SUCCESS)
        return status;
    number = static_cast<std::uint16_t>(found - cursor->header().fields.data() + 1);
    return AE_SUCCESS;
}

Status Engine::GetFieldType(Handle table, std::string_view name, std::uint16_t& type) {
    return WithField(table, name, [&](cursor::TableCursor*, const dbf::Field* field) -> Status {
        return (type = FieldTypeCode(field->type), AE_SUCCESS);
    });
}

Status Engine::GetFieldLength(Handle table, std::string_view name, std::uint32_t& length) {
    return WithField(table, name, [&](cursor::TableCursor*, const dbf::Field* field) -> Status {
        return (length = field->length, AE_SUCCESS);
    });
}

Status Engine::GetFieldDecimals(Handle table, std::string_view name, std::uint16_t& decimals) {
    return WithField(table, name, [&](cursor::TableCursor*, const dbf::Field* field) -> Status {
        return (decimals = field->decimals, AE_SUCCESS);
    });
}

Status Engine::GetFieldOffset(Handle table, std::string_view name, std::uint32_t& offset) {
    return WithField(table, name, [&](cursor::TableCursor*, const dbf::Field* field) -> Status {
        return (offset = field->offset, AE_SUCCESS);
    });
}

// --- records and navigation

template <class OnIndex, class OnTable>
Status Engine::Navigate(Handle object, OnIndex onIndex, OnTable onTable) {
    if (order::IndexOrder* order = Orders().FindOrder(object)) {
        std::string problem;
        const Status status = OnOrder(*order, onIndex, &problem);
        return status == AE_SUCCESS ? status : Report(status, std::move(problem));
    }
    return WithTable(object, onTable);
}

Status Engine::GotoTop(Handle object) {
    return Navigate(
        object, [](order::IndexOrder& order) { return order.GotoTop(); },
        [](cursor::TableCursor* cursor) { return cursor->GotoTop(); });
}

Status Engine::GotoBottom(Handle object) {
    return Navigate(
        object, [](order::IndexOrder& order) { return order.GotoBottom(); },
        [](cursor::TableCursor* cursor) { return cursor->GotoBottom(); });
}

Status Engine::GotoRecord(Handle table, std::uint32_t record) {
    return WithTable(
        table, [&](cursor::TableCursor* cursor) -> Status { return cursor->GotoRecord(record); });
}

Status Engine::Skip(Handle object, std::int32_t records) {
    return Navigate(
        object, [&](order::IndexOrder& order) { return order.Skip(records); },
        [&](cursor::TableCursor* cursor) { return cursor->Skip(records); });
}

Status Engine::AtBOF(Handle table, bool& atBof) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (atBof = cursor->atBof(), AE_SUCCESS);
    });
}

Status Engine::AtEOF(Handle table, bool& atEof) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (atEof = cursor->atEof(), AE_SUCCESS);
    });
}

Status Engine::GetRecordNum(Handle table, std::uint16_t filterOption, std::uint32_t& record) {
    if (filterOption < ADS_RESPECTFILTERS || filterOption > ADS_REFRESHCOUNT)
        return Report(AE_INVALID_FILTER_OPTION);
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (record = cursor->recordNumber(), AE_SUCCESS);
    });
}

Status Engine::AppendRecord(Handle table) {
    return WithTable(table,
                     [&](cursor::TableCursor* cursor) -> Status { return cursor->Append(); });
}

Status Engine::DeleteRecord(Handle table) {
    return WithTable(
        table, [&](cursor::TableCursor* cursor) -> Status { return cursor->SetDeleted(true); });
}

Status Engine::RecallRecord(Handle table) {
    return WithTable(
        table, [&](cursor::TableCursor* cursor) -> Status { return cursor->SetDeleted(false); });
}

Status Engine::IsRecordDeleted(Handle table, bool& deleted) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (deleted = cursor->IsDeleted(), AE_SUCCESS);
    });
}

Status Engine::IsRecordVisible(Handle object, bool& visible) {
    return WithTable(object, [&](cursor::TableCursor* cursor) -> Status {
        // Through an index handle, a record outside the order's scopes is not visible either.
        order::IndexOrder* order = orders_ != nullptr ? orders_->FindOrder(object) : nullptr;
        visible = cursor->IsVisible() && (order == nullptr || order->CurrentRecordInScope());
        return AE_SUCCESS;
    });
}

Status Engine::GetRecord(Handle table, std::string& record) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        const std::string_view bytes = cursor->CurrentRecordBytes();
        // A caller reading record after record hands in a string of the same length each time.
        if (record.size() == bytes.size())
            std::memcpy(record.data(), bytes.data(), bytes.size());
        else
            record = bytes;
        return AE_SUCCESS;
    });
}

Status Engine::SetRecord(Handle object, std::string_view record) {
    return WithTable(
        object, [&](cursor::TableCursor* cursor) -> Status { return cursor->SetRecord(record); });
}

// --- fields

Status Engine::GetString(Handle table, std::string_view name, std::string& value,
                         std::uint16_t trimOption) {
    if (trimOption > ADS_TRIM) return Report(AE_INVALID_OPTION);
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->GetText(*field, value, trimOption);
                     });
}

Status Engine::SetString(Handle object, std::string_view name, std::string_view value) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetText(*field, value);
                     });
}

namespace {

// `number` is read after `status` was computed from the call that filled it.
template <class Integer>
Status ToInteger(Status status, const double& number, Integer& value) {
    if (status != AE_SUCCESS) return status;
    if (number < static_cast<double>(std::numeric_limits<Integer>::min()) ||
        number > static_cast<double>(std::numeric_limits<Integer>::max()))
        return AE_VALUE_OVERFLOW;
    value = static_cast<Integer>(number);
    return AE_SUCCESS;
}

}  // namespace

Status Engine::GetShort(Handle table, std::string_view name, std::int16_t& value) {
    double number = 0;
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return ToInteger(cursor->GetNumber(*field, number), number, value);
                     });
}

Status Engine::SetShort(Handle object, std::string_view name, std::int16_t value) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetNumber(*field, value);
                     });
}

Status Engine::GetLong(Handle table, std::string_view name, std::int32_t& value) {
    double number = 0;
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return ToInteger(cursor->GetNumber(*field, number), number, value);
                     });
}

Status Engine::SetLong(Handle object, std::string_view name, std::int32_t value) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetNumber(*field, value);
                     });
}

Status Engine::GetDouble(Handle table, std::string_view name, double& value) {
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->GetNumber(*field, value);
                     });
}

Status Engine::SetDouble(Handle object, std::string_view name, double value) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetNumber(*field, value);
                     });
}

Status Engine::GetLogical(Handle table, std::string_view name, bool& value) {
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->GetLogical(*field, value);
                     });
}

Status Engine::SetLogical(Handle object, std::string_view name, bool value) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetLogical(*field, value);
                     });
}

Status Engine::GetDate(Handle table, std::string_view name, std::string& date) {
    std::int32_t julian = 0;
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return [&] {
                             const Status status = cursor->GetJulian(*field, julian);
                             if (status == AE_SUCCESS)
                                 date = expr::FormatDate(julian, settings_.dates);
                             return status;
                         }();
                     });
}

Status Engine::SetDate(Handle object, std::string_view name, std::string_view date) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return [&] {
                             if (field->type != 'D') return AE_INVALID_FIELD_TYPE;
                             return cursor->SetText(*field, date);
                         }();
                     });
}

Status Engine::GetJulian(Handle table, std::string_view name, std::int32_t& julian) {
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->GetJulian(*field, julian);
                     });
}

Status Engine::SetJulian(Handle object, std::string_view name, std::int32_t julian) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetJulian(*field, julian);
                     });
}

Status Engine::GetMilliseconds(Handle table, std::string_view name, std::int32_t& milliseconds) {
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->GetMilliseconds(*field, milliseconds);
                     });
}

Status Engine::SetMilliseconds(Handle object, std::string_view name, std::int32_t milliseconds) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetMilliseconds(*field, milliseconds);
                     });
}

Status Engine::GetMoney(Handle table, std::string_view name, std::int64_t& value) {
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->GetMoney(*field, value);
                     });
}

Status Engine::SetMoney(Handle object, std::string_view name, std::int64_t value) {
    return WithField(object, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return cursor->SetMoney(*field, value);
                     });
}

Status Engine::GetMemoLength(Handle table, std::string_view name, std::uint32_t& length) {
    memo::MemoBlock memo;
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return [&] {
                             const Status status = cursor->GetMemo(*field, memo);
                             length = static_cast<std::uint32_t>(memo.data.size());
                             return status;
                         }();
                     });
}

Status Engine::GetMemoDataType(Handle table, std::string_view name, std::uint16_t& type) {
    return WithField(table, name, [&](cursor::TableCursor*, const dbf::Field* field) -> Status {
        return [&] {
            if (!dbf::IsMemoType(field->type)) return AE_INVALID_FIELD_TYPE;
            type = FieldTypeCode(field->type);
            return AE_SUCCESS;
        }();
    });
}

Status Engine::GetBinary(Handle table, std::string_view name, std::uint32_t offset,
                         std::uint32_t maxLength, std::string& data) {
    memo::MemoBlock memo;
    return WithField(table, name,
                     [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
                         return [&] {
                             const Status status = cursor->GetMemo(*field, memo);
                             if (status != AE_SUCCESS) return status;
                             if (offset > memo.data.size()) return AE_INVALID_BINARY_OFFSET;
                             data = memo.data.substr(offset, maxLength);
                             return AE_SUCCESS;
                         }();
                     });
}

Status Engine::GetBinaryLength(Handle table, std::string_view name, std::uint32_t& length) {
    return GetMemoLength(table, name, length);
}

Status Engine::SetBinary(Handle table, std::string_view name, std::uint16_t binaryType,
                         std::uint32_t totalLength, std::uint32_t offset, std::string_view data) {
    if (binaryType != ADS_BINARY && binaryType != ADS_IMAGE) return Report(AE_INVALID_DATA_TYPE);
    memo::MemoBlock memo;
    return WithField(
        table, name, [&](cursor::TableCursor* cursor, const dbf::Field* field) -> Status {
            return [&] {
                // A value may come in pieces: each piece continues the bytes stored so far.
                if (offset > 0) {
                    if (Status status = cursor->GetMemo(*field, memo); status != AE_SUCCESS)
                        return status;
                    if (offset > memo.data.size()) return AE_INVALID_BINARY_OFFSET;
                    memo.data.resize(offset);
                }
                memo.data.append(data);
                if (memo.data.size() > totalLength) return AE_DATA_TOO_LONG;
                return cursor->SetMemo(*field, memo::kMemoTypeBinary, memo.data);
            }();
        });
}

// --- filters and searches

Status Engine::SetFilter(Handle table, std::string_view expression) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    std::string message;
    const Status status = cursor->SetFilter(expression, message);
    return Report(status, message);
}

Status Engine::GetFilter(Handle table, std::string& expression) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return [&] {
            expression = cursor->filterText();
            return expression.empty() ? AE_NO_FILTER : AE_SUCCESS;
        }();
    });
}

Status Engine::ClearFilter(Handle table) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (cursor->ClearFilter(), AE_SUCCESS);
    });
}

Status Engine::Locate(Handle table, std::string_view expression, bool forward, bool& found) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    std::string message;
    const Status status = cursor->Locate(expression, forward, found, message);
    return Report(status, message);
}

Status Engine::Continue(Handle table, bool& found) {
    return WithTable(
        table, [&](cursor::TableCursor* cursor) -> Status { return cursor->Continue(found); });
}

// --- locks

Status Engine::LockRecord(Handle table, std::uint32_t record) {
    return WithTable(
        table, [&](cursor::TableCursor* cursor) -> Status { return cursor->LockRecord(record); });
}

Status Engine::UnlockRecord(Handle table, std::uint32_t record) {
    return WithTable(
        table, [&](cursor::TableCursor* cursor) -> Status { return cursor->UnlockRecord(record); });
}

Status Engine::LockTable(Handle table) {
    return WithTable(table,
                     [&](cursor::TableCursor* cursor) -> Status { return cursor->LockTable(); });
}

Status Engine::UnlockTable(Handle table) {
    return WithTable(table,
                     [&](cursor::TableCursor* cursor) -> Status { return cursor->UnlockTable(); });
}

Status Engine::IsTableLocked(Handle table, bool& locked) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (locked = cursor->tableLocked(), AE_SUCCESS);
    });
}

Status Engine::IsRecordLocked(Handle table, std::uint32_t record, bool& locked) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (locked = cursor->IsRecordLocked(record), AE_SUCCESS);
    });
}

Status Engine::GetNumLocks(Handle table, std::uint16_t& count) {
    return WithTable(table, [&](cursor::TableCursor* cursor) -> Status {
        return (count = cursor->lockCount(), AE_SUCCESS);
    });
}

}  // namespace fnrk::engine
