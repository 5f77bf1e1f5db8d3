#pragma once

#include "Support/TemporaryFolder.h"
#include "program/runMox.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Program {

/// A command of mox at work on small files, and what it does if nothing goes wrong.
class Work {
public:
    /// @param arguments IN/ and OUT/ at the beginning of a word stand for the folder of the inputs and for that of what
    ///                  is written.
    /// @param inputs    The folder of the inputs.
    Work(std::vector<std::string> arguments, const std::string& inputs);

    /// Those that only read, those that write files, and those that write files with a library of another format.
    static std::vector<Work> reading(const std::string& inputs);
    static std::vector<Work> writing(const std::string& inputs);
    static std::vector<Work> converting(const std::string& inputs);
    /// Saves the files that the works take into a folder.
    static void makeInputs(const std::string& folder);

    /// The command line, for messages.
    std::string name() const;

    /// Does the work, with an empty folder for what it writes. In what it says this folder is OUT again.
    End run(const Circumstances& circumstances);

    /// The lines on stderr that are not there if nothing goes wrong.
    std::vector<std::string> addedMessages(const End& end) const;

    /// Whether it did all that it does if nothing goes wrong.
    /// @return what is wrong otherwise; empty if nothing is.
    std::string missing(const End& end) const;
    /// What stands half-written under a final name; and, unless they may stay, temporary files.
    /// @return what is wrong; empty if nothing is.
    std::string halfWritten(bool mayLeaveTemporaryFiles) const;

    /// The size of the largest file that it writes.
    std::size_t largestFile() const;
    const End& soundEnd() const { return soundEnd_; }

private:
    using Files = std::map<std::string, std::string>;

    Files written() const;
    static bool isComplete(const std::string& path, const std::string& content, const std::string& sound);

    std::vector<std::string> arguments_;
    std::string inputs_;
    std::shared_ptr<Support::TemporaryFolder> outputs_;
    End soundEnd_;
    Files soundFiles_;
};

} // namespace Program
