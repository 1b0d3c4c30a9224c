#include "intake/ccd_detail_info.hpp"

#include <algorithm>

#include "platform/text.hpp"

namespace fnrk::intake {

namespace {

constexpr char kItemSeparator = '|';
constexpr char kEscape = '\\';

std::string Escaped(std::string_view value) {
    std::string text;
    for (const char c : value) {
        if (c == kItemSeparator || c == kEscape) text += kEscape;
        text += c;
    }
    return text;
}

bool IsDetailField(std::string_view name) {
    const auto& fields = DetailFields();
    return std::any_of(fields.begin(), fields.end(),
                       [&](const auto& field) { return field.first == name; });
}

}  // namespace

const std::vector<std::pair<std::string_view, std::string_view>>& DetailFields() {
    static const std::vector<std::pair<std::string_view, std::string_view>> fields{
        {"CARDID", "Card"},
        {"CATEGORY", "Category"},
        {"TRANSDATE", "Date"},
        {"TRANSNAME", "Transaction"},
        {"AMOUNT", "Amount"},
        {"CURRENCY", "Currency"},
        {"CURRAMOUNT", "Amount in foreign currency"},
        {"CURRCODE", "Foreign currency"},
        {"CURRRATE", "Exchange rate"},
        {"MERCHANT", "Merchant"},
        {"CARDNUM", "Card number"},
        {"EMBOSS", "Name on card"},
        {"MASTER", "Master card"}};
    return fields;
}

std::string FormatDetailInfo(const DetailValues& values) {
    std::string info;
    for (const auto& [field, value] : values) {
        if (!info.empty()) info += kItemSeparator;
        info += field + "=" + Escaped(platform::Trim(value));
    }
    return info;
}

std::optional<DetailValues> ParseDetailInfo(std::string_view info) {
    DetailValues values;
    if (platform::Trim(info).empty()) return values;
    std::string item;
    std::vector<std::string> items;
    for (std::size_t i = 0; i < info.size(); ++i) {
        if (info[i] == kEscape) {
            if (i + 1 == info.size()) return std::nullopt;
            item += info[++i];
        } else if (info[i] == kItemSeparator) {
            items.push_back(std::move(item));
            item.clear();
        } else {
            item += info[i];
        }
    }
    items.push_back(std::move(item));
    for (const std::string& text : items) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos) return std::nullopt;
        std::string field = platform::UpperCase(platform::Trim(text.substr(0, equals)));
        if (!IsDetailField(field)) return std::nullopt;
        values.emplace_back(std::move(field), platform::Trim(text.substr(equals + 1)));
    }
    return values;
}

std::string FormatDetailPretty(const DetailValues& values) {
    std::string pretty;
    for (const auto& [field, value] : values) {
        const std::string shown = platform::Trim(value);
        if (shown.empty()) continue;
        const auto& fields = DetailFields();
        const auto& name = field;  // a structured binding is not captured by every compiler
        const auto labelled = std::find_if(fields.begin(), fields.end(),
                                           [&](const auto& f) { return f.first == name; });
        if (labelled == fields.end()) continue;  // only the detail's own fields are shown
        pretty += std::string(labelled->second) + ": " + shown + "\r\n";
    }
    return pretty;
}

std::string FormatDetailComment(const DetailValues& values) {
    const auto value = [&](std::string_view field) {
        for (const auto& [name, text] : values) {
            if (name == field) return platform::Trim(text);
        }
        return std::string();
    };
    std::vector<std::string> items{value("TRANSDATE"), value("MERCHANT")};
    if (items.back().empty()) items.back() = value("TRANSNAME");
    const std::string foreignCode = value("CURRCODE");
    if (!foreignCode.empty() && !platform::EqualsNoCase(foreignCode, value("CURRENCY")))
        items.push_back(platform::Trim(value("CURRAMOUNT") + " " + foreignCode));
    std::string comment;
    for (const std::string& item : items) {
        if (item.empty()) continue;
        if (!comment.empty()) comment += ' ';
        comment += item;
    }
    return comment;
}

}  // namespace fnrk::intake
