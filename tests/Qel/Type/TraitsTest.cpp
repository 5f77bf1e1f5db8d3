#include <Qel/Type/Traits.h>

#include <gtest/gtest.h>

namespace {

TEST(Traits, ElementTagsAreTheNumbersOfTheFile) {
    EXPECT_EQ(std::uint32_t{Qel::Type::Traits<float>::elementTag}, 1U);
    EXPECT_EQ(std::uint32_t{Qel::Type::Traits<unsigned int>::elementTag}, 5U);
}

} // namespace
