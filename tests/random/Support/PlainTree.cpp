#include "random/Support/PlainTree.h"

#include "random/Support/outcomes.h"
#include "random/Support/storedAttributes.h"

#include <algorithm>
#include <map>

namespace RandomUse {

namespace {

const AttributePairs& pairsOf(const std::optional<AttributePairs>& argument) {
    static const AttributePairs none;
    return argument ? *argument : none;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// Each character of the separator separates, up to its first zero byte; empty names are left out.
std::vector<std::string> namesOf(const std::string& path, const std::string& separator) {
    const std::string characters = separator.substr(0, separator.find('\0'));
    std::vector<std::string> names;
    std::string name;
    for (const char character : path) {
        if (characters.find(character) == std::string::npos) {
            name += character;
        } else if (!name.empty()) {
            names.push_back(name);
            name.clear();
        }
    }
    if (!name.empty()) {
        names.push_back(name);
    }
    return names;
}

bool isDropped(const std::string& key) {
    return key == "Complex" || key == "Contents" || key == "DataSource" || key == "DataType" ||
           key == "Structure" || key.substr(0, 5) == "Link.";
}

} // namespace

// --- Nodes

Outcome PlainTree::addNode(const AddNode& call) {
    constexpr int group = 3;
    constexpr int shape = 4;
    if (root().kind == NodeKind::Unset) {
        return addRoot(call);
    }
    if (call.type == group) {
        const std::optional<StoredAttributes> attributes = storedAttributes(pairsOf(call.attributes));
        if (!attributes) {
            return attributeRefused();
        }
        if (!exists(current_)) {
            return currentNodeUnknown();
        }
        addChild(NodeKind::Group, call.name, *attributes);
    } else if (call.type == shape) {
        if (!exists(current_)) {
            return currentNodeUnknown();
        }
        addChild(NodeKind::Shape, call.name);
        addChild(NodeKind::Geometry, call.name);
    } else {
        return invalidNodeType();
    }
    return returned({current_});
}

Outcome PlainTree::addRoot(const AddNode& call) {
    constexpr int markedGroup = 1;
    constexpr int shape = 4;
    if (call.type < markedGroup || call.type > shape) {
        return invalidRootType();
    }
    if (call.type == shape) {
        root().kind = NodeKind::Shape;
    } else {
        const std::optional<StoredAttributes> attributes = storedAttributes(pairsOf(call.attributes));
        if (!attributes) {
            return attributeRefused();
        }
        root().kind = NodeKind::Group;
        root().groupKind = call.type == markedGroup ? 1 : 0;
        root().attributes = *attributes;
    }
    root().name = call.name;
    current_ = 1;
    return returned({1});
}

void PlainTree::addChild(NodeKind kind, const std::string& name, const StoredAttributes& attributes) {
    PlainNode child;
    child.parent = current_;
    child.kind = kind;
    child.name = name;
    child.attributes = attributes;
    nodes_.push_back(child);
    current_ = static_cast<unsigned int>(nodes_.size());
}

Outcome PlainTree::setCurrentNodeId(unsigned int id) {
    if (!exists(id)) {
        return outOfBounds("CurrentNodeId");
    }
    current_ = id;
    return nothing();
}

Outcome PlainTree::moveToParentNode() {
    if (!exists(current_)) {
        return currentNodeUnknown();
    }
    if (node(current_).parent != 0) {
        current_ = node(current_).parent;
    }
    return nothing();
}

// --- Lookup

unsigned int PlainTree::childNamed(const std::string& name) const {
    for (unsigned int id = 1; id <= nodes_.size(); ++id) {
        if (nodes_[id - 1].parent == current_ && nodes_[id - 1].name == name) {
            return id;
        }
    }
    return 0;
}

unsigned int PlainTree::childNamed(const std::string& name, NodeKind kind) const {
    for (unsigned int id = 1; id <= nodes_.size(); ++id) {
        const PlainNode& candidate = nodes_[id - 1];
        if (candidate.parent == current_ && candidate.name == name && candidate.kind == kind) {
            return id;
        }
    }
    return 0;
}

Outcome PlainTree::find(const std::string& path, const std::string& separator) {
    if (path.empty()) {
        return returned({0});
    }
    current_ = 1;
    const std::string prefix = separator + root().name;
    if (root().kind == NodeKind::Unset || path.substr(0, prefix.size()) != prefix) {
        return returned({0});
    }
    std::size_t place = prefix.size();
    while (place != std::string::npos) {
        const std::size_t start = place + separator.size();
        if (start > path.size()) {
            current_ = 1;
            return invalidStringPosition();
        }
        place = path.find(separator, start);
        const std::string name =
            place == std::string::npos ? path.substr(start) : path.substr(start, place - start);
        current_ = childNamed(name);
        if (current_ == 0) {
            current_ = 1;
            return returned({0});
        }
    }
    const unsigned int found = current_;
    current_ = 1;
    return returned({found});
}

// --- Data of nodes

Outcome PlainTree::setNodeData(const SetNodeData& call) {
    if (!exists(call.id)) {
        return outOfBounds("NodeData");
    }
    current_ = call.id;
    PlainNode* group = nullptr;
    PlainNode* shape = nullptr;
    if (node(current_).kind == NodeKind::Geometry) {
        current_ = node(current_).parent;
        shape = &node(current_);
    } else if (node(current_).kind == NodeKind::Shape) {
        shape = &node(current_);
    } else if (node(current_).kind == NodeKind::Group) {
        group = &node(current_);
    }
    std::map<int, PropertyValue> lastValues;
    for (const auto& [key, value] : call.properties) {
        lastValues[key] = value;
    }
    for (const auto& [key, value] : lastValues) {
        const Outcome outcome = setProperty(key, value, group, shape);
        if (outcome.isFailure()) {
            return outcome;
        }
    }
    if (group == nullptr) {
        return nothing();
    }
    const std::optional<StoredAttributes> attributes = storedAttributes(pairsOf(call.attributes));
    if (!attributes) {
        return attributeRefused();
    }
    for (const auto& [key, value] : *attributes) {
        group->attributes[key] = value;
    }
    return nothing();
}

Outcome PlainTree::setProperty(int key, const PropertyValue& value, PlainNode* group, PlainNode* shape) {
    constexpr int lastOfGroup = 2;
    constexpr int lastColor = 6;
    constexpr int last = 10;
    if (key < 0 || key > last) {
        return invalidProperties();
    }
    if ((key <= lastOfGroup ? group : shape) == nullptr) {
        return invalidPropertyType();
    }
    if (key == last) {
        return valueOfAnotherType();
    }
    if (key > lastColor) {
        const float* const number = std::get_if<float>(&value);
        if (number == nullptr) {
            return valueOfAnotherType();
        }
        if (key == 7) {
            shape->transparency = *number;
        } else if (key == 8) {
            for (std::size_t i = 0; i < 4; ++i) {
                shape->ambient[i] = shape->diffuse[i] * *number;
            }
        } else {
            shape->shininess = *number;
        }
        return nothing();
    }
    const std::vector<float>* const numbers = std::get_if<std::vector<float>>(&value);
    if (numbers == nullptr) {
        return valueOfAnotherType();
    }
    const std::size_t size = numbers->size();
    if (key == 0) {
        if (size != 3) {
            return invalidArraySize("Group", "SetTranslation");
        }
        group->translation = {(*numbers)[0], (*numbers)[1], (*numbers)[2]};
    } else if (key == 1) {
        if (size != 4) {
            return invalidArraySize("Group", "SetRotation");
        }
        group->rotation = {(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
    } else if (key == 2) {
        if (size != 3) {
            return invalidArraySize("Group", "SetScale");
        }
        group->scale = {(*numbers)[0], (*numbers)[1], (*numbers)[2]};
    } else if (key == 3) {
        if (size != 3 && size != 4) {
            return invalidArraySize("Material", "SetDiffuseColor");
        }
        std::copy_n(numbers->begin(), 3, shape->diffuse.begin());
    } else if (key == 4) {
        if (size != 3 && size != 4) {
            return invalidArraySize("Material", "SetSpecularColor");
        }
        std::copy_n(numbers->begin(), 3, shape->specular.begin());
    } else if (key == 5) {
        if (size != 3) {
            return invalidArraySize("Material", "SetEmissiveColor");
        }
        std::copy_n(numbers->begin(), 3, shape->emissive.begin());
    } else {
        if (size != 3) {
            return invalidArraySize("Material", "SetAmbientColor");
        }
        std::copy_n(numbers->begin(), 3, shape->ambient.begin());
    }
    return nothing();
}

// --- Paths of components

Outcome PlainTree::addPaths(const std::vector<std::pair<std::string, AttributePairs>>& paths,
                            const std::string& separator) {
    std::vector<unsigned int> ids;
    for (const auto& [path, pairs] : paths) {
        ids.push_back(0);
        if (path.empty()) {
            continue;
        }
        if (path.substr(0, separator.size()) != separator) {
            return relativePath();
        }
        const std::vector<std::string> names = namesOf(path, separator);
        if (names.empty()) {
            continue;
        }
        if (root().kind == NodeKind::Unset) {
            root().kind = NodeKind::Group;
            root().name = names.front();
        } else if (root().name != names.front()) {
            return otherRoot();
        }
        const bool isGroup = endsWith(path, separator);
        moveAlong(names, isGroup);
        if (isGroup && !storedAttributes(pairs)) {
            return attributeRefused();
        }
        ids.back() = current_;
    }
    return returned(ids);
}

// A path of the root's name alone leads to a node of that name below the root.
void PlainTree::moveAlong(const std::vector<std::string>& names, bool isGroup) {
    current_ = 1;
    for (std::size_t i = 1; i + 1 < names.size(); ++i) {
        enter(NodeKind::Group, names[i]);
    }
    if (isGroup) {
        enter(NodeKind::Group, names.back());
    } else {
        enter(NodeKind::Shape, names.back());
        enter(NodeKind::Geometry, names.back());
    }
}

void PlainTree::enter(NodeKind kind, const std::string& name) {
    const unsigned int id = childNamed(name, kind);
    if (id != 0) {
        current_ = id;
    } else {
        addChild(kind, name);
    }
}

// --- Arrays

Outcome PlainTree::record(const AddArray& call, const std::string& name, const PlainDataset& array) {
    const std::optional<StoredAttributes> ownAttributes = storedAttributes(pairsOf(call.attributes));
    if (!ownAttributes) {
        return attributeRefused();
    }
    std::optional<PlainDataset> first;
    for (const unsigned int id : call.ids) {
        for (const StepUse& step : call.steps) {
            std::optional<StoredAttributes> attributes = storedAttributes(step.attributes);
            if (!attributes) {
                return attributeRefused();
            }
            for (const auto& [key, value] : *ownAttributes) {
                (*attributes)[key] = value;
            }
            current_ = id;
            if (!exists(id)) {
                return currentNodeUnknown();
            }
            PlainDataset entry = array;
            entry.key = step.name.empty() ? name : name + '\x1e' + step.name;
            put(entry, *attributes, first);
        }
    }
    return nothing();
}

// `first` becomes the place of the entry that holds the numbers, as a link to it would name it.
void PlainTree::put(PlainDataset entry, const StoredAttributes& attributes,
                    std::optional<PlainDataset>& first) {
    if (node(current_).kind != NodeKind::Geometry) {
        return;
    }
    std::vector<PlainDataset>& datasets = node(current_).datasets;
    auto place = std::find_if(datasets.begin(), datasets.end(),
                              [&](const PlainDataset& dataset) { return dataset.key == entry.key; });
    if (place == datasets.end()) {
        place = datasets.insert(datasets.end(), entry);
    }
    entry.attributes = place->attributes;
    entry.isLink = place->isLink;
    entry.linkNode = place->linkNode;
    entry.linkIndex = place->linkIndex;

    const auto category = attributes.find("Category");
    entry.isVibration = category != attributes.end() && category->second == StoredValue{2, 0, "Vibration"};
    for (const auto& [key, value] : attributes) {
        if (!isDropped(key)) {
            entry.attributes[key] = value;
        }
    }
    if (first) {
        entry.isLink = true;
        entry.linkNode = first->linkNode;
        entry.linkIndex = first->linkIndex;
        entry.attributes.clear();
    } else {
        first = entry;
        first->linkNode = current_;
        first->linkIndex = static_cast<unsigned>(place - datasets.begin());
    }
    *place = entry;
}

} // namespace RandomUse
