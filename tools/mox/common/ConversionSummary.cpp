#include "ConversionSummary.h"

#include "Terminal.h"
#include "visibleText.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

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

void ConversionSummary::addSkippedOf(const ConversionSummary& other) {
    for (const auto& things : other.skipped_) {
        const auto known = std::ranges::find(skipped_, things.kind, &Skipped::kind);
        if (known == skipped_.end()) {
            skipped_.push_back(things);
            continue;
        }
        known->count = std::max(known->count, things.count);
        for (const auto& name : things.names) {
            if (std::ranges::find(known->names, name) == known->names.end()) {
                known->names.push_back(name);
            }
        }
    }
}

void ConversionSummary::addNote(const std::string& sentence) {
    if (std::find(notes_.begin(), notes_.end(), sentence) == notes_.end()) {
        notes_.push_back(sentence);
    }
}

// Binary JSON, unlike its text, takes any bytes as a text.
std::string ConversionSummary::pack() const {
    auto skipped = nlohmann::json::array();
    for (const auto& things : skipped_) {
        skipped.push_back({things.kind, things.count, things.names});
    }
    std::string bytes;
    nlohmann::json::to_cbor(
        {output_, {shapes, nodes, elements, steps, datasets}, compressor, skipped, notes_}, bytes);
    return bytes;
}

ConversionSummary ConversionSummary::unpack(std::string_view bytes) {
    const auto all = nlohmann::json::from_cbor(bytes);
    ConversionSummary summary(all.at(0));
    const auto& counts = all.at(1);
    summary.shapes = counts.at(0);
    summary.nodes = counts.at(1);
    summary.elements = counts.at(2);
    summary.steps = counts.at(3);
    summary.datasets = counts.at(4);
    summary.compressor = all.at(2);
    for (const auto& things : all.at(3)) {
        summary.skipped_.push_back({things.at(0), things.at(1), things.at(2)});
    }
    summary.notes_ = all.at(4).get<std::vector<std::string>>();
    return summary;
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
        all.push_back("note: " + visibleText(line));
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
