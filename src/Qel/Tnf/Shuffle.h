#pragma once

#include <cstddef>
#include <vector>

namespace QelTnf {

/// Rearranges 4-byte values so that zlib meets long runs of similar bytes: component by component, and each
/// component in four planes, the first byte of all values, then the second, and so on.
///
/// With `n` whole elements of `width` values each, byte `b` of component `c` of element `i` goes to offset
/// `c * n * 4 + b * n + i`. Values beyond the last whole element are copied as they are.
/// @param source      `count` values, the values of one element adjacent.
/// @param width       At least 1.
/// @param destination `count * 4` bytes that don't overlap the source.
/// @tparam T `float` or `unsigned int`.
template <typename T>
void shuffleComponents(const T* source, std::size_t count, std::size_t width, unsigned char* destination);

/// shuffleComponents() in place; a width of 0 leaves everything as it is.
/// @throws std::bad_alloc if there is no memory for the copy that it works on.
template <typename T>
void ComponentShuffle(std::vector<T>& values, unsigned char width);

/// ComponentShuffle() for one component.
template <typename T>
void ByteShuffle(std::vector<T>& values);

} // namespace QelTnf
