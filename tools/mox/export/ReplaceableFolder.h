#pragma once

#include <filesystem>
#include <string>

namespace MoxTool {

/// A folder of files of one kind in the making, which can replace one of its kind: it grows under a temporary
/// name beside its target and gets the target's name when it is whole; otherwise it is removed.
class ReplaceableFolder {
public:
    /// Makes the temporary folder.
    ///
    /// @param extension Of all files in it, such as ".vtu".
    /// @param overwrite Whether commit() may replace an existing folder; one that holds anything but files of
    /// the
    ///                  extension is never replaced.
    /// @throws Failure if the target exists and must not be replaced, or if the temporary folder can't be
    /// made.
    ReplaceableFolder(std::filesystem::path target, std::string extension, bool overwrite);
    ReplaceableFolder(const ReplaceableFolder&) = delete;
    ReplaceableFolder& operator=(const ReplaceableFolder&) = delete;
    /// Removes the temporary folder, if it is still there. Never throws.
    ~ReplaceableFolder();

    const std::filesystem::path& temporaryPath() const { return temporary; }

    /// Gives the temporary folder the target's name. The files must be closed.
    /// @throws Failure if the target has appeared meanwhile and must not be replaced, or if renaming fails.
    void commit();

private:
    void checkTarget() const;

    std::filesystem::path target;
    std::string extension;
    std::filesystem::path temporary;
    bool overwrite;
};

} // namespace MoxTool
