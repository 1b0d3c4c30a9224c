#include "cli/table_json.hpp"

#include <algorithm>
#include <iostream>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "engine/constants.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::cli {

namespace {

using engine::AE_SUCCESS;
using engine::Status;

void Require(Status status, const std::string& what) {
    if (status != AE_SUCCESS)
        throw CommandFailure(what + " failed with status " + std::to_string(status));
}

// The field's bytes as the record holds them.
std::string StoredText(const std::string& record, const FieldShape& field) {
    if (field.offset >= record.size()) return {};
    return record.substr(field.offset, field.length);
}

nlohmann::ordered_json FieldToJson(const OpenedTable& table, const std::string& record,
                                   const FieldShape& field) {
    engine::Operations& ops = table.ops();
    switch (field.type) {
        case engine::ADS_LOGICAL: {
            bool value = false;
            Require(ops.GetLogical(table.handle(), field.name, value), "reading " + field.name);
            return value;
        }
        case engine::ADS_MEMO: {
            std::string text;
            Require(ops.GetString(table.handle(), field.name, text, engine::ADS_NONE),
                    "reading memo " + field.name);
            return text;
        }
        case engine::ADS_BINARY:
        case engine::ADS_IMAGE: {
            std::uint32_t length = 0;
            std::string data;
            Require(ops.GetBinaryLength(table.handle(), field.name, length),
                    "reading memo " + field.name);
            Require(ops.GetBinary(table.handle(), field.name, 0, length, data),
                    "reading memo " + field.name);
            return platform::Cp1252ToUtf8(data);
        }
        case engine::ADS_INTEGER:
        case engine::ADS_DOUBLE:
        case engine::ADS_MONEY:
        case engine::ADS_TIMESTAMP: {
            std::string text;
            Require(ops.GetString(table.handle(), field.name, text, engine::ADS_NONE),
                    "reading " + field.name);
            return text;
        }
        default:
            return platform::Cp1252ToUtf8(StoredText(record, field));
    }
}

bool IsStoredDate(const std::string& text) {
    const bool blank = text.find_first_not_of(' ') == std::string::npos;
    return text.size() == 8 && (blank || std::all_of(text.begin(), text.end(),
                                                     [](char c) { return c >= '0' && c <= '9'; }));
}

// "YYYYMMDD" in the commands' date format (kCommandDateFormat); blanks stay the empty date.
std::string InCommandDateFormat(const std::string& stored) {
    if (stored.find_first_not_of(' ') == std::string::npos) return {};
    return stored.substr(4, 2) + "/" + stored.substr(6, 2) + "/" + stored.substr(0, 4);
}

void FieldFromJson(const OpenedTable& table, const FieldShape& field, const nlohmann::json& value) {
    engine::Operations& ops = table.ops();
    const std::string what = "field " + field.name;
    if (field.type == engine::ADS_LOGICAL) {
        if (!value.is_boolean()) throw CommandFailure(what + ": expected true or false");
        Require(ops.SetLogical(table.handle(), field.name, value.get<bool>()), what);
        return;
    }
    if (!value.is_string()) throw CommandFailure(what + ": expected a string");
    const std::string text = value.get<std::string>();
    switch (field.type) {
        case engine::ADS_DATE:
            if (!IsStoredDate(text) ||
                ops.SetString(table.handle(), field.name, InCommandDateFormat(text)) != AE_SUCCESS)
                throw CommandFailure(what + ": not a YYYYMMDD date: " + text);
            return;
        case engine::ADS_NUMERIC:
            if (text.find_first_not_of(' ') == std::string::npos) return;  // stays blank
            Require(ops.SetString(table.handle(), field.name, text), what);
            return;
        default:
            Require(ops.SetString(table.handle(), field.name, text), what);
            return;
    }
}

const FieldShape* FindShape(const std::vector<FieldShape>& fields, const std::string& name) {
    for (const FieldShape& field : fields)
        if (platform::EqualsNoCase(platform::Utf8ToCp1252(field.name),
                                   platform::Utf8ToCp1252(name)))
            return &field;
    return nullptr;
}

}  // namespace

std::vector<FieldShape> ReadFieldShapes(const OpenedTable& table) {
    engine::Operations& ops = table.ops();
    std::uint16_t count = 0;
    CheckStatus(ops.GetNumFields(table.handle(), count), "reading the fields");
    std::vector<FieldShape> fields(count);
    for (std::uint16_t number = 1; number <= count; ++number) {
        FieldShape& field = fields[number - 1];
        CheckStatus(ops.GetFieldName(table.handle(), number, field.name), "reading the fields");
        CheckStatus(ops.GetFieldType(table.handle(), field.name, field.type), field.name);
        CheckStatus(ops.GetFieldOffset(table.handle(), field.name, field.offset), field.name);
        CheckStatus(ops.GetFieldLength(table.handle(), field.name, field.length), field.name);
    }
    return fields;
}

nlohmann::ordered_json RecordToJson(const OpenedTable& table,
                                    const std::vector<FieldShape>& fields) {
    engine::Operations& ops = table.ops();
    std::uint32_t recno = 0;
    bool deleted = false;
    std::string record;
    Require(ops.GetRecordNum(table.handle(), engine::ADS_IGNOREFILTERS, recno), "reading");
    Require(ops.IsRecordDeleted(table.handle(), deleted), "reading");
    Require(ops.GetRecord(table.handle(), record), "reading");
    nlohmann::ordered_json object;
    object["recno"] = recno;
    object["deleted"] = deleted;
    for (const FieldShape& field : fields) object[field.name] = FieldToJson(table, record, field);
    return object;
}

void RecordPrinter::Print(std::uint32_t record) {
    try {
        CheckStatus(table_.ops().GotoRecord(table_.handle(), record),
                    "reading record " + std::to_string(record));
        std::cout << RecordToJson(table_, fields_).dump() << "\n";
    } catch (const CommandFailure& failure) {
        std::cout.flush();
        std::cerr << "record " << record << ": " << failure.what() << "\n";
        ++unreadable_;
    }
}

void RecordPrinter::Finish() const {
    if (unreadable_ != 0)
        throw CommandFailure(std::to_string(unreadable_) + " record(s) could not be read");
}

void AppendRecordFromJson(const OpenedTable& table, const std::vector<FieldShape>& fields,
                          const nlohmann::json& object) {
    if (!object.is_object()) throw CommandFailure("each line must be a JSON object");
    // The line is checked before the append, so a line naming an unknown field adds nothing.
    bool deleted = false;
    for (const auto& [name, value] : object.items()) {
        if (name == "recno") continue;
        if (name == "deleted") {
            if (!value.is_boolean()) throw CommandFailure("\"deleted\" must be true or false");
            deleted = value.get<bool>();
        } else if (FindShape(fields, name) == nullptr) {
            throw CommandFailure("no field " + name + " in the table");
        }
    }
    engine::Operations& ops = table.ops();
    Require(ops.AppendRecord(table.handle()), "append");
    std::uint32_t record = 0;
    Require(ops.GetRecordNum(table.handle(), engine::ADS_IGNOREFILTERS, record), "append");
    for (const auto& [name, value] : object.items())
        if (name != "recno" && name != "deleted")
            FieldFromJson(table, *FindShape(fields, name), value);
    if (deleted) Require(ops.DeleteRecord(table.handle()), "delete");
    bool locked = false, exclusive = false;
    Require(ops.IsRecordLocked(table.handle(), record, locked), "unlock");
    Require(ops.IsTableExclusive(table.handle(), exclusive), "unlock");
    // Unlocking writes the record; an exclusive table writes it on the next append or close.
    if (locked && !exclusive) Require(ops.UnlockRecord(table.handle(), record), "unlock");
}

}  // namespace fnrk::cli
