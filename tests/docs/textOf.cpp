#include "textOf.h"

#include <fstream>
#include <iterator>

std::string textOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
