#pragma once

#include "TemporaryPath.h"

#include <filesystem>

namespace MoxTool {

/// A file in the making. It is written under a temporary name beside its target and gets the target's name
/// when it is complete; otherwise it is removed. So the file of the target's name is never half-written.
///
/// A symbolic link stays: the target is the file that it leads to. A device or a pipe stays as well, and "-"
/// stands for stdout: the bytes are sent there when the file is complete.
class OutputFile {
public:
    /// Chooses the temporary name. Creates nothing.
    ///
    /// @param path         The target.
    /// @param mayOverwrite Whether commit() may replace an existing file.
    /// @throws Failure if the target exists and must not be replaced, if it is a folder, or if the folder that
    ///                 is to hold it does not exist.
    OutputFile(std::filesystem::path path, bool mayOverwrite);

    /// Where the file is to be written: no file of this name exists at first.
    const std::filesystem::path& temporaryPath() const { return temporary_.path(); }

    /// Creates a folder in place of the temporary file, for what the file is put together of; another object then puts
    /// it there. Removed with its contents as the file would be.
    /// @throws Failure if it can't be created.
    void createFolder() const { temporary_.createFolder(); }

    /// Renames the temporary file to the target, or sends its bytes there. The file must be closed.
    /// @throws Failure if the target has appeared meanwhile and must not be replaced, or if renaming or
    ///                 writing fails.
    void commit();

private:
    const std::filesystem::path& checkedTarget() const;
    void send() const;

    std::filesystem::path path_; ///< As the user gave it.
    bool overwrite_;
    bool isStream_;
    std::filesystem::path target_;
    TemporaryPath temporary_;
};

} // namespace MoxTool
