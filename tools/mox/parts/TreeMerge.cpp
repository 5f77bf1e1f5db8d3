#include "TreeMerge.h"

#include "../common/Failure.h"
#include "../common/NodePaths.h"
#include "../common/visibleText.h"
#include "nodePayload.h"
#include "titleByStepName.h"

#include <Qel/Mox/Format.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/NodeSets.h>

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace MoxTool {

namespace {

using MoxReader::Dataset;
using MoxReader::Node;

constexpr std::uint32_t RootId = 1;
constexpr std::uint32_t NotTaken = 0xFFFFFFFF;

constexpr const char* Advice = "; --prefer-first keeps that, --under and --suffix keep both";
constexpr const char* RootAdvice = "; --prefer-first keeps that"; // the joined file has one root

std::size_t hashOf(std::uint32_t parent, std::string_view name) {
    return std::hash<std::string_view>()(name) + std::size_t{parent} * 0x9E3779B1U;
}

std::string typeText(std::string_view type) {
    return type.empty() ? "nothing" : "a " + visibleText(type);
}

} // namespace

// The work on one file.
class TreeMerge::PartMerge {
public:
    PartMerge(TreeMerge& whole, const MergedPart& part)
        : whole_(whole),
          part_(part),
          nodes_(part.model.nodes()),
          file_(static_cast<std::uint32_t>(whole.files_.size() - 1)),
          before_(static_cast<std::uint32_t>(whole.owners_.size())),
          newIds_(nodes_.size() + 1, 0) {}

    void run() {
        mergeRoot();
        const auto below = groupBelowRoot();
        for (std::size_t place = 1; place < nodes_.size(); ++place) {
            const auto& node = nodes_[place];
            const auto parent = node.parent == RootId ? below : newIds_[node.parent];
            if (parent != 0 && part_.takesNode(node)) {
                newIds_[node.id] = mergeNode(node, parent);
            }
        }
        chooseDatasets();
        addDatasets();
    }

private:
    // --- Nodes

    void mergeRoot() {
        const auto& root = part_.model.root();
        newIds_[RootId] = RootId;
        if (!whole_.hasRoot_) {
            whole_.tree_.PutCurrentId(RootId);
            whole_.tree_.GetCurrentNode().data = nodePayload(root, root.name).release();
            whole_.owners_.push_back(file_);
            whole_.hasRoot_ = true;
            placeSets(root, RootId);
            return;
        }
        const auto [name, type] = nameAndType(RootId);
        if (name != root.name || type != root.typeName) {
            throw Failure(part_.path, fmt::format("its root is {} \"{}\", and that of {} is {} \"{}\"",
                                                  typeText(root.typeName), visibleText(root.name),
                                                  whole_.pathOf(0), typeText(type), visibleText(name)));
        }
        compare(root, RootId);
    }

    // A model without any node has nothing to put into a group.
    std::uint32_t groupBelowRoot() {
        const bool isEmpty = nodes_.size() == 1 && nodes_.front().typeName.empty();
        if (part_.group.empty() || isEmpty) {
            return RootId;
        }
        const auto same = whole_.childrenNamed(RootId, part_.group, before_);
        const auto isGroup = [&](std::uint32_t id) {
            return nameAndType(id).second == QelMox::Format::GroupType;
        };
        if (const auto found = std::ranges::find_if(same, isGroup); found != same.end()) {
            return *found;
        }
        return whole_.addNode(RootId, std::make_unique<QelMox::Group>(part_.group, QelUtil::AttributeList()));
    }

    std::uint32_t mergeNode(const Node& node, std::uint32_t parent) {
        const bool isNamedAnew = node.shape() != nullptr || node.geometry() != nullptr;
        const auto name = isNamedAnew ? node.name + part_.suffix : node.name;
        if (parent <= before_) {
            const auto same = whole_.childrenNamed(parent, name, before_);
            if (const auto twin = twinOf(node, same)) {
                compare(node, *twin);
                return *twin;
            }
            if (isOfAnotherType(node, same)) {
                return 0;
            }
        }
        const auto id = whole_.addNode(parent, nodePayload(node, name));
        placeSets(node, id);
        return id;
    }

    // Siblings of one name and type are told apart by their order.
    std::optional<std::uint32_t> twinOf(const Node& node, const std::vector<std::uint32_t>& same) {
        auto place = siblings_[{node.parent, node.name, node.typeName}]++;
        for (const auto id : same) {
            if (nameAndType(id).second == node.typeName && place-- == 0) {
                return id;
            }
        }
        return std::nullopt;
    }

    bool isOfAnotherType(const Node& node, const std::vector<std::uint32_t>& same) {
        const auto isAlike = [&](std::uint32_t id) { return nameAndType(id).second == node.typeName; };
        if (same.empty() || std::ranges::any_of(same, isAlike)) {
            return false;
        }
        const auto first = same.front();
        clash(fmt::format("{} is {} here, and {} in {}", pathText(node), typeText(node.typeName),
                          typeText(nameAndType(first).second), firstPathOf(first)));
        return true;
    }

    void compare(const Node& node, std::uint32_t id) {
        const auto* payload = whole_.tree_.GetReqNode(id).data;
        const auto difference = payload != nullptr ? nodeDifference(*payload, node) : std::string();
        if (!difference.empty()) {
            clash(fmt::format("{} has {} in {}", pathText(node), difference, firstPathOf(id)),
                  id == RootId ? RootAdvice : Advice);
        }
    }

    void placeSets(const Node& node, std::uint32_t id) {
        if (const auto* sets = node.nodeSets()) {
            auto& payload = static_cast<QelMox::NodeSets&>(*whole_.tree_.GetReqNode(id).data);
            payload.SetStored(sets->setCount, part_.numbers.find(sets->heavyPosition).value_or(0),
                              sets->heavySize);
        }
    }

    std::pair<std::string, std::string> nameAndType(std::uint32_t id) const {
        const auto* payload = whole_.tree_.GetReqNode(id).data;
        return payload != nullptr ? std::pair(payload->GetName(), payload->GetTypeName())
                                  : std::pair(std::string(), std::string());
    }

    // --- Datasets

    PackedGeometry& geometryOf(const Node& node) const {
        return static_cast<PackedGeometry&>(*whole_.tree_.GetReqNode(newIds_[node.id]).data);
    }

    // Gives each dataset that is taken its index in the new geometry.
    void chooseDatasets() {
        firsts_.assign(nodes_.size() + 1, 0);
        for (const auto& node : nodes_) {
            firsts_[node.id] = indices_.size();
            if (node.geometry() != nullptr) {
                indices_.resize(indices_.size() + node.geometry()->datasets.size(), NotTaken);
            }
        }
        for (const auto& node : nodes_) {
            if (node.geometry() != nullptr && newIds_[node.id] != 0) {
                chooseDatasetsOf(node);
            }
        }
    }

    void chooseDatasetsOf(const Node& node) {
        const auto& geometry = geometryOf(node);
        auto* const owners = newIds_[node.id] <= before_ && !node.geometry()->datasets.empty()
                                 ? &whole_.ownersOf(newIds_[node.id], geometry)
                                 : nullptr;
        auto next = geometry.count();
        for (const auto& dataset : node.geometry()->datasets) {
            if (part_.takesDataset(dataset) && (owners == nullptr || isNew(node, dataset, *owners))) {
                indices_[placeOf(dataset)] = next++;
            }
        }
    }

    bool isNew(const Node& node, const Dataset& dataset, OwnersByKey& owners) {
        const auto [owner, isAdded] = owners.emplace(dataset.key, file_);
        if (!isAdded) {
            clash(fmt::format("{}: the dataset {} is in {} too", pathText(node), titleByStepName(dataset),
                              whole_.pathOf(owner->second)));
        }
        return isAdded;
    }

    void addDatasets() {
        for (const auto& node : nodes_) {
            if (node.geometry() == nullptr || newIds_[node.id] == 0) {
                continue;
            }
            auto& geometry = geometryOf(node);
            for (const auto& dataset : node.geometry()->datasets) {
                if (isTaken(dataset)) {
                    addDataset(geometry, dataset);
                }
            }
            geometry.endPiece();
        }
    }

    void addDataset(PackedGeometry& geometry, const Dataset& dataset) {
        ++whole_.datasetCount_;
        if (!dataset.isLink) {
            addHolder(geometry, dataset, dataset);
            return;
        }
        const auto& target = takenTargetOf(dataset);
        if (isTaken(target)) {
            addLink(geometry, dataset, newIds_[target.nodeId], indices_[placeOf(target)]);
            return;
        }
        const auto place = placeOf(dataset);
        const auto [heir, isFirst] =
            heirs_.emplace(placeOf(target), Place{newIds_[dataset.nodeId], indices_[place]});
        if (isFirst) {
            addHolder(geometry, dataset, target);
        } else {
            addLink(geometry, dataset, heir->second.node, heir->second.index);
        }
    }

    // The first dataset on the way along the links that is taken, or else the one at the end, which has the numbers.
    const Dataset& takenTargetOf(const Dataset& link) const {
        const auto* target = &targetOf(link);
        while (!isTaken(*target) && target->isLink) {
            target = &targetOf(*target);
        }
        return *target;
    }

    const Dataset& targetOf(const Dataset& link) const {
        return part_.model.node(link.linkNodeId).geometry()->datasets[link.linkIndex];
    }

    void addHolder(PackedGeometry& geometry, const Dataset& dataset, const Dataset& holder) {
        const auto& attributes = dataset.attributes.empty() ? holder.attributes : dataset.attributes;
        geometry.add({.dataset = dataset,
                      .numbers = holder,
                      .attributes = attributes,
                      .position = part_.numbers.find(holder.position).value_or(0)});
    }

    static void addLink(PackedGeometry& geometry, const Dataset& dataset, std::uint32_t node,
                        std::uint32_t index) {
        geometry.add({.dataset = dataset,
                      .numbers = dataset,
                      .attributes = dataset.attributes,
                      .isLink = true,
                      .linkNodeId = node,
                      .linkIndex = index});
    }

    std::size_t placeOf(const Dataset& dataset) const { return firsts_[dataset.nodeId] + dataset.index; }
    bool isTaken(const Dataset& dataset) const { return indices_[placeOf(dataset)] != NotTaken; }

    // --- Clashes

    void clash(const std::string& sentence, const char* advice = Advice) {
        if (!whole_.preferFirst_) {
            throw Failure(part_.path, sentence + advice);
        }
        whole_.leftOut_.push_back(fmt::format("{}: {}", part_.path, sentence));
    }

    std::string pathText(const Node& node) {
        if (!paths_) {
            paths_.emplace(nodes_);
        }
        return paths_->of(node.id);
    }

    const std::string& firstPathOf(std::uint32_t id) const { return whole_.pathOf(whole_.fileOf(id)); }

    struct Place {
        std::uint32_t node;
        std::uint32_t index;
    };

    TreeMerge& whole_;
    const MergedPart& part_;
    const std::vector<Node>& nodes_;
    std::uint32_t file_;
    std::uint32_t before_;              // the number of nodes of earlier files
    std::vector<std::uint32_t> newIds_; // for each id of the file; 0 for a node that is not taken
    std::vector<std::size_t> firsts_;   // for each id of the file, where its datasets begin in the next list
    std::vector<std::uint32_t> indices_;
    std::unordered_map<std::size_t, Place> heirs_; // of datasets that have numbers and are not taken
    std::map<std::tuple<std::uint32_t, std::string_view, std::string_view>, std::size_t> siblings_;
    std::optional<NodePaths> paths_;
};

void TreeMerge::add(const MergedPart& part) {
    files_.push_back(part.path);
    PartMerge(*this, part).run();
}

TreeMerge::OwnersByKey& TreeMerge::ownersOf(std::uint32_t id, const PackedGeometry& geometry) {
    const auto [found, isNew] = sharedKeys_.try_emplace(id);
    if (isNew) {
        for (auto& key : geometry.keys()) {
            found->second.emplace(std::move(key), fileOf(id));
        }
    }
    return found->second;
}

std::uint32_t TreeMerge::addNode(std::uint32_t parent, std::unique_ptr<QelMox::Node> payload) {
    const auto hash = hashOf(parent, payload->GetName());
    tree_.PutCurrentId(parent);
    tree_.AddChildNode(std::move(payload));
    const auto id = tree_.GetCurrentId();
    children_.Add(hash, id);
    owners_.push_back(static_cast<std::uint32_t>(files_.size() - 1));
    return id;
}

/// The children of this name with an id up to `before`, in their order.
std::vector<std::uint32_t> TreeMerge::childrenNamed(std::uint32_t parent, const std::string& name,
                                                    std::uint32_t before) const {
    std::vector<std::uint32_t> children;
    children_.Visit(hashOf(parent, name), [&](std::uint32_t id) {
        const auto& node = tree_.GetReqNode(id);
        if (id <= before && node.parent == parent && node.data->GetName() == name) {
            children.push_back(id);
        }
    });
    std::ranges::sort(children);
    return children;
}

} // namespace MoxTool
