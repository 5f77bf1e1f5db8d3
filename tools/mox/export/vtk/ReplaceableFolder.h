#pragma once

#include "../../common/TemporaryPath.h"

#include <filesystem>
#include <string>

namespace MoxTool {

/// A folder of files of one kind in the making, which can replace another such folder: it is filled under a
/// temporary name beside its target and gets the target's name when it is complete; otherwise it is removed.
/// For a symbolic link the target is the folder that it leads to.
class ReplaceableFolder {
public:
    /// Creates the temporary folder.
    ///
    /// @param path             The target.
    /// @param extension Such as ".vtu".
    /// @param overwrite Whether commit() may replace an existing folder; one that holds anything but
    ///                         files of the extension is never replaced.
    /// @throws Failure if the target exists and must not be replaced, or if the temporary folder can't be
    ///                 made.
    ReplaceableFolder(std::filesystem::path target, std::string extension, bool overwrite);

    const std::filesystem::path& temporaryPath() const { return temporary_.path(); }

    /// Renames the temporary folder to the target. The files must be closed.
    /// @throws Failure if the target has appeared meanwhile and must not be replaced, or if renaming fails.
    void commit();

private:
    const std::filesystem::path& checkedTarget() const;

    std::filesystem::path target_;
    std::string extension_;
    bool overwrite_;
    TemporaryPath temporary_;
};

} // namespace MoxTool
