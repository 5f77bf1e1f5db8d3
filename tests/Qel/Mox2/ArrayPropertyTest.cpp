#include <Qel/Mox2/ArrayProperty.h>

#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Qel::Exception::InvalidArguments;
using Qel::Mox2::ColumnProperty;
using Qel::Mox2::DatasetType;
using Qel::Mox2::TableProperty;
using Support::Thrown;
using Support::throws;

struct TypeRow {
    int type;
    int width;
    const char* name; // Null for a type without a default name.
    unsigned int variableType;
};

constexpr TypeRow Rows[] = {
    {0, 1, "Connectivity", 4},   {1, 1, "Connectivity", 5},  {2, 1, "Connectivity", 6},
    {3, 1, "Polylength", 9},     {4, 1, "Polylength", 9},    {5, 1, "Polylength", 9},
    {6, 1, "Part Elements", 4},  {7, 1, "Part Elements", 5}, {8, 1, "Part Elements", 6},
    {9, 3, "Coordinates", 1},    {10, 1, nullptr, 12},       {11, 3, nullptr, 13},
    {12, 6, nullptr, 14},        {13, 6, nullptr, 15},       {14, 1, nullptr, 16},
    {15, 3, nullptr, 17},        {16, 6, nullptr, 18},       {17, 6, nullptr, 19},
    {18, 1, nullptr, 20},        {19, 3, nullptr, 21},       {20, 6, nullptr, 22},
    {21, 6, nullptr, 23},        {22, 1, nullptr, 24},       {23, 1, nullptr, 25},
    {24, 3, nullptr, 26},        {25, 6, nullptr, 27},       {26, 6, nullptr, 28},
    {27, 1, "Node Ids", 12},     {28, 1, "Element IDs", 16}, {29, 3, "Displacement", 13},
    {30, 6, "Displacement", 14},
};

static_assert(std::size(Rows) == 31);

Thrown cantGuess(std::string_view text, std::string_view function) {
    return {3, text, "Qel/Mox2/ArrayProperty", function};
}

const Thrown NoName = cantGuess("Can't guess result name for specified type", "::nameFrom");
const Thrown NoWidth = cantGuess("Can't guess result width for specified type", "::widthFrom");
const Thrown NoType = cantGuess("Can't guess result type for specified type", "::geomTypeFrom");

template <typename PropertyT>
class ArrayPropertyOf : public testing::Test {};

using Properties = testing::Types<ColumnProperty<unsigned int>, ColumnProperty<float>,
                                  TableProperty<unsigned int>, TableProperty<float>>;
TYPED_TEST_SUITE(ArrayPropertyOf, Properties);

TYPED_TEST(ArrayPropertyOf, DefaultStateIsAnUnnamedNodeScalarOfWidthOne) {
    const TypeParam property;
    EXPECT_EQ(property.name, "");
    EXPECT_EQ(int{property.type}, 10);
    EXPECT_EQ(property.width, 1);
    EXPECT_TRUE(property.attributes.empty());
    EXPECT_EQ(property.data, nullptr);
}

TYPED_TEST(ArrayPropertyOf, WidthAndVariableTypeOfEveryType) {
    for (const TypeRow& row : Rows) {
        EXPECT_EQ(TypeParam::widthFrom(DatasetType(row.type)), row.width) << row.type;
        EXPECT_EQ(static_cast<unsigned int>(TypeParam::geomTypeFrom(DatasetType(row.type))), row.variableType)
            << row.type;
    }
}

TYPED_TEST(ArrayPropertyOf, NameOfEveryTypeThatHasOne) {
    for (const TypeRow& row : Rows) {
        if (row.name != nullptr) {
            EXPECT_EQ(TypeParam::nameFrom(DatasetType(row.type)), row.name) << row.type;
        } else {
            EXPECT_TRUE(throws<InvalidArguments>(NoName, [&] { TypeParam::nameFrom(DatasetType(row.type)); }))
                << row.type;
        }
    }
}

TYPED_TEST(ArrayPropertyOf, TypeOutsideOfTheTableIsRefusedByAllThree) {
    for (const int type : {31, -1, 0x7FFFFFFF}) {
        EXPECT_TRUE(throws<InvalidArguments>(NoName, [&] { TypeParam::nameFrom(DatasetType(type)); }));
        EXPECT_TRUE(throws<InvalidArguments>(NoWidth, [&] { TypeParam::widthFrom(DatasetType(type)); }));
        EXPECT_TRUE(throws<InvalidArguments>(NoType, [&] { TypeParam::geomTypeFrom(DatasetType(type)); }));
    }
}

TEST(ArrayPropertyOrigin, FunctionIsNamedWithItsClass) {
    const Thrown expected =
        cantGuess("Can't guess result name for specified type", "Qel::Mox2::ArrayProperty");
    EXPECT_TRUE(
        throws<InvalidArguments>(expected, [] { ColumnProperty<float>::nameFrom(Qel::Mox2::NodeScalar); }));
}

} // namespace
