#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace MoxTool {

/// Nodes or elements of one piece: what they are sorted by in the whole, and the application's ids.
struct PieceNumbers {
    std::vector<std::int64_t> order;
    std::vector<std::int64_t> ids;
};

/// Where the nodes or elements of pieces are in the whole.
class PieceNumbering {
public:
    /// A node or element that two pieces disagree about.
    struct Clash {
        std::size_t piece; ///< The first of them is before it.
        std::int64_t id;
    };

    /// Those of one order number are one and the same.
    /// @param pieces Vectors of one length in each.
    explicit PieceNumbering(const std::vector<PieceNumbers>& pieces);

    std::size_t count() const { return ids_.size(); }
    const std::vector<std::int64_t>& ids() const { return ids_; }
    /// The places in the whole, from 0, of those of a piece.
    const std::vector<std::uint32_t>& places(std::size_t piece) const { return places_[piece]; }

    /// The first that is in one piece twice or has different ids in two.
    std::optional<Clash> clash() const { return clash_; }
    /// The first that is in two pieces, or in one piece twice.
    std::optional<Clash> shared() const { return shared_; }

private:
    void place(std::size_t piece, const PieceNumbers& numbers, const std::vector<std::int64_t>& sorted,
               std::vector<std::uint32_t>& lastPiece);

    std::vector<std::int64_t> ids_;
    std::vector<std::vector<std::uint32_t>> places_;
    std::optional<Clash> clash_;
    std::optional<Clash> shared_;
};

} // namespace MoxTool
