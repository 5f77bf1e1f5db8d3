#include "PartPlan.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace MoxTool {

namespace {

using MoxReader::Model;

// The ids, each parent before its children and each sibling with all that is below it before the next one. A tree can
// nest deeper than calls can.
std::vector<std::uint32_t> preOrder(const Model& model) {
    std::vector<std::uint32_t> order;
    std::vector<std::uint32_t> waiting = {model.root().id};
    while (!waiting.empty()) {
        const auto id = waiting.back();
        waiting.pop_back();
        order.push_back(id);
        const auto children = model.children(id);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return order;
}

// For each id, whether a part begins with the node or with one below it.
std::vector<bool> reachUp(const Model& model, std::vector<bool> begins) {
    for (auto id = static_cast<std::uint32_t>(model.nodes().size()); id > 1; --id) {
        if (begins[id]) {
            begins[model.node(id).parent] = true;
        }
    }
    return begins;
}

} // namespace

PartPlan::PartPlan(const Model& model, PartKind kind) : ranges_(model.nodes().size() + 1) {
    number(model, findBeginnings(model, kind));
    keepTwinsTogether(model);
}

// For each id, whether a part begins with the node.
std::vector<bool> PartPlan::findBeginnings(const Model& model, PartKind kind) const {
    std::vector<bool> begins(ranges_.size(), false);
    std::vector<bool> isInside(ranges_.size(), false);
    for (const auto& node : model.nodes()) {
        const bool isOfKind =
            kind == PartKind::Child ? node.parent == model.root().id : node.shape() != nullptr;
        const bool isInOther = node.parent != 0 && isInside[node.parent];
        begins[node.id] = isOfKind && !isInOther;
        isInside[node.id] = isOfKind || isInOther;
    }
    return begins;
}

void PartPlan::number(const Model& model, const std::vector<bool>& begins) {
    const auto hasParts = reachUp(model, begins);
    const auto order = preOrder(model);
    for (const auto id : order) {
        const auto next = count();
        ranges_[id].first = hasParts[id] || next == 0 ? next : next - 1;
        ranges_[id].last = ranges_[id].first;
        if (begins[id]) {
            names_.push_back(model.node(id).name);
        }
    }
    if (names_.empty()) {
        names_.push_back(model.root().name);
    }
    for (auto id = order.rbegin(); id != order.rend(); ++id) {
        if (const auto parent = model.node(*id).parent; parent != 0) {
            ranges_[parent].last = std::max(ranges_[parent].last, ranges_[*id].last);
        }
    }
}

void PartPlan::keepTwinsTogether(const Model& model) {
    std::vector<bool> joinsNext(names_.size(), false);
    for (const auto& parent : model.nodes()) {
        std::map<std::pair<std::string_view, std::string_view>, std::uint32_t> firsts;
        for (const auto id : model.children(parent.id)) {
            const auto& node = model.node(id);
            const auto [twin, isFirst] = firsts.try_emplace({node.name, node.typeName}, ranges_[id].first);
            for (auto part = twin->second; !isFirst && part < ranges_[id].last; ++part) {
                joinsNext[part] = true;
            }
            // A part with a later twin has the one before it too, so they keep their order when parts are joined.
            twin->second = std::max(twin->second, ranges_[id].last);
        }
    }
    std::vector<std::uint32_t> newNumbers(names_.size(), 0);
    std::vector<std::string> kept;
    for (std::size_t part = 0; part < names_.size(); ++part) {
        if (part == 0 || !joinsNext[part - 1]) {
            kept.push_back(std::move(names_[part]));
        }
        newNumbers[part] = static_cast<std::uint32_t>(kept.size() - 1);
    }
    names_ = std::move(kept);
    for (auto& range : ranges_) {
        range = {newNumbers[range.first], newNumbers[range.last]};
    }
}

} // namespace MoxTool
