#pragma once

#include <MoxReader/Node.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace MoxTool {

/// The paths of nodes as commands print them and take them: what one prints leads another to the same node.
///
/// A path is "/" and a name for each level from the root on, such as /car/door. In a name, \/ stands for a
/// slash, \\ for a backslash, and \n, \r, \t and \xNN for what visibleText() replaces. The geometry of a
/// shape shares the path of its shape.
///
/// "#" and an id is the node of that id: #12. Where a path alone would lead to another node, or is cut since
/// it is long, the id follows it: /car/door#12. So a last name that ends like this has a backslash before the
/// "#".
class NodePaths {
public:
    /// @param nodes In the order of the file; the place of a node in it, from 1, is its id. Their links can be
    ///              damaged. Must outlive this object.
    explicit NodePaths(const std::vector<MoxReader::Node>& nodes);

    /// The path of a node. Of one that is longer than 4096 bytes only the end is given, after "...", since a
    /// tree can nest so deeply that all paths together are far larger than their file.
    std::string of(std::uint32_t id) const;

    /// The same without the id, so siblings of one name have the same.
    /// @param id From 1 to the number of nodes.
    std::string namesTo(std::uint32_t id) const;

    /// The node that a path leads to. The path before a "#" and an id can be missing, but if it is there, it
    /// has to be that of the node.
    /// @return null if there is no such node.
    const MoxReader::Node* find(std::string_view path) const;

    /// What to say of a path that leads to no node. It names a node whose path ends in the same way, if there is
    /// one, since paths begin at the root.
    std::string whyNone(std::string_view path) const;

private:
    using Key = std::pair<std::uint32_t, std::string_view>; // the parent's id, and the name

    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };

    const MoxReader::Node* nodeOf(std::uint32_t id) const;
    std::uint32_t shownId(std::uint32_t id) const;
    const MoxReader::Node* findByNames(std::string_view path) const;

    const std::vector<MoxReader::Node>& nodes_;
    std::unordered_map<Key, std::uint32_t, KeyHash> firstOfName_;
    std::vector<bool> isReached_; ///< For each node whether its names alone lead to it.
};

} // namespace MoxTool
