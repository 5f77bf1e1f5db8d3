#include "Choice.h"

#include "../../common/Failure.h"
#include "../../common/matchesGlob.h"
#include "../../common/visibleText.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace MoxTool {

namespace {

constexpr std::size_t LongestList = 20;

std::string listOf(const std::vector<std::string>& names, const std::string& kind) {
    if (names.empty()) {
        return fmt::format("the file has no {}s", kind);
    }
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < std::min(names.size(), LongestList); ++i) {
        shown.push_back(visibleText(names[i]));
    }
    const auto rest = names.size() - shown.size();
    return fmt::format("there are: {}{}", fmt::join(shown, ", "),
                       rest == 0 ? "" : fmt::format(" and {} more", rest));
}

} // namespace

Choice::Choice(std::string kind, std::vector<std::string> patterns)
    : kind_(std::move(kind)), patterns_(std::move(patterns)) {}

bool Choice::takes(const std::string& name, const std::vector<std::string>& others) {
    if (patterns_.empty()) {
        return true;
    }
    if (std::ranges::find(present_, name) == present_.end()) {
        present_.push_back(name);
    }
    bool isWanted = false;
    for (const auto& pattern : patterns_) {
        const auto matches = [&pattern](const std::string& text) { return matchesGlob(pattern, text); };
        if (matches(name) || std::ranges::any_of(others, matches)) {
            matched_.insert(pattern);
            isWanted = true;
        }
    }
    return isWanted;
}

void Choice::check(const std::string& path) const {
    for (const auto& pattern : patterns_) {
        if (!matched_.contains(pattern)) {
            throw Failure(path, fmt::format("--{} {}: no {} has this name; {}", kind_, visibleText(pattern),
                                            kind_, listOf(present_, kind_)));
        }
    }
}

} // namespace MoxTool
