#include "intake/mapping_table.hpp"

#include <cmath>
#include <cstdlib>

#include "platform/file_system.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/app_class.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/work_area.hpp"

namespace fnrk::intake {

namespace {

constexpr std::int32_t kQueryForm = 0;
constexpr std::string_view kQueryComment = "NO COMMENT";
constexpr std::string_view kTemplateAlias = "EFFFSOCORG";
constexpr std::size_t kDocumentNumberWidth = 8;

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

// The field list of a layout into the structure builder.
bool DefineFields(tables::WorkAreas& areas, std::string_view fields) {
    for (const std::string& field : Split(fields, ';')) {
        const std::vector<std::string> parts = Split(field, ',');
        if (parts.size() != 4 ||
            !areas.sx_CreateField(parts[0], parts[1], std::atoi(parts[2].c_str()),
                                  std::atoi(parts[3].c_str())))
            return false;
    }
    return true;
}

// The xBase str(val(text), 8) of a document number: its leading number, rounded, right-aligned
// in 8 characters; stars when it does not fit.
std::string NumberInEightCharacters(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    const double value = std::strtod(trimmed.c_str(), nullptr);
    const std::string digits = std::to_string(static_cast<long long>(std::llround(value)));
    if (digits.size() > kDocumentNumberWidth) return std::string(kDocumentNumberWidth, '*');
    return std::string(kDocumentNumberWidth - digits.size(), ' ') + digits;
}

}  // namespace

std::string LiveKey(std::string_view value, std::size_t width) {
    return "X" + platform::PadRight(platform::Trim(value), width);
}

std::string DocumentLineKey(std::string_view DbkCode, std::string_view Bookyear,
                            std::string_view Period, std::string_view DocNumber,
                            std::string_view docOrder) {
    return platform::PadRight(platform::Trim(DbkCode), 6) +
           platform::PadRight(platform::Trim(Bookyear), 1) +
           platform::PadRight(platform::Trim(Period), 2) + NumberInEightCharacters(DocNumber) +
           platform::PadRight(platform::Trim(docOrder), 3);
}

std::string MappingTable::DataFile() const {
    return company_.TableFile(layout_.name, ".dbf");
}

bool MappingTable::Exists() {
    const std::string path = DataFile();
    if (platform::FileExists(path)) return true;
    // A SQL-kept dossier holds its tables in its database.
    tables::AdsClass& tables = company_.Tables();
    const engine::Handle connection = tables.DossierConnection();
    bool exists = false;
    return connection > 0 && connection < engine::kEngineHandleStart &&
           tables.Database().TableExists(connection, path, exists) == engine::AE_SUCCESS && exists;
}

bool MappingTable::Create() {
    if (Exists()) return true;
    tables::AdsClass& tables = company_.Tables();
    const tables::CurrentAliasGuard caller(tables);
    if (tables.IsAlias(layout_.name)) tables.FileClose(layout_.name);
    if (layout_.fields.empty()) {
        if (!CreateFromTemplate()) return false;
    } else {
        tables::WorkAreas areas(tables.Database());
        areas.SetConnection(tables.DossierConnection());
        areas.sx_CreateNew(DataFile(), layout_.name);
        if (!DefineFields(areas, layout_.fields) || areas.sx_CreateExec() != engine::AE_SUCCESS)
            return false;
    }
    return CreateIndexes();
}

bool MappingTable::CreateFromTemplate() {
    const std::string templateFile =
        session::SharedAppClass().OrgPath() + platform::kPathSep + std::string(kMefffsocTemplate);
    if (!platform::FileExists(templateFile)) return false;
    tables::AdsClass& tables = company_.Tables();
    const engine::Handle connection = tables.DossierConnection();
    if (connection >= engine::kEngineHandleStart || connection == 0)
        return platform::CopyFile(templateFile, DataFile(), false);
    // A SQL-kept dossier gets a table of the template's fields.
    tables::SqlDatabase& db = tables.Database();
    tables::WorkAreas source(db);
    if (source.sx_use(templateFile, kTemplateAlias, "READONLY") != engine::AE_SUCCESS) return false;
    tables::WorkAreas target(db);
    target.SetConnection(connection);
    target.sx_CreateNew(DataFile(), layout_.name);
    std::uint16_t count = 0;
    bool defined = db.GetNumFields(source.Current(), count) == engine::AE_SUCCESS;
    for (std::uint16_t number = 1; defined && number <= count; ++number) {
        std::string name;
        std::uint16_t type = 0;
        std::uint32_t length = 0;
        std::uint16_t decimals = 0;
        defined = db.GetFieldName(source.Current(), number, name) == engine::AE_SUCCESS &&
                  db.GetFieldType(source.Current(), name, type) == engine::AE_SUCCESS &&
                  db.GetFieldLength(source.Current(), name, length) == engine::AE_SUCCESS &&
                  db.GetFieldDecimals(source.Current(), name, decimals) == engine::AE_SUCCESS &&
                  target.sx_CreateField(name, tables::FieldTypeLetter(type),
                                        static_cast<int>(length), decimals);
    }
    engine::IgnoreStatus(source.sx_close());  // read only: the definition is the answer
    return defined && target.sx_CreateExec() == engine::AE_SUCCESS;
}

bool MappingTable::CreateIndexes() {
    tables::AdsClass& tables = company_.Tables();
    const tables::CurrentAliasGuard caller(tables);
    if (tables.IsAlias(layout_.name)) tables.FileClose(layout_.name);
    tables::WorkAreas areas(tables.Database());
    areas.SetConnection(tables.DossierConnection());
    if (areas.sx_use(DataFile(), layout_.name, "EXCLUSIVE") != engine::AE_SUCCESS) return false;
    bool built = true;
    for (const auto& [tag, expression] : layout_.tags) {
        built = built && areas.sx_IndexTag("", tag, expression) == engine::AE_SUCCESS;
    }
    return areas.sx_close() == engine::AE_SUCCESS && built;
}

bool MappingTable::Open() {
    tables::AdsClass& tables = company_.Tables();
    return tables.IsAlias(layout_.name) ||
           tables.FileOpenExternal(layout_.name, DataFile(), "SHARED") == engine::AE_SUCCESS;
}

bool MappingTable::ActivateQuery(const MappingQuery& query) {
    tables::AdsClass& tables = company_.Tables();
    if (!Open()) return false;
    if (!tables.IsQuery(query.name, kQueryForm) &&
        tables.AddQuery(query.name, kQueryForm, layout_.name, query.tag, "", 0, kQueryComment) !=
            engine::AE_SUCCESS)
        return false;
    return tables.ActivateQuery(query.name, kQueryForm) == engine::AE_SUCCESS;
}

bool MappingTable::OpenInOrder(const MappingQuery& query) {
    return ActivateQuery(query) && company_.Tables().MoveTop() == engine::AE_SUCCESS;
}

bool MappingTable::Seek(const MappingQuery& query, std::string_view key) {
    return OpenInOrder(query) && company_.Tables().seekKey(key);
}

std::string MappingTable::Text(std::string_view field) {
    return platform::TrimRight(company_.Tables().GetStringValue(field));
}

bool MappingTable::Put(const FieldValues& values) {
    tables::AdsClass& tables = company_.Tables();
    for (const auto& [field, value] : values) {
        if (!tables.PutFieldValue(field, value)) return false;
    }
    return true;
}

bool MappingTable::Write(const MappingQuery& query, std::string_view key,
                         const FieldValues& values) {
    tables::AdsClass& tables = company_.Tables();
    if (!OpenInOrder(query)) return false;
    bool written = false;
    if (tables.seekKey(key)) {
        if (!tables.RecLock(layout_.name, tables.recno())) return false;
        written = Put(values);
    } else {
        // Another workstation may have added the key since the seek: look again under the lock.
        if (!tables.LockTable(layout_.name)) return false;
        tables.MoveTop();
        written = (tables.seekKey(key) || tables.RecordAdd() == engine::AE_SUCCESS) && Put(values);
    }
    return FlushAndUnlock() && written;
}

bool MappingTable::Delete(const MappingQuery& query, std::string_view key) {
    tables::AdsClass& tables = company_.Tables();
    if (!Seek(query, key) || !tables.RecLock(layout_.name, tables.recno())) return false;
    const bool deleted = tables.RecordDelete() == engine::AE_SUCCESS;
    return FlushAndUnlock() && deleted;
}

bool MappingTable::ChangeAll(const FieldValues& values) {
    tables::AdsClass& tables = company_.Tables();
    if (!Open() || !tables.LockTable(layout_.name)) return false;
    bool changed = tables.SetIndex("");
    for (tables.MoveTop(); changed && !tables.SelectionEof(); tables.moveNext()) {
        changed = values.empty() ? tables.RecordDelete() == engine::AE_SUCCESS : Put(values);
    }
    return FlushAndUnlock() && changed;
}

bool MappingTable::FlushAndUnlock() {
    return company_.Tables().FlushAndUnlock(layout_.name) == engine::AE_SUCCESS;
}

bool MappingTable::PackAndClose() {
    tables::AdsClass& tables = company_.Tables();
    const tables::CurrentAliasGuard caller(tables);
    // Packing needs the table to itself: it is reopened exclusively for it.
    if (tables.IsAlias(layout_.name) && !tables.IsOpenExclusive(layout_.name))
        tables.FileClose(layout_.name);
    if (!tables.IsAlias(layout_.name) &&
        tables.FileOpenExternal(layout_.name, DataFile(), "EXCLUSIVE") != engine::AE_SUCCESS)
        return false;
    return tables.PackAndClose(layout_.name) == engine::AE_SUCCESS;
}

}  // namespace fnrk::intake
