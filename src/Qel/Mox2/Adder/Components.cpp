#include <Qel/Mox2/Adder/Components.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox2/Component/PathSplitter.h>
#include <Qel/Mox2/Helper/Attributes.h>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace Qel::Mox2::Adder {

namespace {

const std::string& pathOf(const std::string& entry) {
    return entry;
}

const std::string& pathOf(const std::pair<const std::string, AttributeMap>& entry) {
    return entry.first;
}

const AttributeMap& attributesOf(const std::string&) {
    static const AttributeMap none;
    return none;
}

const AttributeMap& attributesOf(const std::pair<const std::string, AttributeMap>& entry) {
    return entry.second;
}

std::optional<std::string> rootName(const QelMox::Tree& tree) {
    const QelMox::Node* const root = tree.GetReqNode(QelMox::Tree::RootId).data;
    return root != nullptr ? std::optional(root->GetName()) : std::nullopt;
}

// A node that a path has passed through, and where its name ends in the path.
struct PassedNode {
    unsigned int id;
    std::size_t nameEnd;
};

// A path, and the nodes that it has passed through, from the root on.
struct PassedPath {
    const std::string* path = nullptr;
    std::vector<PassedNode> nodes;
};

std::size_t endOf(const Component::PathSplitter::Iterator& component, const std::string& path) {
    return static_cast<std::size_t>(component.base() - path.begin());
}

} // namespace

/// Merges paths into the tree, one after another.
template <typename Paths, typename Result>
struct Components<Paths, Result>::Visitor {
    QelMox::Tree& tree;
    const std::string& separator;
    std::optional<std::string>& knownRootName;
    PassedPath& former;

    /// @return the id of the path's last node, or 0 for a path without components.
    unsigned int merge(const std::string& path, const AttributeMap& attributes) const {
        if (path.empty()) {
            return 0;
        }
        if (!path.starts_with(separator)) {
            QEL_THROW(Exception::InvalidArguments("Relative paths not supported"));
        }
        const std::size_t start = followFormerPath(path);
        const Component::PathSplitter splitter(path, separator.c_str(), start);
        auto component = splitter.begin();
        if (component.at_end()) {
            return 0;
        }
        std::string name = *component;
        if (start == 0) {
            addMergeNode(name);
            former.nodes.push_back({QelMox::Tree::RootId, endOf(component, path)});
            ++component;
        }
        // A path of only the root's name makes a node of that name below the root: no path gives the root's id.
        while (!component.at_end()) {
            name = *component;
            const std::size_t nameEnd = endOf(component, path);
            if (!(++component).at_end()) {
                tree.AddGroupNode(name);
                former.nodes.push_back({tree.GetCurrentId(), nameEnd});
            }
        }
        return addLast(name, path.ends_with(separator), attributes);
    }

    /// Makes the last of the nodes current that the former path has passed through and this one passes through as
    /// well: paths that follow each other mostly begin alike.
    /// @return where the node's name ends, or 0 if there is no such node; the current node is then as before.
    std::size_t followFormerPath(const std::string& path) const {
        while (!former.nodes.empty() && !passesThrough(former.nodes.back(), path)) {
            former.nodes.pop_back();
        }
        former.path = &path;
        if (former.nodes.empty()) {
            return 0;
        }
        tree.SetCurrentId(former.nodes.back().id);
        return former.nodes.back().nameEnd;
    }

    // The path is the same up to the separator after the node's name, and goes on with another name.
    bool passesThrough(const PassedNode& node, const std::string& path) const {
        const std::size_t length = node.nameEnd + 1;
        return path.compare(0, length, *former.path, 0, length) == 0 &&
               path.find_first_not_of(separator.c_str(), node.nameEnd) != std::string::npos;
    }

    /// Handles a path's first component, which names the root.
    void addMergeNode(const std::string& component) const {
        if (!knownRootName) {
            tree.SetRootGroup(component, QelUtil::AttributeList());
            knownRootName = component;
        } else if (*knownRootName == component) {
            tree.SetCurrentId(QelMox::Tree::RootId);
        } else {
            QEL_THROW(Exception::NotYetImplemented());
        }
    }

    /// Adds what the path's last component names.
    unsigned int addLast(const std::string& name, bool isGroup, const AttributeMap& attributes) const {
        if (!isGroup) {
            tree.AddShapeNode(name);
            return tree.GetCurrentId();
        }
        tree.AddGroupNode(name);
        // The attributes are only checked: groups made by paths have none.
        (void)Helper::Attributes::toAttributeList(attributes);
        return tree.GetCurrentId();
    }
};

template <typename Paths, typename Result>
void Components<Paths, Result>::update(Database& database) {
    if (paths_.empty()) {
        return;
    }
    database.assertOpenedForWriting();
    result_.setZero(static_cast<Eigen::Index>(paths_.size()));
    database.assertNotEmpty();
    QelMox::Tree& tree = database.tree();
    std::optional<std::string> knownRootName = rootName(tree);
    PassedPath former;
    const Visitor visitor{tree, separator_, knownRootName, former};
    Eigen::Index i = 0;
    for (const auto& entry : paths_) {
        result_[i] = visitor.merge(pathOf(entry), attributesOf(entry));
        ++i;
    }
}

template class Components<std::vector<std::string>, IdArray>;
template class Components<std::map<std::string, AttributeMap>, IdArray>;

} // namespace Qel::Mox2::Adder
