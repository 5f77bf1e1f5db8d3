#pragma once

#include <cstdint>
#include <string>

namespace MoxTool {

/// Refuses work out of all proportion to a file. Links and instances let many datasets share numbers, so that
/// a file of a few KiB can ask for gigabytes. 256 MiB are always fine, and so is a hundred times the size of
/// the file, which meaningful models hardly reach.
class WorkLimit {
public:
    /// The option by which a user asks to go on, and its line in the help.
    static constexpr const char* Option = "--no-limit";
    static constexpr const char* Help = "Go on even if the work is out of all proportion to the file";

    /// @param file     The file's path as the user gave it.
    /// @param fileSize In bytes.
    /// @param isOff    Whether the user asks to go on.
    /// @param alwaysFine What needs no further reason, in bytes.
    WorkLimit(std::string file, std::uint64_t fileSize, bool isOff,
              std::uint64_t alwaysFine = std::uint64_t{256} << 20U);

    /// To be called before numbers of this size are read or written.
    /// @param times How often.
    /// @throws Failure if that makes too much in total.
    void add(std::uint64_t bytes, std::uint64_t times = 1);
    /// Whether add() would take it.
    bool allows(std::uint64_t bytes, std::uint64_t times = 1) const;
    /// What has been added so far; 0 without a limit.
    std::uint64_t total() const { return total_; }

private:
    std::string file_;
    std::uint64_t fileSize_;
    bool isOff_;
    std::uint64_t mostBytes_;
    std::uint64_t total_ = 0;
};

} // namespace MoxTool
