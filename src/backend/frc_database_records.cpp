// Navigation, records, fields, filters and locks: each resolves its handle and hands the call to
// the open table.

#include <limits>

#include "backend/frc_database.hpp"
#include "engine/constants.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

Status FRCDatabase::GotoTop(Handle object) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        return Report(target.table().GotoTop(target.order));
    });
}

Status FRCDatabase::GotoBottom(Handle object) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        return Report(target.table().GotoBottom(target.order));
    });
}

Status FRCDatabase::GotoRecord(Handle table, std::uint32_t record) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().GotoRecord(record));
    });
}

Status FRCDatabase::Skip(Handle object, std::int32_t records) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        return Report(target.table().Skip(target.order, records));
    });
}

Status FRCDatabase::AtBOF(Handle table, bool& atBof) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    atBof = target.table().atBof();
    return AE_SUCCESS;
}

Status FRCDatabase::AtEOF(Handle table, bool& atEof) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    atEof = target.table().atEof();
    return AE_SUCCESS;
}

Status FRCDatabase::GetRecordNum(Handle table, std::uint16_t, std::uint32_t& record) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    record = target.table().recordNumber();
    return AE_SUCCESS;
}

Status FRCDatabase::AppendRecord(Handle table) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().Append());
    });
}

Status FRCDatabase::DeleteRecord(Handle table) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().SetDeleted(true));
    });
}

Status FRCDatabase::RecallRecord(Handle table) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().SetDeleted(false));
    });
}

Status FRCDatabase::IsRecordDeleted(Handle table, bool& deleted) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    deleted = target.table().IsDeleted();
    return AE_SUCCESS;
}

Status FRCDatabase::IsRecordVisible(Handle object, bool& visible) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        visible = target.table().IsVisible(target.order);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetRecord(Handle table, std::string& record) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    record = target.table().record();
    return AE_SUCCESS;
}

Status FRCDatabase::SetRecord(Handle object, std::string_view record) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        return Report(target.table().SetRecord(record));
    });
}

// --- fields

Status FRCDatabase::GetString(Handle table, std::string_view field, std::string& value,
                              std::uint16_t trimOption) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    return Report(entry->table->GetText(*found, value, trimOption));
}

Status FRCDatabase::SetString(Handle object, std::string_view field, std::string_view value) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found); status != AE_SUCCESS) {
            return status;
        }
        return Report(entry->table->SetText(*found, value));
    });
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
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    return Report(ReadNumberAs(*entry->table, *found, value));
}

Status FRCDatabase::GetLong(Handle table, std::string_view field, std::int32_t& value) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    return Report(ReadNumberAs(*entry->table, *found, value));
}

Status FRCDatabase::GetDouble(Handle table, std::string_view field, double& value) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    return Report(entry->table->GetNumber(*found, value));
}

Status FRCDatabase::SetShort(Handle object, std::string_view field, std::int16_t value) {
    return SetDouble(object, field, value);
}

Status FRCDatabase::SetLong(Handle object, std::string_view field, std::int32_t value) {
    return SetDouble(object, field, value);
}

Status FRCDatabase::SetDouble(Handle object, std::string_view field, double value) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found); status != AE_SUCCESS) {
            return status;
        }
        return Report(entry->table->SetNumber(*found, value));
    });
}

Status FRCDatabase::GetLogical(Handle table, std::string_view field, bool& value) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    return Report(entry->table->GetLogical(*found, value));
}

Status FRCDatabase::SetLogical(Handle object, std::string_view field, bool value) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found); status != AE_SUCCESS) {
            return status;
        }
        return Report(entry->table->SetLogical(*found, value));
    });
}

Status FRCDatabase::GetDate(Handle table, std::string_view field, std::string& date) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    std::int32_t julian = 0;
    if (Status status = entry->table->GetJulian(*found, julian); status != AE_SUCCESS) {
        return Report(status);
    }
    date = expr::FormatDate(julian, settings_.dates);
    return AE_SUCCESS;
}

Status FRCDatabase::SetDate(Handle object, std::string_view field, std::string_view date) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found); status != AE_SUCCESS) {
            return status;
        }
        if (found->type != 'D') return Report(AE_INVALID_FIELD_TYPE);
        return Report(entry->table->SetText(*found, date));
    });
}

Status FRCDatabase::GetJulian(Handle table, std::string_view field, std::int32_t& julian) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    return Report(entry->table->GetJulian(*found, julian));
}

Status FRCDatabase::SetJulian(Handle object, std::string_view field, std::int32_t julian) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found); status != AE_SUCCESS) {
            return status;
        }
        return Report(entry->table->SetJulian(*found, julian));
    });
}

Status FRCDatabase::GetMemoLength(Handle table, std::string_view field, std::uint32_t& length) {
    std::string data;
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    if (Status status = entry->table->GetMemo(*found, data); status != AE_SUCCESS) {
        return Report(status);
    }
    length = static_cast<std::uint32_t>(data.size());  // as stored
    return AE_SUCCESS;
}

Status FRCDatabase::GetMemoDataType(Handle table, std::string_view field, std::uint16_t& type) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    if (!dbf::IsMemoType(found->type)) return Report(AE_INVALID_FIELD_TYPE);
    type = found->type == 'M' ? ADS_MEMO : found->type == 'P' ? ADS_IMAGE : ADS_BINARY;
    return AE_SUCCESS;
}

Status FRCDatabase::GetBinary(Handle table, std::string_view field, std::uint32_t offset,
                              std::uint32_t maxLength, std::string& data) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    std::string whole;
    if (Status status = entry->table->GetMemo(*found, whole); status != AE_SUCCESS) {
        return Report(status);
    }
    if (offset > whole.size()) return Report(AE_INVALID_BINARY_OFFSET);
    data = whole.substr(offset, maxLength);
    return AE_SUCCESS;
}

Status FRCDatabase::GetBinaryLength(Handle table, std::string_view field, std::uint32_t& length) {
    OpenTableEntry* entry = nullptr;
    const dbf::Field* found = nullptr;
    if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
        return status;
    }
    std::string whole;
    if (Status status = entry->table->GetMemo(*found, whole); status != AE_SUCCESS) {
        return Report(status);
    }
    length = static_cast<std::uint32_t>(whole.size());
    return AE_SUCCESS;
}

Status FRCDatabase::SetBinary(Handle table, std::string_view field, std::uint16_t,
                              std::uint32_t totalLength, std::uint32_t offset,
                              std::string_view data) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const dbf::Field* found = nullptr;
        if (Status status = ResolveField(table, field, entry, found); status != AE_SUCCESS) {
            return status;
        }
        std::string whole;
        if (Status status = entry->table->GetMemo(*found, whole); status != AE_SUCCESS) {
            return Report(status);
        }
        // Pieces arrive in order: offset 0 starts a new value of totalLength bytes.
        if (offset == 0) whole.assign(totalLength, '\0');
        if (static_cast<std::size_t>(offset) + data.size() > whole.size()) {
            return Report(AE_INVALID_BINARY_OFFSET);
        }
        whole.replace(offset, data.size(), data);
        return Report(entry->table->SetMemo(*found, whole));
    });
}

// --- filters and searches

Status FRCDatabase::SetFilter(Handle table, std::string_view expression) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    std::string message;
    return Report(target.table().SetFilter(expression, message), message);
}

Status FRCDatabase::GetFilter(Handle table, std::string& expression) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    if (target.table().filterText().empty()) return Report(AE_NO_FILTER);
    expression = target.table().filterText();
    return AE_SUCCESS;
}

Status FRCDatabase::ClearFilter(Handle table) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    target.table().ClearFilter();
    return AE_SUCCESS;
}

Status FRCDatabase::SetAOF(Handle table, std::string_view expression, std::uint16_t) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    std::string message;
    return Report(target.table().SetAof(expression, message), message);
}

Status FRCDatabase::GetAOF(Handle table, std::string& expression) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    if (target.table().aofText().empty()) return Report(AE_NO_FILTER);
    expression = target.table().aofText();
    return AE_SUCCESS;
}

Status FRCDatabase::GetAOFOptLevel(Handle table, std::uint16_t& level,
                                   std::string& nonOptimizedPart) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    if (target.table().aofText().empty()) return Report(AE_NO_FILTER);
    // The condition is evaluated on each row read, none of it through the key columns.
    level = ADS_OPTIMIZED_NONE;
    nonOptimizedPart = target.table().aofText();
    return AE_SUCCESS;
}

Status FRCDatabase::ClearAOF(Handle table) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    target.table().ClearAof();
    return AE_SUCCESS;
}

Status FRCDatabase::Locate(Handle table, std::string_view expression, bool forward, bool& found) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        std::string message;
        return Report(target.table().Locate(expression, forward, found, message), message);
    });
}

Status FRCDatabase::Continue(Handle table, bool& found) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().Continue(found));
    });
}

// --- locks

Status FRCDatabase::LockRecord(Handle table, std::uint32_t record) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().LockRecord(record));
    });
}

Status FRCDatabase::UnlockRecord(Handle table, std::uint32_t record) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().UnlockRecord(record));
    });
}

Status FRCDatabase::LockTable(Handle table) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().LockTable());
    });
}

Status FRCDatabase::UnlockTable(Handle table) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
        return Report(target.table().UnlockTable());
    });
}

Status FRCDatabase::IsTableLocked(Handle table, bool& locked) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    locked = target.table().tableLocked();
    return AE_SUCCESS;
}

Status FRCDatabase::IsRecordLocked(Handle table, std::uint32_t record, bool& locked) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    locked = target.table().IsRecordLocked(record);
    return AE_SUCCESS;
}

Status FRCDatabase::GetNumLocks(Handle table, std::uint16_t& count) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    count = target.table().lockCount();
    return AE_SUCCESS;
}

}  // namespace fnrk::backend
