// Work areas: the structure builder, and structure tables written from a table (SXCOPYSTRU) and
// read back into a new table (SXCREATEFR).

#include <cmath>

#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/work_area.hpp"

namespace fnrk::tables {

using namespace engine;  // option and status numbers

namespace {

constexpr std::string_view kStructureFields =
    "FIELD_NAME,CHAR,10,0;FIELD_TYPE,CHAR,1,0;FIELD_LEN,NUMERIC,5,0;FIELD_DEC,NUMERIC,3,0";

// The field-list type of a one-letter type: the engine's field lists spell the binary memo and
// the double out, since their letters mean other things there.
std::string FieldListType(std::string_view letter) {
    const std::string upper = platform::UpperCase(platform::Trim(letter));
    if (upper == "B") return "BINARY";
    if (upper == "I") return "DOUBLE";
    return upper;
}

}  // namespace

void WorkAreas::sx_CreateNew(std::string_view path, std::string_view alias) {
    createPath_ = platform::Trim(path);
    createAlias_ = platform::Trim(alias);
    definition_.clear();
    definedFields_ = 0;
}

bool WorkAreas::sx_CreateField(std::string_view name, std::string_view type, int length,
                               int decimals) {
    if (definedFields_ >= kMaxStructureFields) return false;
    if (!definition_.empty()) definition_ += ';';
    definition_ += platform::Trim(name) + "," + platform::Trim(type) + "," +
                   std::to_string(length) + "," + std::to_string(decimals);
    ++definedFields_;
    return true;
}

Status WorkAreas::sx_CreateExec() {
    Handle table = 0;
    const Status status =
        db_.CreateTable(connection_, createPath_, createAlias_, ADS_CDX, ADS_ANSI,
                        ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, definition_, table);
    if (status != AE_SUCCESS) return status;
    return db_.CloseTable(table);
}

Status WorkAreas::SXCOPYSTRU(std::string_view targetPath) {
    std::uint16_t count = 0;
    Status status = db_.GetNumFields(current_, count);
    if (status != AE_SUCCESS) return status;
    Handle structure = 0;
    status =
        db_.CreateTable(connection_, targetPath, "SXCOPYSTRU", ADS_CDX, ADS_ANSI,
                        ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, kStructureFields, structure);
    if (status != AE_SUCCESS) return status;
    for (std::uint16_t number = 1; number <= count && status == AE_SUCCESS; ++number) {
        std::string name;
        std::uint16_t type = 0;
        std::uint32_t length = 0;
        std::uint16_t decimals = 0;
        status = db_.GetFieldName(current_, number, name);
        if (status == AE_SUCCESS) status = db_.GetFieldType(current_, name, type);
        if (status == AE_SUCCESS) status = db_.GetFieldLength(current_, name, length);
        if (status == AE_SUCCESS) status = db_.GetFieldDecimals(current_, name, decimals);
        if (status == AE_SUCCESS) status = db_.AppendRecord(structure);
        if (status == AE_SUCCESS) status = db_.SetString(structure, "FIELD_NAME", name);
        if (status == AE_SUCCESS)
            status = db_.SetString(structure, "FIELD_TYPE", FieldTypeLetter(type));
        if (status == AE_SUCCESS)
            status = db_.SetShort(structure, "FIELD_LEN", static_cast<std::int16_t>(length));
        if (status == AE_SUCCESS)
            status = db_.SetShort(structure, "FIELD_DEC", static_cast<std::int16_t>(decimals));
    }
    return FirstFailure({status, db_.CloseTable(structure)});
}

Status WorkAreas::SXCREATEFR(std::string_view newPath, std::string_view structurePath) {
    Handle structure = 0;
    Status status =
        db_.OpenTable(connection_, structurePath, "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                      ADS_IGNORERIGHTS, ADS_SHARED | ADS_READONLY, structure);
    if (status != AE_SUCCESS) return status;
    sx_CreateNew(newPath, "");
    status = db_.GotoTop(structure);
    bool atEof = false;
    while (status == AE_SUCCESS && (status = db_.AtEOF(structure, atEof)) == AE_SUCCESS && !atEof) {
        std::string name;
        std::string type;
        double length = 0;
        double decimals = 0;
        status = db_.GetString(structure, "FIELD_NAME", name, ADS_TRIM);
        if (status == AE_SUCCESS) status = db_.GetString(structure, "FIELD_TYPE", type, ADS_TRIM);
        if (status == AE_SUCCESS) status = db_.GetDouble(structure, "FIELD_LEN", length);
        if (status == AE_SUCCESS) status = db_.GetDouble(structure, "FIELD_DEC", decimals);
        if (status == AE_SUCCESS &&
            !sx_CreateField(name, FieldListType(type), static_cast<int>(std::lround(length)),
                            static_cast<int>(std::lround(decimals))))
            status = AE_INVALID_FIELDDEF;
        if (status == AE_SUCCESS) status = db_.Skip(structure, 1);
    }
    status = FirstFailure({status, db_.CloseTable(structure)});
    return status == AE_SUCCESS ? sx_CreateExec() : status;
}

}  // namespace fnrk::tables
