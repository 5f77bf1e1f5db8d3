#include <Qel/Tnf/Shuffle.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define QEL_HAS_SSE2
#endif

namespace QelTnf {

namespace {

// The elements taken through all components at once: few enough to stay in the processor's first-level cache.
constexpr std::size_t TileElements = 1024;

template <typename T>
std::uint32_t bitsOf(const T* const value) {
    static_assert(sizeof(T) == sizeof(std::uint32_t));
    std::uint32_t bits = 0;
    std::memcpy(&bits, value, sizeof(bits));
    return bits;
}

#if defined(QEL_HAS_SSE2)

// Four vectors of four values each.
constexpr std::size_t ValuesAtATime = 16;
using Values = __m128i[4];

// Four values that lie `stride` apart.
template <typename T>
__m128i fourValues(const T* const values, std::size_t stride) {
    if (stride == 1) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(values));
    }
    const auto at = [=](std::size_t i) { return static_cast<int>(bitsOf(values + i * stride)); };
    return _mm_set_epi32(at(3), at(2), at(1), at(0));
}

// One byte of each value, counted from the lowest, as a number of 32 bits.
template <int byte>
__m128i bytesOf(__m128i values) {
    return _mm_and_si128(_mm_srli_epi32(values, 8 * byte), _mm_set1_epi32(0xFF));
}

template <int byte>
void storePlane(const Values& values, unsigned char* const plane) {
    const __m128i low = _mm_packs_epi32(bytesOf<byte>(values[0]), bytesOf<byte>(values[1]));
    const __m128i high = _mm_packs_epi32(bytesOf<byte>(values[2]), bytesOf<byte>(values[3]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(plane), _mm_packus_epi16(low, high));
}

// Splits as many whole groups of values as there are, as splitIntoPlanes() does.
// @return the number of values in them.
template <typename T>
std::size_t splitGroups(const T* const values, std::size_t count, std::size_t stride,
                        unsigned char* const planes, std::size_t planeSize) {
    std::size_t i = 0;
    for (; count - i >= ValuesAtATime; i += ValuesAtATime) {
        const auto from = [&](std::size_t first) {
            return fourValues(values + (i + first) * stride, stride);
        };
        const Values group = {from(0), from(4), from(8), from(12)};
        storePlane<0>(group, planes + i);
        storePlane<1>(group, planes + planeSize + i);
        storePlane<2>(group, planes + 2 * planeSize + i);
        storePlane<3>(group, planes + 3 * planeSize + i);
    }
    return i;
}

#else

// Value by value is all that there is.
template <typename T>
std::size_t splitGroups(const T*, std::size_t, std::size_t, unsigned char*, std::size_t) {
    return 0;
}

#endif

// Splits `count` values that lie `stride` apart into four planes that lie `planeSize` apart.
template <typename T>
void splitIntoPlanes(const T* const values, std::size_t count, std::size_t stride,
                     unsigned char* const planes, std::size_t planeSize) {
    for (std::size_t i = splitGroups(values, count, stride, planes, planeSize); i < count; ++i) {
        const std::uint32_t bits = bitsOf(values + i * stride);
        planes[i] = static_cast<unsigned char>(bits);
        planes[planeSize + i] = static_cast<unsigned char>(bits >> 8U);
        planes[2 * planeSize + i] = static_cast<unsigned char>(bits >> 16U);
        planes[3 * planeSize + i] = static_cast<unsigned char>(bits >> 24U);
    }
}

} // namespace

template <typename T>
void shuffleComponents(const T* const source, std::size_t count, std::size_t width,
                       unsigned char* const destination) {
    const std::size_t elements = count / width;
    for (std::size_t first = 0; first < elements; first += TileElements) {
        const std::size_t tile = std::min(TileElements, elements - first);
        for (std::size_t component = 0; component < width; ++component) {
            splitIntoPlanes(source + first * width + component, tile, width,
                            destination + component * elements * sizeof(T) + first, elements);
        }
    }
    const std::size_t whole = elements * width;
    if (whole != count) {
        std::memcpy(destination + whole * sizeof(T), source + whole, (count - whole) * sizeof(T));
    }
}

// Kept though nothing calls it; see docs/oddities.md.
template <typename T>
void ComponentShuffle(std::vector<T>& values, unsigned char width) {
    if (width == 0 || values.empty()) {
        return;
    }
    const std::vector<T> source = values;
    shuffleComponents(source.data(), source.size(), width, reinterpret_cast<unsigned char*>(values.data()));
}

// Kept though nothing calls it; see docs/oddities.md.
template <typename T>
void ByteShuffle(std::vector<T>& values) {
    ComponentShuffle(values, 1);
}

template void shuffleComponents(const float*, std::size_t, std::size_t, unsigned char*);
template void shuffleComponents(const unsigned int*, std::size_t, std::size_t, unsigned char*);
template void ComponentShuffle(std::vector<float>&, unsigned char);
template void ComponentShuffle(std::vector<unsigned int>&, unsigned char);
template void ByteShuffle(std::vector<float>&);
template void ByteShuffle(std::vector<unsigned int>&);

} // namespace QelTnf
