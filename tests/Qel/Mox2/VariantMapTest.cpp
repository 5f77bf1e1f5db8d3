#include <Qel/Mox2/VariantMap.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

// A value whose copies can be made to fail.
struct Fragile {
    Fragile() = default;
    Fragile(const Fragile& other) : fails(other.fails) {
        if (fails) {
            throw std::runtime_error("no copy");
        }
    }
    Fragile(Fragile&&) noexcept(false) {}
    Fragile& operator=(const Fragile&) = default;
    Fragile& operator=(Fragile&&) = default;
    ~Fragile() = default;

    bool fails = false;
};

using Value = std::variant<int, std::string, std::vector<float>, Fragile>;
using Map = Qel::Mox2::VariantMap<std::string, Value>;

const std::string LongText(100, 'x');

Map someValues() {
    Map map;
    map["a"] = 7;
    map["b"] = LongText;
    map["c"] = std::vector<float>{1, 2, 3};
    return map;
}

void expectSomeValues(const Map& map) {
    ASSERT_EQ(map.size(), 3U);
    EXPECT_EQ(std::get<int>(map.at("a")), 7);
    EXPECT_EQ(std::get<std::string>(map.at("b")), LongText);
    EXPECT_EQ(std::get<std::vector<float>>(map.at("c")), (std::vector<float>{1, 2, 3}));
}

TEST(VariantMap, CopyHoldsTheSameValuesAndIsIndependent) {
    Map original = someValues();
    const Map copy(original);
    original["b"] = "changed";
    original.erase("a");
    expectSomeValues(copy);
}

TEST(VariantMap, AssignmentReplacesAllPairs) {
    Map target;
    target["a"] = "text";
    target["z"] = 1;
    target = someValues();
    expectSomeValues(target);
    const Map source = someValues();
    target["z"] = 1;
    target = source;
    expectSomeValues(target);
}

TEST(VariantMap, AssignmentToItselfChangesNothing) {
    Map map = someValues();
    const Map& same = map;
    map = same;
    expectSomeValues(map);
}

TEST(VariantMap, CopyOfAValueThatWasLostIsLostAsWell) {
    Map original = someValues();
    Fragile fragile;
    fragile.fails = true;
    EXPECT_THROW(original.at("b").emplace<Fragile>(std::as_const(fragile)), std::runtime_error);
    ASSERT_TRUE(original.at("b").valueless_by_exception());
    const Map copy(original);
    EXPECT_EQ(copy.size(), 3U);
    EXPECT_TRUE(copy.at("b").valueless_by_exception());
}

TEST(VariantMap, FailedAssignmentLeavesTheTargetAsItWas) {
    Map source;
    source["a"] = 1;
    source["b"].emplace<Fragile>();
    std::get<Fragile>(source["b"]).fails = true;
    Map target = someValues();
    EXPECT_THROW(target = source, std::runtime_error);
    expectSomeValues(target);
}

} // namespace
