#include <gtest/gtest.h>

#include "utilities/cls_collection.hpp"
#include "utilities/cls_list.hpp"
#include "utilities/cls_small_controls.hpp"
#include "utilities/cls_xml.hpp"

namespace fnrk::utilities {
namespace {

TEST(ListTest, ListsKeepDuplicatesAndLookUpTheFirst) {
    const clsList lists;
    ValueList list{{"old", 1}};
    lists.ValuesInit(list);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(lists.ValuesComplete(list, "Janvier;Février;;Mars", ""), 3);
    EXPECT_EQ(list[2].text, "Mars");
    EXPECT_EQ(list[2].data, 2);
    EXPECT_EQ(lists.ValuesAddItem(list, "Février", 40), 3);
    EXPECT_EQ(list.size(), 4u);
    EXPECT_EQ(lists.IndexListByItemListGet(list, "février   "), 1);
    EXPECT_EQ(lists.IndexListByItemDataGet(list, 40), 3);
    EXPECT_EQ(lists.IndexListByItemDataGet(list, 41), -1);
    EXPECT_TRUE(lists.IsItemInListValues(list, "MARS"));
    EXPECT_FALSE(lists.IsItemInListValues(list, "Avril"));
    EXPECT_EQ(lists.IndexListByItemListGet(list, "Mar"), -1);
    EXPECT_EQ(lists.ValuesComplete(list, "A||B", "||"), 6);
    EXPECT_EQ(list[5].text, "B");
}

TEST(CollectionTest, KeysAreFoundWithoutRegardToCase) {
    const clsCollection collections;
    const std::vector<std::string> keys{"PARAM", "ACT", "ACT"};
    EXPECT_TRUE(collections.IsItemExistsInCollection(keys, "param"));
    EXPECT_TRUE(collections.IsItemExistsInCollection(keys, "ACT"));
    EXPECT_FALSE(collections.IsItemExistsInCollection(keys, "ACF"));
    EXPECT_FALSE(collections.IsItemExistsInCollection(keys, ""));
    EXPECT_FALSE(collections.IsItemExistsInCollection({}, "PARAM"));
}

TEST(XmlTest, AllFiveReservedCharactersAreEscapedOnce) {
    const clsXml xml;
    EXPECT_EQ(xml.Escaping(R"(a<b>&"c"'d')"), "a&lt;b&gt;&amp;&quot;c&quot;&apos;d&apos;");
    EXPECT_EQ(xml.Escaping("&amp;"), "&amp;amp;");
    EXPECT_EQ(xml.Escaping("Liège"), "Liège");
    EXPECT_EQ(xml.Escaping(""), "");
}

TEST(SmallControlsTest, SpreadsheetRowsStayOneRow) {
    EXPECT_EQ(clsExcel().TabFormat({"a", "b\tc", "d\r\ne"}), "a\tb c\td  e");
    EXPECT_EQ(clsExcel().TabFormat({}), "");
    EXPECT_EQ(clsExcel().TabFormat({"", ""}), "\t");
    EXPECT_EQ(clsProcess().WindowToProcessId(0x1234), 0);
    EXPECT_EQ(clsVbControl().StatusBarOfAFormHeight(), 315);
}

}  // namespace
}  // namespace fnrk::utilities
