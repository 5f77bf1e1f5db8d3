#pragma once

#include "PartFile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace MoxTool {

/// What is joined, and how.
struct JoinRequest {
    std::vector<std::string>
        inputs; ///< The paths of whole model files, in the order in which they are merged.
    std::string output;
    bool overwrite = false;   ///< An existing output is replaced, once the new one is whole.
    bool preferFirst = false; ///< Of what clashes, the first file's is kept; otherwise it is an error.
    PartCheck check = PartCheck::Structure;
    /// Puts what is below the root of each file into a group of this name, and appends this to the names of its
    /// shapes; see expandPlaceholders(). Empty to do neither.
    std::string under = {};
    std::string suffix = {};
    /// Called with the path of the whole new file before it gets its name, unless empty. May throw to prevent that.
    std::function<void(const std::string&)> review = {};
};

/// What came of it.
struct JoinSummary {
    std::size_t files = 0;
    std::size_t nodes = 0;
    std::uint64_t datasets = 0;
    std::uint64_t numberBytes = 0;         ///< Before compression.
    std::vector<std::string> leftOut = {}; ///< A sentence for each thing.
};

/// Called with what is being done and the fraction of it that is done, from 0 to 1.
using JoinProgress = std::function<void(const char* work, double fraction)>;

/// Joins files into one whose tree has the nodes and datasets of all. Blocks of numbers are copied as they are stored.
///
/// One file is open at a time. Takes memory for the trees and the descriptors of all datasets, and time in proportion
/// to them and to the bytes that are copied. The same inputs give the same bytes, but for the date.
/// @throws Failure if the files don't fit together, if one is not whole or changes meanwhile, or if the output can't
///                 be written. Whatever has the output's name is then unchanged.
JoinSummary joinFiles(const JoinRequest& request, const JoinProgress& progress);

/// A text with {n} replaced by the place of a file among the inputs, from 1, {rank} by the same from 0, and {file} by
/// its name without the extension.
std::string expandPlaceholders(const std::string& pattern, std::size_t place, const std::string& path);

} // namespace MoxTool
