#include "ConversionSummary.h"

#include "Terminal.h"
#include "visibleText.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace MoxTool {

ConversionSummary::ConversionSummary(std::string output) : output_(std::move(output)) {}

void ConversionSummary::addSkipped(const std::string& kind, const std::vector<std::string>& names) {
    if (!names.empty()) {
        skipped_.push_back({kind, static_cast<std::int64_t>(names.size()), names});
    }
}

void ConversionSummary::addSkipped(const std::string& kind, std::int64_t count) {
    if (count != 0) {
        skipped_.push_back({kind, count, {}});
    }
}

void ConversionSummary::addNote(const std::string& sentence) {
    if (std::find(notes_.begin(), notes_.end(), sentence) == notes_.end()) {
        notes_.push_back(sentence);
    }
}

std::vector<std::string> ConversionSummary::lines(bool verbose) const {
    std::vector<std::string> all;
    all.push_back(fmt::format("{}: shapes: {}, nodes: {}, elements: {}, steps: {}, datasets: {}",
                              visibleText(output_), shapes, nodes, elements, steps, datasets));
    if (!compressor.empty()) {
        all.back() += ", compressor: " + compressor;
    }
    for (const auto& skipped : skipped_) {
        all.push_back("not taken: " + text(skipped, verbose));
    }
    for (const auto& line : notes_) {
        all.push_back("note: " + line);
    }
    return all;
}

std::string ConversionSummary::text(const Skipped& skipped, bool verbose) {
    constexpr std::size_t MostNames = 10;
    auto text = fmt::format("{}: {}", visibleText(skipped.kind), skipped.count);
    if (skipped.names.empty()) {
        return text;
    }
    const auto shown = verbose ? skipped.names.size() : std::min(MostNames, skipped.names.size());
    for (std::size_t i = 0; i < shown; ++i) {
        text += (i == 0 ? " (" : ", ") + visibleText(skipped.names[i]);
    }
    if (shown < skipped.names.size()) {
        text += fmt::format(" and {} more; --verbose lists all", skipped.names.size() - shown);
    }
    return text + ")";
}

void ConversionSummary::print(Terminal& terminal, bool verbose) const {
    for (const auto& line : lines(verbose)) {
        terminal.note(line);
    }
}

} // namespace MoxTool
