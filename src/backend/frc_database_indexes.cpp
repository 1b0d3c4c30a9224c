// Index tags: each is a key column of the table (see TableStore); an index handle names a tag of
// an open table and walks the table in that tag's order.

#include "backend/frc_database.hpp"
#include "engine/constants.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

Status FRCDatabase::CreateIndex(Handle object, std::string_view, std::string_view tag,
                                std::string_view expression, std::string_view condition,
                                std::string_view whileCondition, std::uint32_t options,
                                Handle& index) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        if (!platform::Trim(whileCondition).empty()) {
            return Report(AE_INVALID_OPTION, "WHILE conditions are not kept by the SQL backend");
        }
        if (SqlName(tag).empty()) return Report(AE_INVALID_INDEX_ORDER_NAME);
        IndexTag made = MakeTag(target.table().layout(), tag, expression, condition, options);
        const std::string name = made.name;
        if (Status status = target.table().AddTag(std::move(made)); status != AE_SUCCESS) {
            return Report(status);
        }
        index = IndexHandleFor(target.handle, name);
        return index != 0 ? AE_SUCCESS : Report(AE_ALLOCATION_FAILED, "no handles left");
    });
}

Status FRCDatabase::OpenIndex(Handle table, std::string_view, std::vector<Handle>& indexes) {
    // Every tag of the table is part of it, as a structural index is.
    return GetAllIndexes(table, indexes);
}

Status FRCDatabase::CloseIndex(Handle index) {
    if (!indexes_.erase(index)) return Report(AE_INVALID_INDEX_HANDLE);
    return AE_SUCCESS;
}

Status FRCDatabase::GetIndexHandle(Handle table, std::string_view orderName, Handle& index) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    auto position = entry->table->layout().TagIndex(orderName);
    if (!position) return Report(AE_INVALID_INDEX_ORDER_NAME, std::string(orderName));
    index = IndexHandleFor(table, entry->table->layout().tags[*position].name);
    return AE_SUCCESS;
}

Status FRCDatabase::GetIndexHandleByOrder(Handle table, std::uint16_t order, Handle& index) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    const auto& tags = entry->table->layout().tags;
    if (order == 0 || order > tags.size()) return Report(AE_INVALID_INDEX_ORDER);
    index = IndexHandleFor(table, tags[order - 1].name);
    return AE_SUCCESS;
}

Status FRCDatabase::GetIndexOrderByHandle(Handle index, std::uint16_t& order) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    order = static_cast<std::uint16_t>(*target.order + 1);
    return AE_SUCCESS;
}

Status FRCDatabase::GetAllIndexes(Handle table, std::vector<Handle>& indexes) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    indexes.clear();
    for (const auto& tag : entry->table->layout().tags) {
        indexes.push_back(IndexHandleFor(table, tag.name));
    }
    return AE_SUCCESS;
}

Status FRCDatabase::GetIndexName(Handle index, std::string& name) {
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag& tag) {
        return (name = tag.name, AE_SUCCESS);
    });
}

Status FRCDatabase::GetIndexExpr(Handle index, std::string& expression) {
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag& tag) {
        return (expression = tag.expression, AE_SUCCESS);
    });
}

Status FRCDatabase::GetIndexCondition(Handle index, std::string& condition) {
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag& tag) {
        return (condition = tag.condition, AE_SUCCESS);
    });
}

Status FRCDatabase::GetKeyLength(Handle index, std::uint16_t& length) {
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag& tag) {
        return (length = tag.keyLength, AE_SUCCESS);
    });
}

Status FRCDatabase::IsIndexDescending(Handle index, bool& descending) {
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag& tag) {
        return (descending = tag.descending(), AE_SUCCESS);
    });
}

Status FRCDatabase::IsIndexCompound(Handle index, bool& compound) {
    // Tags, as in a compound index file.
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag&) {
        return (compound = true, AE_SUCCESS);
    });
}

Status FRCDatabase::IsIndexUnique(Handle index, bool& unique) {
    return OnIndex(index, [&](BackendTable&, std::size_t, const IndexTag& tag) {
        return (unique = tag.unique(), AE_SUCCESS);
    });
}

Status FRCDatabase::GetKeyCount(Handle index, std::uint16_t filterOption, std::uint32_t& count) {
    // Every key of the tag, the keys within its scopes, or the records that the scopes, the
    // filters and the hidden deleted records let through.
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag&) {
        if (filterOption == ADS_IGNOREFILTERS) return table.CountKeys(tag, false, count);
        if (filterOption == ADS_RESPECTSCOPES) return table.CountKeys(tag, true, count);
        return table.Count(tag, true, true, count);
    });
}

Status FRCDatabase::ExtractKey(Handle index, std::string& key) {
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag&) {
        if (table.atEof()) return AE_NO_CURRENT_RECORD;
        key = table.CurrentKey(tag).value_or(std::string());
        return AE_SUCCESS;
    });
}

Status FRCDatabase::Seek(Handle index, std::string_view key, std::uint16_t dataType,
                         std::uint16_t seekType, bool& found) {
    found = false;
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag& about) {
        auto probe = ProbeKey(about, key, dataType, settings_.dates);
        if (!probe) return AE_INVALID_DATA_TYPE;
        return table.Seek(tag, *probe, (seekType & ADS_SOFTSEEK) != 0, (seekType & ADS_SEEKGT) != 0,
                          found);
    });
}

Status FRCDatabase::SeekLast(Handle index, std::string_view key, std::uint16_t dataType,
                             bool& found) {
    found = false;
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag& about) {
        auto probe = ProbeKey(about, key, dataType, settings_.dates);
        if (!probe) return AE_INVALID_DATA_TYPE;
        return table.SeekLast(tag, *probe, found);
    });
}

Status FRCDatabase::SetScope(Handle index, std::uint16_t scopeOption, std::string_view scope,
                             std::uint16_t dataType) {
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag& about) {
        if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return AE_INVALID_OPTION;
        auto probe = ProbeKey(about, scope, dataType, settings_.dates);
        if (!probe) return AE_INVALID_DATA_TYPE;
        TagScope& scopes = table.scope(tag);
        (scopeOption == ADS_TOP ? scopes.top : scopes.bottom) = *probe;
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetScope(Handle index, std::uint16_t scopeOption, std::string& scope) {
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag&) {
        if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return AE_INVALID_OPTION;
        const TagScope& scopes = table.scope(tag);
        const auto& value = scopeOption == ADS_TOP ? scopes.top : scopes.bottom;
        if (!value) return AE_NO_SCOPE;
        scope = *value;
        return AE_SUCCESS;
    });
}

Status FRCDatabase::ClearScope(Handle index, std::uint16_t scopeOption) {
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag&) {
        if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return AE_INVALID_OPTION;
        TagScope& scopes = table.scope(tag);
        (scopeOption == ADS_TOP ? scopes.top : scopes.bottom).reset();
        return AE_SUCCESS;
    });
}

Status FRCDatabase::GetRelKeyPos(Handle index, double& position) {
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag&) {
        if (table.atEof()) return (position = 1.0, AE_SUCCESS);
        std::uint32_t total = 0;
        if (Status status = table.Count(tag, true, true, total); status != AE_SUCCESS) {
            return status;
        }
        const std::uint32_t before = table.CountBefore(tag);
        position = total <= 1 ? 0.0 : static_cast<double>(before) / (total - 1);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::SetRelKeyPos(Handle index, double position) {
    return OnIndex(index, [&](BackendTable& table, std::size_t tag, const IndexTag&) {
        if (position < 0.0 || position > 1.0) return AE_INVALID_VALUE;
        std::uint32_t total = 0;
        if (Status status = table.Count(tag, true, true, total); status != AE_SUCCESS) {
            return status;
        }
        if (Status status = table.GotoTop(tag); status != AE_SUCCESS) return status;
        return table.Skip(tag, static_cast<std::int32_t>(position * (total == 0 ? 0 : total - 1)));
    });
}

Status FRCDatabase::Reindex(Handle object) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != AE_SUCCESS) return status;
        // Keys are written with every change; rebuilding recomputes them all the same.
        std::vector<IndexTag> tags = target.table().layout().tags;
        for (auto& tag : tags) {
            if (Status status = target.table().AddTag(std::move(tag)); status != AE_SUCCESS) {
                return Report(status);
            }
        }
        return AE_SUCCESS;
    });
}

}  // namespace fnrk::backend
