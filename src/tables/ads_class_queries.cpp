// AdsClass: named queries, the current table's order and key range, and its filter.

#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"
#include "tables/work_area.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

// --- named queries

Status AdsClass::AddQuery(std::string_view name, std::int32_t formNum, std::string_view alias,
                          std::string_view indexName, std::string_view filter,
                          std::uint32_t recordNumber, std::string_view comment) {
    NamedQuery query;
    query.Name = NamedQueryKey(name, formNum);
    query.FormNum = formNum;
    query.Alias = platform::UpperCase(platform::Trim(alias));
    query.IndexName = IndexTagName(db_, TableOfAlias(query.Alias), indexName);
    query.FilterExpr = std::string(filter);
    if (query.Alias == "ACT" && (temporaryEntries_[0] || temporaryEntries_[1]))
        query.FilterExpr = WithoutTemporaryEntries(filter);
    query.RecordNumber = recordNumber;
    query.comment = std::string(comment);
    queries_[query.Name] = std::move(query);
    return AE_SUCCESS;
}

bool AdsClass::RemoveQuery(std::string_view name, std::int32_t formNum) {
    return queries_.erase(NamedQueryKey(name, formNum)) > 0;
}

const NamedQuery* AdsClass::FindQuery(std::string_view name, std::int32_t formNum) const {
    const auto found = queries_.find(NamedQueryKey(name, formNum));
    return found == queries_.end() ? nullptr : &found->second;
}

bool AdsClass::IsQuery(std::string_view name, std::int32_t formNum) const {
    return FindQuery(name, formNum) != nullptr;
}

Status AdsClass::ActivateQuery(std::string_view name, std::int32_t formNum) {
    const NamedQuery* query = FindQuery(name, formNum);
    if (query == nullptr) {
        ShowErrorBox("QueryName " + std::string(name) + " not found ...");
        return AE_NOT_FOUND;
    }
    if (Status status = ActivateAlias(query->Alias); status != AE_SUCCESS) return status;
    SetIndex(query->IndexName == kTagError ? std::string_view{} : query->IndexName);
    if (Status status = SetFilterOnCurrentAlias(query->FilterExpr); status != AE_SUCCESS)
        return status;
    if (Status status = SetScope(query->BegScope, query->EndScope); status != AE_SUCCESS)
        return status;
    return query->RecordNumber != 0 ? db_.GotoRecord(currentTable_, query->RecordNumber)
                                    : db_.GotoTop(NavigationHandle());
}

std::string AdsClass::QueryAlias(std::string_view name, std::int32_t formNum) const {
    const NamedQuery* query = FindQuery(name, formNum);
    return query ? query->Alias : std::string(kQueryNotFound);
}

std::string AdsClass::QueryRecNum(std::string_view name, std::int32_t formNum) const {
    const NamedQuery* query = FindQuery(name, formNum);
    return query ? std::to_string(query->RecordNumber) : std::string(kQueryNotFound);
}

std::string AdsClass::QueryComment(std::string_view name, std::int32_t formNum) const {
    const NamedQuery* query = FindQuery(name, formNum);
    return query ? query->comment : std::string(kQueryNotFound);
}

std::string AdsClass::QueryIndex(std::string_view name, std::int32_t formNum) const {
    const NamedQuery* query = FindQuery(name, formNum);
    return query ? query->IndexName : std::string(kQueryNotFound);
}

std::string AdsClass::QueryFilter(std::string_view name, std::int32_t formNum) const {
    const NamedQuery* query = FindQuery(name, formNum);
    return query ? query->FilterExpr : std::string(kQueryNotFound);
}

bool AdsClass::SetQueryRecNum(std::string_view name, std::int32_t formNum, std::uint32_t record) {
    const auto found = queries_.find(NamedQueryKey(name, formNum));
    if (found == queries_.end()) return false;
    found->second.RecordNumber = record;
    return true;
}

bool AdsClass::SetQueryScope(std::string_view name, std::int32_t formNum, std::string_view begScope,
                             std::string_view endScope) {
    const auto found = queries_.find(NamedQueryKey(name, formNum));
    if (found == queries_.end()) return false;
    found->second.BegScope = std::string(begScope);
    found->second.EndScope = std::string(endScope);
    return true;
}

void AdsClass::SetTemporaryEntrySwitches(bool first, bool second) {
    temporaryEntries_[0] = first;
    temporaryEntries_[1] = second;
}

// --- order and key range of the current table

Status AdsClass::CreateIndexTag(std::string_view alias, std::string_view tag,
                                std::string_view expression) {
    if (!MakeCurrent(alias)) return AE_TABLE_NOT_FOUND;
    Handle index = 0;
    // Navigation keeps going through currentIndex_: the new tag does not become the order.
    return db_.CreateIndex(currentTable_, "", tag, expression, "", "", ADS_COMPOUND, index);
}

bool AdsClass::SetIndex(std::string_view tag) {
    if (currentTable_ == 0) return false;
    const std::string name = IndexTagName(db_, currentTable_, tag);
    Handle index = 0;
    if (name == kTagError ||
        (!name.empty() && db_.GetIndexHandle(currentTable_, name, index) != AE_SUCCESS))
        return false;
    currentIndex_ = index;
    SetActiveIndex(currentTable_, index);
    return true;
}

std::string AdsClass::GetIndexTagName() {
    std::string name;
    if (currentIndex_ == 0 || db_.GetIndexName(currentIndex_, name) != AE_SUCCESS) return {};
    return platform::Trim(name);
}

std::string AdsClass::CurrentIndexCondition() {
    std::string condition;
    if (currentIndex_ == 0 || db_.GetIndexCondition(currentIndex_, condition) != AE_SUCCESS)
        return {};
    return condition;
}

std::string AdsClass::CurrentIndexKeyExpr() {
    std::string expression;
    if (currentIndex_ == 0 || db_.GetIndexExpr(currentIndex_, expression) != AE_SUCCESS) return {};
    return expression;
}

std::string AdsClass::GetCurrentIndexKeyData() {
    std::string key;
    if (currentIndex_ == 0 || db_.ExtractKey(currentIndex_, key) != AE_SUCCESS) return {};
    return key;
}

Status AdsClass::SetScope(std::string_view lowKey, std::string_view highKey) {
    if (currentIndex_ == 0) {
        // Natural order has no keys: only "no range" can be asked of it.
        return lowKey.empty() && highKey.empty() ? AE_SUCCESS : AE_INVALID_INDEX_HANDLE;
    }
    for (const auto& [end, key] : {std::pair{ADS_TOP, lowKey}, std::pair{ADS_BOTTOM, highKey}}) {
        const Status status = key.empty() ? db_.ClearScope(currentIndex_, end)
                                          : db_.SetScope(currentIndex_, end, key, ADS_STRINGKEY);
        // Clearing an end that had no scope is no failure.
        if (status != AE_SUCCESS && !(key.empty() && status == AE_NO_SCOPE)) return status;
    }
    return AE_SUCCESS;
}

// --- filters

Status AdsClass::SetFilterOnCurrentAlias(std::string_view expression) {
    return SetOptimizedFilter(expression);
}

Status AdsClass::SetOptimizedFilter(std::string_view expression) {
    if (platform::Trim(expression).empty()) return ClearOptimizedFilter();
    return db_.SetAOF(currentTable_, expression, ADS_RESOLVE_DYNAMIC);
}

Status AdsClass::ClearOptimizedFilter() {
    const Status status = db_.ClearAOF(currentTable_);
    return status == AE_NO_FILTER ? AE_SUCCESS : status;
}

std::string AdsClass::CurrentFilterExpression() {
    std::string expression;
    if (db_.GetAOF(currentTable_, expression) != AE_SUCCESS) return {};
    return expression;
}

}  // namespace fnrk::tables
