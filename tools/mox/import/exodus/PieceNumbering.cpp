#include "PieceNumbering.h"

#include <algorithm>

namespace MoxTool {

namespace {

std::vector<std::int64_t> sortedNumbers(const std::vector<PieceNumbers>& pieces) {
    std::vector<std::int64_t> all;
    for (const auto& piece : pieces) {
        all.insert(all.end(), piece.order.begin(), piece.order.end());
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

} // namespace

PieceNumbering::PieceNumbering(const std::vector<PieceNumbers>& pieces) {
    const auto sorted = sortedNumbers(pieces);
    ids_.resize(sorted.size());
    std::vector<std::uint32_t> lastPiece(sorted.size()); // from 1; 0 for none yet
    for (std::size_t piece = 0; piece < pieces.size(); ++piece) {
        place(piece, pieces[piece], sorted, lastPiece);
    }
}

void PieceNumbering::place(std::size_t piece, const PieceNumbers& numbers,
                           const std::vector<std::int64_t>& sorted, std::vector<std::uint32_t>& lastPiece) {
    auto& places = places_.emplace_back();
    places.reserve(numbers.order.size());
    for (std::size_t i = 0; i < numbers.order.size(); ++i) {
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), numbers.order[i]);
        const auto at = static_cast<std::size_t>(found - sorted.begin());
        const auto id = numbers.ids[i];
        const bool isShared = lastPiece[at] != 0;
        if (isShared && !shared_) {
            shared_ = Clash{piece, id};
        }
        if (isShared && (lastPiece[at] == piece + 1 || ids_[at] != id) && !clash_) {
            clash_ = Clash{piece, id};
        }
        ids_[at] = isShared ? ids_[at] : id;
        lastPiece[at] = static_cast<std::uint32_t>(piece + 1);
        places.push_back(static_cast<std::uint32_t>(at));
    }
}

} // namespace MoxTool
