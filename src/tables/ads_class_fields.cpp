// AdsClass: fields of the current record by name, read and written in the caller's types, the
// record buffer, and the structure facts of the current table.

#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/codepage.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"
#include "tables/field_values.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

std::string FieldNotFound(std::string_view field) {
    return "Field not found (" + std::string(field) + ")";
}

}  // namespace

std::string FieldTypeLetter(std::uint16_t engineType) {
    switch (engineType) {
        case 1:
            return "L";
        case 2:
        case 11:
        case 12:
            return "N";
        case 3:
            return "D";
        case 4:
            return "C";
        case 5:
            return "M";
        case 6:
            return "B";
        case 10:
            return "I";
        default:
            return {};
    }
}

std::uint16_t AdsClass::EngineFieldType(std::string_view field) {
    std::uint16_t type = 0;
    return db_.GetFieldType(currentTable_, platform::Trim(field), type) == AE_SUCCESS ? type : 0;
}

// --- reads

std::string AdsClass::GetStringValue(std::string_view field) {
    std::string value;
    // A field that cannot be read reads as empty text, as every lookup that finds nothing.
    IgnoreStatus(db_.GetString(currentTable_, platform::Trim(field), value, ADS_RTRIM));
    return value;
}

double AdsClass::GetDoubleValue(std::string_view field) {
    double value = 0;
    return db_.GetDouble(currentTable_, platform::Trim(field), value) == AE_SUCCESS ? value : 0;
}

std::string AdsClass::GetDateValue(std::string_view field) {
    std::string value;
    if (db_.GetDate(currentTable_, platform::Trim(field), value) != AE_SUCCESS)
        return std::string(kEmptyDate);
    return platform::Trim(value).empty() ? std::string(kEmptyDate) : value;
}

bool AdsClass::GetLogicalValue(std::string_view field) {
    bool value = false;
    return db_.GetLogical(currentTable_, platform::Trim(field), value) == AE_SUCCESS && value;
}

FieldValue AdsClass::GetFieldValue(std::string_view field) {
    const std::string letter = FieldTypeLetter(EngineFieldType(field));
    if (letter == "C") return GetStringValue(field);
    if (letter == "N" || letter == "I") return GetDoubleValue(field);
    if (letter == "D") return GetDateValue(field);
    if (letter == "L") return GetLogicalValue(field);
    if (letter == "M" || letter == "B") return GetBlobString(field);
    return std::monostate{};
}

std::string AdsClass::GetBlobString(std::string_view field) {
    const std::string name = platform::Trim(field);
    std::uint32_t length = 0;
    if (db_.GetMemoLength(currentTable_, name, length) != AE_SUCCESS || length == 0) return {};
    std::string value;
    // From engine version 7.00 on, binary memos are read as bytes; text memos always as text.
    if (EngineFieldType(name) == ADS_BINARY && GetADSVersionNumber() >= 7.0) {
        IgnoreStatus(db_.GetBinary(currentTable_, name, 0, length, value));  // empty if not
    } else {
        IgnoreStatus(db_.GetString(currentTable_, name, value, ADS_NONE));
    }
    return value;
}

std::string AdsClass::GetRecordValue() {
    std::string record;
    IgnoreStatus(db_.GetRecord(currentTable_, record));  // no current record: empty
    return record;
}

// --- structure facts

bool AdsClass::FieldExist(std::string_view field) {
    std::uint16_t number = 0;
    return db_.GetFieldNum(currentTable_, platform::UpperCase(platform::Trim(field)), number) ==
               AE_SUCCESS &&
           number != 0;
}

std::uint32_t AdsClass::FieldLength(std::string_view field) {
    std::uint32_t length = 0;
    return db_.GetFieldLength(currentTable_, platform::Trim(field), length) == AE_SUCCESS ? length
                                                                                          : 0;
}

std::uint16_t AdsClass::FieldDecimals(std::string_view field) {
    std::uint16_t decimals = 0;
    return db_.GetFieldDecimals(currentTable_, platform::Trim(field), decimals) == AE_SUCCESS
               ? decimals
               : 0;
}

std::uint32_t AdsClass::FieldOffset(std::string_view field) {
    std::uint32_t offset = 0;
    return db_.GetFieldOffset(currentTable_, platform::Trim(field), offset) == AE_SUCCESS ? offset
                                                                                          : 0;
}

std::string AdsClass::FieldType(std::string_view field) {
    return FieldTypeLetter(EngineFieldType(field));
}

std::uint32_t AdsClass::GetFieldWidth(std::string_view field) {
    // A date is shown as "DD/MM/YYYY", wider than its eight stored characters.
    return FieldType(field) == "D" ? 10 : FieldLength(field);
}

std::uint32_t AdsClass::RecordSize() {
    std::uint32_t length = 0;
    return db_.GetRecordLength(currentTable_, length) == AE_SUCCESS ? length : 0;
}

std::uint16_t AdsClass::IndexKeyLength() {
    std::uint16_t length = 0;
    return currentIndex_ != 0 && db_.GetKeyLength(currentIndex_, length) == AE_SUCCESS ? length : 0;
}

// --- writes

bool AdsClass::PutFieldValue(std::string_view field, const FieldValue& value) {
    const std::string name = platform::Trim(field);
    const std::string letter = FieldTypeLetter(EngineFieldType(name));
    if (letter.empty()) {
        ShowErrorBox(FieldNotFound(field));
        return false;
    }
    Status status = AE_INVALID_FIELD_TYPE;
    if (letter == "C") {
        status = db_.SetString(currentTable_, name, ValueAsText(value));
    } else if (letter == "N") {
        double number = 0;
        if (!ValueAsNumber(value, number)) return false;
        status = db_.SetDouble(currentTable_, name, number);
    } else if (letter == "L") {
        status = db_.SetLogical(currentTable_, name, ValueAsLogical(value));
    } else if (letter == "M" || letter == "B") {
        return PutBlobValue(name, ValueAsText(value));
    } else if (letter == "D") {
        const std::string date = ValueAsText(value);
        // Two-digit years: 80 and below are this century, above 80 the last one.
        const std::string year = platform::RightChars(date, 2);
        int digits = 0;
        const bool numeric =
            std::from_chars(year.data(), year.data() + year.size(), digits).ec == std::errc{};
        IgnoreStatus(db_.SetEpoch(numeric && digits > 80 ? 1900 : 2000));  // both valid
        status = db_.SetDate(currentTable_, name, date);
    }
    return status == AE_SUCCESS;
}

bool AdsClass::PutBlobValue(std::string_view field, std::string_view data) {
    const std::string name = platform::Trim(field);
    const std::uint16_t type = EngineFieldType(name);
    if (type == ADS_BINARY) {
        return db_.SetBinary(currentTable_, name, ADS_BINARY,
                             static_cast<std::uint32_t>(data.size()), 0, data) == AE_SUCCESS;
    }
    if (type == ADS_MEMO) return db_.SetString(currentTable_, name, data) == AE_SUCCESS;
    ShowErrorBox(FieldNotFound(field));
    return false;
}

bool AdsClass::PutRecValue(std::string_view buffer) {
    if (buffer.size() != RecordSize()) {
        ShowErrorBox("The buffer length and the record length are different");
        return false;
    }
    return db_.SetRecord(currentTable_, buffer) == AE_SUCCESS;
}

bool AdsClass::UpdateBufferValue(std::string& buffer, std::string_view field,
                                 const FieldValue& value) {
    const std::string name = platform::Trim(field);
    const std::string letter = FieldTypeLetter(EngineFieldType(name));
    if (letter.empty()) {
        ShowErrorBox(FieldNotFound(field));
        return false;
    }
    const std::uint32_t offset = FieldOffset(name);
    const std::uint32_t length = FieldLength(name);
    if (buffer.size() < offset + length) {
        ShowErrorBox("The buffer length and the record length are different");
        return false;
    }
    std::string stored;
    switch (StoredFieldText(letter, length, FieldDecimals(name), value, stored)) {
        case StoredText::Ok:
            buffer.replace(offset, length, stored);
            return true;
        case StoredText::UnsupportedType:
            ShowErrorBox("Field type not supported by this function");
            return false;
        case StoredText::BadValue:
            ShowErrorBox("Bad value for field (" + std::string(field) + ")");
            return false;
        case StoredText::TooLong:
            ShowErrorBox("Value is too long for field (" + std::string(field) + ")");
            return false;
    }
    return false;
}

Status AdsClass::RecordAdd() {
    return db_.AppendRecord(currentTable_);
}

Status AdsClass::RecordDelete() {
    return db_.DeleteRecord(currentTable_);
}

}  // namespace fnrk::tables
