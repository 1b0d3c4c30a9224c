#include "intake/group_value.hpp"

#include <vector>

#include "platform/text.hpp"

namespace fnrk::intake {

namespace {

std::vector<std::string> Items(std::string_view group) {
    std::vector<std::string> items(1);
    for (const char c : group) {
        if (c == ',') {
            items.emplace_back();
        } else {
            items.back() += c;
        }
    }
    return items;
}

// The index of the item that starts with `key` + "=", found as the reader of a group value does:
// the first "," + key + "=" in "," + group, the item being the count of commas before it.
std::ptrdiff_t ItemIndex(std::string_view group, std::string_view key) {
    const std::string text = "," + std::string(group);
    const std::size_t at = text.find("," + std::string(key) + "=");
    if (at == std::string::npos) return -1;
    std::ptrdiff_t commas = 0;
    for (std::size_t i = 1; i <= at; ++i) commas += text[i] == ',' ? 1 : 0;
    return commas;
}

}  // namespace

std::string GroupValueItem(std::string_view group, std::string_view key) {
    const std::ptrdiff_t index = ItemIndex(group, key);
    if (index < 0) return {};
    const std::string item = Items(group)[static_cast<std::size_t>(index)];
    const std::size_t equals = item.find('=');
    return platform::Trim(item.substr(equals + 1));
}

std::string WithGroupValueItem(std::string_view group, std::string_view key,
                               std::string_view value) {
    const std::string item = platform::Trim(key) + "=" + platform::Trim(value);
    const std::ptrdiff_t index = ItemIndex(group, key);
    if (index < 0) {
        const std::string trimmed = platform::Trim(group);
        return platform::Trim(trimmed + (trimmed.empty() ? "" : ",") + item);
    }
    std::vector<std::string> items = Items(group);
    items[static_cast<std::size_t>(index)] = item;
    std::string joined;
    for (std::size_t i = 0; i < items.size(); ++i) joined += (i == 0 ? "" : ",") + items[i];
    return joined;
}

}  // namespace fnrk::intake
