#include "engine/error_text.hpp"

#include <map>

namespace fnrk::engine {

std::string ErrorText(Status status) {
    static const std::map<Status, const char*> kTexts = {
        {AE_SUCCESS, "Success"},
        {AE_DATA_TOO_LONG, "The data is too long for the field"},
        {AE_FILE_NOT_FOUND, "File not found"},
        {AE_INVALID_CENTURY, "Invalid century (epoch)"},
        {AE_INVALID_DATEFORMAT, "Invalid date format"},
        {AE_INVALID_EXPRESSION, "Invalid expression"},
        {AE_INVALID_FIELDDEF, "Invalid field definition"},
        {AE_INVALID_FILTER_OPTION, "Invalid filter option"},
        {AE_INVALID_HANDLE, "Invalid handle"},
        {AE_INVALID_OPTION, "Invalid option"},
        {AE_INVALID_PATH, "Invalid path"},
        {AE_INVALID_RECORD_NUMBER, "Invalid record number"},
        {AE_INVALID_TABLE_HANDLE, "Invalid table handle"},
        {AE_INVALID_CONNECTION_HANDLE, "Invalid connection handle"},
        {AE_INVALID_TABLETYPE, "Invalid table type"},
        {AE_INVALID_CHARSETTYPE, "Invalid character set type"},
        {AE_INVALID_LOCKTYPE, "Invalid locking type"},
        {AE_INVALID_FIELDNUMBER, "Invalid field number"},
        {AE_INVALID_FIELDNAME, "Invalid field name"},
        {AE_LOCK_FAILED, "The lock could not be obtained"},
        {AE_NO_CONNECTION, "No connection"},
        {AE_NOT_IMPLEMENTED, "Not implemented"},
        {AE_DUPLICATE_ALIAS, "The alias is already in use"},
        {AE_PERMISSION_DENIED, "Permission denied"},
        {AE_INVALID_MEMO_BLOCK_SIZE, "Invalid memo block size"},
        {AE_RECORD_NOT_LOCKED, "The record is not locked"},
        {AE_INVALID_FIELD_TYPE, "The operation does not apply to this field type"},
        {AE_TABLE_NOT_EXCLUSIVE, "The table is not open exclusively"},
        {AE_NO_CURRENT_RECORD, "There is no current record"},
        {AE_TABLE_READONLY, "The table is read-only"},
        {AE_INVALID_RECORD_LENGTH, "Invalid record length"},
        {AE_CORRUPT_TABLE, "The table is corrupt"},
        {AE_INVALID_BINARY_OFFSET, "Invalid binary offset"},
        {AE_TABLE_NOT_LOCKED, "The table is not locked"},
        {AE_INVALID_DATE, "Invalid date"},
        {AE_INVALID_VALUE, "Invalid value"},
        {AE_INVALID_CONTINUE, "Continue without a Locate"},
        {AE_VALUE_OVERFLOW, "The value does not fit in the field"},
        {AE_TABLE_NOT_FOUND, "Table not found"},
        {AE_NO_MEMO_FILE, "The memo file is missing"},
    };
    const auto found = kTexts.find(status);
    return found == kTexts.end() ? std::string() : found->second;
}

}  // namespace fnrk::engine
