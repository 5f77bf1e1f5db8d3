#include "StepChoice.h"

#include "Failure.h"
#include "stepText.h"
#include "visibleText.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>
#include <string_view>

namespace MoxTool {

namespace {

using Places = std::vector<std::size_t>;

constexpr std::size_t MostStepsListed = 10;
constexpr double TimeTolerance = 1e-5; // Times are shown in six digits.

template <typename T>
std::optional<T> parsed(std::string_view text) {
    T number{};
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

// The nearest step within the tolerance; several if they have one time.
Places atPosition(const ModelSteps& steps, double wanted) {
    auto nearest = TimeTolerance * std::abs(wanted);
    Places places;
    for (std::size_t place = 0; place < steps.all().size(); ++place) {
        const auto position = steps.all()[place].position();
        const auto distance = position ? std::abs(*position - wanted) : -1;
        if (!position || !(distance <= nearest)) {
            continue;
        }
        if (distance < nearest) {
            places.clear();
        }
        nearest = distance;
        places.push_back(place);
    }
    return places;
}

// What one item of a choice stands for; nothing if the model has no such step.
Places placesOf(const ModelSteps& steps, std::string_view item) {
    if (const auto place = steps.find(std::string(item))) {
        return {*place};
    }
    const auto count = steps.all().size();
    if (count == 0) {
        return {};
    }
    if (item == "first" || item == "last") {
        return {item == "first" ? 0 : count - 1};
    }
    if (item.starts_with('@')) {
        const auto position = parsed<double>(item.substr(1));
        return position ? atPosition(steps, *position) : Places{};
    }
    const auto number = parsed<std::size_t>(item);
    return number && *number >= 1 && *number <= count ? Places{*number - 1} : Places{};
}

// Names can have colons, so each colon may be the one that makes the range.
Places rangeOf(const ModelSteps& steps, std::string_view text) {
    for (auto colon = text.find(':'); colon != std::string_view::npos; colon = text.find(':', colon + 1)) {
        const auto from = placesOf(steps, text.substr(0, colon));
        const auto to = placesOf(steps, text.substr(colon + 1));
        if (!from.empty() && !to.empty() && from.front() <= to.back()) {
            Places places(to.back() - from.front() + 1);
            std::iota(places.begin(), places.end(), from.front());
            return places;
        }
    }
    return {};
}

std::string whatThereIs(const ModelSteps& steps) {
    const auto& all = steps.all();
    if (all.empty()) {
        return "the model has no steps";
    }
    std::string list;
    for (std::size_t place = 0; place < std::min(all.size(), MostStepsListed); ++place) {
        list += (list.empty() ? "" : ", ") + stepText(steps, place);
    }
    if (all.size() > MostStepsListed) {
        list += fmt::format(" and so on to {}", stepText(steps, all.size() - 1));
    }
    return fmt::format("its {}: {}", all.size() == 1 ? "only step is" : "steps are", list);
}

} // namespace

Places StepChoice::resolve(const ModelSteps& steps, const std::string& path) const {
    auto places = placesOf(steps, text);
    if (places.empty()) {
        places = rangeOf(steps, text);
    }
    if (places.empty()) {
        throw Failure(path, fmt::format("has no step \"{}\"; {}", visibleText(text), whatThereIs(steps)));
    }
    return places;
}

} // namespace MoxTool
