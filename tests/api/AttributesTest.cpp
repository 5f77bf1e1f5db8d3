#include "api/Support/Failures.h"
#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Api {

namespace {

// A root group (1) is created with attributes and shows what they held.
class AttributesValue : public OpenModel {
protected:
    MoxReader::Attributes savedFrom(const Attributes& attributes) {
        model.addNode(Group, "root", attributes);
        return saved().group(1).attributes;
    }

    template <typename T>
    testing::AssertionResult isRefused(const T& value) {
        Attributes attributes;
        attributes.set("key", value);
        return fails([&] { model.addNode(Group, "root", attributes); }, attributeRefused());
    }
};

} // namespace

static_assert(std::is_same_v<decltype(std::declval<Attributes&>() = std::declval<const Attributes&>()),
                             const Attributes&>);

TEST_F(AttributesValue, NoPairsGiveAnEmptyList) {
    EXPECT_TRUE(savedFrom(Attributes()).empty());
}

TEST_F(AttributesValue, IntegerFloatAndTextAreKept) {
    Attributes attributes;
    attributes.set("integer", 7);
    attributes.set("negative", -1);
    attributes.set("float", 1.5F);
    attributes.set("text", std::string("steel"));
    attributes.set("literal", "mm");
    EXPECT_EQ(savedFrom(attributes), (MoxReader::Attributes{{"integer", 7U},
                                                            {"negative", 0xFFFFFFFFU},
                                                            {"float", 1.5F},
                                                            {"text", "steel"},
                                                            {"literal", "mm"}}));
}

TEST_F(AttributesValue, KeySetAgainHoldsTheLaterValueOfWhateverType) {
    Attributes attributes;
    attributes.set("k", 1.5F);
    attributes.set("k", "text");
    attributes.set("l", "text");
    attributes.set("l", 1.5F);
    attributes.set("m", std::vector<int>{1});
    attributes.set("m", 7);
    attributes.set("n", std::string("text"));
    attributes.set("n", "literal");
    EXPECT_EQ(savedFrom(attributes),
              (MoxReader::Attributes{{"k", "text"}, {"l", 1.5F}, {"m", 7U}, {"n", "literal"}}));
}

TEST_F(AttributesValue, RefusedValueReplacedByAnotherGoesThrough) {
    Attributes attributes;
    attributes.set("k", 7U);
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root", attributes); }, attributeRefused()));
    attributes.set("k", 7);
    EXPECT_EQ(savedFrom(attributes), (MoxReader::Attributes{{"k", 7U}}));
}

TEST_F(AttributesValue, UnsignedIntegerIsAcceptedAndRefusedByTheNode) {
    EXPECT_TRUE(isRefused(7U));
}

TEST_F(AttributesValue, VectorOfAnyElementTypeIsRefusedAlsoAnEmptyOne) {
    EXPECT_TRUE(isRefused(std::vector<float>{1.5F}));
    EXPECT_TRUE(isRefused(std::vector<float>()));
    EXPECT_TRUE(isRefused(std::vector<int>{1}));
    EXPECT_TRUE(isRefused(std::vector<int>()));
    EXPECT_TRUE(isRefused(std::vector<unsigned int>{1}));
    EXPECT_TRUE(isRefused(std::vector<unsigned int>()));
}

TEST_F(AttributesValue, RefusalLeavesTheAttributesAsTheyWere) {
    Attributes attributes;
    attributes.set("a", 1);
    attributes.set("b", 7U);
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root", attributes); }, attributeRefused()));
    EXPECT_TRUE(fails([&] { model.addNode(Group, "root", attributes); }, attributeRefused()));
    attributes.set("b", 2);
    EXPECT_EQ(savedFrom(attributes), (MoxReader::Attributes{{"a", 1U}, {"b", 2U}}));
}

TEST_F(AttributesValue, TextOf255BytesIsKeptWhole) {
    Attributes attributes;
    attributes.set("text", std::string(255, 'x'));
    EXPECT_EQ(std::get<std::string>(savedFrom(attributes).at("text")), std::string(255, 'x'));
}

TEST_F(AttributesValue, TextOf256BytesIsKeptWhole) {
    Attributes attributes;
    attributes.set("text", std::string(256, 'x'));
    EXPECT_EQ(std::get<std::string>(savedFrom(attributes).at("text")), std::string(256, 'x'));
}

TEST_F(AttributesValue, LongerTextIsCutAt256Bytes) {
    Attributes attributes;
    attributes.set("text", std::string(256, 'x') + "yz");
    EXPECT_EQ(std::get<std::string>(savedFrom(attributes).at("text")), std::string(256, 'x'));
}

TEST_F(AttributesValue, TextIsCutAtItsFirstZeroByte) {
    Attributes attributes;
    attributes.set("text", std::string("ab\0cd", 5));
    attributes.set("empty", "");
    EXPECT_EQ(savedFrom(attributes), (MoxReader::Attributes{{"empty", ""}, {"text", "ab"}}));
}

TEST_F(AttributesValue, OrderOfInsertionDoesNotMatter) {
    Attributes forward;
    forward.set("a", 1);
    forward.set("b", 2.5F);
    Attributes backward;
    backward.set("b", 2.5F);
    backward.set("a", 1);
    model.addNode(Group, "root", forward);
    model.addNode(Group, "child", backward);
    const std::vector<std::uint8_t> records = saved().stream("Attributes");
    // Two keys, two kinds, one integer and one float, and no double and text, twice.
    ASSERT_EQ(records.size(), 2 * (14U + 6U + 8U + 8U + 4U + 4U));
    const auto half = static_cast<std::ptrdiff_t>(records.size() / 2);
    EXPECT_EQ(std::vector<std::uint8_t>(records.begin(), records.begin() + half),
              std::vector<std::uint8_t>(records.begin() + half, records.end()));
}

TEST_F(AttributesValue, CopyIsDeep) {
    Attributes original;
    original.set("k", 1);
    Attributes copy(original);
    copy.set("k", 2);
    copy.set("added", 3);
    model.addNode(Group, "root", original);
    model.addNode(Group, "child", copy);
    const SavedModel file = saved();
    EXPECT_EQ(file.group(1).attributes, (MoxReader::Attributes{{"k", 1U}}));
    EXPECT_EQ(file.group(2).attributes, (MoxReader::Attributes{{"added", 3U}, {"k", 2U}}));
}

TEST_F(AttributesValue, CopyHoldsAllThatTheOriginalHeld) {
    Attributes original;
    original.set("a", 1);
    original.set("b", "text");
    const Attributes copy(original);
    original.set("a", 2);
    EXPECT_EQ(savedFrom(copy), (MoxReader::Attributes{{"a", 1U}, {"b", "text"}}));
}

TEST_F(AttributesValue, AssignmentClearsTheTargetAndCopiesDeeply) {
    Attributes original;
    original.set("k", 1);
    Attributes target;
    target.set("gone", 2);
    EXPECT_EQ(&(target = original), &target);
    original.set("k", 3);
    EXPECT_EQ(savedFrom(target), (MoxReader::Attributes{{"k", 1U}}));
}

TEST_F(AttributesValue, AssignmentToItselfChangesNothing) {
    Attributes attributes;
    attributes.set("k", 1);
    const Attributes& same = attributes;
    attributes = same;
    EXPECT_EQ(savedFrom(attributes), (MoxReader::Attributes{{"k", 1U}}));
}

TEST_F(AttributesValue, EmptyAndOddKeysAreKept) {
    Attributes attributes;
    attributes.set("", 1);
    attributes.set(std::string("a\0b", 3), 2);
    EXPECT_EQ(savedFrom(attributes), (MoxReader::Attributes{{"", 1U}, {std::string("a\0b", 3), 2U}}));
}

} // namespace Api
