#include "printValues.h"

#include "../common/NodePaths.h"
#include "../common/TextTable.h"
#include "../common/datasetText.h"
#include "../common/numberText.h"
#include "../common/stepText.h"
#include "../common/visibleText.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace MoxTool {

namespace {

bool isInteger(const ValueRow& row) {
    return row.holder->elementTag == MoxReader::Format::UnsignedTag;
}

// A table of six columns of numbers has to fit a terminal.
std::string roundedText(double number) {
    return fmt::format("{:.5g}", number + 0.0); // -0 becomes 0
}

std::string extremeText(const ValueRow& row, double number) {
    return isInteger(row) ? fmt::format("{:.0f}", number) : roundedText(number);
}

std::string placeText(const ValuePlace& place, bool withStep) {
    auto text = fmt::format("{}/{}", place.node, place.row);
    if (withStep && place.step != ValuePlace::NoStep) {
        text += fmt::format("/{}", place.step + 1);
    }
    return text;
}

// The name with the type, where datasets of one name have several.
std::string rowTitle(const ValueRow& row, std::size_t component, bool withType) {
    auto title = visibleText(row.first->name);
    if (withType) {
        title += fmt::format(" ({})", variableTypeText(*row.first));
    }
    const auto name = row.componentName(component);
    return name.empty() ? title : fmt::format("{} {}", title, visibleText(name));
}

// The columns for numbers that are not finite stand only where there are some.
class ValueTable {
public:
    explicit ValueTable(const std::vector<const ValueRow*>& rows) {
        for (const auto* row : rows) {
            types_[row->first->name].insert(row->first->variableType);
            for (const auto& tally : row->components) {
                hasNans_ = hasNans_ || tally.nans > 0;
                hasInfinities_ = hasInfinities_ || tally.infinities > 0;
            }
        }
        std::vector<std::string> head = {"dataset", "min", "at", "max", "at", "mean"};
        if (hasNans_) {
            head.emplace_back("NaN");
        }
        if (hasInfinities_) {
            head.emplace_back("inf");
        }
        table_.add(std::move(head));
        for (const auto* row : rows) {
            for (std::size_t component = 0; component < row->components.size(); ++component) {
                add(*row, component);
            }
        }
    }

    void print(std::FILE* out) const { table_.print(out); }

private:
    void add(const ValueRow& row, std::size_t component) {
        const auto& tally = row.components[component];
        std::vector<std::string> cells = {
            rowTitle(row, component, types_[row.first->name].size() > 1), "-", "-", "-", "-", "-"};
        if (tally.finite() > 0) {
            const bool withStep = !row.step;
            cells = {cells.front(),
                     extremeText(row, tally.least),
                     placeText(tally.leastAt, withStep),
                     extremeText(row, tally.greatest),
                     placeText(tally.greatestAt, withStep),
                     roundedText(tally.mean())};
        }
        if (hasNans_) {
            cells.push_back(std::to_string(tally.nans));
        }
        if (hasInfinities_) {
            cells.push_back(std::to_string(tally.infinities));
        }
        table_.add(std::move(cells));
    }

    TextTable table_;
    std::map<std::string, std::set<std::uint32_t>> types_;
    bool hasNans_ = false;
    bool hasInfinities_ = false;
};

bool hasSteps(const std::vector<ValueRow>& rows) {
    return std::ranges::any_of(rows, [](const ValueRow& row) { return !row.first->step.empty(); });
}

Json placeJson(const ValuePlace& place, const ModelSteps& steps, const NodePaths& paths) {
    Json json = {{"node", jsonText(paths.of(place.node))}, {"id", place.node}, {"row", place.row}};
    if (place.step != ValuePlace::NoStep) {
        json["step"] = jsonText(steps.all()[place.step].name);
    }
    return json;
}

Json extremeJson(const ValueRow& row, double number) {
    return isInteger(row) ? Json(static_cast<std::uint32_t>(number)) : jsonNumber(static_cast<float>(number));
}

Json toJson(const ValueRow& row, std::size_t component, const ModelSteps& steps, const NodePaths& paths) {
    const auto& tally = row.components[component];
    Json json = {{"dataset", jsonText(row.first->name)},
                 {"type", variableTypeText(*row.first)},
                 {"element", elementTypeText(*row.holder)}};
    if (row.step) {
        const auto& step = steps.all()[*row.step];
        json["step"] = jsonText(step.name);
        json["stepNumber"] = *row.step + 1;
        if (step.time) {
            json["time"] = jsonNumber(*step.time);
        }
        if (step.frequency) {
            json["frequency"] = jsonNumber(*step.frequency);
        }
    }
    json["component"] = component + 1;
    if (const auto name = row.componentName(component); !name.empty()) {
        json["componentName"] = jsonText(name);
    }
    json["count"] = tally.count;
    json["nan"] = tally.nans;
    json["infinite"] = tally.infinities;
    if (tally.finite() > 0) {
        json["min"] = extremeJson(row, tally.least);
        json["minAt"] = placeJson(tally.leastAt, steps, paths);
        json["max"] = extremeJson(row, tally.greatest);
        json["maxAt"] = placeJson(tally.greatestAt, steps, paths);
        json["mean"] = jsonNumber(tally.mean());
    }
    return json;
}

} // namespace

void printValues(std::FILE* out, const std::vector<ValueRow>& rows, const ModelSteps& steps) {
    std::map<std::optional<std::size_t>, std::vector<const ValueRow*>> tables;
    for (const auto& row : rows) {
        tables[row.step].push_back(&row);
    }
    bool overSteps = false;
    for (const auto& [step, table] : tables) {
        if (step) {
            fmt::print(out, "step {}\n", stepText(steps, *step));
        }
        ValueTable(table).print(out);
        fmt::print(out, "\n");
        overSteps = overSteps || (!step && hasSteps(rows) && tables.size() == 1);
    }
    fmt::print(out, "at: the geometry's id in mox tree / the row (node or element), from 0{}\n",
               overSteps ? " / the step, from 1" : "");
}

void printValues(JsonStream& out, const std::vector<ValueRow>& rows, const ModelSteps& steps,
                 const MoxReader::Model& model) {
    const NodePaths paths(model.nodes());
    out.beginArray();
    for (const auto& row : rows) {
        for (std::size_t component = 0; component < row.components.size(); ++component) {
            out.value(toJson(row, component, steps, paths));
        }
    }
    out.endArray();
}

} // namespace MoxTool
