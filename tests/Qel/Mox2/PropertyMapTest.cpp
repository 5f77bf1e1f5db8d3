#include <Qel/Mox2/PropertyMap.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace {

using Qel::Mox2::PropertyMap;
using Qel::Mox2::PropertyType;
using Qel::Mox2::PropertyValue;

template <std::size_t index, typename T>
constexpr bool propertyHolds = std::is_same_v<std::variant_alternative_t<index, PropertyValue>, T>;

static_assert(std::variant_size_v<PropertyValue> == 5);
static_assert(propertyHolds<0, int> && propertyHolds<1, float> && propertyHolds<2, std::string>);
static_assert(propertyHolds<3, std::vector<int>> && propertyHolds<4, std::vector<float>>);
static_assert(sizeof(PropertyType) == 4);

TEST(PropertyMap, KeysStandInOrderOfTheirSignedNumbers) {
    const PropertyMap map = {{PropertyType(3), 1}, {PropertyType(-1), 1}, {PropertyType(0), 1}};
    std::vector<int> keys;
    for (const auto& [key, value] : map) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<int>{-1, 0, 3}));
}

TEST(PropertyMap, NewEntryStartsAsTheNumberZero) {
    PropertyMap map;
    EXPECT_EQ(std::get<int>(map[PropertyType(0)]), 0);
}

TEST(PropertyMap, NumbersOfThePropertiesAreThoseOfTheInterface) {
    EXPECT_EQ(int{Qel::Mox2::Translation}, 0);
    EXPECT_EQ(int{Qel::Mox2::Rotation}, 1);
    EXPECT_EQ(int{Qel::Mox2::Scale}, 2);
    EXPECT_EQ(int{Qel::Mox2::DiffuseColor}, 3);
    EXPECT_EQ(int{Qel::Mox2::SpecularColor}, 4);
    EXPECT_EQ(int{Qel::Mox2::EmissiveColor}, 5);
    EXPECT_EQ(int{Qel::Mox2::AmbientColor}, 6);
    EXPECT_EQ(int{Qel::Mox2::Transparency}, 7);
    EXPECT_EQ(int{Qel::Mox2::AmbientIntensity}, 8);
    EXPECT_EQ(int{Qel::Mox2::Shininess}, 9);
    EXPECT_EQ(int{Qel::Mox2::ShapeSwitch}, 10);
}

} // namespace
