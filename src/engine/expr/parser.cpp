#include "engine/expr/parser.hpp"

#include <charconv>
#include <cmath>

#include "engine/expr/expression_error.hpp"
#include "engine/expr/function_catalogue.hpp"
#include "engine/expr/lexer.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::expr {
namespace {

// Deep enough for any real expression, shallow enough to keep the stack safe: nesting, and
// operators in all (a chain of them makes a deep tree too).
constexpr int kMaxDepth = 200;
constexpr int kMaxOperations = 2000;

Node MakeConstant(std::size_t position, Constant constant) {
    Node node;
    node.kind = NodeKind::Constant;
    node.position = position;
    node.constant = std::move(constant);
    return node;
}

class Parser {
  public:
    Parser(std::string_view text, const DateSettings& dates) : lexer_(text), dates_(dates) {
        Advance();
    }

    Node Whole() {
        Node root = Or();
        if (token_.kind != TokenKind::End) Unexpected();
        return root;
    }

  private:
    void Advance() { token_ = lexer_.Next(); }

    Node MakeOperation(std::size_t position, Operator op, std::vector<Node> operands) {
        if (++operations_ > kMaxOperations) throw ExpressionError(position, "expression too long");
        Node node;
        node.kind = operands.size() == 1 ? NodeKind::Unary : NodeKind::Binary;
        node.position = position;
        node.op = op;
        node.operands = std::move(operands);
        return node;
    }

    [[noreturn]] void Unexpected() const {
        if (token_.kind == TokenKind::End) {
            throw ExpressionError(token_.position, "unexpected end of expression");
        }
        throw ExpressionError(token_.position, "unexpected token");
    }

    void Expect(TokenKind kind, const char* what) {
        if (token_.kind != kind)
            throw ExpressionError(token_.position, std::string("missing ") + what);
        Advance();
    }

    // Keeps the recursion bounded whatever the input.
    struct DepthGuard {
        DepthGuard(Parser& parser) : parser_(parser) {
            if (++parser_.depth_ > kMaxDepth) {
                throw ExpressionError(parser_.token_.position, "expression nested too deeply");
            }
        }
        ~DepthGuard() { --parser_.depth_; }
        Parser& parser_;
    };

    Node Or() {
        DepthGuard guard(*this);
        Node left = And();
        while (token_.kind == TokenKind::Or) {
            const std::size_t at = token_.position;
            Advance();
            left = MakeOperation(at, Operator::Or, Pair(std::move(left), And()));
        }
        return left;
    }

    Node And() {
        Node left = NotExpression();
        while (token_.kind == TokenKind::And) {
            const std::size_t at = token_.position;
            Advance();
            left = MakeOperation(at, Operator::And, Pair(std::move(left), NotExpression()));
        }
        return left;
    }

    Node NotExpression() {
        if (token_.kind != TokenKind::Not) return Comparison();
        DepthGuard guard(*this);
        const std::size_t at = token_.position;
        Advance();
        return MakeOperation(at, Operator::Not, Single(NotExpression()));
    }

    static std::optional<Operator> ComparisonOperator(TokenKind kind) {
        switch (kind) {
            case TokenKind::Equal:
                return Operator::Equal;
            case TokenKind::ExactEqual:
                return Operator::ExactEqual;
            case TokenKind::NotEqual:
                return Operator::NotEqual;
            case TokenKind::Less:
                return Operator::Less;
            case TokenKind::LessOrEqual:
                return Operator::LessOrEqual;
            case TokenKind::Greater:
                return Operator::Greater;
            case TokenKind::GreaterOrEqual:
                return Operator::GreaterOrEqual;
            case TokenKind::Dollar:
                return Operator::Contains;
            default:
                return std::nullopt;
        }
    }

    Node Comparison() {
        Node left = Additive();
        while (const auto op = ComparisonOperator(token_.kind)) {
            const std::size_t at = token_.position;
            Advance();
            left = MakeOperation(at, *op, Pair(std::move(left), Additive()));
        }
        return left;
    }

    Node Additive() {
        Node left = Multiplicative();
        while (token_.kind == TokenKind::Plus || token_.kind == TokenKind::Minus) {
            const Operator op = token_.kind == TokenKind::Plus ? Operator::Add : Operator::Subtract;
            const std::size_t at = token_.position;
            Advance();
            left = MakeOperation(at, op, Pair(std::move(left), Multiplicative()));
        }
        return left;
    }

    Node Multiplicative() {
        Node left = Unary();
        while (token_.kind == TokenKind::Star || token_.kind == TokenKind::Slash ||
               token_.kind == TokenKind::Percent) {
            const Operator op = token_.kind == TokenKind::Star    ? Operator::Multiply
                                : token_.kind == TokenKind::Slash ? Operator::Divide
                                                                  : Operator::Modulo;
            const std::size_t at = token_.position;
            Advance();
            left = MakeOperation(at, op, Pair(std::move(left), Unary()));
        }
        return left;
    }

    // Unary minus binds looser than ^, so -2^2 is -4.
    Node Unary() {
        if (token_.kind != TokenKind::Minus && token_.kind != TokenKind::Plus) return Power();
        DepthGuard guard(*this);
        const bool negate = token_.kind == TokenKind::Minus;
        const std::size_t at = token_.position;
        Advance();
        Node operand = Unary();
        if (!negate) return operand;
        return MakeOperation(at, Operator::Negate, Single(std::move(operand)));
    }

    Node Power() {
        Node base = Primary();
        if (token_.kind != TokenKind::Power) return base;
        DepthGuard guard(*this);
        const std::size_t at = token_.position;
        Advance();
        return MakeOperation(at, Operator::Power, Pair(std::move(base), Unary()));
    }

    Node Primary() {
        const std::size_t at = token_.position;
        switch (token_.kind) {
            case TokenKind::Number:
                return NumberLiteral();
            case TokenKind::String: {
                Constant constant;
                constant.type = ValueType::Character;
                constant.text = platform::Utf8ToCp1252(token_.text);
                Advance();
                return MakeConstant(at, std::move(constant));
            }
            case TokenKind::Date:
                return DateLiteral();
            case TokenKind::True:
            case TokenKind::False: {
                Constant constant;
                constant.type = ValueType::Logical;
                constant.logical = token_.kind == TokenKind::True;
                Advance();
                return MakeConstant(at, std::move(constant));
            }
            case TokenKind::LeftParen: {
                DepthGuard guard(*this);
                Advance();
                Node inner = Or();
                Expect(TokenKind::RightParen, ")");
                return inner;
            }
            case TokenKind::Identifier:
                return NameOrCall();
            default:
                Unexpected();
        }
    }

    Node NumberLiteral() {
        Constant constant;
        constant.type = ValueType::Numeric;
        const std::string& digits = token_.text;
        const auto result =
            std::from_chars(digits.data(), digits.data() + digits.size(), constant.number);
        if (result.ec != std::errc() || !std::isfinite(constant.number)) {
            throw ExpressionError(token_.position, "invalid number");
        }
        const std::size_t at = token_.position;
        Advance();
        return MakeConstant(at, std::move(constant));
    }

    Node DateLiteral() {
        Constant constant;
        constant.type = ValueType::Date;
        std::string_view inside = token_.text;
        std::optional<std::int32_t> julian;
        if (!inside.empty() && inside.front() == '^') {
            julian = IsoDate(inside.substr(1));
        } else {
            julian = ParseDate(inside, dates_);
        }
        if (!julian) throw ExpressionError(token_.position, "invalid date");
        constant.julian = *julian;
        const std::size_t at = token_.position;
        Advance();
        return MakeConstant(at, std::move(constant));
    }

    // YYYY-MM-DD, also with "/" or "." between the parts.
    static std::optional<std::int32_t> IsoDate(std::string_view text) {
        DateSettings iso;
        iso.format = "YYYY-MM-DD";
        return ParseDate(text, iso);
    }

    Node NameOrCall() {
        const std::size_t at = token_.position;
        const std::string name = token_.text;
        Advance();
        if (token_.kind == TokenKind::Arrow) {
            Advance();
            if (token_.kind != TokenKind::Identifier) {
                throw ExpressionError(token_.position, "missing field name after ->");
            }
            Node field;
            field.kind = NodeKind::Field;
            field.position = at;
            field.alias = platform::UpperCase(name);
            field.name = platform::UpperCase(token_.text);
            Advance();
            return field;
        }
        if (token_.kind == TokenKind::LeftParen) return Call(at, name);
        Node field;
        field.kind = NodeKind::Field;
        field.position = at;
        field.name = platform::UpperCase(name);
        return field;
    }

    Node Call(std::size_t at, const std::string& written) {
        DepthGuard guard(*this);
        const FunctionInfo* info = FindFunction(written);
        if (info == nullptr)
            throw ExpressionError(at, "unknown function " + platform::UpperCase(written));
        if (++operations_ > kMaxOperations) throw ExpressionError(at, "expression too long");
        Advance();  // (
        Node call;
        call.kind = NodeKind::Call;
        call.position = at;
        call.name = std::string(info->name);
        if (token_.kind != TokenKind::RightParen) {
            call.operands.push_back(Or());
            while (token_.kind == TokenKind::Comma) {
                Advance();
                call.operands.push_back(Or());
            }
        }
        Expect(TokenKind::RightParen, ")");
        const int count = static_cast<int>(call.operands.size());
        if (count < info->minArguments || count > info->maxArguments) {
            throw ExpressionError(at, "wrong number of arguments to " + call.name);
        }
        return call;
    }

    static std::vector<Node> Single(Node operand) {
        std::vector<Node> operands;
        operands.push_back(std::move(operand));
        return operands;
    }

    static std::vector<Node> Pair(Node left, Node right) {
        std::vector<Node> operands;
        operands.reserve(2);
        operands.push_back(std::move(left));
        operands.push_back(std::move(right));
        return operands;
    }

    Lexer lexer_;
    const DateSettings& dates_;
    Token token_;
    int depth_ = 0;
    int operations_ = 0;
};

}  // namespace

Node Parse(std::string_view text, const DateSettings& dates) {
    Parser parser(text, dates);
    return parser.Whole();
}

}  // namespace fnrk::engine::expr
