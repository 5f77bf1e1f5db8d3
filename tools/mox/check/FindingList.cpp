#include "FindingList.h"

#include <fmt/format.h>

#include <utility>

namespace MoxTool {

void FindingList::add(RuleId rule, std::string reason, FindingPlace place) {
    ++byLevel_[static_cast<std::size_t>(ruleOf(rule).level)];
    const auto number = ++byRule_[rule];
    if (limit_ == 0 || number <= limit_) {
        list_.push_back({rule, std::move(reason), std::move(place)});
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

void FindingList::append(const FindingList& other) {
    for (const auto& finding : other.list_) {
        add(finding.rule, finding.reason, finding.place);
    }
    for (const auto& [rule, number] : other.notKept()) {
        byLevel_[static_cast<std::size_t>(ruleOf(rule).level)] += number;
        byRule_[rule] += number;
    }
}

std::uint64_t FindingList::count(RuleId rule) const {
    const auto found = byRule_.find(rule);
    return found == byRule_.end() ? 0 : found->second;
}

std::map<RuleId, std::uint64_t> FindingList::notKept() const {
    std::map<RuleId, std::uint64_t> rest;
    for (const auto& [rule, number] : byRule_) {
        if (limit_ != 0 && number > limit_) {
            rest[rule] = number - limit_;
        }
    }
    return rest;
}

} // namespace MoxTool
