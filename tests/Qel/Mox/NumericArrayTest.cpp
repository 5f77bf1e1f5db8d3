#include <Qel/Mox/NumericArray.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(NumericArray, NewArrayHasWidthOneAndZerosElsewhere) {
    const QelMox::NumericArray array;
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(array.sizeInBytes, 0U);
    EXPECT_EQ(array.width, 1);
    EXPECT_EQ(array.widthFlag, 0);
    EXPECT_EQ(array.descriptor, nullptr);
    EXPECT_EQ(array.elementTag, 0U);
    EXPECT_FALSE(array.boolA);
    EXPECT_FALSE(array.boolB);
    EXPECT_EQ(array.floatA, 0.0F);
    EXPECT_EQ(array.floatB, 0.0F);
    EXPECT_FALSE(array.boolC);
}

TEST(NumericArray, CountIsTheSizeDividedByFour) {
    QelMox::NumericArray array;
    array.sizeInBytes = 27;
    EXPECT_EQ(array.GetCount(), 6U);
    array.sizeInBytes = 0x500000000;
    EXPECT_EQ(array.GetCount(), 0x140000000U);
}

TEST(NumericArray, WidthIsGivenByReference) {
    QelMox::NumericArray array;
    array.width = 6;
    EXPECT_EQ(&array.GetWidth(), &array.width);
}

TEST(NumericArray, DescriptorIsOwned) {
    QelMox::NumericArray array;
    array.descriptor = std::make_unique<QelMox::NumericArray::Descriptor>();
    EXPECT_EQ(array.descriptor->number, 0);
    EXPECT_EQ(array.descriptor->text, "");
}

} // namespace
