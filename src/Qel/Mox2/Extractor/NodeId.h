#pragma once

#include <Qel/Base/Extractor.h>
#include <Qel/Mox2/Database.h>

#include <string>

namespace Qel::Mox2::Extractor {

/// Looks a node up by its path; see Model::getNodeId().
class NodeId final : public Base::Extractor<Database, unsigned int> {
public:
    /// The arguments must live as long as the operation.
    NodeId(const std::string& path, const std::string& separator) : path_(path), separator_(separator) {}

    /// @return the node's id, or 0 for an empty path or if there is no such node.
    unsigned int extract(Database& database) override;

private:
    const std::string& path_;
    const std::string& separator_;
};

} // namespace Qel::Mox2::Extractor
