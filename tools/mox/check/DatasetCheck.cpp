#include "DatasetCheck.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;
namespace Format = MoxReader::Format;

bool isKnownElement(const Dataset& dataset) {
    return dataset.elementTag == Format::FloatTag || dataset.elementTag == Format::UnsignedTag;
}

bool hasWholeItems(const Dataset& holder) {
    const auto itemSize = holder.width * Format::ElementSize;
    return itemSize != 0 && holder.sizeInBytes != 0 && holder.sizeInBytes % itemSize == 0;
}

class DatasetCheck {
public:
    DatasetCheck(const std::vector<Node>& nodes, const MoxReader::LinkTable& links, bool areComplete,
                 FindingList& findings)
        : nodes_(nodes), links_(links), areComplete_(areComplete), findings_(findings) {}

    void run() {
        for (const auto& node : nodes_) {
            if (node.geometry() == nullptr) {
                continue;
            }
            checkKeys(node.geometry()->datasets);
            for (const auto& dataset : node.geometry()->datasets) {
                checkEntry(dataset);
            }
        }
    }

private:
    // Makes the text only if there is something to report.
    template <class... Args>
    void require(bool isSound, RuleId rule, const Dataset& dataset, fmt::format_string<Args...> reason,
                 Args&&... arguments) {
        if (!isSound) {
            findings_.add(rule, fmt::format(reason, std::forward<Args>(arguments)...), placeOf(dataset));
        }
    }

    void checkKeys(const std::vector<Dataset>& datasets) {
        std::unordered_set<std::string_view> keys;
        std::unordered_map<std::string_view, bool> hasStep;
        for (const auto& dataset : datasets) {
            require(keys.insert(dataset.key).second, RuleId::KeyTwice, dataset,
                    "another dataset has this key");
            const auto withStep = !dataset.step.empty();
            const auto first = hasStep.try_emplace(dataset.name, withStep).first;
            require(first->second == withStep, RuleId::StepMix, dataset,
                    "another dataset of this name has {} step", withStep ? "no" : "a");
        }
    }

    void checkEntry(const Dataset& dataset) {
        const auto* type = Format::findVariableType(dataset.variableType);
        require(type != nullptr, RuleId::VariableType, dataset, "type {}", dataset.variableType);
        require(isKnownElement(dataset), RuleId::ElementType, dataset, "element type {}", dataset.elementTag);
        if (dataset.isLink) {
            checkLink(dataset);
        } else {
            checkHolder(dataset, type);
        }
    }

    void checkHolder(const Dataset& holder, const Format::VariableTypeRow* type) {
        if (type != nullptr) {
            require(holder.width == type->width, RuleId::Width, holder, "{} components instead of {}",
                    holder.width, type->width);
        }
        require(hasWholeItems(holder), RuleId::DatasetSize, holder, "{} bytes of {} components",
                holder.sizeInBytes, holder.width);
        const bool isFixed =
            !holder.boolA && !holder.boolB && !holder.boolC && holder.floatA == 0 && holder.floatB == 0;
        require(isFixed, RuleId::FixedFields, holder, "one of them is set");
    }

    void checkLink(const Dataset& link) {
        const auto& resolution = links_.resolution(link.nodeId, link.index);
        if (const auto* error = std::get_if<MoxReader::ErrorCode>(&resolution)) {
            const auto rule = brokenRule(*error);
            const bool canBeMissing = rule == RuleId::LinkTarget && !areComplete_;
            require(canBeMissing, rule, link, "it leads to dataset {} of node {}", link.linkIndex,
                    link.linkNodeId);
            return;
        }
        const auto& holder = *std::get<const Dataset*>(resolution);
        require(holder.nodeId == link.linkNodeId && holder.index == link.linkIndex, RuleId::LinkChain, link,
                "the numbers are those of dataset {} of node {}, by way of another link", holder.index,
                holder.nodeId);
        require(holder.variableType == link.variableType && holder.elementTag == link.elementTag,
                RuleId::LinkType, link, "type {} of element type {} instead of {} and {}", link.variableType,
                link.elementTag, holder.variableType, holder.elementTag);
    }

    const std::vector<Node>& nodes_;
    const MoxReader::LinkTable& links_;
    bool areComplete_;
    FindingList& findings_;
};

} // namespace

FindingPlace placeOf(const Dataset& dataset) {
    return {.node = dataset.nodeId, .dataset = dataset.index, .key = dataset.key};
}

bool hasSoundShape(const Dataset& holder) {
    const auto* type = Format::findVariableType(holder.variableType);
    return type != nullptr && holder.width == type->width && isKnownElement(holder) && hasWholeItems(holder);
}

void checkDatasets(const std::vector<Node>& nodes, const MoxReader::LinkTable& links, bool areComplete,
                   FindingList& findings) {
    DatasetCheck(nodes, links, areComplete, findings).run();
}

} // namespace MoxTool
