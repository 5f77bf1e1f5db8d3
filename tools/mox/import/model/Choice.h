#pragma once

#include <set>
#include <string>
#include <vector>

namespace MoxTool {

/// Which of a file's things of one kind an import takes: those that the user has named, or all.
class Choice {
public:
    /// @param kind     In the singular, such as "block".
    /// @param patterns What the user has named, with * and ? as in matchesGlob(); none for everything.
    Choice(std::string kind, std::vector<std::string> patterns);

    /// Whether a thing is to be taken. Every thing of the file must be asked for before check().
    /// @param name   What messages call the thing.
    /// @param others Further names of it, such as its id.
    bool takes(const std::string& name, const std::vector<std::string>& others = {});

    /// @param path The path of the file, for the message.
    /// @throws Failure if something that the user has named is not there; it lists what there is.
    void check(const std::string& path) const;

private:
    std::string kind_;
    std::vector<std::string> patterns_;
    std::set<std::string> matched_; // patterns
    std::vector<std::string> present_;
};

} // namespace MoxTool
