#include "MoxReader/Format.h"

#include <gtest/gtest.h>

#include <string>

namespace Format = MoxReader::Format;

TEST(Format, VariableTypesHaveTheirNamesAndWidths) {
    EXPECT_EQ("Coordinates", Format::findVariableType(1)->name);
    EXPECT_EQ(3, Format::findVariableType(1)->width);
    EXPECT_EQ("NodeSixA", Format::findVariableType(14)->name);
    EXPECT_EQ(6, Format::findVariableType(14)->width);
    EXPECT_EQ("FourthScalarB", Format::findVariableType(25)->name);
    EXPECT_EQ(1, Format::findVariableType(25)->width);
}

TEST(Format, PredicatesTakeTheTypesOfTheirRangeAlone) {
    for (std::uint32_t number = 0; number <= 40; ++number) {
        EXPECT_EQ(Format::isConnectivityType(number), number >= 4 && number <= 6) << number;
        EXPECT_EQ(Format::isNodalType(number), number >= 12 && number <= 15) << number;
        EXPECT_EQ(Format::isElementalType(number), number >= 16 && number <= 19) << number;
        EXPECT_EQ(Format::isType(number, Format::VariableType::Polylength), number == 9) << number;
    }
    EXPECT_EQ(Format::elementDimensions(4), 1);
    EXPECT_EQ(Format::elementDimensions(6), 3);
}

TEST(Format, NumbersBetweenTheVariableTypesHaveNoEntry) {
    for (const std::uint32_t number : {0u, 2u, 3u, 7u, 8u, 10u, 11u, 29u, 0xFFFFFFFFu}) {
        EXPECT_EQ(nullptr, Format::findVariableType(number)) << number;
    }
}

TEST(Format, ReservedNamesAreThirteenBytesLong) {
    EXPECT_EQ(std::string(1, '\x0B') + "Empty Block ", Format::EmptyBlockName);
    EXPECT_EQ(std::string(1, '\x0B') + "Index Block ", Format::IndexBlockName);
    EXPECT_EQ(13u, Format::EmptyBlockName.size());
    EXPECT_EQ(13u, Format::IndexBlockName.size());
}
