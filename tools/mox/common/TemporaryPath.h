#pragma once

#include <filesystem>

namespace MoxTool {

/// A path under which a file or folder is written until it may have its target's name. What is there is
/// removed when this object is destroyed, and also when the process is ended from outside; see
/// removeAllForGood().
class TemporaryPath {
public:
    /// Chooses a path beside the target where nothing exists yet. Creates nothing.
    /// @param target What is to be written in the end.
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

    /// Renames what is at the path to the target, which exists, and removes what was there. One of the two has
    /// the target's name at all times except for a moment, and an interruption does not come between.
    /// @throws Failure with the target's name if that fails; the target is then as it was.
    void replaceTarget() const;

    /// Removes what is at the path of every object in this process, which is about to end. Another thread that
    /// calls a function of an object after that, its destructor as well, waits for the end.
    static void removeAllForGood();

private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
};

} // namespace MoxTool
