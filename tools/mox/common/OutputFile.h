#pragma once

#include "TemporaryPath.h"

#include <filesystem>

namespace MoxTool {

/// A file in the making. It is written under a temporary name beside its target and gets the target's name
/// when it is complete; otherwise it is removed. So the file of the target's name is never half-written.
class OutputFile {
public:
    /// Chooses the temporary name. Creates nothing.
    ///
    /// @param path         The target.
    /// @param mayOverwrite Whether commit() may replace an existing file.
    /// @throws Failure if the target exists and must not be replaced, if it is no regular file, or if its
    ///                 folder does not exist.
    OutputFile(std::filesystem::path target, bool overwrite);

    /// Where the file is to be written: no file of this name exists at first.
    const std::filesystem::path& temporaryPath() const { return temporary_.path(); }

    /// Renames the temporary file to the target. The file must be closed.
    /// @throws Failure if the target has appeared meanwhile and must not be replaced, or if renaming fails.
    void commit();

private:
    const std::filesystem::path& checkedTarget() const;

    std::filesystem::path target_;
    bool overwrite_;
    TemporaryPath temporary_;
};

} // namespace MoxTool
