#include "engine/order/tag_keys.hpp"

#include <algorithm>
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
    // Longer text keys are cut to the longest key a compound index holds, as the format has it:
    // records that differ only beyond it share a key.
    if (kind_ == cdx::KeyKind::Character) keyLength_ = std::min(keyLength_, cdx::kMaxKeyLength);
    if (keyLength_ == 0 || keyLength_ > cdx::kMaxKeyLength)
        throw std::invalid_argument("key length " + std::to_string(keyLength_) + " out of range");
    if (!forExpression.empty()) {
        condition_ = CompileOver(forExpression, header, dates);
        if (condition_->type() != expr::ValueType::Logical)
            throw std::invalid_argument("the FOR condition is not logical");
    }
}

bool TagKeys::WriteKey(std::string_view record, std::uint32_t recordNumber, char* out) {
    const std::string_view records[] = {record};
    const expr::EvaluationContext context{records, recordNumber, dates_};
    if (condition_ && !condition_->EvaluateLogical(context)) return false;
    switch (kind_) {
        case cdx::KeyKind::Numeric:
            cdx::WriteNumberKey(key_.EvaluateNumber(context), out);
            return true;
        case cdx::KeyKind::Date:
            cdx::WriteNumberKey(key_.EvaluateDate(context), out);
            return true;
        case cdx::KeyKind::Logical:
            out[0] = cdx::EncodeLogicalKey(key_.EvaluateLogical(context))[0];
            return true;
        case cdx::KeyKind::Character:
            break;
    }
    cdx::WriteCharacterKey(key_.EvaluateKey(context), keyLength_, out);
    return true;
}

std::optional<std::string> TagKeys::KeyOf(std::string_view record, std::uint32_t recordNumber) {
    std::string key(keyLength_, '\0');
    if (!WriteKey(record, recordNumber, key.data())) return std::nullopt;
    return key;
}

}  // namespace fnrk::engine::order
