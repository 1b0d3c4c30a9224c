#pragma once

// Option and type numbers of the engine's API, with the published values of the client engine.

#include <cstdint>

namespace fnrk::engine {

using Handle = std::int32_t;  // 0 is "none"; engine handles start at kEngineHandleStart
inline constexpr Handle kEngineHandleStart = 2'400'000;

// Server types (Connect26 / Connect60 / GetConnectionType / SetServerType).
inline constexpr std::uint16_t ADS_LOCAL_SERVER = 1;
inline constexpr std::uint16_t ADS_REMOTE_SERVER = 2;
inline constexpr std::uint16_t ADS_AIS_SERVER = 4;

// Table types and character sets.
inline constexpr std::uint16_t ADS_DEFAULT = 0;
inline constexpr std::uint16_t ADS_NTX = 1;
inline constexpr std::uint16_t ADS_CDX = 2;
inline constexpr std::uint16_t ADS_ADT = 3;
inline constexpr std::uint16_t ADS_VFP = 4;
inline constexpr std::uint16_t ADS_ANSI = 1;
inline constexpr std::uint16_t ADS_OEM = 2;

// Rights checking and locking.
inline constexpr std::uint16_t ADS_CHECKRIGHTS = 1;
inline constexpr std::uint16_t ADS_IGNORERIGHTS = 2;
inline constexpr std::uint16_t ADS_COMPATIBLE_LOCKING = 0;
inline constexpr std::uint16_t ADS_PROPRIETARY_LOCKING = 1;

// Table open options (may be or-ed).
inline constexpr std::uint32_t ADS_EXCLUSIVE = 1;
inline constexpr std::uint32_t ADS_READONLY = 2;
inline constexpr std::uint32_t ADS_SHARED = 4;

// Index creation options (may be or-ed).
inline constexpr std::uint32_t ADS_ASCENDING = 0;
inline constexpr std::uint32_t ADS_UNIQUE = 1;
inline constexpr std::uint32_t ADS_COMPOUND = 2;
inline constexpr std::uint32_t ADS_CUSTOM = 4;
inline constexpr std::uint32_t ADS_DESCENDING = 8;
inline constexpr std::uint32_t ADS_CANDIDATE = 0x800;

// String retrieval options.
inline constexpr std::uint16_t ADS_NONE = 0;
inline constexpr std::uint16_t ADS_LTRIM = 1;
inline constexpr std::uint16_t ADS_RTRIM = 2;
inline constexpr std::uint16_t ADS_TRIM = 3;

// Seeks and scopes.
inline constexpr std::uint16_t ADS_SOFTSEEK = 1;
inline constexpr std::uint16_t ADS_HARDSEEK = 2;
inline constexpr std::uint16_t ADS_SEEKGT = 4;
inline constexpr std::uint16_t ADS_RAWKEY = 1;
inline constexpr std::uint16_t ADS_STRINGKEY = 2;
inline constexpr std::uint16_t ADS_DOUBLEKEY = 4;
inline constexpr std::uint16_t ADS_TOP = 1;
inline constexpr std::uint16_t ADS_BOTTOM = 2;

// Filter options of counts and positions.
inline constexpr std::uint16_t ADS_RESPECTFILTERS = 1;
inline constexpr std::uint16_t ADS_IGNOREFILTERS = 2;
inline constexpr std::uint16_t ADS_RESPECTSCOPES = 3;
inline constexpr std::uint16_t ADS_REFRESHCOUNT = 4;

// Optimized filters: resolution options and the optimization level reported.
inline constexpr std::uint16_t ADS_DYNAMIC_AOF = 0;
inline constexpr std::uint16_t ADS_RESOLVE_IMMEDIATE = 1;
inline constexpr std::uint16_t ADS_RESOLVE_DYNAMIC = 2;
inline constexpr std::uint16_t ADS_OPTIMIZED_FULL = 1;
inline constexpr std::uint16_t ADS_OPTIMIZED_PART = 2;
inline constexpr std::uint16_t ADS_OPTIMIZED_NONE = 3;

// Table name forms (GetTableFilename).
inline constexpr std::uint16_t ADS_BASENAME = 1;
inline constexpr std::uint16_t ADS_BASENAMEANDEXT = 2;
inline constexpr std::uint16_t ADS_FULLPATHNAME = 3;

// Handle types (GetHandleType).
inline constexpr std::uint16_t ADS_CONNECTION = 1;
inline constexpr std::uint16_t ADS_TABLE = 2;
inline constexpr std::uint16_t ADS_INDEX_ORDER = 3;
inline constexpr std::uint16_t ADS_STATEMENT = 4;
inline constexpr std::uint16_t ADS_CURSOR = 5;
inline constexpr std::uint16_t ADS_DATABASE_CONNECTION = 6;

// Field types (GetFieldType) and memo data types (GetMemoDataType).
inline constexpr std::uint16_t ADS_TYPE_UNKNOWN = 0;
inline constexpr std::uint16_t ADS_LOGICAL = 1;
inline constexpr std::uint16_t ADS_NUMERIC = 2;
inline constexpr std::uint16_t ADS_DATE = 3;
inline constexpr std::uint16_t ADS_STRING = 4;
inline constexpr std::uint16_t ADS_MEMO = 5;
inline constexpr std::uint16_t ADS_BINARY = 6;
inline constexpr std::uint16_t ADS_IMAGE = 7;
inline constexpr std::uint16_t ADS_DOUBLE = 10;
inline constexpr std::uint16_t ADS_INTEGER = 11;
inline constexpr std::uint16_t ADS_TIMESTAMP = 14;
inline constexpr std::uint16_t ADS_CURDOUBLE = 17;
inline constexpr std::uint16_t ADS_MONEY = 18;

// Data dictionary properties (DDSetDatabaseProperty / DDSetUserProperty).
inline constexpr std::uint16_t ADS_DD_COMMENT = 1;
inline constexpr std::uint16_t ADS_DD_USER_DEFINED_PROP = 3;
inline constexpr std::uint16_t ADS_DD_DEFAULT_TABLE_PATH = 100;
inline constexpr std::uint16_t ADS_DD_ADMIN_PASSWORD = 101;
inline constexpr std::uint16_t ADS_DD_ENCRYPT_TABLE_PASSWORD = 105;
inline constexpr std::uint16_t ADS_DD_MAX_FAILED_ATTEMPTS = 109;
inline constexpr std::uint16_t ADS_DD_LAST_DATABASE_PROPERTY = 199;
inline constexpr std::uint16_t ADS_DD_USER_PASSWORD = 1101;
inline constexpr std::uint16_t ADS_DD_USER_GROUP_MEMBERSHIP = 1102;
inline constexpr std::uint16_t ADS_DD_LAST_USER_PROPERTY = 1199;

// SQL cursor settings (StmtSetTableReadOnly).
inline constexpr std::uint16_t ADS_CURSOR_READONLY = 1;
inline constexpr std::uint16_t ADS_CURSOR_READWRITE = 2;

}  // namespace fnrk::engine
