#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace MoxTool {

/// What one of several files has that an import is put together of; by default everything.
struct ImportShare {
    /// The name of a root without attributes, for one piece of a whole of which another file has them. What the
    /// user has chosen need not be in each piece then.
    std::optional<std::string> rootOfPiece = {};
    bool hasShapes = true; ///< Otherwise there is the root alone, without any dataset.

    // The steps are divided among files that all have the same shapes. The first of them has the mesh.
    std::size_t place = 0;
    std::size_t count = 1;

    bool hasMesh() const { return hasShapes && place == 0; }
    /// @param step The place of a step among those that are chosen.
    /// @param steps How many those are.
    bool hasStep(std::size_t step, std::size_t steps) const {
        return hasShapes && step * count / steps == place;
    }
};

} // namespace MoxTool
