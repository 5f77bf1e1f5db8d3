#include "CheckReport.h"

#include "../common/Platform.h"
#include "../common/TextTable.h"
#include "../common/numberText.h"
#include "../common/visibleText.h"
#include "../common/wrapText.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <array>
#include <string_view>
#include <vector>

namespace MoxTool {

namespace {

std::string_view verdictName(Verdict verdict) {
    constexpr std::array<std::string_view, 4> Names = {"whole", "warnings", "errors", "unreadable"};
    return Names[static_cast<std::size_t>(verdict)];
}

int number(RuleId rule) {
    return static_cast<int>(rule);
}

Palette::Colour colourOf(Level level) {
    constexpr std::array Colours = {Palette::Dim, Palette::Bold, Palette::Red};
    return Colours[static_cast<std::size_t>(level)];
}

/// The place of a finding, from the file down to the model; empty if it has none.
std::string placeText(const FindingPlace& place) {
    std::vector<std::string> parts;
    if (place.offset) {
        parts.push_back(fmt::format("offset {}", *place.offset));
    }
    if (place.block) {
        parts.push_back(fmt::format("block {}", *place.block));
    }
    if (!place.stream.empty()) {
        parts.push_back(fmt::format("\"{}\"{}", visibleText(place.stream),
                                    place.streamOffset ? fmt::format(" at {}", *place.streamOffset) : ""));
    }
    if (place.node) {
        parts.push_back(fmt::format("node {} {}", *place.node, place.path));
    }
    if (place.dataset) {
        parts.push_back(fmt::format("dataset {} \"{}\"", *place.dataset, visibleText(place.key)));
    }
    return fmt::format("{}", fmt::join(parts, ", "));
}

Json toJson(const Finding& finding) {
    const auto& rule = ruleOf(finding.rule);
    const auto& place = finding.place;
    Json json = {{"rule", number(rule.id)},
                 {"level", levelName(rule.level)},
                 {"title", rule.title},
                 {"reason", finding.reason}};
    const auto addNumber = [&](const char* key, const auto& value) {
        if (value) {
            json[key] = *value;
        }
    };
    addNumber("offset", place.offset);
    addNumber("block", place.block);
    if (!place.stream.empty()) {
        json["stream"] = jsonText(place.stream);
    }
    addNumber("streamOffset", place.streamOffset);
    addNumber("node", place.node);
    if (place.node) {
        json["path"] = place.path;
    }
    addNumber("dataset", place.dataset);
    if (place.dataset) {
        json["key"] = jsonText(place.key);
    }
    return json;
}

std::string plural(std::uint64_t count, Level level) {
    return countText(count, std::string(levelName(level)));
}

std::string summaryText(const FindingList& findings) {
    if (findings.isEmpty()) {
        return "whole";
    }
    const auto counts = fmt::format("{}, {}, {}", plural(findings.count(Level::Error), Level::Error),
                                    plural(findings.count(Level::Warning), Level::Warning),
                                    plural(findings.count(Level::Note), Level::Note));
    return findings.count(Level::Error) == 0 ? "whole; " + counts : counts;
}

} // namespace

Verdict judge(const FindingList& findings, bool strict) {
    if (findings.count(Level::Error) > 0) {
        return Verdict::Errors;
    }
    if (findings.count(Level::Warning) > 0) {
        return strict ? Verdict::Errors : Verdict::Warnings;
    }
    return Verdict::Whole;
}

void printFindings(std::FILE* out, const std::string& path, const FindingList& findings,
                   const Palette& palette) {
    const auto name = visibleText(path);
    for (const auto& finding : findings.findings()) {
        const auto& rule = ruleOf(finding.rule);
        const auto place = placeText(finding.place);
        fmt::print(out, "{}: {} {} {}{}{}: {}\n", name,
                   palette.paint(colourOf(rule.level), levelName(rule.level)), number(rule.id), rule.title,
                   place.empty() ? "" : ", ", place, finding.reason);
    }
    for (const auto& [rule, count] : findings.notKept()) {
        fmt::print(out, "{}: {} more of rule {}; --limit 0 lists all\n", name, count, number(rule));
    }
}

void printVerdict(std::FILE* out, const std::string& path, const FindingList& findings) {
    fmt::print(out, "{}: {}\n", visibleText(path), summaryText(findings));
}

FileVerdict::FileVerdict(const std::string& file, Verdict result, const FindingList& findings)
    : path(file),
      verdict(result),
      errors(findings.count(Level::Error)),
      warnings(findings.count(Level::Warning)),
      notes(findings.count(Level::Note)) {}

void printTable(std::FILE* out, const std::vector<FileVerdict>& files) {
    TextTable table;
    table.add({"file", "verdict", "errors", "warnings", "notes"});
    for (const auto& file : files) {
        std::vector<std::string> row = {visibleText(file.path), std::string(verdictName(file.verdict))};
        for (const auto count : {file.errors, file.warnings, file.notes}) {
            row.push_back(file.verdict == Verdict::Unreadable ? "-" : std::to_string(count));
        }
        table.add(std::move(row));
    }
    table.print(out);
}

void printReport(JsonStream& out, const std::string& path, const FindingList& findings, Verdict verdict) {
    out.beginObject();
    out.key("file");
    out.value(jsonText(path));
    out.key("verdict");
    out.value(verdictName(verdict));
    for (const auto level : {Level::Error, Level::Warning, Level::Note}) {
        out.key(std::string(levelName(level)) + "s");
        out.value(findings.count(level));
    }
    out.key("findings");
    out.beginArray();
    for (const auto& finding : findings.findings()) {
        out.value(toJson(finding));
    }
    out.endArray();
    out.key("notListed");
    auto rest = Json::object();
    for (const auto& [rule, count] : findings.notKept()) {
        rest[std::to_string(number(rule))] = count;
    }
    out.value(rest);
    out.endObject();
}

void printUnreadable(JsonStream& out, const std::string& path, const std::string& reason) {
    out.value(Json{{"file", jsonText(path)},
                   {"verdict", verdictName(Verdict::Unreadable)},
                   {"reason", jsonText(reason)}});
}

void printRules(std::FILE* out) {
    constexpr std::size_t MeaningColumn = 37;
    const auto width = Platform::terminalWidth(out);
    for (const auto& rule : allRules()) {
        const auto line = fmt::format("{}  {:<7}  {:<21}  {}", number(rule.id), levelName(rule.level),
                                      rule.title, rule.meaning);
        fmt::print(out, "{}\n", width == 0 ? line : wrapLine(line, readableWidth(width), MeaningColumn));
    }
}

void printRules(JsonStream& out) {
    out.beginArray();
    for (const auto& rule : allRules()) {
        out.value(Json{{"rule", number(rule.id)},
                       {"level", levelName(rule.level)},
                       {"title", rule.title},
                       {"meaning", rule.meaning}});
    }
    out.endArray();
}

} // namespace MoxTool
