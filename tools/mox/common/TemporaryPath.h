#pragma once

#include <filesystem>

namespace MoxTool {

/// A path under which a file or folder is written until it may have its target's name. What is there is
/// removed when this object is destroyed, and also when the process is ended from outside; see removeAll().
class TemporaryPath {
public:
    /// Chooses a path beside the target where nothing exists yet. Creates nothing.
    /// @param wanted The target.
    explicit TemporaryPath(const std::filesystem::path& target);
    TemporaryPath(const TemporaryPath&) = delete;
    TemporaryPath& operator=(const TemporaryPath&) = delete;
    /// Removes what is at the path; a folder with its contents. Never throws.
    ~TemporaryPath();

    const std::filesystem::path& path() const { return temporary_; }

    /// @throws Failure with the target's name if the folder can't be created.
    void createFolder() const;

    /// Renames what is at the path to the target.
    /// @throws Failure with the target's name if that fails.
    void moveToTarget() const;

    /// A path beside the target where nothing exists.
    static std::filesystem::path unusedBeside(const std::filesystem::path& target);

    /// Removes what is at the path of every object in this process. Other threads may go on using them.
    static void removeAll();

private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

} // namespace MoxTool
