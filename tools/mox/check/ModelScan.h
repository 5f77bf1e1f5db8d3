#pragma once

#include "FindingList.h"

#include <MoxReader/File.h>
#include <MoxReader/GlobalInformation.h>
#include <MoxReader/Node.h>

#include <set>
#include <string_view>
#include <vector>

namespace MoxTool {

/// Reads all streams except the numbers and continues after damage where it can. Each record is checked here;
/// whether the records fit together is left to other checks.
class ModelScan {
public:
    ModelScan(const MoxReader::File& file, FindingList& findings);

    /// @throws MoxReader::Error with ReadFailed only.
    void run();

    /// The nodes as far as they could be read. Their datasets are numbered by their place in this list.
    const std::vector<MoxReader::Node>& nodes() const { return scanned_; }
    /// Whether the descriptors of all nodes could be read.
    bool hasAllDescriptors() const { return descriptorsWhole_; }
    /// The ids of the blocks that have been read without damage.
    const std::set<std::uint64_t>& soundBlocks() const { return soundBlocks_; }

private:
    template <class Work>
    bool attempt(const Work& work, std::optional<std::uint32_t> node = {});

    using StreamScan = void (ModelScan::*)(MoxReader::StreamReader&);
    void scan(std::string_view name, StreamScan scanStream);
    void scanTree(MoxReader::StreamReader& tree);
    void checkKind(const MoxReader::Node& node);
    void scanLightData(MoxReader::StreamReader& light);
    bool seekDescriptor(MoxReader::StreamReader& light, const MoxReader::Node& node, std::uint32_t id);
    void scanDescriptor(MoxReader::StreamReader& light, MoxReader::Node& node, std::uint32_t id);
    void scanGeometry(MoxReader::StreamReader& light, MoxReader::Node& node, std::uint32_t id);
    void scanAttributes(MoxReader::StreamReader& attributes);
    void scanNodeAttributes(MoxReader::StreamReader& attributes, const MoxReader::Node& node,
                            std::uint32_t id);
    void scanAttributeRecord(MoxReader::StreamReader& attributes, std::uint32_t id,
                             const MoxReader::Dataset* dataset);
    void checkKeyOrder(MoxReader::StreamReader& attributes, std::uint64_t start, const FindingPlace& place);
    void scanMaterials(MoxReader::StreamReader& resources);
    void scanMaterial(MoxReader::StreamReader& resources, std::uint32_t id);
    void scanGlobalInformation(MoxReader::StreamReader& global);
    void checkEnd(const MoxReader::StreamReader& stream);
    std::uint32_t idOf(const MoxReader::Node& node) const {
        return static_cast<std::uint32_t>(&node - scanned_.data() + 1);
    }

    const MoxReader::File& file_;
    FindingList& findings_;
    std::vector<MoxReader::Node> scanned_;
    std::set<std::uint64_t> soundBlocks_;
    bool treeWhole_ = false; ///< If false, the other streams end with data of the missing nodes.
    bool descriptorsWhole_ = false;
    bool blockFailed_ = false; ///< The last failed attempt was due to a damaged block.
};

} // namespace MoxTool
