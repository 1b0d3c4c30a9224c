// Engine operations on index orders and optimized filters, over order/: the structural index
// opens with its table, every other index file on request; index handles navigate in their
// tag's order.

#include <strings.h>
#include <filesystem>

#include "engine/engine.hpp"
#include "engine/order/seek_key.hpp"
#include "engine/order_call.hpp"
#include "platform/codepage.hpp"

namespace fnrk::engine {

namespace {

bool SameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

// An index file name as given: empty or the table's own stem is the structural index (empty
// path); otherwise a path beside the table, ".cdx" added when it has no extension.
std::filesystem::path IndexPath(const std::string& tablePath, std::string_view fileName) {
    const std::filesystem::path table(tablePath);
    std::filesystem::path name(platform::Utf8ToCp1252(fileName));
    if (name.empty()) return {};
    if (!name.has_extension()) name += ".cdx";
    if (name.is_relative()) name = table.parent_path() / name;
    if (SameText(name.stem().string(), table.stem().string()) &&
        SameText(name.parent_path().string(), table.parent_path().string()) &&
        SameText(name.extension().string(), ".cdx"))
        return {};
    return name;
}

}  // namespace

order::OrderRegistry& Engine::Orders() {
    if (orders_ == nullptr) orders_ = std::make_unique<order::OrderRegistry>();
    return *orders_;
}

Status Engine::AttachIndexes(Handle table, bool structural) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    order::TableOrders& orders = Orders().Attach(table, *cursor, settings_.dates);
    // An encrypted table's indexes open once its password is given (EnableEncryption).
    if (!structural || cursor->file().locked()) return AE_SUCCESS;
    std::string message;
    // Apart: the message is filled by the open, after which it is passed on.
    const Status status = orders.indexes->OpenStructural(message);
    return Report(status, message);
}

void Engine::DetachIndexes(Handle table) {
    if (orders_ != nullptr) orders_->Detach(table);
}

Status Engine::CreateIndex(Handle object, std::string_view fileName, std::string_view tag,
                           std::string_view expression, std::string_view condition,
                           std::string_view whileCondition, std::uint32_t options, Handle& index) {
    index = 0;
    Handle table = object;
    Orders().FindOrder(object, &table);
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    if (tag.empty()) return Report(AE_INVALID_INDEX_NAME, "a compound index needs a tag name");
    if (!whileCondition.empty()) return Report(AE_INVALID_OPTION, "WHILE conditions are not kept");
    const order::TagRequest request{
        std::string(tag), platform::Utf8ToCp1252(expression), platform::Utf8ToCp1252(condition),
        (options & (ADS_UNIQUE | ADS_CANDIDATE)) != 0, (options & ADS_DESCENDING) != 0};
    std::string message;
    order::OpenTag* created = nullptr;
    const std::filesystem::path path = IndexPath(orders->indexes->table().file().path(), fileName);
    if (Status status = orders->indexes->CreateTag(path, request, message, created);
        status != AE_SUCCESS)
        return Report(status, message);
    Orders().Prune(table);
    index = Orders().HandleOf(table, created, nextHandle_);
    return AE_SUCCESS;
}

Status Engine::OpenIndex(Handle table, std::string_view fileName, std::vector<Handle>& indexes) {
    indexes.clear();
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    const std::string tablePath = orders->indexes->table().file().path();
    std::filesystem::path path = IndexPath(tablePath, fileName);
    if (path.empty()) path = orders->indexes->StructuralPath();
    const std::size_t before = orders->indexes->tags().size();
    std::string message;
    if (Status status = orders->indexes->OpenFile(path, message); status != AE_SUCCESS)
        return Report(status, message);
    const auto& tags = orders->indexes->tags();
    for (std::size_t i = before; i < tags.size(); ++i)
        indexes.push_back(Orders().HandleOf(table, tags[i].get(), nextHandle_));
    return AE_SUCCESS;
}

Status Engine::CloseIndex(Handle index) {
    Handle table = 0;
    order::IndexOrder* order = Orders().FindOrder(index, &table);
    if (order == nullptr) return Report(AE_INVALID_INDEX_HANDLE);
    Orders().FindTable(table)->indexes->CloseFileOf(&order->tag());
    Orders().Prune(table);
    return AE_SUCCESS;
}

Status Engine::GetIndexHandle(Handle table, std::string_view orderName, Handle& index) {
    index = 0;
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    orders->indexes->RefreshTags();
    order::OpenTag* tag = orders->indexes->FindTag(platform::Utf8ToCp1252(orderName));
    if (tag == nullptr)
        return Report(AE_INVALID_INDEX_ORDER_NAME, "no tag " + std::string(orderName));
    index = Orders().HandleOf(table, tag, nextHandle_);
    return AE_SUCCESS;
}

Status Engine::GetIndexHandleByOrder(Handle table, std::uint16_t order, Handle& index) {
    index = 0;
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    orders->indexes->RefreshTags();
    const auto& tags = orders->indexes->tags();
    if (order == 0 || order > tags.size()) return Report(AE_INVALID_INDEX_ORDER);
    index = Orders().HandleOf(table, tags[order - 1].get(), nextHandle_);
    return AE_SUCCESS;
}

Status Engine::GetIndexOrderByHandle(Handle index, std::uint16_t& order) {
    order = 0;
    Handle table = 0;
    order::IndexOrder* found = Orders().FindOrder(index, &table);
    if (found == nullptr) return Report(AE_INVALID_INDEX_HANDLE);
    const auto& tags = Orders().FindTable(table)->indexes->tags();
    for (std::size_t i = 0; i < tags.size(); ++i)
        if (tags[i].get() == &found->tag()) order = static_cast<std::uint16_t>(i + 1);
    return AE_SUCCESS;
}

Status Engine::GetAllIndexes(Handle table, std::vector<Handle>& indexes) {
    indexes.clear();
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    orders->indexes->RefreshTags();
    indexes = Orders().HandlesOf(table, nextHandle_);
    return AE_SUCCESS;
}

namespace {

// Runs `body(order, keyBytes)` with a seek or scope value turned into the tag's key bytes.
template <class Body>
Status OnOrderKey(order::OrderRegistry& orders, Handle index, std::string_view value,
                  std::uint16_t dataType, Body body) {
    return OnOrder(orders, index, [&](order::IndexOrder& order) {
        std::string key;
        if (Status status = order::SeekKeyBytes(order.tag(), value, dataType, key);
            status != AE_SUCCESS)
            return status;
        return body(order, std::move(key));
    });
}

}  // namespace

Status Engine::GetIndexName(Handle index, std::string& name) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        name = platform::Cp1252ToUtf8(order.tag().tag->name());
        return AE_SUCCESS;
    }));
}

Status Engine::GetIndexExpr(Handle index, std::string& expression) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        expression = platform::Cp1252ToUtf8(order.tag().tag->header().keyExpression);
        return AE_SUCCESS;
    }));
}

Status Engine::GetIndexCondition(Handle index, std::string& condition) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        condition = platform::Cp1252ToUtf8(order.tag().tag->header().forExpression);
        return AE_SUCCESS;
    }));
}

Status Engine::GetKeyLength(Handle index, std::uint16_t& length) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        length = order.tag().tag->header().keyLength;
        return AE_SUCCESS;
    }));
}

Status Engine::IsIndexDescending(Handle index, bool& descending) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        descending = order.tag().tag->header().descending;
        return AE_SUCCESS;
    }));
}

Status Engine::IsIndexCompound(Handle index, bool& compound) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder&) {
        compound = true;  // every tag lives in a compound file
        return AE_SUCCESS;
    }));
}

Status Engine::IsIndexUnique(Handle index, bool& unique) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        unique = order.tag().tag->header().unique();
        return AE_SUCCESS;
    }));
}

Status Engine::GetKeyCount(Handle index, std::uint16_t filterOption, std::uint32_t& count) {
    count = 0;
    if (filterOption != ADS_RESPECTFILTERS && filterOption != ADS_IGNOREFILTERS &&
        filterOption != ADS_RESPECTSCOPES)
        return Report(AE_INVALID_FILTER_OPTION);
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        return order.CountKeys(filterOption, count);
    }));
}

Status Engine::ExtractKey(Handle index, std::string& key) {
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        std::string bytes;
        const Status status = order.ExtractKey(bytes);
        key = order::KeyText(order.tag(), bytes);
        return status;
    }));
}

Status Engine::Seek(Handle index, std::string_view key, std::uint16_t dataType,
                    std::uint16_t seekType, bool& found) {
    found = false;
    return Report(OnOrderKey(Orders(), index, key, dataType,
                             [&](order::IndexOrder& order, std::string probe) {
                                 if (seekType == ADS_SEEKGT) return order.SeekAfter(probe, found);
                                 if (seekType != ADS_SOFTSEEK && seekType != ADS_HARDSEEK)
                                     return AE_INVALID_OPTION;
                                 return order.Seek(probe, seekType == ADS_SOFTSEEK, false, found);
                             }));
}

Status Engine::SeekLast(Handle index, std::string_view key, std::uint16_t dataType, bool& found) {
    found = false;
    return Report(OnOrderKey(Orders(), index, key, dataType,
                             [&](order::IndexOrder& order, std::string probe) {
                                 return order.Seek(probe, false, true, found);
                             }));
}

Status Engine::SetScope(Handle index, std::uint16_t scopeOption, std::string_view scope,
                        std::uint16_t dataType) {
    if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return Report(AE_INVALID_OPTION);
    const auto end = scopeOption == ADS_TOP ? order::ScopeEnd::Top : order::ScopeEnd::Bottom;
    return Report(OnOrderKey(Orders(), index, scope, dataType,
                             [&](order::IndexOrder& order, std::string key) {
                                 order.SetScope(end, std::move(key));
                                 return AE_SUCCESS;
                             }));
}

Status Engine::GetScope(Handle index, std::uint16_t scopeOption, std::string& scope) {
    scope.clear();
    if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return Report(AE_INVALID_OPTION);
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        const auto& key =
            order.scope(scopeOption == ADS_TOP ? order::ScopeEnd::Top : order::ScopeEnd::Bottom);
        if (!key) return AE_NO_SCOPE;
        scope = order::KeyText(order.tag(), *key);
        return AE_SUCCESS;
    }));
}

Status Engine::ClearScope(Handle index, std::uint16_t scopeOption) {
    if (scopeOption != ADS_TOP && scopeOption != ADS_BOTTOM) return Report(AE_INVALID_OPTION);
    return Report(OnOrder(Orders(), index, [&](order::IndexOrder& order) {
        order.ClearScope(scopeOption == ADS_TOP ? order::ScopeEnd::Top : order::ScopeEnd::Bottom);
        return AE_SUCCESS;
    }));
}

Status Engine::GetRelKeyPos(Handle index, double& position) {
    return Report(OnOrder(Orders(), index,
                          [&](order::IndexOrder& order) { return order.GetRelKeyPos(position); }));
}

Status Engine::SetRelKeyPos(Handle index, double position) {
    return Report(OnOrder(Orders(), index,
                          [&](order::IndexOrder& order) { return order.SetRelKeyPos(position); }));
}

Status Engine::Reindex(Handle object) {
    Handle table = object;
    Orders().FindOrder(object, &table);
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    if (!orders->indexes->table().file().exclusive()) return Report(AE_TABLE_NOT_EXCLUSIVE);
    std::string message;
    if (progress_) {
        orders->indexes->SetProgress([this](std::uint32_t done, std::uint32_t total) {
            const auto percent =
                static_cast<std::uint16_t>(total == 0 ? 100 : std::uint64_t{done} * 100 / total);
            // The answer (stop) is not heeded: an index must not be left half rebuilt.
            progress_(percent, progressId_);
        });
    }
    const Status status = orders->indexes->Reindex(message);
    orders->indexes->SetProgress(nullptr);
    Orders().Prune(table);
    return Report(status, message);
}

// --- optimized filters

Status Engine::SetAOF(Handle table, std::string_view expression, std::uint16_t resolveOptions) {
    if (resolveOptions > ADS_RESOLVE_DYNAMIC) return Report(AE_INVALID_OPTION);
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    cursor::TableCursor& cursor = orders->indexes->table();
    std::unique_ptr<order::OptimizedFilter> filter;
    try {
        filter = std::make_unique<order::OptimizedFilter>(
            platform::Utf8ToCp1252(expression), *orders->indexes, cursor, settings_.dates);
    } catch (const std::exception& error) {
        return Report(AE_INVALID_EXPRESSION, error.what());
    }
    order::OptimizedFilter* gate = filter.get();
    cursor.SetRecordGate([gate](std::uint32_t record, std::string_view bytes) {
        return gate->Admits(record, bytes);
    });
    orders->indexes->SetWriteListener([gate](std::uint32_t record, std::string_view bytes) {
        gate->RecordChanged(record, bytes);
    });
    orders->filter = std::move(filter);
    return AE_SUCCESS;
}

Status Engine::GetAOF(Handle table, std::string& expression) {
    expression.clear();
    Orders().FindOrder(table, &table);
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    if (!orders->filter) return Report(AE_NO_FILTER);
    expression = platform::Cp1252ToUtf8(orders->filter->text());
    return AE_SUCCESS;
}

Status Engine::GetAOFOptLevel(Handle table, std::uint16_t& level, std::string& nonOptimizedPart) {
    level = ADS_OPTIMIZED_NONE;
    nonOptimizedPart.clear();
    Orders().FindOrder(table, &table);
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    if (!orders->filter) return Report(AE_NO_FILTER);
    level = orders->filter->level();
    nonOptimizedPart = platform::Cp1252ToUtf8(orders->filter->nonOptimizedPart());
    return AE_SUCCESS;
}

Status Engine::ClearAOF(Handle table) {
    Orders().FindOrder(table, &table);
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    orders->indexes->table().SetRecordGate({});
    orders->indexes->SetWriteListener({});
    orders->filter.reset();
    return AE_SUCCESS;
}

}  // namespace fnrk::engine
