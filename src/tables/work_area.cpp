// Work areas: opening into one, selecting one, and the typed reads and writes of field
// references.

#include "tables/work_area.hpp"

#include <charconv>

#include "platform/messages.hpp"
#include "platform/text.hpp"
#include "tables/open_modes.hpp"

namespace fnrk::tables {

using namespace engine;  // option and status numbers

namespace {

// A handle given as digits only; false for any other text.
bool ParseHandle(std::string_view text, Handle& handle) {
    const std::string trimmed = platform::Trim(text);
    if (trimmed.empty()) return false;
    const auto result = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), handle);
    return result.ec == std::errc() && result.ptr == trimmed.data() + trimmed.size() && handle > 0;
}

}  // namespace

WorkAreas::WorkAreas(SqlDatabase& db) : db_(db) {}

void WorkAreas::ShowError(const std::string& text) {
    platform::ShowMessage(text, platform::message_style::kCritical, platform::kErrorTitle);
}

Status WorkAreas::sx_use(std::string_view path, std::string_view alias, std::string_view openMode,
                         std::string_view indexFile) {
    std::uint32_t options = 0;
    // No mode opens shared.
    const std::string_view mode = platform::Trim(openMode).empty() ? "SHARED" : openMode;
    Status status = OpenOptionsOf(mode, options) ? AE_SUCCESS : AE_INVALID_OPTION;
    Handle table = 0;
    if (status == AE_SUCCESS) {
        status = db_.OpenTable(connection_, path, alias, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, options, table);
    }
    Handle order = 0;
    if (status == AE_SUCCESS && !platform::Trim(indexFile).empty()) {
        std::vector<Handle> opened;
        status = db_.OpenIndex(table, indexFile, opened);
        // The structural index is opened with the table already; its tags still give the order.
        if (status == AE_INDEX_ALREADY_OPEN) status = AE_SUCCESS;
        if (status == AE_SUCCESS) status = db_.GetIndexHandleByOrder(table, 1, order);
        if (status != AE_SUCCESS) IgnoreStatus(db_.CloseTable(table));  // reported: the index
    }
    if (status != AE_SUCCESS) {
        ShowError("Error in sx_use");
        return status;
    }
    current_ = table;
    if (order != 0) {
        orders_[table] = order;
    } else {
        orders_.erase(table);
    }
    // An opened work area stands on its first record, wherever the table keeps its rows.
    return sx_GoTop();
}

bool WorkAreas::sx_select(std::string_view aliasOrHandle) {
    Handle table = 0;
    std::string alias;
    const bool found = ParseHandle(aliasOrHandle, table)
                           ? db_.GetTableAlias(table, alias) == AE_SUCCESS
                           : FindAlias(aliasOrHandle, table);
    if (!found) {
        ShowError("WorkArea " + std::string(aliasOrHandle) + " not found (sx_select)");
        return false;
    }
    current_ = table;
    return true;
}

Status WorkAreas::sx_close() {
    const Status status = db_.CloseTable(current_);
    if (status == AE_SUCCESS) {
        orders_.erase(current_);
        current_ = 0;
    }
    return status;
}

bool WorkAreas::FindAlias(std::string_view alias, Handle& table) {
    return db_.GetTableHandle(connection_, alias, table) == AE_SUCCESS ||
           (connection_ != 0 && db_.GetTableHandle(0, alias, table) == AE_SUCCESS);
}

bool WorkAreas::Resolve(std::string_view reference, Handle& table, std::string& field) {
    const std::size_t arrow = reference.find("->");
    if (arrow == std::string_view::npos) {
        table = current_;
        field = platform::Trim(reference);
        return true;
    }
    field = platform::Trim(reference.substr(arrow + 2));
    const std::string alias = platform::Trim(reference.substr(0, arrow));
    if (alias.empty() || !FindAlias(alias, table)) {
        ShowError("Bad alias name");
        table = 0;
        return false;
    }
    return true;
}

template <class Value, class Read>
Value WorkAreas::ReadField(std::string_view reference, Value fallback, Read read) {
    Handle table = 0;
    std::string field;
    Value value{};
    if (!Resolve(reference, table, field) || read(table, field, value) != AE_SUCCESS)
        return fallback;
    return value;
}

template <class Write>
Status WorkAreas::WriteField(std::string_view reference, Write write) {
    Handle table = 0;
    std::string field;
    return Resolve(reference, table, field) ? write(table, field) : AE_TABLE_NOT_FOUND;
}

std::string WorkAreas::sx_GetString(std::string_view reference) {
    return ReadField(reference, std::string(),
                     [&](Handle table, const std::string& field, std::string& value) {
                         return db_.GetString(table, field, value, ADS_RTRIM);
                     });
}

double WorkAreas::sx_GetDouble(std::string_view reference) {
    return ReadField(reference, 0.0, [&](Handle table, const std::string& field, double& value) {
        return db_.GetDouble(table, field, value);
    });
}

bool WorkAreas::sx_GetLogical(std::string_view reference) {
    return ReadField(reference, false, [&](Handle table, const std::string& field, bool& value) {
        return db_.GetLogical(table, field, value);
    });
}

std::string WorkAreas::sx_GetDate(std::string_view reference) {
    const std::string date = ReadField(
        reference, std::string(), [&](Handle table, const std::string& field, std::string& value) {
            return db_.GetDate(table, field, value);
        });
    return date.find_first_of("0123456789") == std::string::npos ? std::string(kEmptyDate) : date;
}

std::string WorkAreas::sx_GetMemo(std::string_view reference) {
    return ReadField(reference, std::string(),
                     [&](Handle table, const std::string& field, std::string& value) {
                         return db_.GetString(table, field, value, ADS_NONE);
                     });
}

Status WorkAreas::sx_PutString(std::string_view reference, std::string_view value) {
    return WriteField(reference, [&](Handle table, const std::string& field) {
        return db_.SetString(table, field, value);
    });
}

Status WorkAreas::sx_PutDouble(std::string_view reference, double value) {
    return WriteField(reference, [&](Handle table, const std::string& field) {
        return db_.SetDouble(table, field, value);
    });
}

Status WorkAreas::sx_PutLogical(std::string_view reference, bool value) {
    return WriteField(reference, [&](Handle table, const std::string& field) {
        return db_.SetLogical(table, field, value);
    });
}

Status WorkAreas::sx_PutDate(std::string_view reference, std::string_view date) {
    // Blanks and bare separators are the empty date to the engine.
    return WriteField(reference, [&](Handle table, const std::string& field) {
        return db_.SetDate(table, field, platform::Trim(date).empty() ? kEmptyDate : date);
    });
}

Status WorkAreas::sx_PutMemo(std::string_view reference, std::string_view text) {
    return sx_PutString(reference, text);
}

Status WorkAreas::sx_Append() {
    return db_.AppendRecord(current_);
}

Status WorkAreas::sx_Delete() {
    return db_.DeleteRecord(current_);
}

}  // namespace fnrk::tables
