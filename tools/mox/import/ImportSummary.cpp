#include "ImportSummary.h"

#include "../Terminal.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace MoxTool {

ImportSummary::ImportSummary(std::string outputFile) : output(std::move(outputFile)) {}

void ImportSummary::leave(const std::string& kind, const std::vector<std::string>& names) {
    if (!names.empty())
        left.push_back(fmt::format("{}: {} ({})", kind, names.size(), fmt::join(names, ", ")));
}

void ImportSummary::leave(const std::string& kind, std::int64_t count) {
    if (count != 0)
        left.push_back(fmt::format("{}: {}", kind, count));
}

void ImportSummary::tell(const std::string& sentence) {
    if (std::find(told.begin(), told.end(), sentence) == told.end())
        told.push_back(sentence);
}

std::vector<std::string> ImportSummary::lines() const {
    std::vector<std::string> all;
    all.push_back(fmt::format("{}: shapes: {}, nodes: {}, elements: {}, steps: {}, datasets: {}", output,
                              shapes, nodes, elements, steps, datasets));
    for (const auto& line : left)
        all.push_back("not taken: " + line);
    for (const auto& line : told)
        all.push_back("note: " + line);
    return all;
}

void ImportSummary::print(Terminal& terminal) const {
    for (const auto& line : lines())
        terminal.note(line);
}

} // namespace MoxTool
