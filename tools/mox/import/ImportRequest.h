#pragma once

#include "ImportShare.h"
#include "PieceFiles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// What the user counts memory in.
constexpr std::uint64_t Mebibyte = std::uint64_t{1} << 20;

/// What `mox import` is asked to do.
struct ImportRequest {
    std::string input;
    std::string output;
    bool overwrite = false;       ///< An existing output is replaced, once the new one is whole.
    bool check = false;           ///< The new file gets its name only if `mox check` finds no error in it.
    std::uint64_t mostMemory = 0; ///< What reading the input may take, in bytes; 0 for no bound.

    /// The files of a decomposed model, which become one; the input is then what the user has called them.
    std::optional<PieceFiles> pieces = {};

    bool keepsPieces = false;  ///< The shapes of pieces stay apart.
    std::size_t processes = 1; ///< The most that share the work.
    ImportShare share = {};    ///< What of the input is written.

    // What is taken; everything of a kind of which nothing is named.
    std::vector<std::string> blocks = {};    ///< Names or ids, with * and ?.
    std::vector<std::string> variables = {}; ///< Names, with * and ?.
    std::vector<std::string> steps = {};     ///< As StepChoice takes them.
};

} // namespace MoxTool
