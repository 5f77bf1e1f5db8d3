#pragma once

#include <MoxReader/MemorySource.h>
#include <check/FileCheck.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What a check finds in a source.
inline MoxTool::FindingList findingsIn(const std::shared_ptr<MoxReader::Source>& source) {
    MoxTool::FindingList findings;
    MoxTool::checkFile(source, findings, [](double) {});
    return findings;
}

inline MoxTool::FindingList findingsIn(std::vector<std::uint8_t> bytes) {
    return findingsIn(std::make_shared<MoxReader::MemorySource>(std::move(bytes)));
}

/// The numbers of the broken rules, each as often as it is broken.
inline std::vector<int> rulesIn(const MoxTool::FindingList& findings) {
    std::vector<int> rules;
    for (const auto& finding : findings.findings()) {
        rules.push_back(static_cast<int>(finding.rule));
    }
    return rules;
}

inline bool breaks(const MoxTool::FindingList& findings, int rule) {
    return std::ranges::count(rulesIn(findings), rule) > 0;
}
