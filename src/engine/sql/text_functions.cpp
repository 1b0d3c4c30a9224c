#include "engine/sql/text_functions.hpp"

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "engine/sql/dialect.hpp"

namespace fnrk::engine::sql {

namespace {

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Byte offset of character `count` of `text` (or its size).
std::size_t CharacterOffset(std::string_view text, long long count) {
    std::size_t at = 0;
    for (long long seen = 0; at < text.size() && seen < count; ++seen) {
        ++at;
        while (at < text.size() && IsContinuation(text[at])) ++at;
    }
    return at;
}

std::size_t CharacterCount(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text)
        if (!IsContinuation(c)) ++count;
    return count;
}

template <bool FromLeft>
void Side(sqlite3_context* context, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
    const std::string_view text(bytes, static_cast<std::size_t>(sqlite3_value_bytes(argv[0])));
    const long long count = std::max<long long>(0, sqlite3_value_int64(argv[1]));
    std::string_view part;
    if constexpr (FromLeft) {
        part = text.substr(0, CharacterOffset(text, count));
    } else {
        const long long total = static_cast<long long>(CharacterCount(text));
        part = text.substr(CharacterOffset(text, std::max<long long>(0, total - count)));
    }
    sqlite3_result_text(context, part.data(), static_cast<int>(part.size()), SQLITE_TRANSIENT);
}

}  // namespace

int RegisterTextFunctions(sqlite3* db) {
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    int rc = sqlite3_create_function(db, std::string(kLeftFunction).c_str(), 2, flags, nullptr,
                                     Side<true>, nullptr, nullptr);
    if (rc == SQLITE_OK)
        rc = sqlite3_create_function(db, std::string(kRightFunction).c_str(), 2, flags, nullptr,
                                     Side<false>, nullptr, nullptr);
    return rc;
}

}  // namespace fnrk::engine::sql
