#include "declarations/ordered_dictionary.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace fnrk::declarations {
namespace {

std::vector<std::string> Keys(const OrderedDictionary<int>& dictionary) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : dictionary) keys.push_back(key);
    return keys;
}

TEST(OrderedDictionary, KeepsInsertionOrderAndFirstValueOfAKey) {
    OrderedDictionary<int> dictionary;
    EXPECT_TRUE(dictionary.Add("204", 1));
    EXPECT_TRUE(dictionary.Add("012", 2));
    EXPECT_TRUE(dictionary.Add("105", 3));
    EXPECT_TRUE(dictionary.Add("021", 4));
    EXPECT_FALSE(dictionary.Add("012", 99));

    EXPECT_EQ(Keys(dictionary), (std::vector<std::string>{"204", "012", "105", "021"}));
    EXPECT_EQ(dictionary.Count(), 4u);
    ASSERT_NE(dictionary.Find("012"), nullptr);
    EXPECT_EQ(*dictionary.Find("012"), 2);
    EXPECT_EQ(dictionary.Find("999"), nullptr);
    EXPECT_TRUE(dictionary.Exists("021"));
    EXPECT_FALSE(dictionary.Exists("21"));

    *dictionary.Find("105") = 30;
    EXPECT_EQ(*dictionary.Find("105"), 30);

    dictionary.Clear();
    EXPECT_TRUE(dictionary.Empty());
    EXPECT_EQ(dictionary.Find("204"), nullptr);
    EXPECT_TRUE(dictionary.Add("012", 5));
    EXPECT_EQ(Keys(dictionary), (std::vector<std::string>{"012"}));
}

}  // namespace
}  // namespace fnrk::declarations
