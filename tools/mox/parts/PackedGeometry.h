#pragma once

#include "DatasetRecord.h"

#include <Qel/Mox/Geometry.h>

#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// A geometry that keeps its entries packed and unpacks them only while it is written: many files together have
/// more entries than would fit in memory otherwise.
class PackedGeometry : public QelMox::Geometry {
public:
    using QelMox::Geometry::Geometry;

    /// Adds entries one by one, from add() to the end of a piece, at which their memory is cut to size.
    void add(const DatasetRecord& record);
    void endPiece();

    /// The number of entries so far; the index that the next one gets.
    std::uint32_t count() const { return count_; }

    /// The keys of all entries, in the order of their indices.
    std::vector<std::string> keys() const;

    void WriteTn(QelTnf::BlockStream& lightData, QelTnf::BlockStream& heavyData,
                 QelTnf::BlockStream& attributes) const override;

private:
    std::vector<std::string> pieces_;
    std::string open_; ///< The entries since the last end of a piece.
    std::uint32_t count_ = 0;
};

} // namespace MoxTool
