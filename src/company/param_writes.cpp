// SocParamColClassApi: the writes to the parameter table. Every write holds the lock of the row
// it changes (or of the table, to add a row that must exist once) until it is flushed.

#include "company/param_table.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::company {

namespace {

struct ParamRow {
    std::string key;
    std::string value;
    std::string extension;
};

}  // namespace

bool SplitParamValue(std::string_view value, std::size_t valueWidth, std::size_t extensionWidth,
                     std::string& stored, std::string& extension) {
    const std::string text = platform::TrimRight(value);
    const std::size_t length = platform::CharCount(text);
    std::size_t cut = std::min(length, valueWidth);
    // A blank that ends "VALUE" would be lost on reading: it goes to "VALUEEXT" instead.
    if (cut < length) {
        while (cut > 0 && platform::LeftChars(text, cut).back() == ' ') --cut;
    }
    stored = platform::LeftChars(text, cut);
    extension = platform::RightChars(text, length - cut);
    return platform::CharCount(extension) <= extensionWidth;
}

bool SocParamColClassApi::SaveParamNewsoc(
    const std::vector<std::pair<std::string, std::string>>& parameters) {
    if (!tables_.IsAlias(kParamAlias)) return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (!ActivateKeyedParam()) return false;
    const std::size_t valueWidth = tables_.FieldLength("VALUE");
    const std::size_t extensionWidth =
        tables_.FieldExist("VALUEEXT") ? tables_.FieldLength("VALUEEXT") : 0;

    // Everything is checked before the first write, so that bad input changes nothing.
    std::vector<ParamRow> rows;
    for (const auto& [key, value] : parameters) {
        ParamRow row{platform::Trim(key), {}, {}};
        if (row.key.empty() ||
            !SplitParamValue(value, valueWidth, extensionWidth, row.value, row.extension))
            return false;
        rows.push_back(std::move(row));
    }
    for (const ParamRow& row : rows) {
        if (SeekParam(row.key)) {
            if (!tables_.RecLock(kParamAlias, tables_.recno())) return false;
        } else {
            if (tables_.RecordAdd() != 0) return false;
            tables_.PutFieldValue("ID", ParamKey(row.key));
        }
        const bool written =
            tables_.PutFieldValue("VALUE", row.value) &&
            (extensionWidth == 0 || tables_.PutFieldValue("VALUEEXT", row.extension));
        if (tables_.FlushAndUnlock(kParamAlias) != 0 || !written) return false;
    }
    return true;
}

bool SocParamColClassApi::EraseParamValue(std::string_view key) {
    if (!tables_.IsAlias(kParamAlias)) return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (!SeekParam(key) || !tables_.RecLock(kParamAlias, tables_.recno())) return false;
    const bool deleted = tables_.RecordDelete() == 0;
    return tables_.FlushAndUnlock(kParamAlias) == 0 && deleted;
}

std::int32_t SocParamColClassApi::GetNewMatchNumber(std::string& bookYear) {
    if (platform::Trim(bookYear).empty()) bookYear = std::to_string(currentBookYear_);
    if (!tables_.IsAlias(kParamAlias)) return 0;
    const std::string key = BookYearKey(AsShort(ParamNumber(bookYear)), ".MatchNumber");
    const tables::CurrentAliasGuard caller(tables_);
    if (!SeekParam(key)) {
        // The counter's row is added under the table lock, looked for again once held: two
        // workstations taking their first number at once add it only once.
        if (!tables_.LockTable(kParamAlias)) return 0;
        bool added = true;
        if (!SeekParam(key)) {
            added = tables_.RecordAdd() == 0 && tables_.PutFieldValue("ID", ParamKey(key)) &&
                    tables_.PutFieldValue("VALUE", std::string("0"));
        }
        if (tables_.FlushAndUnlock(kParamAlias) != 0 || !added || !SeekParam(key)) return 0;
    }
    if (!tables_.RecLock(kParamAlias, tables_.recno())) return 0;
    // Read once the lock is held: what another workstation wrote before is seen.
    const double current = ParamNumber(platform::TrimRight(tables_.GetStringValue("VALUE")) +
                                       platform::TrimRight(tables_.GetStringValue("VALUEEXT")));
    const auto next = static_cast<std::int32_t>(current) + 1;
    const bool written =
        tables_.PutFieldValue("VALUE", std::to_string(next)) &&
        (!tables_.FieldExist("VALUEEXT") || tables_.PutFieldValue("VALUEEXT", std::string()));
    return tables_.FlushAndUnlock(kParamAlias) == 0 && written ? next : 0;
}

}  // namespace fnrk::company
