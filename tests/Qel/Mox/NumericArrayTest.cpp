#include <Qel/Mox/NumericArray.h>

#include "Support/AddressSanitizer.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>

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

TEST(NumericArray, NewDescriptorHoldsZeroAndNoText) {
    const QelMox::NumericArray::Descriptor descriptor;
    EXPECT_EQ(descriptor.number, 0);
    EXPECT_EQ(descriptor.text, "");
}

// The array frees its descriptor, so no two arrays may have the same one.
static_assert(std::is_same_v<decltype(QelMox::NumericArray::descriptor),
                             std::unique_ptr<QelMox::NumericArray::Descriptor>>);
static_assert(!std::is_copy_constructible_v<QelMox::NumericArray>);
static_assert(!std::is_copy_assignable_v<QelMox::NumericArray>);

TEST(NumericArray, DescriptorMovesToTheArrayThatItsOwnIsMovedTo) {
    QelMox::NumericArray array;
    array.descriptor = std::make_unique<QelMox::NumericArray::Descriptor>();
    array.descriptor->number = 7;
    const auto* const descriptor = array.descriptor.get();
    const QelMox::NumericArray moved = std::move(array);
    EXPECT_EQ(moved.descriptor.get(), descriptor);
    EXPECT_EQ(moved.descriptor->number, 7);
    EXPECT_EQ(array.descriptor, nullptr); // NOLINT(bugprone-use-after-move)
}

TEST(NumericArray, DescriptorIsFreedWithItsArrayAndWhenItIsReplaced) {
#if SUPPORT_ADDRESS_SANITIZER
    const auto makeDescriptor = [] { return std::make_unique<QelMox::NumericArray::Descriptor>(); };
    auto array = std::make_unique<QelMox::NumericArray>();
    array->descriptor = makeDescriptor();
    const auto* const first = array->descriptor.get();
    EXPECT_FALSE(__asan_address_is_poisoned(first));
    array->descriptor = makeDescriptor();
    EXPECT_TRUE(__asan_address_is_poisoned(first));
    const auto* const second = array->descriptor.get();
    array.reset();
    EXPECT_TRUE(__asan_address_is_poisoned(second));
#else
    GTEST_SKIP() << "needs the address sanitizer, which knows what is freed";
#endif
}

} // namespace
