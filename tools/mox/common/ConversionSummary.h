#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace MoxTool {

class Terminal;

/// What an import or an export took, what it skipped, and what else the user should know. It takes texts with
/// whatever bytes they have and shows them without control characters.
class ConversionSummary {
public:
    /// @param output The path of the new file, as the user gave it.
    explicit ConversionSummary(std::string output);

    // What was taken.
    std::int64_t shapes = 0;
    std::int64_t nodes = 0;
    std::int64_t elements = 0;
    std::int64_t steps = 0;
    std::int64_t datasets = 0;
    /// What has compressed the new file; empty if nothing has.
    std::string compressor;

    /// Notes that things of one kind were skipped. Does nothing without names.
    /// @param kind  In the plural, such as "side sets".
    /// @param names One for each thing.
    void addSkipped(const std::string& kind, const std::vector<std::string>& names);
    /// The same for things without names. Does nothing for 0.
    void addSkipped(const std::string& kind, std::int64_t count);
    /// Notes what another summary has as skipped, but of each kind only the names that are not there yet.
    void addSkippedOf(const ConversionSummary& other);
    /// Notes a fact, one sentence without a full stop. Repetitions are dropped.
    void addNote(const std::string& sentence);

    /// Everything, as bytes that can pass from one process to another.
    std::string pack() const;
    /// @param bytes What pack() has returned.
    /// @throws std::exception if they are cut off.
    static ConversionSummary unpack(std::string_view bytes);

    /// The whole summary, one line each.
    /// @param verbose Whether all names of what was skipped are listed and not only the first ten of a kind.
    std::vector<std::string> lines(bool verbose = false) const;
    /// Writes the lines.
    void print(Terminal& terminal, bool verbose) const;

private:
    struct Skipped {
        std::string kind;
        std::int64_t count;
        std::vector<std::string> names; // as many as there are, or none
    };

    static std::string text(const Skipped& skipped, bool verbose);

    std::string output_;
    std::vector<Skipped> skipped_;
    std::vector<std::string> notes_;
};

} // namespace MoxTool
