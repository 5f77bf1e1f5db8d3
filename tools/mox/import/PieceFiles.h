#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// The name of one file of a decomposed model, such as "run.e.4.0": that of the whole, the number of pieces and the
/// place of this one among them, which can have leading zeros.
struct PieceName {
    std::string whole;
    std::size_t count;
    std::size_t rank; ///< From 0, below the count.

    /// @return nothing for a path whose file is not named so.
    static std::optional<PieceName> of(const std::string& path);
};

/// The files of a decomposed model, all of them.
struct PieceFiles {
    std::string whole;              ///< The path that the file of the whole would have, such as "run.e".
    std::vector<std::string> paths; ///< By rank.

    /// @param pattern A path whose last part has * or ? in it.
    /// @throws Failure unless what matches is all pieces of one model; it lists those that are missing.
    static PieceFiles matching(const std::string& pattern);

    /// All pieces of the model that a file is a piece of.
    /// @throws Failure if it is not named as a piece, or if pieces are missing; it lists them.
    static PieceFiles besides(const std::string& path);
};

/// Whether a path is to be taken as a pattern: it has * or ? in its last part, and no file has it as its name.
bool isFilePattern(const std::string& path);

} // namespace MoxTool
