// Navigation, records, fields, filters and locks: each resolves its handle and hands the call to
// the open table.

#include <limits>

#include "backend/frc_database.hpp"
#include "engine/constants.hpp"
#include "engine/field_type_code.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

Status FRCDatabase::GotoTop(Handle object) {
    return OnTable(object, [](BackendTable& t, Order order) { return t.GotoTop(order); });
}

Status FRCDatabase::GotoBottom(Handle object) {
    return OnTable(object, [](BackendTable& t, Order order) { return t.GotoBottom(order); });
}

Status FRCDatabase::GotoRecord(Handle table, std::uint32_t record) {
    return OnTable(table, [&](BackendTable& t, Order) { return t.GotoRecord(record); });
}

Status FRCDatabase::Skip(Handle object, std::int32_t records) {
    return OnTable(object, [&](BackendTable& t, Order order) { return t.Skip(order, records); });
}

Status FRCDatabase::AtBOF(Handle table, bool& atBof) {
    return OnTable(table, [&](BackendTable& t, Order) { return (atBof = t.atBof(), AE_SUCCESS); });
}

Status FRCDatabase::AtEOF(Handle table, bool& atEof) {
    return OnTable(table, [&](BackendTable& t, Order) { return (atEof = t.atEof(), AE_SUCCESS); });
}

Status FRCDatabase::GetRecordNum(Handle table, std::uint16_t, std::uint32_t& record) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (record = t.recordNumber(), AE_SUCCESS); });
}

Status FRCDatabase::AppendRecord(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.Append(); });
}

Status FRCDatabase::DeleteRecord(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.SetDeleted(true); });
}

Status FRCDatabase::RecallRecord(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.SetDeleted(false); });
}

Status FRCDatabase::IsRecordDeleted(Handle table, bool& deleted) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (deleted = t.IsDeleted(), AE_SUCCESS); });
}

Status FRCDatabase::IsRecordVisible(Handle object, bool& visible) {
    return OnTable(object, [&](BackendTable& t, Order order) {
        return (visible = t.IsVisible(order), AE_SUCCESS);
    });
}

Status FRCDatabase::GetRecord(Handle table, std::string& record) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (record = t.record(), AE_SUCCESS); });
}

Status FRCDatabase::SetRecord(Handle object, std::string_view record) {
    return OnTable(object, [&](BackendTable& t, Order) { return t.SetRecord(record); });
}

// --- fields

Status FRCDatabase::GetString(Handle table, std::string_view field, std::string& value,
                              std::uint16_t trimOption) {
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        return t.GetText(f, value, trimOption);
    });
}

Status FRCDatabase::SetString(Handle object, std::string_view field, std::string_view value) {
    return OnField(object, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.SetText(f, value); });
}

// Numbers of every width go through the table's double form; the width only bounds the result.
template <class Number>
static Status ReadNumberAs(BackendTable& table, const dbf::Field& field, Number& value) {
    double number = 0;
    Status status = table.GetNumber(field, number);
    if (status != AE_SUCCESS) return status;
    if (number < static_cast<double>(std::numeric_limits<Number>::min()) ||
        number > static_cast<double>(std::numeric_limits<Number>::max())) {
        return AE_VALUE_OVERFLOW;
    }
    value = static_cast<Number>(number);
    return AE_SUCCESS;
}

Status FRCDatabase::GetShort(Handle table, std::string_view field, std::int16_t& value) {
    return OnField(table, field,
                   [&](BackendTable& t, const dbf::Field& f) { return ReadNumberAs(t, f, value); });
}

Status FRCDatabase::GetLong(Handle table, std::string_view field, std::int32_t& value) {
    return OnField(table, field,
                   [&](BackendTable& t, const dbf::Field& f) { return ReadNumberAs(t, f, value); });
}

Status FRCDatabase::GetDouble(Handle table, std::string_view field, double& value) {
    return OnField(table, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.GetNumber(f, value); });
}

Status FRCDatabase::SetShort(Handle object, std::string_view field, std::int16_t value) {
    return SetDouble(object, field, value);
}

Status FRCDatabase::SetLong(Handle object, std::string_view field, std::int32_t value) {
    return SetDouble(object, field, value);
}

Status FRCDatabase::SetDouble(Handle object, std::string_view field, double value) {
    return OnField(object, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.SetNumber(f, value); });
}

Status FRCDatabase::GetLogical(Handle table, std::string_view field, bool& value) {
    return OnField(table, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.GetLogical(f, value); });
}

Status FRCDatabase::SetLogical(Handle object, std::string_view field, bool value) {
    return OnField(object, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.SetLogical(f, value); });
}

Status FRCDatabase::GetDate(Handle table, std::string_view field, std::string& date) {
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        std::int32_t julian = 0;
        Status status = t.GetJulian(f, julian);
        if (status == AE_SUCCESS) date = expr::FormatDate(julian, settings_.dates);
        return status;
    });
}

Status FRCDatabase::SetDate(Handle object, std::string_view field, std::string_view date) {
    return OnField(object, field, [&](BackendTable& t, const dbf::Field& f) {
        return f.type == 'D' ? t.SetText(f, date) : AE_INVALID_FIELD_TYPE;
    });
}

Status FRCDatabase::GetJulian(Handle table, std::string_view field, std::int32_t& julian) {
    return OnField(table, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.GetJulian(f, julian); });
}

Status FRCDatabase::SetJulian(Handle object, std::string_view field, std::int32_t julian) {
    return OnField(object, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.SetJulian(f, julian); });
}

Status FRCDatabase::GetMilliseconds(Handle table, std::string_view field,
                                    std::int32_t& milliseconds) {
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        return t.GetMilliseconds(f, milliseconds);
    });
}

Status FRCDatabase::SetMilliseconds(Handle object, std::string_view field,
                                    std::int32_t milliseconds) {
    return OnField(object, field, [&](BackendTable& t, const dbf::Field& f) {
        return t.SetMilliseconds(f, milliseconds);
    });
}

Status FRCDatabase::GetMoney(Handle table, std::string_view field, std::int64_t& value) {
    return OnField(table, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.GetMoney(f, value); });
}

Status FRCDatabase::SetMoney(Handle object, std::string_view field, std::int64_t value) {
    return OnField(object, field,
                   [&](BackendTable& t, const dbf::Field& f) { return t.SetMoney(f, value); });
}

Status FRCDatabase::GetMemoLength(Handle table, std::string_view field, std::uint32_t& length) {
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        std::string data;
        Status status = t.GetMemo(f, data);
        length = static_cast<std::uint32_t>(data.size());  // as stored
        return status;
    });
}

Status FRCDatabase::GetMemoDataType(Handle table, std::string_view field, std::uint16_t& type) {
    return OnField(table, field, [&](BackendTable&, const dbf::Field& f) {
        if (!dbf::IsMemoType(f.type)) return AE_INVALID_FIELD_TYPE;
        type = FieldTypeCode(f.type);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetBinary(Handle table, std::string_view field, std::uint32_t offset,
                              std::uint32_t maxLength, std::string& data) {
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        std::string whole;
        if (Status status = t.GetMemo(f, whole); status != AE_SUCCESS) return status;
        if (offset > whole.size()) return AE_INVALID_BINARY_OFFSET;
        data = whole.substr(offset, maxLength);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetBinaryLength(Handle table, std::string_view field, std::uint32_t& length) {
    return GetMemoLength(table, field, length);
}

Status FRCDatabase::SetBinary(Handle table, std::string_view field, std::uint16_t binaryType,
                              std::uint32_t totalLength, std::uint32_t offset,
                              std::string_view data) {
    if (binaryType != ADS_BINARY && binaryType != ADS_IMAGE) return Report(AE_INVALID_DATA_TYPE);
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        // Offset 0 starts a new value; a later piece follows the bytes stored so far, up to
        // `totalLength` in all.
        std::string whole;
        if (offset > 0) {
            if (Status status = t.GetMemo(f, whole); status != AE_SUCCESS) return status;
            if (offset > whole.size()) return AE_INVALID_BINARY_OFFSET;
            whole.resize(offset);
        }
        whole.append(data);
        if (whole.size() > totalLength) return AE_DATA_TOO_LONG;
        return t.SetMemo(f, whole);
    });
}

// --- filters and searches

Status FRCDatabase::SetFilter(Handle table, std::string_view expression) {
    std::string message;
    Status status =
        OnTable(table, [&](BackendTable& t, Order) { return t.SetFilter(expression, message); });
    return message.empty() ? status : Report(status, message);
}

Status FRCDatabase::GetFilter(Handle table, std::string& expression) {
    return OnTable(table, [&](BackendTable& t, Order) {
        expression = t.filterText();
        return expression.empty() ? AE_NO_FILTER : AE_SUCCESS;
    });
}

Status FRCDatabase::ClearFilter(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return (t.ClearFilter(), AE_SUCCESS); });
}

Status FRCDatabase::SetAOF(Handle table, std::string_view expression, std::uint16_t) {
    std::string message;
    Status status =
        OnTable(table, [&](BackendTable& t, Order) { return t.SetAof(expression, message); });
    return message.empty() ? status : Report(status, message);
}

Status FRCDatabase::GetAOF(Handle table, std::string& expression) {
    return OnTable(table, [&](BackendTable& t, Order) {
        expression = t.aofText();
        return expression.empty() ? AE_NO_FILTER : AE_SUCCESS;
    });
}

Status FRCDatabase::GetAOFOptLevel(Handle table, std::uint16_t& level,
                                   std::string& nonOptimizedPart) {
    return OnTable(table, [&](BackendTable& t, Order) {
        if (t.aofText().empty()) return AE_NO_FILTER;
        // The condition is evaluated on each row read, none of it through the key columns.
        level = ADS_OPTIMIZED_NONE;
        nonOptimizedPart = t.aofText();
        return AE_SUCCESS;
    });
}

Status FRCDatabase::ClearAOF(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return (t.ClearAof(), AE_SUCCESS); });
}

Status FRCDatabase::Locate(Handle table, std::string_view expression, bool forward, bool& found) {
    std::string message;
    Status status = OnTable(table, [&](BackendTable& t, Order) {
        return t.Locate(expression, forward, found, message);
    });
    return message.empty() ? status : Report(status, message);
}

Status FRCDatabase::Continue(Handle table, bool& found) {
    return OnTable(table, [&](BackendTable& t, Order) { return t.Continue(found); });
}

// --- locks

Status FRCDatabase::LockRecord(Handle table, std::uint32_t record) {
    return OnTable(table, [&](BackendTable& t, Order) { return t.LockRecord(record); });
}

Status FRCDatabase::UnlockRecord(Handle table, std::uint32_t record) {
    return OnTable(table, [&](BackendTable& t, Order) { return t.UnlockRecord(record); });
}

Status FRCDatabase::LockTable(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.LockTable(); });
}

Status FRCDatabase::UnlockTable(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.UnlockTable(); });
}

Status FRCDatabase::IsTableLocked(Handle table, bool& locked) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (locked = t.tableLocked(), AE_SUCCESS); });
}

Status FRCDatabase::IsRecordLocked(Handle table, std::uint32_t record, bool& locked) {
    return OnTable(table, [&](BackendTable& t, Order) {
        return (locked = t.IsRecordLocked(record), AE_SUCCESS);
    });
}

Status FRCDatabase::GetNumLocks(Handle table, std::uint16_t& count) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (count = t.lockCount(), AE_SUCCESS); });
}

}  // namespace fnrk::backend
