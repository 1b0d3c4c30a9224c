#pragma once

// clsList: the value lists behind the applications' list and combo boxes. A list holds items in
// order, each a text and a number ("item data", usually a record number or a code's id). The
// caller owns the list; the class keeps nothing between calls.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::utilities {

struct ValueListItem {
    std::string text;
    std::int32_t data = 0;
};

using ValueList = std::vector<ValueListItem>;

class clsList {
  public:
    // Empties the list.
    void ValuesInit(ValueList& list) const;

    // Adds each item of `items`, separated by `separator` (";" when empty), in order; an item's
    // data is its position in the list after adding (0-based), so that a list filled from a
    // fixed text can be read back by index. Empty items are skipped. Returns the new count.
    int ValuesComplete(ValueList& list, std::string_view items, std::string_view separator) const;

    // Appends one item; duplicates are kept (a list shows what it is given). Returns its index.
    int ValuesAddItem(ValueList& list, std::string_view text, std::int32_t data) const;

    // Whether an item has this text. Texts are compared without trailing blanks, as values read
    // from fixed-width fields come padded, and without regard to case.
    bool IsItemInListValues(const ValueList& list, std::string_view text) const;

    // Index (0-based) of the first item with this text (compared as above) / this data; -1, the
    // list boxes' "nothing selected", when there is none.
    int IndexListByItemListGet(const ValueList& list, std::string_view text) const;
    int IndexListByItemDataGet(const ValueList& list, std::int32_t data) const;
};

}  // namespace fnrk::utilities
