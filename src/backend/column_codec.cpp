#include "backend/column_codec.hpp"

#include <cstring>

#include "engine/dbf/field_codec.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

namespace dbf = engine::dbf;

ColumnKind ColumnKindOf(char fieldType) {
    switch (fieldType) {
        case 'N':
        case 'F':
        case 'B':
            return ColumnKind::Real;
        case 'I':
        case 'L':
        case 'Y':
            return ColumnKind::Integer;
        case 'C':
        case 'D':
            return ColumnKind::Text;
        default:
            return ColumnKind::Bytes;
    }
}

SqlValue ColumnValue(const std::string& record, const dbf::Field& field) {
    const char* data = record.data();
    std::string_view bytes = dbf::FieldBytes(data, field);
    switch (field.type) {
        case 'C':
            return platform::Cp1252ToUtf8(platform::TrimRight(bytes));
        case 'N':
        case 'F':
            if (dbf::IsBlank(data, field)) return std::monostate{};
            return dbf::ReadNumber(data, field);
        case 'B':
            return dbf::ReadNumber(data, field);
        case 'I':
            return static_cast<std::int64_t>(dbf::ReadNumber(data, field));
        case 'Y':  // ten-thousandths, exact
            return dbf::ReadMoney(data, field);
        case 'D':
            if (dbf::IsBlank(data, field)) return std::monostate{};
            return std::string(bytes);
        case 'L':
            if (bytes == " " || bytes == "?") return std::monostate{};
            return static_cast<std::int64_t>(dbf::ReadLogical(data, field) ? 1 : 0);
        default:
            return Blob{std::string(bytes)};
    }
}

void StoreColumn(const SqlValue& value, const dbf::Field& field, std::string& record) {
    char* data = record.data();
    if (std::holds_alternative<std::monostate>(value) || dbf::IsMemoType(field.type)) {
        std::memset(data + field.offset, ' ', field.length);
        return;
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        std::string bytes = field.type == 'C' ? platform::Utf8ToCp1252(*text) : *text;
        dbf::WriteText(data, field, bytes);
    } else if (const auto* real = std::get_if<double>(&value)) {
        dbf::WriteNumber(data, field, *real);
    } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
        if (field.type == 'L') {
            dbf::WriteLogical(data, field, *integer != 0);
        } else if (field.type == 'Y') {
            dbf::WriteMoney(data, field, *integer);
        } else {
            dbf::WriteNumber(data, field, static_cast<double>(*integer));
        }
    } else if (const auto* blob = std::get_if<Blob>(&value)) {
        std::memset(data + field.offset, 0, field.length);
        std::memcpy(data + field.offset, blob->bytes.data(),
                    std::min<std::size_t>(blob->bytes.size(), field.length));
    }
}

void MarkMemo(const dbf::Field& field, bool hasMemo, std::string& record) {
    if (hasMemo) {
        dbf::WriteMemoBlock(record.data(), field, 1);
    } else {
        std::memset(record.data() + field.offset, dbf::EmptyByte(field), field.length);
    }
}

bool NamesMemo(const std::string& record, const dbf::Field& field) {
    return !dbf::IsBlank(record.data(), field) && dbf::ReadMemoBlock(record.data(), field) != 0;
}

}  // namespace fnrk::backend
