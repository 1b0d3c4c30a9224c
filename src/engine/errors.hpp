#pragma once

// Status numbers of the table engine. 0 is success; the others are the published numbers of the
// client engine's API, so that callers and messages that test for a number keep working.

#include <cstdint>
#include <initializer_list>

namespace fnrk::engine {

using Status = std::int32_t;

inline constexpr Status AE_SUCCESS = 0;
inline constexpr Status AE_ALLOCATION_FAILED = 5001;
inline constexpr Status AE_DATA_TOO_LONG = 5003;
inline constexpr Status AE_FILE_NOT_FOUND = 5004;
inline constexpr Status AE_INSUFFICIENT_BUFFER = 5005;
inline constexpr Status AE_INVALID_CENTURY = 5008;
inline constexpr Status AE_INVALID_DATEFORMAT = 5009;
inline constexpr Status AE_INVALID_DECIMALS = 5010;
inline constexpr Status AE_INVALID_EXPRESSION = 5011;
inline constexpr Status AE_INVALID_FIELDDEF = 5012;
inline constexpr Status AE_INVALID_FILTER_OPTION = 5013;
inline constexpr Status AE_INVALID_INDEX_HANDLE = 5014;
inline constexpr Status AE_INVALID_INDEX_NAME = 5015;
inline constexpr Status AE_INVALID_INDEX_ORDER_NAME = 5016;
inline constexpr Status AE_INVALID_INDEX_TYPE = 5017;
inline constexpr Status AE_INVALID_HANDLE = 5018;
inline constexpr Status AE_INVALID_OPTION = 5019;
inline constexpr Status AE_INVALID_PATH = 5020;
inline constexpr Status AE_INVALID_POINTER = 5021;
inline constexpr Status AE_INVALID_RECORD_NUMBER = 5022;
inline constexpr Status AE_INVALID_TABLE_HANDLE = 5023;
inline constexpr Status AE_INVALID_CONNECTION_HANDLE = 5024;
inline constexpr Status AE_INVALID_TABLETYPE = 5025;
inline constexpr Status AE_INVALID_WORKAREA = 5026;
inline constexpr Status AE_INVALID_CHARSETTYPE = 5027;
inline constexpr Status AE_INVALID_LOCKTYPE = 5028;
inline constexpr Status AE_INVALID_RIGHTSOPTION = 5029;
inline constexpr Status AE_INVALID_FIELDNUMBER = 5030;
inline constexpr Status AE_INVALID_KEY_LENGTH = 5031;
inline constexpr Status AE_INVALID_FIELDNAME = 5032;
inline constexpr Status AE_LOCK_FAILED = 5035;
inline constexpr Status AE_NO_CONNECTION = 5036;
inline constexpr Status AE_NO_FILTER = 5037;
inline constexpr Status AE_NO_SCOPE = 5038;
inline constexpr Status AE_NO_TABLE = 5039;
inline constexpr Status AE_NOT_FOUND = 5041;
inline constexpr Status AE_NOT_IMPLEMENTED = 5042;
inline constexpr Status AE_TOO_MANY_INDEXES = 5045;
inline constexpr Status AE_TOO_MANY_TAGS = 5046;
inline constexpr Status AE_UNKNOWN_ERRCODE = 5048;
inline constexpr Status AE_NAME_TOO_LONG = 5050;
inline constexpr Status AE_DUPLICATE_ALIAS = 5051;
inline constexpr Status AE_PERMISSION_DENIED = 5054;
inline constexpr Status AE_INVALID_MEMO_BLOCK_SIZE = 5058;
inline constexpr Status AE_NO_FILE_FOUND = 5059;
inline constexpr Status AE_RECORD_NOT_LOCKED = 5062;
inline constexpr Status AE_TABLE_NOT_SHARED = 5064;
inline constexpr Status AE_INDEX_ALREADY_OPEN = 5065;
inline constexpr Status AE_INVALID_FIELD_TYPE = 5066;
inline constexpr Status AE_TABLE_NOT_EXCLUSIVE = 5067;
inline constexpr Status AE_NO_CURRENT_RECORD = 5068;
inline constexpr Status AE_PRECISION_LOST = 5069;
inline constexpr Status AE_INVALID_DATA_TYPE = 5070;
inline constexpr Status AE_DATA_TRUNCATED = 5071;
inline constexpr Status AE_TABLE_READONLY = 5072;
inline constexpr Status AE_INVALID_RECORD_LENGTH = 5073;
inline constexpr Status AE_NO_ERROR_MESSAGE = 5074;
inline constexpr Status AE_INDEX_EXISTS = 5076;
inline constexpr Status AE_INVALID_DAY = 5079;
inline constexpr Status AE_INVALID_MONTH = 5080;
inline constexpr Status AE_CORRUPT_TABLE = 5081;
inline constexpr Status AE_INVALID_BINARY_OFFSET = 5082;
inline constexpr Status AE_TABLE_NOT_LOCKED = 5087;
inline constexpr Status AE_CORRUPT_INDEX = 5088;
inline constexpr Status AE_INVALID_INDEX_ORDER = 5093;
inline constexpr Status AE_INVALID_DATE = 5095;
inline constexpr Status AE_ENCRYPTION_NOT_ENABLED = 5096;
inline constexpr Status AE_INVALID_PASSWORD = 5097;
inline constexpr Status AE_TABLE_ENCRYPTED = 5098;
inline constexpr Status AE_INVALID_USERNAME = 5100;
inline constexpr Status AE_INVALID_VALUE = 5101;
inline constexpr Status AE_INVALID_CONTINUE = 5102;
inline constexpr Status AE_UNRECOGNIZED_VERSION = 5103;
inline constexpr Status AE_INVALID_SQLSTATEMENT_HANDLE = 5106;
inline constexpr Status AE_INVALID_SQLCURSOR_HANDLE = 5107;
inline constexpr Status AE_NOT_PREPARED = 5108;
inline constexpr Status AE_INVALID_COLUMN_NAME = 5113;
inline constexpr Status AE_INVALID_DICTIONARY_HANDLE = 5125;
inline constexpr Status AE_INVALID_PROPERTY_ID = 5126;
inline constexpr Status AE_DICTIONARY_ALREADY_EXISTS = 5128;
inline constexpr Status AE_INVALID_OBJECT_NAME = 5132;
inline constexpr Status AE_INVALID_STATEMENT = 5153;
inline constexpr Status AE_INVALID_DICTIONARY_FILE = 5155;
inline constexpr Status AE_TABLE_NOT_ENCRYPTED = 5163;
inline constexpr Status AE_VALUE_OVERFLOW = 5179;
inline constexpr Status AE_TABLE_NOT_FOUND = 5190;
inline constexpr Status AE_NO_MEMO_FILE = 5194;
// Server-side number for "file not found" on open; the table layer retries once on it.
inline constexpr Status AE_SERVER_FILE_NOT_FOUND = 7016;
// A SQL statement the engine could not parse or run (position and reason in GetLastError).
inline constexpr Status AE_SQL_ERROR = 7200;

// The first failure among statuses of steps that all run whatever the others answered (the
// elements of a braced list are evaluated in order); success when every step succeeded.
[[nodiscard]] inline Status FirstFailure(std::initializer_list<Status> statuses) {
    for (Status status : statuses) {
        if (status != AE_SUCCESS) return status;
    }
    return AE_SUCCESS;
}

// Marks a status the caller deliberately does not act on; each use says why beside it (a
// clean-up on a path whose first failure is the one reported, a setting with fixed valid
// arguments, a best-effort step whose failure the next call reports). A status is never
// dropped silently: every one is [[nodiscard]].
inline void IgnoreStatus(Status) {}

}  // namespace fnrk::engine
