#include "stepText.h"

#include "visibleText.h"

#include <fmt/format.h>

#include <utility>

namespace MoxTool {

namespace {

constexpr std::size_t MaxRanges = 4;

bool isPlain(const ModelSteps& steps, std::size_t place) {
    const auto number = std::to_string(place + 1);
    const auto& name = steps.all()[place].name;
    return name == number || name == "Step " + number || name == "step " + number;
}

std::string quotedName(const ModelSteps& steps, std::size_t place) {
    return fmt::format("\"{}\"", visibleText(steps.all()[place].name));
}

std::vector<std::pair<std::size_t, std::size_t>> rangesOf(const std::vector<std::size_t>& places) {
    std::vector<std::pair<std::size_t, std::size_t>> ranges;
    for (const auto place : places) {
        if (!ranges.empty() && place == ranges.back().second + 1) {
            ranges.back().second = place;
        } else {
            ranges.emplace_back(place, place);
        }
    }
    return ranges;
}

} // namespace

std::string stepText(const ModelSteps& steps, std::size_t place) {
    auto text = std::to_string(place + 1);
    if (!isPlain(steps, place)) {
        text += ' ' + quotedName(steps, place);
    }
    const auto mark = steps.all()[place].mark();
    return mark.empty() ? text : text + ' ' + mark;
}

std::string stepRangesText(const std::vector<std::size_t>& places) {
    const auto ranges = rangesOf(places);
    if (ranges.size() > MaxRanges) {
        return fmt::format("{} to {} ({} of them)", places.front() + 1, places.back() + 1, places.size());
    }
    std::string text;
    for (const auto& [first, last] : ranges) {
        text += fmt::format("{}{}", text.empty() ? "" : ", ", first + 1);
        if (last > first) {
            text += fmt::format(" to {}", last + 1);
        }
    }
    return text;
}

std::string stepsText(const ModelSteps& steps, const std::vector<std::size_t>& places) {
    if (places.size() == 1) {
        return "step " + stepText(steps, places.front());
    }
    const auto text = "steps " + stepRangesText(places);
    if (isPlain(steps, places.front()) && isPlain(steps, places.back())) {
        return text;
    }
    return fmt::format("{} ({} to {})", text, quotedName(steps, places.front()),
                       quotedName(steps, places.back()));
}

} // namespace MoxTool
