#include "cli/table_json.hpp"

#include <iostream>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "engine/constants.hpp"
#include "engine/dbf/field_codec.hpp"
#include "platform/codepage.hpp"

namespace fnrk::cli {

namespace {

using engine::AE_SUCCESS;
using engine::Status;
using engine::cursor::TableCursor;
using engine::dbf::Field;

void Require(Status status, const std::string& what) {
    if (status != AE_SUCCESS)
        throw CommandFailure(what + " failed with status " + std::to_string(status));
}

nlohmann::ordered_json FieldToJson(TableCursor& table, const Field& field) {
    const std::string_view stored =
        engine::dbf::FieldBytes(table.CurrentRecordBytes().data(), field);
    switch (field.type) {
        case 'L':
            return engine::dbf::ReadLogical(table.CurrentRecordBytes().data(), field);
        case 'M':
        case 'G':
        case 'P': {
            engine::memo::MemoBlock memo;
            Require(table.GetMemo(field, memo), "reading memo " + field.name);
            return platform::Cp1252ToUtf8(memo.data);
        }
        case 'I':
        case 'B':
        case 'Y': {
            std::string text;
            Require(table.GetText(field, text, engine::ADS_NONE), "reading " + field.name);
            return text;
        }
        default:
            return platform::Cp1252ToUtf8(stored);
    }
}

void FieldFromJson(TableCursor& table, const Field& field, const nlohmann::json& value) {
    const std::string what = "field " + field.name;
    if (field.type == 'L') {
        if (!value.is_boolean()) throw CommandFailure(what + ": expected true or false");
        Require(table.SetLogical(field, value.get<bool>()), what);
        return;
    }
    if (!value.is_string()) throw CommandFailure(what + ": expected a string");
    const std::string text = value.get<std::string>();
    switch (field.type) {
        case 'D': {
            const auto julian = engine::expr::Stod(text);
            if (!julian) throw CommandFailure(what + ": not a YYYYMMDD date: " + text);
            Require(table.SetJulian(field, *julian), what);
            return;
        }
        case 'N':
        case 'F':
            if (text.find_first_not_of(' ') == std::string::npos) return;  // stays blank
            Require(table.SetText(field, text), what);
            return;
        default:
            Require(table.SetText(field, text), what);
            return;
    }
}

}  // namespace

nlohmann::ordered_json RecordToJson(TableCursor& table) {
    nlohmann::ordered_json object;
    object["recno"] = table.recordNumber();
    object["deleted"] = table.IsDeleted();
    for (const Field& field : table.header().fields)
        object[platform::Cp1252ToUtf8(field.name)] = FieldToJson(table, field);
    return object;
}

void RecordPrinter::Print(std::uint32_t record) {
    try {
        CheckStatus(table_.GotoRecord(record), "reading record " + std::to_string(record));
        std::cout << RecordToJson(table_).dump() << "\n";
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

void AppendRecordFromJson(TableCursor& table, const nlohmann::json& object) {
    if (!object.is_object()) throw CommandFailure("each line must be a JSON object");
    // The line is checked before the append, so a line naming an unknown field adds nothing.
    bool deleted = false;
    for (const auto& [name, value] : object.items()) {
        if (name == "recno") continue;
        if (name == "deleted") {
            if (!value.is_boolean()) throw CommandFailure("\"deleted\" must be true or false");
            deleted = value.get<bool>();
        } else if (table.FindField(platform::Utf8ToCp1252(name)) == nullptr) {
            throw CommandFailure("no field " + name + " in the table");
        }
    }
    Require(table.Append(), "append");
    const std::uint32_t record = table.recordNumber();
    for (const auto& [name, value] : object.items())
        if (name != "recno" && name != "deleted")
            FieldFromJson(table, *table.FindField(platform::Utf8ToCp1252(name)), value);
    Require(table.Commit(), "write");
    if (deleted) Require(table.SetDeleted(true), "delete");
    if (table.IsRecordLocked(record) && !table.file().exclusive())
        Require(table.UnlockRecord(record), "unlock");
}

}  // namespace fnrk::cli
