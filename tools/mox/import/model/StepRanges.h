#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Which of a file's steps an import takes: those in the user's ranges, or all.
class StepRanges {
public:
    /// @param ranges Of numbers from 1: "3", "2:5", or "7:last"; "first" is 1. None for everything.
    /// @throws std::invalid_argument for a text that is no such range.
    explicit StepRanges(const std::vector<std::string>& ranges);

    /// What is wrong with a range; nothing if it is fine.
    static std::string problemOf(const std::string& range);

    /// @param index From 0.
    bool takes(std::size_t index) const;

    /// @param path  The path of the file, for the message.
    /// @param count The number of its steps.
    /// @throws Failure if a range holds none of them.
    void check(const std::string& path, std::size_t count) const;

private:
    struct Range {
        std::string text;
        std::size_t first;
        std::size_t last;
    };

    static Range parse(const std::string& text);

    std::vector<Range> ranges_;
};

} // namespace MoxTool
