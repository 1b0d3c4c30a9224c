#include <filesystem>

#include "backend/frc_database.hpp"
#include "engine/dbf/field_list.hpp"
#include "engine/field_type_code.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

namespace {

Status CheckOpenKinds(std::uint16_t tableType, std::uint16_t charType, std::uint16_t lockType) {
    if (tableType != ADS_CDX && tableType != ADS_VFP && tableType != ADS_DEFAULT) {
        return AE_INVALID_TABLETYPE;
    }
    if (charType != ADS_ANSI && charType != ADS_DEFAULT) return AE_INVALID_CHARSETTYPE;
    if (lockType != ADS_COMPATIBLE_LOCKING && lockType != ADS_PROPRIETARY_LOCKING) {
        return AE_INVALID_LOCKTYPE;
    }
    return AE_SUCCESS;
}

std::string AliasFor(std::string_view alias, std::string_view name) {
    const std::string trimmed = platform::Trim(alias);
    return trimmed.empty() ? TableNameOf(name) : platform::UpperCase(trimmed);
}

std::string FileNameOf(std::string_view name) {
    std::string file = platform::Trim(name);
    if (auto slash = file.find_last_of("/\\"); slash != std::string::npos) file.erase(0, slash + 1);
    return file;
}

}  // namespace

Status FRCDatabase::OpenByName(Handle connection, std::string_view given, std::string_view alias,
                               std::uint32_t options, Handle& table) {
    Connection* open = FindConnection(connection);
    if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
    if (platform::Trim(given).empty()) return Report(AE_INVALID_PATH, "no table name");
    // Through a dictionary, its table names stand for the tables they were given for.
    const std::string listed = DictionaryTable(connection, given).value_or(std::string(given));
    const std::string_view name = listed;
    const std::string tableAlias = AliasFor(alias, name);
    for (const auto& [handle, entry] : tables_) {
        if (entry.connection == connection && entry.alias == tableAlias) {
            return Report(AE_DUPLICATE_ALIAS);
        }
    }
    auto layout = TableStore::LoadLayout(*open->session, TableNameOf(name));
    if (!layout) return Report(AE_FILE_NOT_FOUND, std::string(name));
    auto opened = std::make_unique<BackendTable>(*open->session, *open->dialect, std::move(*layout),
                                                 settings_);
    if (Status status = opened->Open(options); status != AE_SUCCESS) {
        return Report(status, std::string(name));
    }
    Handle handle = NewHandle();
    if (handle == 0) return Report(AE_ALLOCATION_FAILED, "no handles left");
    tables_[handle] =
        OpenTableEntry{connection, tableAlias, FileNameOf(name), 0, std::move(opened), 0, {}};
    table = handle;
    return AE_SUCCESS;
}

Status FRCDatabase::CreateTable(Handle connection, std::string_view name, std::string_view alias,
                                std::uint16_t tableType, std::uint16_t charType,
                                std::uint16_t lockType, std::uint16_t, std::uint16_t memoSize,
                                std::string_view fields, Handle& table) {
    return Guarded([&] {
        table = 0;
        if (Status status = CheckOpenKinds(tableType, charType, lockType); status != AE_SUCCESS) {
            return Report(status);
        }
        if (memoSize != 0 && (memoSize < 32 || memoSize > 8192)) {
            return Report(AE_INVALID_MEMO_BLOCK_SIZE);
        }
        Connection* open = FindConnection(connection);
        if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
        TableLayout layout;
        layout.name = TableNameOf(name);
        if (std::string problem = dbf::ParseFieldList(fields, layout.fields); !problem.empty()) {
            return Report(AE_INVALID_FIELDDEF, problem);
        }
        if (layout.name.empty()) return Report(AE_INVALID_PATH, "no table name");
        ArrangeFields(layout);
        const std::string tableAlias = AliasFor(alias, name);
        for (const auto& [handle, entry] : tables_) {
            if (entry.connection == connection && entry.alias == tableAlias) {
                return Report(AE_DUPLICATE_ALIAS);
            }
        }
        // Creating over an existing table replaces it, as creating a file does.
        if (TableStore::Exists(*open->session, layout.name)) {
            TableStore::Drop(*open->session, layout.name);
        }
        TableStore::Create(*open->session, *open->dialect, layout);
        return OpenByName(connection, name, alias, ADS_EXCLUSIVE, table);
    });
}

Status FRCDatabase::OpenTable(Handle connection, std::string_view name, std::string_view alias,
                              std::uint16_t tableType, std::uint16_t charType,
                              std::uint16_t lockType, std::uint16_t, std::uint32_t options,
                              Handle& table) {
    return Guarded([&] {
        table = 0;
        if (Status status = CheckOpenKinds(tableType, charType, lockType); status != AE_SUCCESS) {
            return Report(status);
        }
        if ((options & ~(ADS_EXCLUSIVE | ADS_READONLY | ADS_SHARED)) != 0 ||
            ((options & ADS_EXCLUSIVE) && (options & ADS_SHARED))) {
            return Report(AE_INVALID_OPTION);
        }
        if (connection == 0 && connections_.size() == 1) {
            connection = connections_.begin()->first;
        }
        return OpenByName(connection, name, alias, options, table);
    });
}

Status FRCDatabase::CloseTable(Handle table) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
        Status status = entry->table->Commit();
        CloseTableEntry(table);
        return status;
    });
}

Status FRCDatabase::GetTableHandle(Handle connection, std::string_view name, Handle& table) {
    table = 0;
    const std::string wanted = platform::UpperCase(platform::Trim(name));
    for (const auto& [handle, entry] : tables_) {
        if (connection != 0 && entry.connection != connection) continue;
        if (entry.alias == wanted || platform::UpperCase(entry.fileName) == wanted ||
            entry.table->layout().name == wanted) {
            table = handle;
            return AE_SUCCESS;
        }
    }
    return Report(AE_TABLE_NOT_FOUND, "no open table " + std::string(name));
}

Status FRCDatabase::GetTableAlias(Handle table, std::string& alias) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    alias = entry->alias;
    return AE_SUCCESS;
}

Status FRCDatabase::GetTableFilename(Handle table, std::uint16_t nameOption, std::string& name) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    const std::filesystem::path file(entry->fileName);
    switch (nameOption) {
        case ADS_BASENAME:
            name = file.stem().string();
            return AE_SUCCESS;
        case ADS_BASENAMEANDEXT:
            name = entry->fileName;
            return AE_SUCCESS;
        case ADS_FULLPATHNAME:
            name = (std::filesystem::path(connections_.at(entry->connection)->target.folder) / file)
                       .string();
            return AE_SUCCESS;
        default:
            return Report(AE_INVALID_OPTION);
    }
}

Status FRCDatabase::GetTableOpenOptions(Handle table, std::uint32_t& options) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (options = t.options(), AE_SUCCESS); });
}

Status FRCDatabase::IsTableExclusive(Handle table, bool& exclusive) {
    return OnTable(table,
                   [&](BackendTable& t, Order) { return (exclusive = t.exclusive(), AE_SUCCESS); });
}

Status FRCDatabase::GetRecordCount(Handle table, std::uint16_t filterOption, std::uint32_t& count) {
    return OnTable(table, [&](BackendTable& t, Order order) {
        if (filterOption < ADS_RESPECTFILTERS || filterOption > ADS_REFRESHCOUNT) {
            return AE_INVALID_FILTER_OPTION;
        }
        const bool scopes = filterOption == ADS_RESPECTSCOPES;
        return t.Count(order, filterOption == ADS_RESPECTFILTERS || scopes, scopes, count);
    });
}

Status FRCDatabase::GetRecordLength(Handle table, std::uint32_t& length) {
    return OnTable(table, [&](BackendTable& t, Order) {
        return (length = t.layout().recordLength, AE_SUCCESS);
    });
}

Status FRCDatabase::GetNumFields(Handle table, std::uint16_t& count) {
    return OnTable(table, [&](BackendTable& t, Order) {
        return (count = static_cast<std::uint16_t>(t.layout().fields.size()), AE_SUCCESS);
    });
}

Status FRCDatabase::GetFieldName(Handle table, std::uint16_t fieldNumber, std::string& name) {
    return OnTable(table, [&](BackendTable& t, Order) {
        const auto& fields = t.layout().fields;
        if (fieldNumber == 0 || fieldNumber > fields.size()) return AE_INVALID_FIELDNUMBER;
        name = fields[fieldNumber - 1].name;
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetFieldNum(Handle table, std::string_view field, std::uint16_t& number) {
    return OnField(table, field, [&](BackendTable& t, const dbf::Field& f) {
        number = static_cast<std::uint16_t>(&f - t.layout().fields.data() + 1);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetFieldType(Handle table, std::string_view field, std::uint16_t& type) {
    return OnField(table, field, [&](BackendTable&, const dbf::Field& f) {
        return (type = FieldTypeCode(f.type), AE_SUCCESS);
    });
}

Status FRCDatabase::GetFieldLength(Handle table, std::string_view field, std::uint32_t& length) {
    return OnField(table, field, [&](BackendTable&, const dbf::Field& f) {
        return (length = f.length, AE_SUCCESS);
    });
}

Status FRCDatabase::GetFieldDecimals(Handle table, std::string_view field,
                                     std::uint16_t& decimals) {
    return OnField(table, field, [&](BackendTable&, const dbf::Field& f) {
        return (decimals = f.decimals, AE_SUCCESS);
    });
}

Status FRCDatabase::GetFieldOffset(Handle table, std::string_view field, std::uint32_t& offset) {
    return OnField(table, field, [&](BackendTable&, const dbf::Field& f) {
        return (offset = f.offset, AE_SUCCESS);
    });
}

Status FRCDatabase::PackTable(Handle table) {
    return OnTable(table, [&](BackendTable& t, Order) {
        if (callback_ && callback_(0, 0) != 0) return AE_SUCCESS;
        Status status = t.Pack();
        if (callback_) callback_(100, 0);
        return status;
    });
}

Status FRCDatabase::ZapTable(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.Zap(); });
}

Status FRCDatabase::FlushFileBuffers(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) { return t.Commit(); });
}

Status FRCDatabase::RefreshTable(Handle table) {
    return OnTable(table, [](BackendTable& t, Order) {
        Status status = t.Commit();
        return status == AE_SUCCESS ? t.Refresh() : status;
    });
}

Status FRCDatabase::CacheRecords(Handle table, std::uint16_t) {
    // Rows come from the database's own cache; the figure has nothing to size here.
    OpenTableEntry* entry = nullptr;
    return ResolveTable(table, entry);
}

Status FRCDatabase::SetHandleLong(Handle object, std::uint32_t value) {
    OpenTableEntry* entry = FindTable(object);
    if (!entry) return Report(AE_INVALID_HANDLE);
    entry->handleLong = value;
    return AE_SUCCESS;
}

Status FRCDatabase::GetHandleLong(Handle object, std::uint32_t& value) {
    OpenTableEntry* entry = FindTable(object);
    if (!entry) return Report(AE_INVALID_HANDLE);
    value = entry->handleLong;
    return AE_SUCCESS;
}

Status FRCDatabase::GetHandleType(Handle object, std::uint16_t& type) {
    if (FindConnection(object)) {
        type = ADS_CONNECTION;
    } else if (FindTable(object)) {
        type = ADS_TABLE;
    } else if (indexes_.contains(object)) {
        type = ADS_INDEX_ORDER;
    } else {
        return Report(AE_INVALID_HANDLE);
    }
    return AE_SUCCESS;
}

// --- copies and table management

Status FRCDatabase::CopyTableContents(Handle from, Handle to, std::uint16_t filterOption) {
    return Guarded([&] {
        OpenTableEntry* source = nullptr;
        OpenTableEntry* target = nullptr;
        if (Status status = ResolveTable(from, source); status != AE_SUCCESS) return status;
        if (Status status = ResolveTable(to, target); status != AE_SUCCESS) return status;
        if (source == target) return Report(AE_INVALID_TABLE_HANDLE, "copy onto itself");
        if (filterOption < ADS_RESPECTFILTERS || filterOption > ADS_REFRESHCOUNT) {
            return Report(AE_INVALID_FILTER_OPTION);
        }
        if (source->connection != target->connection) {
            return Report(AE_INVALID_TABLE_HANDLE, "tables of two databases");
        }
        return Report(target->table->CopyFrom(
            *source->table,
            filterOption == ADS_RESPECTFILTERS || filterOption == ADS_RESPECTSCOPES));
    });
}

Status FRCDatabase::InitCopyTableContents(Handle to) {
    return Guarded([&] {
        OpenTableEntry* target = nullptr;
        if (Status status = ResolveTable(to, target); status != AE_SUCCESS) return status;
        connections_.at(target->connection)->session->Begin();
        return AE_SUCCESS;
    });
}

Status FRCDatabase::CloseCopyTableContents(Handle to) {
    return Guarded([&] {
        OpenTableEntry* target = nullptr;
        if (Status status = ResolveTable(to, target); status != AE_SUCCESS) return status;
        connections_.at(target->connection)->session->Commit();
        return AE_SUCCESS;
    });
}

Status FRCDatabase::TableExists(Handle connection, std::string_view name, bool& exists) {
    return Guarded([&] {
        Connection* open = FindConnection(connection);
        if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
        exists = TableStore::Exists(*open->session, TableNameOf(name));
        return AE_SUCCESS;
    });
}

Status FRCDatabase::TableNames(Handle connection, std::vector<std::string>& names) {
    return Guarded([&] {
        Connection* open = FindConnection(connection);
        if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
        names = TableStore::Names(*open->session);
        return AE_SUCCESS;
    });
}

// Asked of any handle of the range (a cursor too): a miss leaves the last error as it was.
Status FRCDatabase::GetActiveIndexHandle(Handle table, Handle& index) {
    OpenTableEntry* entry = FindTable(table);
    if (!entry) return AE_INVALID_TABLE_HANDLE;
    index = entry->activeIndex;
    return AE_SUCCESS;
}

Status FRCDatabase::SetActiveIndexHandle(Handle table, Handle index) {
    OpenTableEntry* entry = FindTable(table);
    if (!entry) return AE_INVALID_TABLE_HANDLE;
    if (index != 0) {
        const auto found = indexes_.find(index);
        if (found == indexes_.end() || found->second.table != table)
            return Report(AE_INVALID_INDEX_HANDLE);
    }
    entry->activeIndex = index;
    return AE_SUCCESS;
}

Status FRCDatabase::DropTable(Handle connection, std::string_view name) {
    return Guarded([&] {
        Connection* open = FindConnection(connection);
        if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
        const std::string table = TableNameOf(name);
        for (const auto& [handle, entry] : tables_) {
            if (entry.connection == connection && entry.table->layout().name == table) {
                return Report(AE_TABLE_NOT_EXCLUSIVE, "the table is open");
            }
        }
        if (!TableStore::Exists(*open->session, table)) return Report(AE_TABLE_NOT_FOUND);
        TableStore::Drop(*open->session, table);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::TableCopy(Handle connection, std::string_view from, std::string_view to) {
    return Guarded([&] {
        Connection* open = FindConnection(connection);
        if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
        auto layout = TableStore::LoadLayout(*open->session, TableNameOf(from));
        if (!layout) return Report(AE_TABLE_NOT_FOUND, std::string(from));
        const std::string target = TableNameOf(to);
        if (TableStore::Exists(*open->session, target)) {
            return Report(AE_INVALID_OBJECT_NAME, std::string(to) + " exists");
        }
        SqlTransaction transaction(*open->session);
        TableLayout copy = *layout;
        copy.name = target;
        copy.tags.clear();
        TableStore::Create(*open->session, *open->dialect, copy);
        TableStore store(*open->session, *open->dialect, copy);
        for (std::size_t i = 0; i < layout->tags.size(); ++i) {
            copy.tags.push_back(layout->tags[i]);
            store.AddTag(copy.tags.back(), i);
        }
        store.CopyRowsFrom(TableStore(*open->session, *open->dialect, *layout));
        transaction.Commit();
        return AE_SUCCESS;
    });
}

}  // namespace fnrk::backend
