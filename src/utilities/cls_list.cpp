#include "utilities/cls_list.hpp"

#include "platform/text.hpp"

namespace fnrk::utilities {

namespace {

bool SameText(std::string_view a, std::string_view b) {
    return platform::EqualsNoCase(platform::TrimRight(a), platform::TrimRight(b));
}

}  // namespace

void clsList::ValuesInit(ValueList& list) const {
    list.clear();
}

int clsList::ValuesComplete(ValueList& list, std::string_view items,
                            std::string_view separator) const {
    const std::string_view sep = separator.empty() ? std::string_view(";") : separator;
    std::size_t start = 0;
    while (start <= items.size()) {
        std::size_t end = items.find(sep, start);
        if (end == std::string_view::npos) end = items.size();
        const std::string_view item = items.substr(start, end - start);
        if (!item.empty())
            list.push_back({std::string(item), static_cast<std::int32_t>(list.size())});
        start = end + sep.size();
    }
    return static_cast<int>(list.size());
}

int clsList::ValuesAddItem(ValueList& list, std::string_view text, std::int32_t data) const {
    list.push_back({std::string(text), data});
    return static_cast<int>(list.size()) - 1;
}

bool clsList::IsItemInListValues(const ValueList& list, std::string_view text) const {
    return IndexListByItemListGet(list, text) >= 0;
}

int clsList::IndexListByItemListGet(const ValueList& list, std::string_view text) const {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (SameText(list[i].text, text)) return static_cast<int>(i);
    return -1;
}

int clsList::IndexListByItemDataGet(const ValueList& list, std::int32_t data) const {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list[i].data == data) return static_cast<int>(i);
    return -1;
}

}  // namespace fnrk::utilities
