#include <Qel/Mox2/AttributeMap.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace {

using Qel::Mox2::AttributeMap;
using Qel::Mox2::AttributeVariant;

template <std::size_t index, typename T>
constexpr bool attributeHolds = std::is_same_v<std::variant_alternative_t<index, AttributeVariant>, T>;

static_assert(std::variant_size_v<AttributeVariant> == 26);
static_assert(attributeHolds<0, float> && attributeHolds<1, std::vector<float>>);
static_assert(attributeHolds<2, int> && attributeHolds<3, std::vector<int>>);
static_assert(attributeHolds<4, unsigned int> && attributeHolds<5, std::vector<unsigned int>>);
static_assert(attributeHolds<6, std::string> && attributeHolds<7, std::vector<std::string>>);
static_assert(attributeHolds<8, std::wstring> && attributeHolds<9, std::vector<std::wstring>>);
static_assert(attributeHolds<10, double> && attributeHolds<11, std::vector<double>>);
static_assert(attributeHolds<12, std::uint64_t> && attributeHolds<13, std::vector<std::uint64_t>>);
static_assert(attributeHolds<14, std::int64_t> && attributeHolds<15, std::vector<std::int64_t>>);
static_assert(attributeHolds<16, bool> && attributeHolds<17, std::vector<bool>>);
static_assert(attributeHolds<18, unsigned char> && attributeHolds<19, std::vector<unsigned char>>);
static_assert(attributeHolds<20, signed char> && attributeHolds<21, std::vector<signed char>>);
static_assert(attributeHolds<22, unsigned short> && attributeHolds<23, std::vector<unsigned short>>);
static_assert(attributeHolds<24, short> && attributeHolds<25, std::vector<short>>);

TEST(AttributeMap, KeysStandInPlainByteOrder) {
    const AttributeMap map = {{"b", 1}, {"B", 1}, {"a\xff", 1}, {"a", 1}, {"", 1}};
    std::vector<std::string> keys;
    for (const auto& [key, value] : map) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"", "B", "a", "a\xff", "b"}));
}

} // namespace
