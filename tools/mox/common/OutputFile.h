#pragma once

#include <filesystem>

namespace MoxTool {

/// A file in the making. It grows under a temporary name beside its target and gets the target's name when it
/// is whole; otherwise it is removed. So what stands under the target's name is never half-written.
class OutputFile {
public:
    /// Chooses the temporary name. Creates nothing.
    ///
    /// @param overwrite Whether commit() may replace an existing file.
    /// @throws Failure if the target exists and must not be replaced, if it is no regular file, or if its
    /// folder
    ///         does not exist.
    OutputFile(std::filesystem::path target, bool overwrite);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Removes the temporary file, if there is one. Never throws.
    ~OutputFile();

    /// Where the file is to be written: no file of this name exists at first.
    const std::filesystem::path& temporaryPath() const { return temporary; }

    /// Gives the temporary file the target's name. The file must be closed.
    /// @throws Failure if the target has appeared meanwhile and must not be replaced, or if renaming fails.
    void commit();

private:
    void checkTarget() const;

    std::filesystem::path target;
    std::filesystem::path temporary;
    bool overwrite;
};

} // namespace MoxTool
