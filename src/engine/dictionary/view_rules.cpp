#include "engine/dictionary/view_rules.hpp"

#include <cctype>

#include "platform/text.hpp"

namespace fnrk::engine::dictionary {

namespace {

constexpr std::size_t kMaxNameLength = 128;
constexpr std::string_view kBlanks = " \t\r\n";

bool IsNameStart(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool IsNamePart(char c) {
    return IsNameStart(c) || std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// The position just past the quoted text, quoted name or comment starting at `at`, or `at`
// itself when none starts there; npos when it is not closed.
std::size_t SkipQuoted(std::string_view sql, std::size_t at) {
    const char c = sql[at];
    if (c == '-' && sql.substr(at, 2) == "--") {
        const std::size_t end = sql.find('\n', at);
        return end == std::string_view::npos ? sql.size() : end + 1;
    }
    if (c == '/' && sql.substr(at, 2) == "/*") {
        const std::size_t end = sql.find("*/", at + 2);
        return end == std::string_view::npos ? std::string_view::npos : end + 2;
    }
    const char close = c == '[' ? ']' : c;
    if (c != '\'' && c != '"' && c != '`' && c != '[') return at;
    for (std::size_t i = at + 1; i < sql.size(); ++i) {
        if (sql[i] != close) continue;
        // A doubled quote stands for itself inside the quotes.
        if (close != ']' && i + 1 < sql.size() && sql[i + 1] == close) {
            ++i;
            continue;
        }
        return i + 1;
    }
    return std::string_view::npos;
}

}  // namespace

std::string ViewNameProblem(std::string_view name) {
    if (name.empty()) return "view name is empty";
    if (name.size() > kMaxNameLength)
        return "view name longer than " + std::to_string(kMaxNameLength) + " characters";
    if (!IsNameStart(name.front())) return "view name must start with a letter or \"_\"";
    for (const char c : name) {
        if (!IsNamePart(c))
            return "view name may hold only letters, digits and \"_\": \"" + std::string(name) +
                   "\"";
    }
    return {};
}

std::string ViewStatementProblem(std::string_view sql) {
    const std::size_t begin = sql.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return "a view's statement is empty";
    std::size_t wordEnd = begin;
    while (wordEnd < sql.size() && IsNamePart(sql[wordEnd])) ++wordEnd;
    const std::string first = platform::UpperCase(sql.substr(begin, wordEnd - begin));
    if (first != "SELECT" && first != "WITH") return "a view's statement must be a SELECT";
    for (std::size_t at = begin; at < sql.size();) {
        const std::size_t past = SkipQuoted(sql, at);
        if (past == std::string_view::npos)
            return "a view's statement has an unclosed quote or comment";
        if (past != at) {
            at = past;
            continue;
        }
        if (sql[at] == ';' && sql.find_first_not_of(kBlanks, at + 1) != std::string_view::npos)
            return "a view holds one statement only";
        ++at;
    }
    return {};
}

}  // namespace fnrk::engine::dictionary
