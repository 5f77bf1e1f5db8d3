#include <Qel/Util/AttributeList.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using QelUtil::AttributeList;
using QelUtil::AttributeValue;

TEST(AttributeList, IsInAscendingByteOrderOfItsKeys) {
    AttributeList list;
    for (const char* const key : {"b", "\xC3\xA4", "a", "", "B", "aa"}) {
        list[key] = AttributeValue(1U);
    }
    std::vector<std::string> keys;
    for (const auto& [key, value] : list) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"", "B", "a", "aa", "b", "\xC3\xA4"}));
}

TEST(AttributeList, CopyIsDeep) {
    AttributeList list;
    list["text"] = AttributeValue(std::string_view("former"));
    const AttributeList copy = list;
    list["text"] = AttributeValue(std::string_view("later"));
    EXPECT_EQ(copy.at("text").text, "former");
}

} // namespace
