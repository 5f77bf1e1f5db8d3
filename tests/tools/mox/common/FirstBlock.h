#pragma once

#include <cstddef>

/// Where the blocks of a file begin.
constexpr std::size_t FirstBlock = 2800;
