#pragma once

#include "TemporaryPath.h"

#include <filesystem>

namespace MoxTool {

/// A folder in the making. It fills under a temporary name beside its target and gets the target's name when
/// it is complete; otherwise it is removed with all that is in it. It never replaces anything.
class OutputFolder {
public:
    /// Creates the folder under its temporary name.
    /// @param path The target.
    /// @throws Failure if the target exists, if the folder that is to hold it does not, or if it can't be
    ///                 made.
    explicit OutputFolder(std::filesystem::path path);

    const std::filesystem::path& temporaryPath() const { return temporary_.path(); }

    /// Gives the folder the target's name. Its files must be closed.
    /// @throws Failure if the target has appeared meanwhile or if renaming fails.
    void commit();

private:
    const std::filesystem::path& checkedTarget() const;

    std::filesystem::path target_;
    TemporaryPath temporary_;
};

} // namespace MoxTool
