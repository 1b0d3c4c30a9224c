#include "engine/sql/dialect.hpp"

#include <cctype>

namespace fnrk::engine::sql {

namespace {

constexpr std::string_view kStaticHint = "{STATIC}";

bool IsWordChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool StartsWithNoCase(std::string_view text, std::size_t at, std::string_view word) {
    if (text.size() - at < word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(text[at + i])) != word[i]) return false;
    }
    return true;
}

// End of the quoted or commented run starting at `at`, or `at` when none starts there.
std::size_t SkipLiteral(std::string_view text, std::size_t at) {
    const char c = text[at];
    auto until = [&](std::string_view close, std::size_t from) {
        const std::size_t end = text.find(close, from);
        return end == std::string_view::npos ? text.size() : end + close.size();
    };
    if (c == '\'' || c == '"') {
        std::size_t i = at + 1;
        while (i < text.size()) {
            if (text[i] == c) {
                if (i + 1 < text.size() && text[i + 1] == c) {
                    i += 2;
                    continue;
                }
                return i + 1;
            }
            ++i;
        }
        return text.size();
    }
    if (c == '[') return until("]", at + 1);
    if (text.substr(at, 2) == "--") return until("\n", at + 2);
    if (text.substr(at, 2) == "/*") return until("*/", at + 2);
    return at;
}

// The function a LEFT / RIGHT word at `at` becomes, when a "(" follows it.
std::string_view SideFunction(std::string_view text, std::size_t at, std::size_t& wordLength) {
    for (auto [word, function] : {std::pair{std::string_view("LEFT"), kLeftFunction},
                                  std::pair{std::string_view("RIGHT"), kRightFunction}}) {
        if (!StartsWithNoCase(text, at, word)) continue;
        std::size_t next = at + word.size();
        if (next < text.size() && IsWordChar(text[next])) continue;
        while (next < text.size() && std::isspace(static_cast<unsigned char>(text[next])) != 0)
            ++next;
        if (next < text.size() && text[next] == '(') {
            wordLength = word.size();
            return function;
        }
    }
    return {};
}

}  // namespace

RewrittenStatement RewriteDialect(std::string_view statement) {
    RewrittenStatement out;
    out.text.reserve(statement.size());
    auto copy = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            out.text += statement[i];
            out.origin.push_back(i);
        }
    };
    std::size_t i = 0;
    while (i < statement.size()) {
        if (const std::size_t end = SkipLiteral(statement, i); end != i) {
            copy(i, end);
            i = end;
            continue;
        }
        if (StartsWithNoCase(statement, i, kStaticHint)) {
            i += kStaticHint.size();
            continue;
        }
        const bool wordStart = i == 0 || !IsWordChar(statement[i - 1]);
        std::size_t wordLength = 0;
        if (const std::string_view function =
                wordStart ? SideFunction(statement, i, wordLength) : std::string_view{};
            !function.empty()) {
            out.text += function;
            out.origin.insert(out.origin.end(), function.size(), i);
            i += wordLength;
            continue;
        }
        copy(i, i + 1);
        ++i;
    }
    out.origin.push_back(statement.size());
    return out;
}

std::string OriginalSpelling(std::string_view columnName) {
    std::string name(columnName);
    for (auto [function, word] : {std::pair{kLeftFunction, std::string_view("LEFT")},
                                  std::pair{kRightFunction, std::string_view("RIGHT")}}) {
        for (std::size_t at = name.find(function); at != std::string::npos;
             at = name.find(function, at + word.size()))
            name.replace(at, function.size(), word);
    }
    return name;
}

}  // namespace fnrk::engine::sql
