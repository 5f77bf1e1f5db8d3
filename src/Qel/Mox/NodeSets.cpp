#include <Qel/Mox/NodeSets.h>

#include <Qel/Mox/Format.h>
#include <Qel/Tnf/TnFile.h>

namespace QelMox {

// Kept though nothing calls it; see docs/oddities.md.
NodeSets::NodeSets(std::string name) : Node(std::move(name)) {}

std::string NodeSets::GetTypeName() const {
    return std::string(Format::NodeSetsType);
}

std::string NodeSets::GetVersion() const {
    return std::string(Format::NodeSetsVersion);
}

void NodeSets::SetStored(std::uint32_t count, std::uint64_t position, std::uint32_t size) {
    storedCount_ = count;
    heavyPosition = position;
    heavySize = size;
}

std::uint32_t NodeSets::GetSetCount() const {
    return storedCount_.value_or(static_cast<std::uint32_t>(sets.size()));
}

void NodeSets::WriteHeavy(QelTnf::TnFile& container, const std::string& blockName) {
    if (storedCount_) {
        return;
    }
    std::vector<unsigned int> nameOffsets = {0};
    std::string names;
    std::vector<unsigned int> memberOffsets = {0};
    std::vector<unsigned int> firsts;
    std::vector<unsigned int> seconds;
    for (const NodeSet& set : sets) {
        names += set.name;
        nameOffsets.push_back(static_cast<unsigned int>(names.size()));
        for (const auto& [first, second] : set.members) {
            firsts.push_back(first);
            seconds.push_back(second);
        }
        memberOffsets.push_back(static_cast<unsigned int>(firsts.size()));
    }

    QelTnf::Index& index = container.GetIndex();
    heavyPosition = index.GetStreamSize(blockName);
    index.Put(blockName, nameOffsets);
    index.Put(blockName, names);
    index.Put(blockName, memberOffsets);
    index.Put(blockName, firsts);
    index.Put(blockName, seconds);
    heavySize = static_cast<std::uint32_t>(index.GetStreamSize(blockName) - heavyPosition);
}

} // namespace QelMox
