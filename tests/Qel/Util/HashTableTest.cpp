#include <Qel/Util/HashTable.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <vector>

namespace {

using Numbers = std::vector<std::uint32_t>;

class HashTable : public testing::Test {
protected:
    // In ascending order.
    Numbers numbersOf(std::size_t hash) const {
        Numbers numbers;
        table.Visit(hash, [&](std::uint32_t number) { numbers.push_back(number); });
        std::ranges::sort(numbers);
        return numbers;
    }

    QelUtil::HashTable table;
};

TEST_F(HashTable, NewTableHasNoNumbers) {
    EXPECT_EQ(numbersOf(0), Numbers());
    EXPECT_EQ(table.GetCount(), 0U);
}

TEST_F(HashTable, NumberComesUpUnderItsHashAlone) {
    table.Add(5, 0);
    EXPECT_EQ(numbersOf(5), (Numbers{0}));
    EXPECT_EQ(numbersOf(4), Numbers());
    EXPECT_EQ(numbersOf(6), Numbers());
    EXPECT_EQ(table.GetCount(), 1U);
}

TEST_F(HashTable, AllNumbersOfAHashComeUp) {
    for (const std::uint32_t number : {7U, 3U, 7U, 9U}) {
        table.Add(5, number);
    }
    EXPECT_EQ(numbersOf(5), (Numbers{3, 7, 7, 9}));
    EXPECT_EQ(table.GetCount(), 4U);
}

// The table begins with 16 slots.
TEST_F(HashTable, HashesOfOneHomeAreKeptApart) {
    table.Add(1, 10);
    table.Add(17, 11);
    table.Add(2, 12);
    table.Add(33, 13);
    EXPECT_EQ(numbersOf(1), (Numbers{10}));
    EXPECT_EQ(numbersOf(17), (Numbers{11}));
    EXPECT_EQ(numbersOf(2), (Numbers{12}));
    EXPECT_EQ(numbersOf(33), (Numbers{13}));
    EXPECT_EQ(numbersOf(49), Numbers());
}

TEST_F(HashTable, NumbersBehindTheLastSlotGoOnAtTheFirst) {
    table.Add(15, 10);
    table.Add(31, 11);
    table.Add(47, 12);
    table.Add(0, 13);
    EXPECT_EQ(numbersOf(15), (Numbers{10}));
    EXPECT_EQ(numbersOf(31), (Numbers{11}));
    EXPECT_EQ(numbersOf(47), (Numbers{12}));
    EXPECT_EQ(numbersOf(0), (Numbers{13}));
    EXPECT_EQ(numbersOf(16), Numbers());
}

TEST_F(HashTable, HashesThatDifferAbove32BitsAreOne) {
    if constexpr (sizeof(std::size_t) > sizeof(std::uint32_t)) {
        table.Add(5, 1);
        EXPECT_EQ(numbersOf(static_cast<std::size_t>(0x100000005ULL)), (Numbers{1}));
    }
}

TEST_F(HashTable, NothingIsLostWhileTheTableGrows) {
    constexpr std::uint32_t count = 300;
    for (std::uint32_t added = 0; added < count; ++added) {
        table.Add(added * 3, added);
        for (std::uint32_t known = 0; known <= added; ++known) {
            ASSERT_EQ(numbersOf(known * 3), (Numbers{known})) << added;
        }
        ASSERT_EQ(numbersOf(added * 3 + 1), Numbers()) << added;
    }
}

TEST_F(HashTable, NothingIsLostThoughAllHashesHaveOneHome) {
    constexpr std::uint32_t count = 300;
    constexpr std::uint32_t farApart = 0x10000;
    for (std::uint32_t i = 0; i < count; ++i) {
        table.Add(i * farApart, i);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        EXPECT_EQ(numbersOf(i * farApart), (Numbers{i}));
    }
    EXPECT_EQ(numbersOf(count * farApart), Numbers());
}

// Half of the slots are taken before the table grows.
TEST_F(HashTable, SearchEndsInATableThatIsAsFullAsItGets) {
    for (std::uint32_t i = 0; i < 8; ++i) {
        table.Add(i * 16, i);
    }
    EXPECT_EQ(numbersOf(8 * 16), Numbers());
    EXPECT_EQ(numbersOf(7 * 16), Numbers{7});
}

TEST_F(HashTable, RandomNumbersComeUpAsInAMultimap) {
    std::mt19937 random(1);
    std::multimap<std::uint32_t, std::uint32_t> model;
    for (std::uint32_t i = 0; i < 5000; ++i) {
        const auto hash = static_cast<std::uint32_t>(random() % 2000 * 4096);
        table.Add(hash, i);
        model.emplace(hash, i);
        const auto sought = static_cast<std::uint32_t>(random() % 2000 * 4096);
        Numbers expected;
        const auto [first, last] = model.equal_range(sought);
        for (auto entry = first; entry != last; ++entry) {
            expected.push_back(entry->second);
        }
        ASSERT_EQ(numbersOf(sought), expected) << i;
    }
}

} // namespace
