#include "StepRanges.h"

#include "../../common/Failure.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <string_view>

namespace MoxTool {

namespace {

constexpr std::size_t Last = std::numeric_limits<std::size_t>::max();

std::size_t numberIn(std::string_view text) {
    if (text == "first") {
        return 1;
    }
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0) {
        throw std::invalid_argument("no range of steps: such as 3, 2:5 or 7:last is one");
    }
    return number;
}

} // namespace

StepRanges::StepRanges(const std::vector<std::string>& ranges) {
    for (const auto& range : ranges) {
        ranges_.push_back(parse(range));
    }
}

std::string StepRanges::problemOf(const std::string& range) {
    try {
        parse(range);
    } catch (const std::invalid_argument& problem) {
        return problem.what();
    }
    return "";
}

StepRanges::Range StepRanges::parse(const std::string& text) {
    const auto colon = text.find(':');
    const auto first = numberIn(std::string_view(text).substr(0, colon));
    if (colon == std::string::npos) {
        return {text, first, first};
    }
    const auto end = std::string_view(text).substr(colon + 1);
    const auto last = end == "last" ? Last : numberIn(end);
    if (last < first) {
        throw std::invalid_argument("no range of steps: it ends before it begins");
    }
    return {text, first, last};
}

bool StepRanges::takes(std::size_t index) const {
    return ranges_.empty() || std::ranges::any_of(ranges_, [index](const Range& range) {
               return range.first <= index + 1 && index + 1 <= range.last;
           });
}

void StepRanges::check(const std::string& path, std::size_t count) const {
    for (const auto& range : ranges_) {
        if (range.first > count) {
            throw Failure(path, fmt::format("--step {}: no step has this number; {}", range.text,
                                            count == 0   ? "the file has no steps"
                                            : count == 1 ? "there is step 1 alone"
                                                         : fmt::format("there are steps 1 to {}", count)));
        }
    }
}

} // namespace MoxTool
