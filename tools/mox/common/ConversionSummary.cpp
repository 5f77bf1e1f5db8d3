#include "ConversionSummary.h"

#include "Terminal.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace MoxTool {

ConversionSummary::ConversionSummary(std::string output) : output_(std::move(output)) {}

void ConversionSummary::addSkipped(const std::string& kind, const std::vector<std::string>& names) {
    if (!names.empty()) {
        skipped_.push_back(fmt::format("{}: {} ({})", kind, names.size(), fmt::join(names, ", ")));
    }
}

void ConversionSummary::addSkipped(const std::string& kind, std::int64_t count) {
    if (count != 0) {
        skipped_.push_back(fmt::format("{}: {}", kind, count));
    }
}

void ConversionSummary::addNote(const std::string& sentence) {
    if (std::find(notes_.begin(), notes_.end(), sentence) == notes_.end()) {
        notes_.push_back(sentence);
    }
}

std::vector<std::string> ConversionSummary::lines() const {
    std::vector<std::string> all;
    all.push_back(fmt::format("{}: shapes: {}, nodes: {}, elements: {}, steps: {}, datasets: {}", output_,
                              shapes, nodes, elements, steps, datasets));
    if (!compressor.empty()) {
        all.back() += ", compressor: " + compressor;
    }
    for (const auto& line : skipped_) {
        all.push_back("not taken: " + line);
    }
    for (const auto& line : notes_) {
        all.push_back("note: " + line);
    }
    return all;
}

void ConversionSummary::print(Terminal& terminal) const {
    for (const auto& line : lines()) {
        terminal.note(line);
    }
}

} // namespace MoxTool
