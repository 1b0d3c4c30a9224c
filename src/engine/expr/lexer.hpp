#pragma once

// Splits expression text into tokens. Internal to the parser.

#include <cstddef>
#include <string>
#include <string_view>

namespace fnrk::engine::expr {

enum class TokenKind {
    End,
    Number,      // text: the digits as written
    String,      // text: the contents, still UTF-8
    Date,        // text: what stands between the braces
    True,        // .T. .Y.
    False,       // .F. .N.
    Identifier,  // text: as written
    Arrow,       // ->
    LeftParen,
    RightParen,
    Comma,
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Power,  // ^ **
    Equal,
    ExactEqual,
    NotEqual,  // != <> #
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Dollar,
    And,  // .AND. or AND
    Or,   // .OR. or OR
    Not,  // .NOT. ! or NOT
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t position = 0;
    std::string text;
};

class Lexer {
  public:
    explicit Lexer(std::string_view text) : text_(text) {}
    // Throws ExpressionError for characters that start no token and unterminated literals.
    Token Next();

  private:
    Token Word(std::size_t start);
    Token DotWord(std::size_t start);
    Token Quoted(std::size_t start, char close, TokenKind kind);
    Token NumberToken(std::size_t start);
    bool At(char c) const { return at_ < text_.size() && text_[at_] == c; }

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace fnrk::engine::expr
