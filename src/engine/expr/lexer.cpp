#include "engine/expr/lexer.hpp"

#include "engine/expr/expression_error.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::expr {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

Token Lexer::Next() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
    const std::size_t start = at_;
    if (at_ >= text_.size()) return {TokenKind::End, start, {}};
    const char c = text_[at_++];
    auto simple = [&](TokenKind kind) { return Token{kind, start, {}}; };
    switch (c) {
        case '(':
            return simple(TokenKind::LeftParen);
        case ')':
            return simple(TokenKind::RightParen);
        case ',':
            return simple(TokenKind::Comma);
        case '+':
            return simple(TokenKind::Plus);
        case '-':
            if (At('>')) return ++at_, simple(TokenKind::Arrow);
            return simple(TokenKind::Minus);
        case '*':
            if (At('*')) return ++at_, simple(TokenKind::Power);
            return simple(TokenKind::Star);
        case '/':
            return simple(TokenKind::Slash);
        case '%':
            return simple(TokenKind::Percent);
        case '^':
            return simple(TokenKind::Power);
        case '$':
            return simple(TokenKind::Dollar);
        case '#':
            return simple(TokenKind::NotEqual);
        case '=':
            if (At('=')) return ++at_, simple(TokenKind::ExactEqual);
            return simple(TokenKind::Equal);
        case '!':
            if (At('=')) return ++at_, simple(TokenKind::NotEqual);
            return simple(TokenKind::Not);
        case '<':
            if (At('=')) return ++at_, simple(TokenKind::LessOrEqual);
            if (At('>')) return ++at_, simple(TokenKind::NotEqual);
            return simple(TokenKind::Less);
        case '>':
            if (At('=')) return ++at_, simple(TokenKind::GreaterOrEqual);
            return simple(TokenKind::Greater);
        case '\'':
            return Quoted(start, '\'', TokenKind::String);
        case '"':
            return Quoted(start, '"', TokenKind::String);
        case '[':
            return Quoted(start, ']', TokenKind::String);
        case '{':
            return Quoted(start, '}', TokenKind::Date);
        case '.':
            if (at_ < text_.size() && IsDigit(text_[at_])) return NumberToken(start);
            return DotWord(start);
        default:
            break;
    }
    if (IsDigit(c)) return NumberToken(start);
    if (IsLetter(c)) return Word(start);
    throw ExpressionError(start, "unexpected character '" + std::string(1, c) + "'");
}

Token Lexer::Word(std::size_t start) {
    while (at_ < text_.size() && (IsLetter(text_[at_]) || IsDigit(text_[at_]))) ++at_;
    const std::string_view word = text_.substr(start, at_ - start);
    const std::string upper = platform::UpperCase(word);
    // Bare AND / OR / NOT are operators too, unless they name a table ("OR->FIELD").
    std::size_t next = at_;
    while (next < text_.size() && IsBlank(text_[next])) ++next;
    const bool aliasFollows = text_.substr(next, 2) == "->";
    if (!aliasFollows) {
        if (upper == "AND") return {TokenKind::And, start, {}};
        if (upper == "OR") return {TokenKind::Or, start, {}};
        if (upper == "NOT") return {TokenKind::Not, start, {}};
    }
    return {TokenKind::Identifier, start, std::string(word)};
}

Token Lexer::DotWord(std::size_t start) {
    while (at_ < text_.size() && IsLetter(text_[at_])) ++at_;
    if (!At('.')) throw ExpressionError(start, "unknown operator");
    const std::string word = platform::UpperCase(text_.substr(start + 1, at_ - start - 1));
    ++at_;
    if (word == "T" || word == "Y") return {TokenKind::True, start, {}};
    if (word == "F" || word == "N") return {TokenKind::False, start, {}};
    if (word == "AND") return {TokenKind::And, start, {}};
    if (word == "OR") return {TokenKind::Or, start, {}};
    if (word == "NOT") return {TokenKind::Not, start, {}};
    throw ExpressionError(start, "unknown operator ." + word + ".");
}

Token Lexer::Quoted(std::size_t start, char close, TokenKind kind) {
    const std::size_t end = text_.find(close, at_);
    if (end == std::string_view::npos) {
        throw ExpressionError(
            start, kind == TokenKind::Date ? "unterminated date" : "unterminated string");
    }
    Token token{kind, start, std::string(text_.substr(at_, end - at_))};
    at_ = end + 1;
    return token;
}

Token Lexer::NumberToken(std::size_t start) {
    bool dot = text_[start] == '.';
    while (at_ < text_.size() && (IsDigit(text_[at_]) || (!dot && text_[at_] == '.'))) {
        // "1.AND." : a dot followed by a letter belongs to the operator, not to the number.
        if (text_[at_] == '.') {
            if (at_ + 1 < text_.size() && IsLetter(text_[at_ + 1])) break;
            dot = true;
        }
        ++at_;
    }
    return {TokenKind::Number, start, std::string(text_.substr(start, at_ - start))};
}

}  // namespace fnrk::engine::expr
