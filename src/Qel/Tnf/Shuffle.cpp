#include <Qel/Tnf/Shuffle.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace QelTnf {

namespace {

// The elements taken through all components at once: few enough to stay in the processor's first-level cache.
constexpr std::size_t TileElements = 1024;

// Splits `count` values that lie `stride` apart into four planes that lie `planeSize` apart.
template <typename T>
void splitIntoPlanes(const T* const values, std::size_t count, std::size_t stride,
                     unsigned char* const planes, std::size_t planeSize) {
    static_assert(sizeof(T) == sizeof(std::uint32_t));
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, values + i * stride, sizeof(bits));
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
    std::memcpy(destination + whole * sizeof(T), source + whole, (count - whole) * sizeof(T));
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
