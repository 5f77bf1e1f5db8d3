#pragma once

#include "FileJoin.h"
#include "PartPlan.h"

#include <cstdint>
#include <string>

namespace MoxTool {

/// What is split, and how.
struct SplitRequest {
    std::string input;
    std::string folder; ///< The folder to make.
    PartKind kind = PartKind::Child;
};

/// What came of it.
struct SplitSummary {
    std::uint32_t files = 0;
    std::uint64_t copiedBlocks = 0;
    std::uint64_t dividedBlocks = 0; ///< Inflated, since several files need different parts of them.
};

/// Splits a file into files that joinFiles() makes the same model of, in the order of their names. A block of numbers
/// that a part needs as a whole is copied as it is stored; of the others each part gets what it needs. A link to a
/// dataset of another part is followed: the first one in its file gets the numbers.
///
/// Takes memory for the tree, the descriptors and one block, and few open files at once.
/// @throws Failure if the file is not whole or the folder can't be made; there is then no such folder.
SplitSummary splitFile(const SplitRequest& request, const JoinProgress& progress);

} // namespace MoxTool
