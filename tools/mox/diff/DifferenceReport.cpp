#include "DifferenceReport.h"

#include "../common/JsonStream.h"
#include "../common/datasetTitle.h"
#include "../common/numberText.h"
#include "../common/visibleText.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdio>

namespace MoxTool {

namespace {

bool isOfNode(const Difference& difference) {
    return difference.idA != 0 || difference.idB != 0;
}

std::string valueText(const Json& value) {
    if (value.is_string()) {
        return fmt::format("\"{}\"", visibleText(value.get_ref<const std::string&>()));
    }
    return value.dump();
}

// A double holds each float and each integer of a file; the texts are those of the narrower types.
std::string numberOf(const NumberDifference& numbers, double number) {
    return numbers.areFloats ? numberText(static_cast<float>(number)) : fmt::format("{:.0f}", number);
}

Json jsonNumberOf(const NumberDifference& numbers, double number) {
    return numbers.areFloats ? jsonNumber(static_cast<float>(number))
                             : Json(static_cast<std::uint32_t>(number));
}

std::string numbersText(const NumberDifference& numbers) {
    return fmt::format("{} of {} differ, worst at row {}, component {}: {} != {} (by {})", numbers.differing,
                       numbers.count, numbers.row, numbers.component, numberOf(numbers, numbers.a),
                       numberOf(numbers, numbers.b), shortNumberText(std::fabs(numbers.a - numbers.b)));
}

Json numbersJson(const NumberDifference& numbers) {
    return {{"differing", numbers.differing},
            {"count", numbers.count},
            {"worst",
             {{"row", numbers.row},
              {"component", numbers.component},
              {"a", jsonNumberOf(numbers, numbers.a)},
              {"b", jsonNumberOf(numbers, numbers.b)},
              {"by", jsonNumber(std::fabs(numbers.a - numbers.b))}}}};
}

} // namespace

void DifferenceReport::writeText(const std::vector<Difference>& differences) const {
    for (const auto& difference : differences) {
        fmt::print(stdout, "{}: {}: {}\n", placeText(difference), visibleText(difference.what),
                   bodyText(difference));
    }
}

void DifferenceReport::writeJson(const std::vector<Difference>& differences,
                                 const Tolerance& tolerance) const {
    JsonStream out(stdout);
    out.beginObject();
    out.key("files");
    out.value({{"a", jsonText(fileA_.path())}, {"b", jsonText(fileB_.path())}});
    out.key("tolerance");
    out.value({{"absolute", jsonNumber(tolerance.absolute)}, {"relative", jsonNumber(tolerance.relative)}});
    out.key("equal");
    out.value(differences.empty());
    out.key("differences");
    out.beginArray();
    for (const auto& difference : differences) {
        out.value(json(difference));
    }
    out.endArray();
    out.endObject();
}

std::string DifferenceReport::pathOf(const Difference& difference) const {
    return difference.idA != 0 ? pathsA_.of(difference.idA) : pathsB_.of(difference.idB);
}

std::string DifferenceReport::placeText(const Difference& difference) const {
    if (!isOfNode(difference)) {
        return "file";
    }
    const auto path = pathOf(difference);
    if (difference.dataset == nullptr) {
        return path;
    }
    const auto& steps = stepsA_.find(difference.dataset->step) ? stepsA_ : stepsB_;
    return path + ", " + datasetTitle(*difference.dataset, steps);
}

std::string DifferenceReport::bodyText(const Difference& difference) const {
    if (difference.numbers) {
        return numbersText(*difference.numbers);
    }
    if (!difference.b) {
        return fmt::format("{}, only in {}", valueText(*difference.a), visibleText(fileA_.path()));
    }
    if (!difference.a) {
        return fmt::format("{}, only in {}", valueText(*difference.b), visibleText(fileB_.path()));
    }
    return fmt::format("{} != {}", valueText(*difference.a), valueText(*difference.b));
}

Json DifferenceReport::json(const Difference& difference) const {
    Json entry = {{"what", jsonText(difference.what)}};
    if (isOfNode(difference)) {
        entry["node"] = pathOf(difference);
    }
    if (difference.idA != 0) {
        entry["idA"] = difference.idA;
    }
    if (difference.idB != 0) {
        entry["idB"] = difference.idB;
    }
    if (difference.dataset != nullptr) {
        entry["dataset"] = jsonText(difference.dataset->name);
    }
    if (difference.dataset != nullptr && !difference.dataset->step.empty()) {
        entry["step"] = jsonText(difference.dataset->step);
    }
    if (difference.a) {
        entry["a"] = *difference.a;
    }
    if (difference.b) {
        entry["b"] = *difference.b;
    }
    if (difference.numbers) {
        entry["numbers"] = numbersJson(*difference.numbers);
    }
    return entry;
}

} // namespace MoxTool
