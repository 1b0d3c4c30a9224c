#pragma once

// Case of the letters A to Z only: names in expressions, date formats, and UPPER()/LOWER(),
// which leave accented letters as they are, like the keys of the existing index files.

namespace fnrk::engine::expr {

inline char AsciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
inline char AsciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace fnrk::engine::expr
