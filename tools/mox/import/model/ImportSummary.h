#pragma once

#include "../../common/ConversionSummary.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace MoxTool {

/// What an import took, what it skipped and what else the user should know: a ConversionSummary in the making,
/// in a form that can pass from one process to another. Texts can be as they are in the file; the finished
/// summary has them without control characters.
class ImportSummary {
public:
    // What was taken.
    std::int64_t shapes = 0;
    std::int64_t nodes = 0;
    std::int64_t elements = 0;
    std::int64_t steps = 0;
    std::int64_t datasets = 0;
    /// What has compressed the new file.
    std::string compressor;

    // As in ConversionSummary.
    void addSkipped(const std::string& kind, const std::vector<std::string>& names);
    void addSkipped(const std::string& kind, std::int64_t count);
    /// Adds what another summary has as skipped, but of each kind only the names that are not there yet.
    void addSkippedOf(const ImportSummary& other);
    void addNote(const std::string& sentence);

    /// Everything, as bytes.
    std::string pack() const;
    /// @param bytes What pack() has returned.
    /// @throws std::exception if they are cut off.
    static ImportSummary unpack(std::string_view bytes);

    /// @param output The path of the new file, as the user gave it.
    ConversionSummary finished(const std::string& output) const;

private:
    struct Skipped {
        std::string kind;
        std::int64_t count;
        std::vector<std::string> names; // none for things without names
    };

    std::vector<Skipped> skipped_;
    std::vector<std::string> notes_;
};

} // namespace MoxTool
