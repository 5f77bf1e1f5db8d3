#pragma once

#include <string>

namespace Golden {

/// Saves a small model that has one of everything: a marked root with attributes of all kinds, a group with a
/// transform, two shapes with materials, shared coordinates, connectivity, results by step, and a mode shape.
void saveGoldenModel(const std::string& path);

} // namespace Golden
