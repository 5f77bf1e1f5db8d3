#pragma once

#include "../../exodus/ExodusFile.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace MoxTool {

/// The files of a decomposed Exodus model. Some stay open, since reading results goes over all of them again
/// and again; the others are opened each time, since systems bound the number of open files.
class ExodusPieces {
public:
    /// @param paths By rank.
    explicit ExodusPieces(std::vector<std::string> paths);

    std::size_t count() const { return paths_.size(); }
    const std::string& path(std::size_t rank) const { return paths_[rank]; }
    /// Without its folder and without control characters, for messages about another file.
    std::string name(std::size_t rank) const;
    /// @throws Failure if it can't be read.
    std::shared_ptr<const ExodusFile> open(std::size_t rank) const;

private:
    std::vector<std::string> paths_;
    mutable std::vector<std::shared_ptr<const ExodusFile>> opened_;
};

} // namespace MoxTool
