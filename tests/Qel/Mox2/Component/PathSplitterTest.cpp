#include <Qel/Mox2/Component/PathSplitter.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

using Qel::Mox2::Component::PathSplitter;
using Names = std::vector<std::string>;

static_assert(std::has_virtual_destructor_v<PathSplitter>);

Names componentsOf(const std::string& path, const char* separators) {
    const PathSplitter splitter(path, separators);
    return Names(splitter.begin(), splitter.end());
}

TEST(PathSplitter, SplitsAtTheSeparator) {
    EXPECT_EQ(componentsOf("/a/b/c", "/"), (Names{"a", "b", "c"}));
    EXPECT_EQ(componentsOf("a", "/"), (Names{"a"}));
}

TEST(PathSplitter, EmptyComponentsAreLeftOut) {
    EXPECT_EQ(componentsOf("//a///b//", "/"), (Names{"a", "b"}));
    EXPECT_EQ(componentsOf("///", "/"), Names());
    EXPECT_EQ(componentsOf("", "/"), Names());
}

TEST(PathSplitter, EachCharacterOfTheSeparatorsSplits) {
    EXPECT_EQ(componentsOf("::a:b|c", ":|"), (Names{"a", "b", "c"}));
}

TEST(PathSplitter, SpacesAndPunctuationDontSplit) {
    EXPECT_EQ(componentsOf("/a b\t/c.d,e", "/"), (Names{"a b\t", "c.d,e"}));
}

TEST(PathSplitter, SplittingBeginsAtTheStart) {
    const std::string path = "/a/b/c";
    const PathSplitter splitter(path, "/", 2);
    EXPECT_EQ(Names(splitter.begin(), splitter.end()), (Names{"b", "c"}));
    const PathSplitter atTheEnd(path, "/", 6);
    EXPECT_EQ(Names(atTheEnd.begin(), atTheEnd.end()), Names());
}

TEST(PathSplitter, LastTextRemainsAfterTheEnd) {
    const std::string path = "/a/b";
    const PathSplitter splitter(path, "/");
    auto component = splitter.begin();
    ++component;
    ++component;
    EXPECT_TRUE(component == splitter.end());
    EXPECT_EQ(*component, "b");
}

} // namespace
