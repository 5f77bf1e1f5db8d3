#pragma once

#include "TemporaryPath.h"

#include <filesystem>

namespace MoxTool {

/// A folder in the making. It is filled under a temporary name beside its target and gets the target's name
/// when it is complete; otherwise it is removed with its contents. It never replaces anything. For a symbolic
/// link that leads nowhere the target is where it leads.
class OutputFolder {
public:
    /// Creates the folder under its temporary name.
    /// @param path The target.
    /// @throws Failure if the target exists, if its parent folder does not, or if the folder can't be
    ///                 created.
    explicit OutputFolder(std::filesystem::path path);

    const std::filesystem::path& temporaryPath() const { return temporary_.path(); }

    /// Renames the folder to the target. Its files must be closed.
    /// @throws Failure if the target has appeared meanwhile or if renaming fails.
    void commit();

private:
    const std::filesystem::path& checkedTarget() const;

    std::filesystem::path target_;
    TemporaryPath temporary_;
};

} // namespace MoxTool
