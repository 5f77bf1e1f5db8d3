#include "MoxReader/Shuffle.h"

#include <gtest/gtest.h>

using MoxReader::unshuffleFloats;
using MoxReader::unshuffleUnsigned;

namespace {

// The values of the examples: bytes A0 A1 A2 A3 and so on from the lowest address.
constexpr std::uint32_t A = 0xA3A2A1A0;
constexpr std::uint32_t B = 0xB3B2B1B0;
constexpr std::uint32_t C = 0xC3C2C1C0;
constexpr std::uint32_t D = 0xD3D2D1D0;

} // namespace

TEST(Shuffle, OneItemKeepsItsBytes) {
    const std::vector<std::uint8_t> payload = {0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1,
                                               0xB2, 0xB3, 0xC0, 0xC1, 0xC2, 0xC3};
    EXPECT_EQ((std::vector<std::uint32_t>{A, B, C}), unshuffleUnsigned(payload, 3));
}

TEST(Shuffle, TwoItemsOfOneComponentShareTheirPlanes) {
    const std::vector<std::uint8_t> payload = {0xA0, 0xB0, 0xA1, 0xB1, 0xA2, 0xB2, 0xA3, 0xB3};
    EXPECT_EQ((std::vector<std::uint32_t>{A, B}), unshuffleUnsigned(payload, 1));
}

TEST(Shuffle, TwoItemsOfTwoComponentsComeOutRowByRow) {
    const std::vector<std::uint8_t> payload = {0xA0, 0xC0, 0xA1, 0xC1, 0xA2, 0xC2, 0xA3, 0xC3,
                                               0xB0, 0xD0, 0xB1, 0xD1, 0xB2, 0xD2, 0xB3, 0xD3};
    EXPECT_EQ((std::vector<std::uint32_t>{A, B, C, D}), unshuffleUnsigned(payload, 2));
}

TEST(Shuffle, FloatsAreTheSameBytes) {
    const std::vector<std::uint8_t> payload = {0x00, 0x00, 0x00, 0x00, 0x80, 0x00, 0x3F, 0xC0};
    EXPECT_EQ((std::vector<float>{1.0f, -2.0f}), unshuffleFloats(payload, 1));
}

TEST(Shuffle, ThousandsOfItemsComeOutRowByRow) {
    constexpr std::uint32_t Items = 2500;
    constexpr std::uint8_t Width = 3;
    std::vector<std::uint32_t> expected;
    std::vector<std::uint8_t> payload(Items * Width * 4);
    for (std::uint32_t i = 0; i < Items * Width; ++i) {
        expected.push_back(i * 2654435761u);
        for (std::uint32_t byte = 0; byte < 4; ++byte) {
            const auto plane = (i % Width) * 4 + byte;
            payload[plane * Items + i / Width] = static_cast<std::uint8_t>(expected.back() >> (8 * byte));
        }
    }
    EXPECT_EQ(expected, unshuffleUnsigned(payload, Width));
}

TEST(Shuffle, NothingGivesNothing) {
    EXPECT_TRUE(unshuffleFloats({}, 3).empty());
    EXPECT_TRUE(unshuffleUnsigned({}, 0).empty());
}
