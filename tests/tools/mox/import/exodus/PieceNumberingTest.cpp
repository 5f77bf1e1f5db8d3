#include "import/exodus/PieceNumbering.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

using MoxTool::PieceNumbering;
using MoxTool::PieceNumbers;
using Ids = std::vector<std::int64_t>;
using Places = std::vector<std::uint32_t>;

TEST(PieceNumbering, OrderNumbersSortTheWholeAndIdsGoWithThem) {
    const PieceNumbering numbering({{{5, 1}, {50, 10}}, {{3}, {99}}});
    EXPECT_EQ(numbering.ids(), (Ids{10, 99, 50}));
    EXPECT_EQ(numbering.places(0), (Places{2, 0}));
    EXPECT_EQ(numbering.places(1), (Places{1}));
}

TEST(PieceNumbering, GapsInTheNumbersLeaveNoGapsInTheWhole) {
    const PieceNumbering numbering({{{1'000'000'000'000, 7}, {2, 1}}});
    EXPECT_EQ(numbering.count(), 2u);
    EXPECT_EQ(numbering.ids(), (Ids{1, 2}));
}

TEST(PieceNumbering, NumberThatPiecesShareIsThereOnce) {
    const PieceNumbering numbering({{{1, 2}, {1, 2}}, {{2, 3}, {2, 3}}});
    EXPECT_EQ(numbering.ids(), (Ids{1, 2, 3}));
    EXPECT_EQ(numbering.places(1), (Places{1, 2}));
    EXPECT_FALSE(numbering.clash());
    ASSERT_TRUE(numbering.shared());
    EXPECT_EQ(numbering.shared()->piece, 1u);
    EXPECT_EQ(numbering.shared()->id, 2);
}

TEST(PieceNumbering, PiecesWithoutAnythingTakeNoPlaces) {
    const PieceNumbering numbering({{}, {{4}, {4}}, {}});
    EXPECT_EQ(numbering.count(), 1u);
    EXPECT_TRUE(numbering.places(0).empty());
    EXPECT_TRUE(numbering.places(2).empty());
    EXPECT_EQ(PieceNumbering({}).count(), 0u);
}

TEST(PieceNumbering, OneNumberWithTwoIdsIsAClashInTheLaterPiece) {
    const PieceNumbering numbering({{{1, 2}, {10, 20}}, {{3}, {30}}, {{2}, {21}}});
    ASSERT_TRUE(numbering.clash());
    EXPECT_EQ(numbering.clash()->piece, 2u);
    EXPECT_EQ(numbering.clash()->id, 21);
    EXPECT_EQ(numbering.ids(), (Ids{10, 20, 30}));
}

TEST(PieceNumbering, OneNumberTwiceInAPieceIsAClash) {
    const PieceNumbering numbering({{{1}, {1}}, {{2, 2}, {20, 20}}});
    ASSERT_TRUE(numbering.clash());
    EXPECT_EQ(numbering.clash()->piece, 1u);
    EXPECT_EQ(numbering.clash()->id, 20);
}

TEST(PieceNumbering, FirstOfSeveralClashesIsGiven) {
    const PieceNumbering numbering({{{1, 2}, {1, 2}}, {{2, 1}, {5, 6}}, {{1}, {7}}});
    ASSERT_TRUE(numbering.clash());
    EXPECT_EQ(numbering.clash()->piece, 1u);
    EXPECT_EQ(numbering.clash()->id, 5);
}

} // namespace
