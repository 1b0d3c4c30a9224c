#include "tables/named_query.hpp"

#include <algorithm>

#include "platform/text.hpp"

namespace fnrk::tables {

namespace {

constexpr std::size_t kQueryKeyLength = 25;
constexpr std::size_t kUserNameWidth = 15;
constexpr std::string_view kRowIdDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kUserRows = "select ROWID,CODESOC,PATH from [USERS] where NAME ='";
constexpr std::string_view kSentinelRows =
    " UNION SELECT ROWID,'ZZZZZZZZZZZZZZZ','ZZZZZZZZZZZZZZZ' from [USERS] ORDER BY CODESOC";

// The user name as the register keeps it, as the inside of a string literal.
std::string UserNameLiteral(std::string_view userName) {
    const std::string padded =
        platform::PadRight(platform::UpperCase(platform::Trim(userName)), kUserNameWidth);
    std::string literal;
    for (char c : padded) {
        literal += c;
        if (c == '\'') literal += '\'';
    }
    return literal;
}

bool IsSystemUser(std::string_view userName) {
    return platform::UpperCase(platform::Trim(userName)) == "SYSTEM";
}

}  // namespace

std::string NamedQueryKey(std::string_view name, std::int32_t formNum) {
    return platform::LeftChars(platform::UpperCase(platform::Trim(name)) + std::to_string(formNum),
                               kQueryKeyLength);
}

std::string WithoutTemporaryEntries(std::string_view filter) {
    const std::string trimmed = platform::Trim(filter);
    return trimmed.empty() ? "ISTEMP=.F." : std::string(filter) + " AND ISTEMP=.F.";
}

std::uint32_t RecordNumberOfEngineRowId(std::string_view rowId) {
    constexpr std::size_t kDigits = 6;
    if (rowId.size() < kDigits) return 0;
    std::uint32_t record = 0;
    for (char c : rowId.substr(rowId.size() - kDigits)) {
        const char folded = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
        const std::size_t place = kRowIdDigits.find(folded);
        if (place == std::string_view::npos) return 0;
        record = record * 64 + static_cast<std::uint32_t>(place);
    }
    return record;
}

std::uint32_t RecordNumberOfSqlRowId(std::string_view rowId) {
    constexpr std::size_t kDigits = 8;
    if (rowId.size() < kDigits) return 0;
    const std::string_view digits = rowId.substr(rowId.size() - kDigits);
    if (!std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return 0;
    return static_cast<std::uint32_t>(std::stoul(std::string(digits)));
}

std::string UserCursorStatement(std::string_view userName) {
    std::string statement = std::string(kUserRows) + UserNameLiteral(userName) + "'";
    // The system user's rows are all per company; another user's own row has no company code.
    if (!IsSystemUser(userName)) statement += " AND CODESOC<>''";
    return statement + " ORDER BY CODESOC";
}

std::string PathCursorStatement(std::string_view userName) {
    std::string statement = std::string(kUserRows) + UserNameLiteral(userName) + "'";
    if (!IsSystemUser(userName)) statement += " AND PATH<>''";
    return statement + std::string(kSentinelRows);
}

std::string WithStaticCursor(std::string_view statement) {
    const std::string upper = platform::UpperCase(statement);
    if (upper.find("{STATIC}") != std::string::npos || !upper.starts_with("SELECT"))
        return std::string(statement);
    return "SELECT {static} " +
           std::string(statement.substr(std::min<std::size_t>(7, statement.size())));
}

}  // namespace fnrk::tables
