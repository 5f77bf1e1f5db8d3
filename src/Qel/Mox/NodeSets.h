#pragma once

#include <Qel/Mox/Node.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace QelTnf {
class TnFile;
}

namespace QelMox {

/// Named sets of pairs of numbers. No call of the model makes such a node, but a save writes it if there is
/// one.
class NodeSets final : public Node {
public:
    struct NodeSet {
        std::string name;
        std::vector<std::pair<unsigned int, unsigned int>> members;
    };

    explicit NodeSets(std::string name);

    std::string GetTypeName() const override;
    std::string GetVersion() const override;

    /// Makes this the node of sets that are in the file already: WriteHeavy() then puts nothing.
    /// @param count The number of sets.
    void SetStored(std::uint32_t count, std::uint64_t position, std::uint32_t size);

    /// The number of sets, whether they are in memory or in the file.
    std::uint32_t GetSetCount() const;

    /// Puts all sets into a name's stream, as five lists, and records where they are.
    void WriteHeavy(QelTnf::TnFile& container, const std::string& blockName);

    std::vector<NodeSet> sets;
    /// The position at which WriteHeavy() put the sets.
    std::uint64_t heavyPosition = 0;
    /// The number of bytes that WriteHeavy() put.
    std::uint32_t heavySize = 0;

private:
    std::optional<std::uint32_t> storedCount_;
};

} // namespace QelMox
