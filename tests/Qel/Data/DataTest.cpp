#include <Qel/Data/Data.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

struct Tag {};

using Data = Qel::Data::Data<std::vector<int>, std::string, Tag>;

static_assert(std::has_virtual_destructor_v<Data>);
static_assert(std::is_same_v<Data::Array, std::vector<int>>);
static_assert(std::is_same_v<Data::Map, std::string>);
static_assert(std::is_same_v<Data::Traits, Tag>);

TEST(Data, HoldsNoArrayAtFirst) {
    EXPECT_EQ(Data().data, nullptr);
}

TEST(Data, PointsToTheArrayAndHoldsACopyOfTheAttributes) {
    const std::vector<int> numbers = {1, 2};
    std::string attributes = "a";
    Data data;
    data.data = &numbers;
    data.attributes = attributes;
    attributes = "other";
    EXPECT_EQ(data.data, &numbers);
    EXPECT_EQ(data.attributes, "a");
}

} // namespace
