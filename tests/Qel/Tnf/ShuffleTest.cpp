#include <Qel/Tnf/Shuffle.h>

#include "Support/Bytes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>

namespace {

using Support::ByteVector;

template <typename T>
ByteVector bytesIn(const std::vector<T>& values) {
    ByteVector bytes(values.size() * sizeof(T));
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), values.data(), bytes.size());
    }
    return bytes;
}

/// Values of either type, by their bits. None of them is a signalling float.
template <typename T>
std::vector<T> valuesOf(std::initializer_list<std::uint32_t> bits) {
    std::vector<T> values;
    for (const std::uint32_t pattern : bits) {
        values.push_back(std::bit_cast<T>(pattern));
    }
    return values;
}

template <typename T>
class Shuffle : public testing::Test {
protected:
    static ByteVector componentShuffled(std::initializer_list<std::uint32_t> bits, unsigned char width) {
        std::vector<T> values = valuesOf<T>(bits);
        QelTnf::ComponentShuffle(values, width);
        return bytesIn(values);
    }
    static ByteVector byteShuffled(std::initializer_list<std::uint32_t> bits) {
        std::vector<T> values = valuesOf<T>(bits);
        QelTnf::ByteShuffle(values);
        return bytesIn(values);
    }
};

using ElementTypes = testing::Types<float, unsigned int>;
TYPED_TEST_SUITE(Shuffle, ElementTypes);

constexpr std::uint32_t A = 0xA3A2A1A0;
constexpr std::uint32_t B = 0xB3B2B1B0;
constexpr std::uint32_t C = 0xC3C2C1C0;
constexpr std::uint32_t D = 0xD3D2D1D0;

TYPED_TEST(Shuffle, OneElementOfThreeComponentsKeepsItsOrder) {
    EXPECT_EQ(this->componentShuffled({A, B, C}, 3),
              (ByteVector{0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3, 0xC0, 0xC1, 0xC2, 0xC3}));
}

TYPED_TEST(Shuffle, TwoElementsOfOneComponentAlternateInFourPlanes) {
    EXPECT_EQ(this->componentShuffled({A, B}, 1),
              (ByteVector{0xA0, 0xB0, 0xA1, 0xB1, 0xA2, 0xB2, 0xA3, 0xB3}));
}

TYPED_TEST(Shuffle, TwoElementsOfTwoComponentsGoComponentByComponent) {
    EXPECT_EQ(this->componentShuffled({A, B, C, D}, 2),
              (ByteVector{0xA0, 0xC0, 0xA1, 0xC1, 0xA2, 0xC2, 0xA3, 0xC3, //
                          0xB0, 0xD0, 0xB1, 0xD1, 0xB2, 0xD2, 0xB3, 0xD3}));
}

TYPED_TEST(Shuffle, ByteShuffleSplitsIntoFourPlanes) {
    EXPECT_EQ(this->byteShuffled({A, B, C}),
              (ByteVector{0xA0, 0xB0, 0xC0, 0xA1, 0xB1, 0xC1, 0xA2, 0xB2, 0xC2, 0xA3, 0xB3, 0xC3}));
}

TYPED_TEST(Shuffle, WidthOfZeroChangesNothing) {
    EXPECT_EQ(this->componentShuffled({A, B}, 0),
              (ByteVector{0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3}));
}

TYPED_TEST(Shuffle, EmptyVectorIsLeftAlone) {
    EXPECT_EQ(this->componentShuffled({}, 3), ByteVector());
    EXPECT_EQ(this->componentShuffled({}, 1), ByteVector());
    EXPECT_EQ(this->byteShuffled({}), ByteVector());
}

TYPED_TEST(Shuffle, ValuesBeyondTheLastWholeElementStay) {
    EXPECT_EQ(this->componentShuffled({A, B, C}, 2),
              (ByteVector{0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3, 0xC0, 0xC1, 0xC2, 0xC3}));
}

TYPED_TEST(Shuffle, ValuesBeyondTheLastWholeElementAreCopiedToTheDestination) {
    const std::vector<TypeParam> source = valuesOf<TypeParam>({A, B, C, D, A});
    ByteVector destination(24, 0xEE);
    QelTnf::shuffleComponents(source.data(), source.size(), 3, destination.data());
    EXPECT_EQ(destination, (ByteVector{0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3, //
                                       0xC0, 0xC1, 0xC2, 0xC3, 0xD0, 0xD1, 0xD2, 0xD3, //
                                       0xA0, 0xA1, 0xA2, 0xA3, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TYPED_TEST(Shuffle, LargestWidthPutsEachComponentByItself) {
    std::vector<TypeParam> values(510);
    values[254] = std::bit_cast<TypeParam>(A);
    values[509] = std::bit_cast<TypeParam>(B);
    QelTnf::ComponentShuffle(values, 255);
    const ByteVector bytes = bytesIn(values);
    EXPECT_EQ(Support::slice(bytes, 0, 2032), ByteVector(2032));
    EXPECT_EQ(Support::slice(bytes, 2032, 8), (ByteVector{0xA0, 0xB0, 0xA1, 0xB1, 0xA2, 0xB2, 0xA3, 0xB3}));
}

// More elements than are processed component by component at a time. Byte b of component c of element i is at
// c * 20000 + b * 5000 + i.
TYPED_TEST(Shuffle, ManyElementsFillPlanesThatAreAsLongAsTheirCount) {
    std::vector<TypeParam> values(15'000);
    values[3 * 0 + 0] = std::bit_cast<TypeParam>(A);
    values[3 * 1023 + 1] = std::bit_cast<TypeParam>(B);
    values[3 * 1024 + 1] = std::bit_cast<TypeParam>(C);
    values[3 * 4999 + 2] = std::bit_cast<TypeParam>(D);
    ByteVector expected(60'000);
    expected[0] = 0xA0;
    expected[5000] = 0xA1;
    expected[10000] = 0xA2;
    expected[15000] = 0xA3;
    expected[21023] = 0xB0;
    expected[26023] = 0xB1;
    expected[31023] = 0xB2;
    expected[36023] = 0xB3;
    expected[21024] = 0xC0;
    expected[26024] = 0xC1;
    expected[31024] = 0xC2;
    expected[36024] = 0xC3;
    expected[44999] = 0xD0;
    expected[49999] = 0xD1;
    expected[54999] = 0xD2;
    expected[59999] = 0xD3;
    QelTnf::ComponentShuffle(values, 3);
    EXPECT_EQ(bytesIn(values), expected);
}

// However many values are split at a time, all counts up to four times sixteen, and some about the limits of what
// is taken through the components together, give each byte the place that the layout says.
TYPED_TEST(Shuffle, EachByteOfEachCountAndWidthIsAtItsPlace) {
    std::vector<std::size_t> counts = {1008, 1023, 1024, 1025, 1039, 1040, 2049};
    for (std::size_t count = 0; count < 64; ++count) {
        counts.push_back(count);
    }
    std::uint32_t state = 1;
    for (const std::size_t width : {1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
        for (const std::size_t elements : counts) {
            // Half of the values have bytes above 0x7F only, which saturating arithmetic would change.
            std::vector<std::uint32_t> bits(elements * width);
            for (std::uint32_t& value : bits) {
                state = state * 1664525U + 1013904223U;
                value = (state >> 16U) % 2 == 0 ? state : state | 0x80808080U;
            }
            std::vector<TypeParam> source(bits.size());
            ByteVector expected(bits.size() * 4 + 1, 0xEE);
            for (std::size_t i = 0; i < bits.size(); ++i) {
                std::memcpy(&source[i], &bits[i], sizeof(bits[i]));
                for (std::size_t byte = 0; byte < 4; ++byte) {
                    expected[(i % width * 4 + byte) * elements + i / width] =
                        static_cast<std::uint8_t>(bits[i] >> (8 * byte));
                }
            }
            ByteVector destination(expected.size(), 0xEE);
            QelTnf::shuffleComponents(source.data(), source.size(), width, destination.data());
            ASSERT_EQ(destination, expected) << elements << " elements of width " << width;
        }
    }
}

TYPED_TEST(Shuffle, SourceOfShuffleComponentsStaysAsItWas) {
    const std::vector<TypeParam> source = valuesOf<TypeParam>({A, B});
    ByteVector destination(8);
    QelTnf::shuffleComponents(source.data(), source.size(), 1, destination.data());
    EXPECT_EQ(destination, (ByteVector{0xA0, 0xB0, 0xA1, 0xB1, 0xA2, 0xB2, 0xA3, 0xB3}));
    EXPECT_EQ(bytesIn(source), (ByteVector{0xA0, 0xA1, 0xA2, 0xA3, 0xB0, 0xB1, 0xB2, 0xB3}));
}

} // namespace
