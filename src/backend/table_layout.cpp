#include "backend/table_layout.hpp"

#include "engine/cdx/index_key.hpp"
#include "engine/constants.hpp"
#include "engine/dbf/field_codec.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

namespace expr = engine::expr;

bool IndexTag::descending() const {
    return (options & engine::ADS_DESCENDING) != 0;
}
bool IndexTag::unique() const {
    return (options & engine::ADS_UNIQUE) != 0;
}

const engine::dbf::Field* TableLayout::Find(std::string_view fieldName) const {
    std::string wanted = platform::UpperCase(platform::Trim(fieldName));
    for (const auto& field : fields) {
        if (field.name == wanted) return &field;
    }
    return nullptr;
}

std::optional<std::size_t> TableLayout::TagIndex(std::string_view tagName) const {
    std::string wanted = platform::UpperCase(platform::Trim(tagName));
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].name == wanted) return i;
    }
    return std::nullopt;
}

std::string TableLayout::BlankRecord() const {
    return engine::dbf::BlankRecord(fields, recordLength);
}

void ArrangeFields(TableLayout& layout) {
    std::uint32_t offset = 1;
    for (auto& field : layout.fields) {
        field.offset = offset;
        offset += field.length;
    }
    layout.recordLength = offset;
}

std::string FieldListText(const std::vector<engine::dbf::Field>& fields) {
    std::string text;
    for (const auto& field : fields) {
        // The type names the field list reader takes for the types without a one-letter name.
        std::string type(1, field.type);
        if (field.type == 'P') type = "BINARY";
        if (field.type == 'B') type = "DOUBLE";
        if (field.type == 'I') type = "INTEGER";
        if (!text.empty()) text += ';';
        text += field.name + "," + type + "," + std::to_string(field.length) + "," +
                std::to_string(field.decimals);
    }
    return text;
}

std::optional<expr::FieldBinding> LayoutResolver::Resolve(std::string_view alias,
                                                          std::string_view field) const {
    if (!alias.empty() && !platform::EqualsNoCase(alias, layout_.name)) return std::nullopt;
    const auto* found = layout_.Find(field);
    if (!found || engine::dbf::IsMemoType(found->type)) return std::nullopt;
    return expr::FieldBinding{0, found->type, found->offset, found->length, found->decimals};
}

IndexTag MakeTag(const TableLayout& layout, std::string_view name, std::string_view expression,
                 std::string_view condition, std::uint32_t options) {
    LayoutResolver resolver(layout);
    IndexTag tag;
    tag.name = SqlName(name);
    tag.expression = expression;
    tag.condition = platform::Trim(condition);
    tag.options = options;
    tag.key = std::make_shared<expr::Expression>(expr::Expression::Compile(expression, resolver));
    switch (tag.key->type()) {
        case expr::ValueType::Numeric:
            tag.keyType = KeyType::Numeric;
            tag.keyLength = 8;
            break;
        case expr::ValueType::Date:
            tag.keyType = KeyType::Date;
            tag.keyLength = 8;
            break;
        case expr::ValueType::Logical:
            tag.keyType = KeyType::Logical;
            tag.keyLength = 1;
            break;
        default:
            tag.keyType = KeyType::Character;
            tag.keyLength = static_cast<std::uint16_t>(tag.key->length());
            break;
    }
    if (!tag.condition.empty()) {
        tag.filter =
            std::make_shared<expr::Expression>(expr::Expression::Compile(tag.condition, resolver));
        if (tag.filter->type() != expr::ValueType::Logical) {
            throw expr::ExpressionError(0, "FOR condition is not logical");
        }
    }
    return tag;
}

std::optional<std::string> KeyOf(const IndexTag& tag, const std::string& record,
                                 std::uint32_t recordNumber) {
    std::string_view records[] = {record};
    expr::EvaluationContext context{records, recordNumber, nullptr};
    if (tag.filter && !tag.filter->EvaluateLogical(context)) return std::nullopt;
    switch (tag.keyType) {
        case KeyType::Numeric:
            return engine::cdx::EncodeNumberKey(tag.key->EvaluateNumber(context));
        case KeyType::Date:
            return engine::cdx::EncodeNumberKey(tag.key->EvaluateDate(context));
        case KeyType::Logical:
            return engine::cdx::EncodeLogicalKey(tag.key->EvaluateLogical(context));
        case KeyType::Character:
            break;
    }
    return std::string(tag.key->EvaluateKey(context));
}

std::string SqlName(std::string_view name) {
    // Only letters, digits and "_" reach SQL text as names.
    std::string safe = platform::UpperCase(platform::Trim(name));
    for (char& c : safe) {
        bool plain = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
        if (!plain) c = '_';
    }
    return safe;
}

std::string TableNameOf(std::string_view fileName) {
    // Names may come in either path form, whatever the host.
    std::string name = platform::Trim(fileName);
    if (auto slash = name.find_last_of("/\\"); slash != std::string::npos) {
        name.erase(0, slash + 1);
    }
    if (auto dot = name.rfind('.'); dot != std::string::npos && dot > 0) name.erase(dot);
    return SqlName(name);
}

}  // namespace fnrk::backend
