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
constexpr bool holds = std::is_same_v<std::variant_alternative_t<index, AttributeVariant>, T>;

static_assert(std::variant_size_v<AttributeVariant> == 26);
static_assert(holds<0, float> && holds<1, std::vector<float>>);
static_assert(holds<2, int> && holds<3, std::vector<int>>);
static_assert(holds<4, unsigned int> && holds<5, std::vector<unsigned int>>);
static_assert(holds<6, std::string> && holds<7, std::vector<std::string>>);
static_assert(holds<8, std::wstring> && holds<9, std::vector<std::wstring>>);
static_assert(holds<10, double> && holds<11, std::vector<double>>);
static_assert(holds<12, std::uint64_t> && holds<13, std::vector<std::uint64_t>>);
static_assert(holds<14, std::int64_t> && holds<15, std::vector<std::int64_t>>);
static_assert(holds<16, bool> && holds<17, std::vector<bool>>);
static_assert(holds<18, unsigned char> && holds<19, std::vector<unsigned char>>);
static_assert(holds<20, signed char> && holds<21, std::vector<signed char>>);
static_assert(holds<22, unsigned short> && holds<23, std::vector<unsigned short>>);
static_assert(holds<24, short> && holds<25, std::vector<short>>);

TEST(AttributeMap, KeysStandInPlainByteOrder) {
    const AttributeMap map = {{"b", 1}, {"B", 1}, {"a\xff", 1}, {"a", 1}, {"", 1}};
    std::vector<std::string> keys;
    for (const auto& [key, value] : map) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"", "B", "a", "a\xff", "b"}));
}

} // namespace
