#include "ModelArrays.h"

namespace Cantilever {

namespace Mox = Qel::Mox2;

Mox::Array1d<unsigned int> connectivity(const Mesh& mesh, const Part& part) {
    Mox::Array1d<unsigned int> nodes(part.elementCount * Element{}.size());
    std::size_t position = 0;
    for (std::size_t i = 0; i < part.elementCount; ++i) {
        for (const unsigned int node : mesh.elements[part.firstElement + i]) {
            nodes[position++] = node;
        }
    }
    return nodes;
}

Mox::Array1d<unsigned int> nodeCounts(const Part& part) {
    return Mox::Array1d<unsigned int>(part.elementCount, static_cast<unsigned int>(Element{}.size()));
}

Mox::Array1d<unsigned int> consecutive(std::size_t first, std::size_t count) {
    Mox::Array1d<unsigned int> numbers(count);
    for (std::size_t i = 0; i < count; ++i) {
        numbers[i] = static_cast<unsigned int>(first + i);
    }
    return numbers;
}

} // namespace Cantilever
