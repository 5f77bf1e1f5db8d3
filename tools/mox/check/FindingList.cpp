#include "FindingList.h"

#include <fmt/format.h>

#include <utility>

namespace MoxTool {

void FindingList::add(RuleId rule, std::string reason, FindingPlace place) {
    ++byLevel[static_cast<std::size_t>(ruleOf(rule).level)];
    const auto number = ++byRule[rule];
    if (limit == 0 || number <= limit) {
        list.push_back({rule, std::move(reason), std::move(place)});
    }
}

void FindingList::addError(const MoxReader::Error& error, std::optional<std::uint32_t> node) {
    const auto& found = error.place();
    FindingPlace place = {.offset = found.fileOffset,
                          .block = found.blockId,
                          .stream = found.name,
                          .streamOffset = found.streamOffset,
                          .node = node};
    const auto text = MoxReader::errorText(error.code());
    if (isBlockDamage(error.code())) {
        add(RuleId::NotChecked, fmt::format("what stands here could not be checked: {}", text), place);
    } else {
        add(brokenRule(error.code()),
            found.record.empty() ? std::string(text) : fmt::format("{}: {}", found.record, text), place);
    }
}

std::uint64_t FindingList::count(RuleId rule) const {
    const auto found = byRule.find(rule);
    return found == byRule.end() ? 0 : found->second;
}

std::map<RuleId, std::uint64_t> FindingList::notKept() const {
    std::map<RuleId, std::uint64_t> rest;
    for (const auto& [rule, number] : byRule) {
        if (limit != 0 && number > limit) {
            rest[rule] = number - limit;
        }
    }
    return rest;
}

} // namespace MoxTool
