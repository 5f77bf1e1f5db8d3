#include "ImportSummary.h"

#include "../../common/visibleText.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace MoxTool {

void ImportSummary::addSkipped(const std::string& kind, const std::vector<std::string>& names) {
    if (!names.empty()) {
        skipped_.push_back({kind, 0, names});
    }
}

void ImportSummary::addSkipped(const std::string& kind, std::int64_t count) {
    skipped_.push_back({kind, count, {}});
}

void ImportSummary::addSkippedOf(const ImportSummary& other) {
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

void ImportSummary::addNote(const std::string& sentence) {
    if (std::ranges::find(notes_, sentence) == notes_.end()) {
        notes_.push_back(sentence);
    }
}

// Binary JSON, unlike its text, takes any bytes as a text.
std::string ImportSummary::pack() const {
    auto skipped = nlohmann::json::array();
    for (const auto& things : skipped_) {
        skipped.push_back({things.kind, things.count, things.names});
    }
    std::string bytes;
    nlohmann::json::to_cbor({{shapes, nodes, elements, steps, datasets}, skipped, notes_, compressor}, bytes);
    return bytes;
}

ImportSummary ImportSummary::unpack(std::string_view bytes) {
    const auto all = nlohmann::json::from_cbor(bytes);
    ImportSummary summary;
    const auto& counts = all.at(0);
    summary.shapes = counts.at(0);
    summary.nodes = counts.at(1);
    summary.elements = counts.at(2);
    summary.steps = counts.at(3);
    summary.datasets = counts.at(4);
    for (const auto& things : all.at(1)) {
        summary.skipped_.push_back({things.at(0), things.at(1), things.at(2)});
    }
    summary.notes_ = all.at(2).get<std::vector<std::string>>();
    summary.compressor = all.at(3);
    return summary;
}

ConversionSummary ImportSummary::finished(const std::string& output) const {
    ConversionSummary summary(output);
    summary.shapes = shapes;
    summary.nodes = nodes;
    summary.elements = elements;
    summary.steps = steps;
    summary.datasets = datasets;
    summary.compressor = compressor;
    for (const auto& things : skipped_) {
        if (things.names.empty()) {
            summary.addSkipped(things.kind, things.count);
        } else {
            summary.addSkipped(things.kind, things.names);
        }
    }
    for (const auto& sentence : notes_) {
        summary.addNote(visibleText(sentence));
    }
    return summary;
}

} // namespace MoxTool
