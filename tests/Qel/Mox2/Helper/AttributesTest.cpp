#include <Qel/Mox2/Helper/Attributes.h>

#include "Support/Thrown.h"

#include <boost/exception/get_error_info.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace {

using Qel::Exception::InvalidArguments;
using Qel::Mox2::AttributeMap;
using Qel::Mox2::AttributeVariant;
using Qel::Mox2::Helper::Attributes::toAttributeList;
using QelUtil::AttributeList;
using QelUtil::AttributeValue;
using Support::Thrown;
using Support::throws;

const Thrown Refused = {3, "Invalid arguments", "Qel/Mox2/Helper/Attributes",
                        "Qel::Mox2::Helper::Attributes::AttributeValueGetter"};

AttributeValue converted(const AttributeVariant& value) {
    return toAttributeList(AttributeMap{{"key", value}}).at("key");
}

template <std::size_t index, typename... Arguments>
testing::AssertionResult isRefused(const Arguments&... arguments) {
    const AttributeVariant value(std::in_place_index<index>, arguments...);
    return throws<InvalidArguments>(Refused, [&] { converted(value); });
}

TEST(ToAttributeList, EmptyMapGivesAnEmptyList) {
    EXPECT_TRUE(toAttributeList({}).empty());
}

TEST(ToAttributeList, Alternative0FloatBecomesKindOne) {
    const AttributeValue value = converted(AttributeVariant(std::in_place_index<0>, 1.5F));
    EXPECT_EQ(value.kind, 1);
    EXPECT_EQ(value.real, 1.5F);
}

TEST(ToAttributeList, Alternative2IntegerBecomesKindZero) {
    const AttributeValue value = converted(AttributeVariant(std::in_place_index<2>, -1));
    EXPECT_EQ(value.kind, 0);
    EXPECT_EQ(value.integer, 0xFFFFFFFFU);
}

TEST(ToAttributeList, Alternative6TextBecomesKindTwo) {
    const AttributeValue value = converted(AttributeVariant(std::in_place_index<6>, "steel"));
    EXPECT_EQ(value.kind, 2);
    EXPECT_EQ(value.text, "steel");
}

TEST(ToAttributeList, Alternative10DoubleBecomesKindThree) {
    const AttributeValue value = converted(AttributeVariant(std::in_place_index<10>, 0.1));
    EXPECT_EQ(value.kind, 3);
    EXPECT_EQ(value.longReal, 0.1);
}

TEST(ToAttributeList, Alternative14LongIntegerBecomesKindZeroWithItsLow32Bits) {
    const AttributeValue small = converted(AttributeVariant(std::in_place_index<14>, std::int64_t{7}));
    EXPECT_EQ(small.kind, 0);
    EXPECT_EQ(small.integer, 7U);
    const AttributeValue large =
        converted(AttributeVariant(std::in_place_index<14>, std::int64_t{0x123456789}));
    EXPECT_EQ(large.kind, 0);
    EXPECT_EQ(large.integer, 0x23456789U);
    const AttributeValue negative = converted(AttributeVariant(std::in_place_index<14>, std::int64_t{-2}));
    EXPECT_EQ(negative.integer, 0xFFFFFFFEU);
}

TEST(ToAttributeList, AllOtherScalarsAreRefused) {
    EXPECT_TRUE(isRefused<4>(7U));
    EXPECT_TRUE(isRefused<8>(L"wide"));
    EXPECT_TRUE(isRefused<12>(std::uint64_t{7}));
    EXPECT_TRUE(isRefused<16>(true));
    EXPECT_TRUE(isRefused<18>(static_cast<unsigned char>(7)));
    EXPECT_TRUE(isRefused<20>(static_cast<signed char>(7)));
    EXPECT_TRUE(isRefused<22>(static_cast<unsigned short>(7)));
    EXPECT_TRUE(isRefused<24>(static_cast<short>(7)));
}

TEST(ToAttributeList, AllVectorsAreRefusedAlsoEmptyOnes) {
    EXPECT_TRUE(isRefused<1>());
    EXPECT_TRUE(isRefused<1>(std::vector<float>{1.5F}));
    EXPECT_TRUE(isRefused<3>());
    EXPECT_TRUE(isRefused<3>(std::vector<int>{1}));
    EXPECT_TRUE(isRefused<5>());
    EXPECT_TRUE(isRefused<5>(std::vector<unsigned int>{1}));
    EXPECT_TRUE(isRefused<7>());
    EXPECT_TRUE(isRefused<9>());
    EXPECT_TRUE(isRefused<11>());
    EXPECT_TRUE(isRefused<13>());
    EXPECT_TRUE(isRefused<15>());
    EXPECT_TRUE(isRefused<17>());
    EXPECT_TRUE(isRefused<19>());
    EXPECT_TRUE(isRefused<21>());
    EXPECT_TRUE(isRefused<23>());
    EXPECT_TRUE(isRefused<25>());
}

TEST(ToAttributeList, ScalarsAndVectorsAreRefusedAtSitesOfTheirOwn) {
    const auto lineOf = [](const AttributeVariant& value) {
        try {
            converted(value);
        } catch (const boost::exception& caught) {
            return *boost::get_error_info<boost::throw_line>(caught);
        }
        return 0;
    };
    EXPECT_NE(lineOf(7U), lineOf(std::vector<float>()));
    EXPECT_NE(lineOf(7U), 0);
    EXPECT_EQ(lineOf(7U), lineOf(true));
    EXPECT_EQ(lineOf(std::vector<int>()), lineOf(std::vector<float>()));
}

TEST(ToAttributeList, TextOf256BytesIsKeptWhole) {
    EXPECT_EQ(converted(std::string("ab")).text, "ab");
    EXPECT_EQ(converted(std::string(255, 'x')).text, std::string(255, 'x'));
    EXPECT_EQ(converted(std::string(256, 'x')).text, std::string(256, 'x'));
}

TEST(ToAttributeList, LongerTextIsCutAt256Bytes) {
    EXPECT_EQ(converted(std::string(257, 'x')).text, std::string(256, 'x'));
    EXPECT_EQ(converted(std::string(300, 'x')).text, std::string(256, 'x'));
}

TEST(ToAttributeList, TextIsCopiedAsFarAsItsFirstZeroByte) {
    EXPECT_EQ(converted(std::string("ab\0cd", 5)).text, "ab");
}

TEST(ToAttributeList, EveryKeyIsConverted) {
    const AttributeList list = toAttributeList({{"b", 1.5F}, {"a", 1}, {"", std::string("x")}});
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list.at("").kind, 2);
    EXPECT_EQ(list.at("a").kind, 0);
    EXPECT_EQ(list.at("b").kind, 1);
}

TEST(ToAttributeList, FirstRefusedAlternativeEndsTheWalk) {
    EXPECT_TRUE(throws<InvalidArguments>(Refused, [] {
        toAttributeList({{"a", 1}, {"b", 7U}, {"c", std::vector<int>()}});
    }));
}

// Some standard libraries never let such a variant lose its value.
TEST(ToAttributeList, VariantThatLostItsValueIsBadAccessAndOneThatKeptItConverts) {
    AttributeMap map = {{"key", 1}};
    // More elements than there can be.
    EXPECT_THROW(map["key"].emplace<std::vector<float>>(std::vector<float>().max_size() + 1),
                 std::length_error);
    if (map["key"].valueless_by_exception()) {
        try {
            toAttributeList(map);
            FAIL() << "nothing was thrown";
        } catch (const std::bad_variant_access& caught) {
            EXPECT_STREQ(caught.what(), std::bad_variant_access().what());
        }
    } else {
        EXPECT_EQ(toAttributeList(map).at("key").integer, 1U);
    }
}

} // namespace
