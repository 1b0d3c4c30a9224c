#include "engine/order/tag_keys.hpp"

#include <stdexcept>

#include "engine/cdx/index_format.hpp"
#include "engine/cursor/table_resolver.hpp"

namespace fnrk::engine::order {

namespace {

expr::Expression CompileOver(std::string_view text, const dbf::TableHeader& header,
                             const expr::DateSettings& dates) {
    const cursor::TableResolver resolver(header, "");
    return expr::Expression::Compile(text, resolver, dates);
}

}  // namespace

cdx::KeyKind KeyKindOf(expr::ValueType type) {
    switch (type) {
        case expr::ValueType::Numeric:
            return cdx::KeyKind::Numeric;
        case expr::ValueType::Date:
            return cdx::KeyKind::Date;
        case expr::ValueType::Logical:
            return cdx::KeyKind::Logical;
        case expr::ValueType::Character:
            break;
    }
    return cdx::KeyKind::Character;
}

cdx::KeyKind KeyKindOfExpression(const std::string& expression, const dbf::TableHeader& header) {
    try {
        return KeyKindOf(CompileOver(expression, header, {}).type());
    } catch (const std::exception&) {
        return cdx::KeyKind::Character;
    }
}

TagKeys::TagKeys(std::string_view keyExpression, std::string_view forExpression,
                 const dbf::TableHeader& header, const expr::DateSettings& dates)
    : key_(CompileOver(keyExpression, header, dates)),
      dates_(&dates),
      kind_(KeyKindOf(key_.type())),
      keyLength_(cdx::KeyLengthOf(kind_, key_.length())) {
    if (keyLength_ == 0 || keyLength_ > cdx::kMaxKeyLength)
        throw std::invalid_argument("key length " + std::to_string(keyLength_) + " out of range");
    if (!forExpression.empty()) {
        condition_ = CompileOver(forExpression, header, dates);
        if (condition_->type() != expr::ValueType::Logical)
            throw std::invalid_argument("the FOR condition is not logical");
    }
}

std::optional<std::string> TagKeys::KeyOf(std::string_view record, std::uint32_t recordNumber) {
    const std::string_view records[] = {record};
    const expr::EvaluationContext context{records, recordNumber, dates_};
    if (condition_ && !condition_->EvaluateLogical(context)) return std::nullopt;
    switch (kind_) {
        case cdx::KeyKind::Numeric:
            return cdx::EncodeNumberKey(key_.EvaluateNumber(context));
        case cdx::KeyKind::Date:
            return cdx::EncodeNumberKey(key_.EvaluateDate(context));
        case cdx::KeyKind::Logical:
            return cdx::EncodeLogicalKey(key_.EvaluateLogical(context));
        case cdx::KeyKind::Character:
            break;
    }
    return cdx::EncodeCharacterKey(key_.EvaluateKey(context), keyLength_);
}

}  // namespace fnrk::engine::order
