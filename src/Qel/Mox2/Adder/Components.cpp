#include <Qel/Mox2/Adder/Components.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox2/Component/PathSplitter.h>
#include <Qel/Mox2/Helper/Attributes.h>

#include <optional>
#include <utility>

namespace Qel::Mox2::Adder {

namespace {

constexpr unsigned int RootId = 1;

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
    const QelMox::Node* const root = tree.GetReqNode(RootId).data;
    return root != nullptr ? std::optional(root->GetName()) : std::nullopt;
}

} // namespace

/// Merges paths into the tree, one after another.
template <typename Paths, typename Result>
struct Components<Paths, Result>::Visitor {
    QelMox::Tree& tree;
    const std::string& separator;
    std::optional<std::string>& knownRootName;

    /// @return the id of the path's last node, or 0 for a path without components.
    unsigned int merge(const std::string& path, const AttributeMap& attributes) const {
        if (path.empty()) {
            return 0;
        }
        if (!path.starts_with(separator)) {
            QEL_THROW(Exception::InvalidArguments("Relative paths not supported"));
        }
        const Component::PathSplitter splitter(path, separator.c_str());
        auto component = splitter.begin();
        if (component == splitter.end()) {
            return 0;
        }
        addMergeNode(*component);
        return addBelowRoot(component, splitter.end(), path.ends_with(separator), attributes);
    }

    /// Handles a path's first component, which names the root.
    void addMergeNode(const std::string& component) const {
        if (!knownRootName) {
            tree.SetRootGroup(component, QelUtil::AttributeList());
            knownRootName = component;
        } else if (*knownRootName == component) {
            tree.SetCurrentId(RootId);
        } else {
            QEL_THROW(Exception::NotYetImplemented());
        }
    }

    // A path of only the root's name makes a node of that name below the root: no path gives the root's id.
    unsigned int addBelowRoot(Component::PathSplitter::Iterator component,
                              const Component::PathSplitter::Iterator& end, bool endsInGroup,
                              const AttributeMap& attributes) const {
        std::string name = *component;
        if (++component != end) {
            name = *component;
            ++component;
        }
        for (; component != end; ++component) {
            tree.AddGroupNode(name);
            name = *component;
        }
        if (!endsInGroup) {
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
    const Visitor visitor{tree, separator_, knownRootName};
    Eigen::Index i = 0;
    for (const auto& entry : paths_) {
        result_[i] = visitor.merge(pathOf(entry), attributesOf(entry));
        ++i;
    }
}

template class Components<std::vector<std::string>, IdArray>;
template class Components<std::map<std::string, AttributeMap>, IdArray>;

} // namespace Qel::Mox2::Adder
