#include "intake/caro_mappings.hpp"

#include <charconv>
#include <optional>

#include "intake/ccd_detail_info.hpp"
#include "intake/mapping_table.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::intake {

namespace {

constexpr MappingQuery kSeekCcd{"SEEKCCD", "CARDID"};
constexpr MappingQuery kSeekCcdKey{"SEEKCCDKEY", "MERCHANT"};
constexpr MappingQuery kSeekCcdDetail{"SEEKCCDDETAIL", "REF"};
constexpr std::size_t kCardIdWidth = 20;
constexpr std::size_t kMerchantWidth = 40;

// Opens the table at the first record of the query's order, for the Read members.
bool OpenAtTop(CompanyFacts& company, const MappingLayout& layout, const MappingQuery& query) {
    const tables::CurrentAliasGuard caller(company.Tables());
    return MappingTable(company, layout).OpenInOrder(query);
}

// Reads the current record of an open table with `read`, then moves to the next one.
template <class Read>
bool ReadAndMove(CompanyFacts& company, std::string_view alias, Read read) {
    tables::AdsClass& tables = company.Tables();
    const tables::CurrentAliasGuard caller(tables);
    if (!tables.IsAlias(alias) || tables.ActivateAlias(alias) != engine::AE_SUCCESS ||
        tables.SelectionEof())
        return false;
    read(tables);
    tables.moveNext();
    return true;
}

std::string DetailText(tables::AdsClass& tables, std::string_view field) {
    const std::string type = tables.FieldType(field);
    if (type == "D") {
        const std::string date = tables.GetDateValue(field);
        return date == tables::kEmptyDate ? std::string() : date;
    }
    if (type == "N") return platform::FormatNumber(tables.GetDoubleValue(field), "0.00");
    return platform::Trim(tables.GetStringValue(field));
}

// The field values to write for the details given (which must outlive them); nothing when a
// number does not read.
std::optional<FieldValues> DetailWrites(tables::AdsClass& tables, const DetailValues& details) {
    FieldValues writes;
    for (const auto& [field, value] : details) {
        if (tables.FieldType(field) != "N") {
            writes.emplace_back(field, value);
            continue;
        }
        double number = 0;
        const auto [end, error] =
            std::from_chars(value.data(), value.data() + value.size(), number);
        if (!value.empty() && (error != std::errc() || end != value.data() + value.size()))
            return std::nullopt;
        writes.emplace_back(field, number);
    }
    return writes;
}

DetailValues ReadDetails(tables::AdsClass& tables) {
    DetailValues values;
    for (const auto& [field, label] : DetailFields()) {
        values.emplace_back(std::string(field), DetailText(tables, field));
    }
    return values;
}

}  // namespace

// --- CCD

bool CaroMappings::CreateMapping() {
    return MappingTable(company_, CcdLayout()).Create();
}

bool CaroMappings::CreateIndexMapping() {
    return MappingTable(company_, CcdLayout()).CreateIndexes();
}

bool CaroMappings::OpenMapping() {
    return OpenAtTop(company_, CcdLayout(), kSeekCcd);
}

bool CaroMappings::FlushAndUnlockMapping() {
    return MappingTable(company_, CcdLayout()).FlushAndUnlock();
}

bool CaroMappings::PackCloseMapping() {
    return MappingTable(company_, CcdLayout()).PackAndClose();
}

std::string CaroMappings::GetMapping(std::string_view cardId) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, CcdLayout());
    return table.Seek(kSeekCcd, LiveKey(cardId, kCardIdWidth)) ? table.Text("GLACCOUNT")
                                                               : std::string();
}

bool CaroMappings::UpdateMapping(std::string_view cardId, std::string_view cardNumber,
                                 std::string_view GlAccount) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, CcdLayout())
        .Write(kSeekCcd, LiveKey(cardId, kCardIdWidth),
               {{"CARDID", platform::Trim(cardId)},
                {"CARDNUMBER", platform::Trim(cardNumber)},
                {"GLACCOUNT", platform::Trim(GlAccount)}});
}

bool CaroMappings::ReadMapping(std::string& cardId, std::string& cardNumber, std::string& GlAccount,
                               std::int32_t& recno) {
    return ReadAndMove(company_, CcdLayout().name, [&](tables::AdsClass& tables) {
        cardId = platform::TrimRight(tables.GetStringValue("CARDID"));
        cardNumber = platform::TrimRight(tables.GetStringValue("CARDNUMBER"));
        GlAccount = platform::TrimRight(tables.GetStringValue("GLACCOUNT"));
        recno = static_cast<std::int32_t>(tables.recno());
    });
}

bool CaroMappings::DeleteMapping(std::string_view cardId) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, CcdLayout()).Delete(kSeekCcd, LiveKey(cardId, kCardIdWidth));
}

// --- CCDKEY

bool CaroMappings::CreateKeyMapping() {
    return MappingTable(company_, CcdKeyLayout()).Create();
}

bool CaroMappings::CreateIndexKeyMapping() {
    return MappingTable(company_, CcdKeyLayout()).CreateIndexes();
}

bool CaroMappings::OpenKeyMapping() {
    return OpenAtTop(company_, CcdKeyLayout(), kSeekCcdKey);
}

bool CaroMappings::FlushAndUnlockKeyMapping() {
    return MappingTable(company_, CcdKeyLayout()).FlushAndUnlock();
}

bool CaroMappings::PackCloseKeyMapping() {
    return MappingTable(company_, CcdKeyLayout()).PackAndClose();
}

namespace {

void ReadKeyDestination(tables::AdsClass& tables, std::int16_t& typeDest,
                        std::string& destination) {
    const std::string account = platform::Trim(tables.GetStringValue("GLACCOUNT"));
    typeDest = account.empty() ? kDestinationSupplier : kDestinationAccount;
    destination = account.empty() ? platform::Trim(tables.GetStringValue("SUPPLIER")) : account;
}

}  // namespace

bool CaroMappings::GetKeyMapping(std::string_view merchant, std::int16_t& typeDest,
                                 std::string& destination) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, CcdKeyLayout());
    if (!table.Seek(kSeekCcdKey, LiveKey(merchant, kMerchantWidth))) return false;
    ReadKeyDestination(company_.Tables(), typeDest, destination);
    return true;
}

bool CaroMappings::UpdateKeyMapping(std::string_view merchant, std::int16_t typeDest,
                                    std::string_view destination) {
    if (typeDest != kDestinationAccount && typeDest != kDestinationSupplier) return false;
    const bool account = typeDest == kDestinationAccount;
    const std::string value = platform::Trim(destination);
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, CcdKeyLayout())
        .Write(kSeekCcdKey, LiveKey(merchant, kMerchantWidth),
               {{"MERCHANT", platform::Trim(merchant)},
                {"GLACCOUNT", account ? value : std::string()},
                {"SUPPLIER", account ? std::string() : value}});
}

bool CaroMappings::ReadKeyMapping(std::string& merchant, std::int16_t& typeDest,
                                  std::string& destination, std::int32_t& recno) {
    return ReadAndMove(company_, CcdKeyLayout().name, [&](tables::AdsClass& tables) {
        merchant = platform::TrimRight(tables.GetStringValue("MERCHANT"));
        ReadKeyDestination(tables, typeDest, destination);
        recno = static_cast<std::int32_t>(tables.recno());
    });
}

bool CaroMappings::DeleteKeyMapping(std::string_view merchant) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    return MappingTable(company_, CcdKeyLayout())
        .Delete(kSeekCcdKey, LiveKey(merchant, kMerchantWidth));
}

// --- CCDDETAIL

std::optional<DetailValues> CaroMappings::LineDetails(std::string_view DbkCode,
                                                      std::string_view DocNumber,
                                                      std::string_view docOrder,
                                                      std::string_view Bookyear,
                                                      std::string_view Period) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, CcdDetailLayout());
    const std::string key = "X" + DocumentLineKey(DbkCode, Bookyear, Period, DocNumber, docOrder);
    if (!table.Seek(kSeekCcdDetail, key)) return std::nullopt;
    return ReadDetails(company_.Tables());
}

std::string CaroMappings::GetInfoCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                                           std::string_view docOrder, std::string_view Bookyear,
                                           std::string_view Period) {
    const auto details = LineDetails(DbkCode, DocNumber, docOrder, Bookyear, Period);
    return details ? FormatDetailInfo(*details) : std::string();
}

std::string CaroMappings::GetPrettyInfoCCDDETAIL(std::string_view DbkCode,
                                                 std::string_view DocNumber,
                                                 std::string_view docOrder,
                                                 std::string_view Bookyear,
                                                 std::string_view Period) {
    const auto details = LineDetails(DbkCode, DocNumber, docOrder, Bookyear, Period);
    return details ? FormatDetailPretty(*details) : std::string();
}

std::string CaroMappings::GetComment(std::string_view DbkCode, std::string_view DocNumber,
                                     std::string_view docOrder, std::string_view Bookyear,
                                     std::string_view Period) {
    const auto details = LineDetails(DbkCode, DocNumber, docOrder, Bookyear, Period);
    return details ? FormatDetailComment(*details) : std::string();
}

bool CaroMappings::UpdateCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                                   std::string_view docOrder, std::string_view Bookyear,
                                   std::string_view Period, std::string_view paraminfo) {
    const std::optional<DetailValues> details = ParseDetailInfo(paraminfo);
    if (!details) return false;
    const tables::CurrentAliasGuard caller(company_.Tables());
    MappingTable table(company_, CcdDetailLayout());
    if (!table.Create() || !table.Open() ||
        company_.Tables().ActivateAlias(CcdDetailLayout().name) != engine::AE_SUCCESS)
        return false;
    std::optional<FieldValues> writes = DetailWrites(company_.Tables(), *details);
    if (!writes) return false;
    FieldValues values{{"DBKCODE", platform::Trim(DbkCode)},
                       {"DOCNUMBER", platform::Trim(DocNumber)},
                       {"DOCORDER", platform::Trim(docOrder)},
                       {"BOOKYEAR", platform::Trim(Bookyear)},
                       {"PERIOD", platform::Trim(Period)}};
    values.insert(values.end(), writes->begin(), writes->end());
    const std::string key = "X" + DocumentLineKey(DbkCode, Bookyear, Period, DocNumber, docOrder);
    return table.Write(kSeekCcdDetail, key, values);
}

bool CaroMappings::DeleteCCDDETAIL(std::string_view DbkCode, std::string_view DocNumber,
                                   std::string_view docOrder, std::string_view Bookyear,
                                   std::string_view Period) {
    const tables::CurrentAliasGuard caller(company_.Tables());
    const std::string key = "X" + DocumentLineKey(DbkCode, Bookyear, Period, DocNumber, docOrder);
    return MappingTable(company_, CcdDetailLayout()).Delete(kSeekCcdDetail, key);
}

bool CaroMappings::PackCloseCCDDETAIL() {
    return MappingTable(company_, CcdDetailLayout()).PackAndClose();
}

bool CaroMappings::CreateIndexCCDDETAIL() {
    return MappingTable(company_, CcdDetailLayout()).CreateIndexes();
}

}  // namespace fnrk::intake
