#include "engine/sql/tag_plans.hpp"

#include <sqlite3.h>

#include <cstring>

#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

std::string Compact(std::string_view expression) {
    std::string out;
    for (const char c : platform::UpperCase(expression))
        if (c != ' ') out += c;
    return out;
}

bool IsAscii(std::string_view text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    return true;
}

std::optional<TagPlan> PlanFor(const std::string& key, const std::vector<FieldInfo>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FieldInfo& field = fields[i];
        const std::string name = platform::UpperCase(field.name);
        const bool keyed =
            field.type == ADS_STRING || field.type == ADS_NUMERIC || field.type == ADS_DATE;
        if (!keyed) continue;
        if (key == name) return TagPlan{{}, i, false};
        if (field.type == ADS_STRING && key.size() > name.size() + 1 &&
            key.compare(0, name.size() + 1, name + "+") == 0)
            return TagPlan{{}, i, true};
    }
    return std::nullopt;
}

}  // namespace

std::vector<TagPlan> UsableTags(Operations& engine, Handle table,
                                const std::vector<FieldInfo>& fields, bool showDeleted) {
    std::vector<TagPlan> plans;
    std::vector<Handle> indexes;
    if (engine.GetAllIndexes(table, indexes) != AE_SUCCESS) return plans;
    for (const Handle index : indexes) {
        std::string name, expression, condition;
        bool descending = true, unique = true;
        if (engine.GetIndexName(index, name) != AE_SUCCESS ||
            engine.GetIndexExpr(index, expression) != AE_SUCCESS ||
            engine.GetIndexCondition(index, condition) != AE_SUCCESS ||
            engine.IsIndexDescending(index, descending) != AE_SUCCESS ||
            engine.IsIndexUnique(index, unique) != AE_SUCCESS || descending || unique)
            continue;
        const std::string compactCondition = Compact(condition);
        if (!compactCondition.empty() && (showDeleted || compactCondition != ".NOT.DELETED()"))
            continue;
        if (std::optional<TagPlan> plan = PlanFor(Compact(expression), fields)) {
            plan->tag = name;
            plans.push_back(std::move(*plan));
        }
    }
    return plans;
}

std::optional<ScopeKey> ScopeKeyFor(const FieldInfo& field, const TagPlan& plan,
                                    sqlite3_value* value, bool equality) {
    if (sqlite3_value_type(value) == SQLITE_NULL) return std::nullopt;
    if (field.type == ADS_STRING) {
        const std::string text =
            platform::TrimRight(reinterpret_cast<const char*>(sqlite3_value_text(value)));
        // Keys order Windows-1252 bytes and SQLite orders UTF-8: they agree on ASCII bounds.
        if (!equality && !IsAscii(text)) return std::nullopt;
        const std::size_t stored = platform::Utf8ToCp1252(text).size();
        if (stored > field.length) return std::nullopt;
        return ScopeKey{text + std::string(field.length - stored, ' '), ADS_STRINGKEY};
    }
    if (plan.leadingPart) return std::nullopt;
    double number = 0;
    if (field.type == ADS_DATE) {
        const std::optional<std::int32_t> julian =
            JulianFromIso(reinterpret_cast<const char*>(sqlite3_value_text(value)));
        if (!julian) return std::nullopt;
        number = *julian;
    } else {
        const int kind = sqlite3_value_numeric_type(value);
        if (kind != SQLITE_INTEGER && kind != SQLITE_FLOAT) return std::nullopt;
        number = sqlite3_value_double(value);
    }
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return ScopeKey{std::move(bytes), ADS_DOUBLEKEY};
}

}  // namespace fnrk::engine::sql
