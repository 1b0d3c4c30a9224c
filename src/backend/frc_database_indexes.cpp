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
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    name = target.table().layout().tags[*target.order].name;
    return AE_SUCCESS;
}

Status FRCDatabase::GetIndexExpr(Handle index, std::string& expression) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    expression = target.table().layout().tags[*target.order].expression;
    return AE_SUCCESS;
}

Status FRCDatabase::GetIndexCondition(Handle index, std::string& condition) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    condition = target.table().layout().tags[*target.order].condition;
    return AE_SUCCESS;
}

Status FRCDatabase::GetKeyLength(Handle index, std::uint16_t& length) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    length = target.table().layout().tags[*target.order].keyLength;
    return AE_SUCCESS;
}

Status FRCDatabase::IsIndexDescending(Handle index, bool& descending) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    descending = target.table().layout().tags[*target.order].descending();
    return AE_SUCCESS;
}

Status FRCDatabase::IsIndexCompound(Handle index, bool& compound) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    compound = true;  // tags, as in a compound index file
    return AE_SUCCESS;
}

Status FRCDatabase::IsIndexUnique(Handle index, bool& unique) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    unique = target.table().layout().tags[*target.order].unique();
    return AE_SUCCESS;
}

Status FRCDatabase::GetKeyCount(Handle index, std::uint16_t filterOption, std::uint32_t& count) {
    return Guarded([&] {
        Target target;
        if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
        // Every key of the tag, or those the scopes and filters let through.
        return Report(target.table().Count(target.order, filterOption != ADS_IGNOREFILTERS,
                                           filterOption != ADS_IGNOREFILTERS, count));
    });
}

Status FRCDatabase::ExtractKey(Handle index, std::string& key) {
    return Guarded([&] {
        Target target;
        if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
        if (target.table().atEof()) return Report(AE_NO_CURRENT_RECORD);
        key = target.table().CurrentKey(*target.order).value_or(std::string());
        return AE_SUCCESS;
    });
}

Status FRCDatabase::Seek(Handle index, std::string_view key, std::uint16_t dataType,
                         std::uint16_t seekType, bool& found) {
    return Guarded([&] {
        found = false;
        Target target;
        if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
        const IndexTag& tag = target.table().layout().tags[*target.order];
        auto probe = ProbeKey(tag, key, dataType, settings_.dates);
        if (!probe) return Report(AE_INVALID_DATA_TYPE);
        return Report(target.table().Seek(*target.order, *probe, (seekType & ADS_SOFTSEEK) != 0,
                                          (seekType & ADS_SEEKGT) != 0, found));
    });
}

Status FRCDatabase::SeekLast(Handle index, std::string_view key, std::uint16_t dataType,
                             bool& found) {
    return Guarded([&] {
        found = false;
        Target target;
        if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
        const IndexTag& tag = target.table().layout().tags[*target.order];
        auto probe = ProbeKey(tag, key, dataType, settings_.dates);
        if (!probe) return Report(AE_INVALID_DATA_TYPE);
        return Report(target.table().SeekLast(*target.order, *probe, found));
    });
}

Status FRCDatabase::SetScope(Handle index, std::uint16_t scopeOption, std::string_view scope,
                             std::uint16_t dataType) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return Report(AE_INVALID_OPTION);
    const IndexTag& tag = target.table().layout().tags[*target.order];
    auto probe = ProbeKey(tag, scope, dataType, settings_.dates);
    if (!probe) return Report(AE_INVALID_DATA_TYPE);
    TagScope& scopes = target.table().scope(*target.order);
    (scopeOption == ADS_TOP ? scopes.top : scopes.bottom) = *probe;
    return AE_SUCCESS;
}

Status FRCDatabase::GetScope(Handle index, std::uint16_t scopeOption, std::string& scope) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return Report(AE_INVALID_OPTION);
    const TagScope& scopes = target.table().scope(*target.order);
    const auto& value = scopeOption == ADS_TOP ? scopes.top : scopes.bottom;
    if (!value) return Report(AE_NO_SCOPE);
    scope = *value;
    return AE_SUCCESS;
}

Status FRCDatabase::ClearScope(Handle index, std::uint16_t scopeOption) {
    Target target;
    if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
    if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return Report(AE_INVALID_OPTION);
    TagScope& scopes = target.table().scope(*target.order);
    (scopeOption == ADS_TOP ? scopes.top : scopes.bottom).reset();
    return AE_SUCCESS;
}

Status FRCDatabase::GetRelKeyPos(Handle index, double& position) {
    return Guarded([&] {
        Target target;
        if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
        BackendTable& table = target.table();
        if (table.atEof()) {
            position = 1.0;
            return AE_SUCCESS;
        }
        std::uint32_t total = 0;
        if (Status status = table.Count(target.order, true, true, total); status != AE_SUCCESS) {
            return Report(status);
        }
        std::uint32_t before = table.CountBefore(*target.order);
        position = total <= 1 ? 0.0 : static_cast<double>(before) / (total - 1);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::SetRelKeyPos(Handle index, double position) {
    return Guarded([&] {
        Target target;
        if (Status status = ResolveIndex(index, target); status != AE_SUCCESS) return status;
        if (position < 0.0 || position > 1.0) return Report(AE_INVALID_VALUE);
        BackendTable& table = target.table();
        std::uint32_t total = 0;
        if (Status status = table.Count(target.order, true, true, total); status != AE_SUCCESS) {
            return Report(status);
        }
        if (Status status = table.GotoTop(target.order); status != AE_SUCCESS) {
            return Report(status);
        }
        const auto steps = static_cast<std::int32_t>(position * (total == 0 ? 0 : total - 1));
        return Report(table.Skip(target.order, steps));
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
