#pragma once

#include <cstddef>
#include <functional>
#include <string>

/// How an Exodus file is cut for a test.
struct ExodusCut {
    std::size_t pieces;
    /// The piece of an element, by its place in the file, from 0.
    std::function<std::size_t(std::size_t)> pieceOf;
    /// Whether the number maps hold places in the whole, with the ids in maps of their own, as decomposers write
    /// them; otherwise the number maps hold the ids.
    bool hasOriginalIds = true;
    bool hasOwnTitles = false;           ///< Each piece is named by its rank.
    std::size_t steps = ~std::size_t{0}; ///< Of the last piece, if it has fewer than the whole.
    double lateBy = 0;                   ///< What is added to the times of the last piece.
    bool hasAllBlocks = true;            ///< Otherwise a piece has those alone of which it has elements.
};

/// Cuts an Exodus file into pieces "PATH.4.0" and so on: mesh, node sets and
/// variables, with what says that they are pieces.
/// @param target PATH.
void splitExodus(const std::string& source, const std::string& target, const ExodusCut& cut);
