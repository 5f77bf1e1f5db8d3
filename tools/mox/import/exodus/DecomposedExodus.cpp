#include "DecomposedExodus.h"

#include "../../common/Failure.h"
#include "../../common/lowerCase.h"
#include "../../common/visibleText.h"
#include "../../mesh/ElementType.h"
#include "../model/ImportLimits.h"
#include "blockName.h"
#include "checkPieceFits.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <optional>

namespace MoxTool {

namespace {

const ExodusBlock* findBlock(const ExodusFile& piece, std::int64_t id) {
    const auto found = std::ranges::find(piece.blocks(), id, &ExodusBlock::id);
    return found == piece.blocks().end() || found->elementCount == 0 ? nullptr : &*found;
}

std::int64_t numberCount(const ExodusFile& piece, ex_entity_type type) {
    return type == EX_NODE_MAP ? piece.counts().num_nodes : piece.counts().num_elem;
}

// Where a piece has further ids, its number map holds places.
PieceNumbers readNumbers(const ExodusFile& piece, ex_entity_type type, bool hasOriginalIds) {
    const auto count = numberCount(piece, type);
    if (count == 0) {
        return {};
    }
    PieceNumbers numbers;
    numbers.order = piece.idMap(type, count);
    numbers.ids = hasOriginalIds ? *piece.numberMap(type, DecomposedExodus::takenMap()) : numbers.order;
    return numbers;
}

// Whether all pieces have the map, but for those without anything to number.
bool haveOriginalIds(const ExodusPieces& pieces, ex_entity_type type) {
    for (std::size_t rank = 0; rank < pieces.count(); ++rank) {
        const auto piece = pieces.open(rank);
        if (numberCount(*piece, type) > 0 && !piece->numberMap(type, DecomposedExodus::takenMap())) {
            return false;
        }
    }
    return true;
}

PieceNumbers part(const PieceNumbers& numbers, const ExodusBlock& block) {
    const auto first = block.firstElement;
    const auto last = first + block.elementCount;
    return {{numbers.order.begin() + first, numbers.order.begin() + last},
            {numbers.ids.begin() + first, numbers.ids.begin() + last}};
}

// Files keep coordinates as float or double, all pieces alike; the rest is for those that were converted.
bool agree(double left, double right) {
    constexpr double Tolerance = 1e-6;
    return left == right || std::abs(left - right) <= Tolerance * std::max(std::abs(left), std::abs(right)) ||
           (std::isnan(left) && std::isnan(right));
}

void checkAlike(const ExodusBlock& block, const ExodusBlock& other, const ExodusFile& piece) {
    const bool isNsided = ElementType(block.elementType).isNsided();
    if (lowerCase(block.elementType) != lowerCase(other.elementType) ||
        (!isNsided && block.nodesPerElement != other.nodesPerElement)) {
        throw Failure(
            piece.path(),
            fmt::format("has {} of type {} with {} nodes, but the pieces before it of type {} with {}; they "
                        "are not pieces of one run",
                        visibleText(blockName(block)), visibleText(block.elementType), block.nodesPerElement,
                        visibleText(other.elementType), other.nodesPerElement));
    }
}

} // namespace

DecomposedExodus::DecomposedExodus(const PieceFiles& files) : path_(files.whole), pieces_(files.paths) {
    readCounts(files.paths.size());
    checkVariables();
    numberNodes();
    numberElements();
    countElements();
}

void DecomposedExodus::readCounts(std::size_t count) {
    const auto first = pieces_.open(0);
    parameters_ = first->counts();
    times_ = first->times();
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        const auto piece = pieces_.open(rank);
        checkPieceFits(*piece, *first, count);
        addCounts(piece->counts());
        addBlocks(rank);
    }
}

void DecomposedExodus::checkVariables() const {
    for (const auto type : {EX_NODAL, EX_ELEM_BLOCK, EX_GLOBAL}) {
        const auto other = pieces_.open(pieceWithVariables(type));
        for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
            checkPieceVariables(*pieces_.open(rank), *other, type);
        }
    }
}

// The first one, or piece 0 if none can have any.
std::size_t DecomposedExodus::pieceWithVariables(ex_entity_type type) const {
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        if (canHoldVariables(*pieces_.open(rank), type)) {
            return rank;
        }
    }
    return 0;
}

void DecomposedExodus::addCounts(const ex_init_params& counts) {
    if (std::strcmp(parameters_.title, counts.title) != 0) {
        parameters_.title[0] = '\0';
    }
    parameters_.num_node_sets = std::max(parameters_.num_node_sets, counts.num_node_sets);
    parameters_.num_side_sets = std::max(parameters_.num_side_sets, counts.num_side_sets);
}

// A block that only some pieces have comes after the one that is before it there, or else before the first one there
// that is known, or else last.
void DecomposedExodus::addBlocks(std::size_t rank) {
    const auto piece = pieces_.open(rank);
    const auto isKnown = [&](const ExodusBlock& block) { return placeOf(block.id) < blocks_.size(); };
    const auto known = std::ranges::find_if(piece->blocks(), isKnown);
    auto next = known == piece->blocks().end() ? blocks_.size() : placeOf(known->id);
    for (const auto& block : piece->blocks()) {
        next = addBlock(rank, block, next) + 1;
    }
}

std::size_t DecomposedExodus::addBlock(std::size_t rank, const ExodusBlock& block, std::size_t next) {
    const auto found = std::ranges::find(blocks_, block.id, &ExodusBlock::id);
    const auto at = found - blocks_.begin();
    if (found == blocks_.end()) {
        blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(next), block);
        return next;
    }
    if (found->name.empty()) {
        found->name = block.name;
    }
    if (block.elementCount == 0) {
        return static_cast<std::size_t>(at);
    }
    if (found->elementCount == 0) {
        const auto name = found->name;
        *found = block;
        found->name = name;
        return static_cast<std::size_t>(at);
    }
    checkAlike(block, *found, *pieces_.open(rank));
    found->elementCount += block.elementCount;
    if (ElementType(block.elementType).isNsided()) {
        found->nodesPerElement += block.nodesPerElement;
    }
    return static_cast<std::size_t>(at);
}

void DecomposedExodus::numberNodes() {
    const bool hasOriginalIds = haveOriginalIds(pieces_, EX_NODE_MAP);
    std::vector<PieceNumbers> numbers;
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        const auto piece = pieces_.open(rank);
        ImportLimits(pieces_.path(rank))
            .checkNodeCount(static_cast<std::uint64_t>(piece->counts().num_nodes));
        numbers.push_back(readNumbers(*piece, EX_NODE_MAP, hasOriginalIds));
    }
    nodes_ = std::make_unique<PieceNumbering>(numbers);
    if (const auto clash = nodes_->clash()) {
        throw Failure(
            pieces_.path(clash->piece),
            fmt::format("has a node {} whose number in the whole is another node's, in this piece or in "
                        "one before it; they are not pieces of one run",
                        clash->id));
    }
    parameters_.num_nodes = static_cast<std::int64_t>(nodes_->count());
    const auto global = pieces_.open(0)->dimensionLength("num_nodes_global");
    absentNodes_ = global ? *global - parameters_.num_nodes : 0;
}

void DecomposedExodus::numberElements() {
    for (const auto& numbers : readElementNumbers()) {
        const auto& numbering = elements_.emplace_back(numbers);
        if (const auto shared = numbering.shared()) {
            throw Failure(
                pieces_.path(shared->piece),
                fmt::format("has element {}, which is in another piece too, or here twice; they are not "
                            "pieces of one run",
                            shared->id));
        }
    }
}

// For each block, those of each piece.
std::vector<std::vector<PieceNumbers>> DecomposedExodus::readElementNumbers() const {
    const bool hasOriginalIds = haveOriginalIds(pieces_, EX_ELEM_MAP);
    std::vector<std::vector<PieceNumbers>> all(blocks_.size(), std::vector<PieceNumbers>(pieces_.count()));
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        const auto piece = pieces_.open(rank);
        const auto numbers = readNumbers(*piece, EX_ELEM_MAP, hasOriginalIds);
        for (const auto& block : piece->blocks()) {
            all[placeOf(block.id)][rank] = part(numbers, block);
        }
    }
    return all;
}

void DecomposedExodus::countElements() {
    std::int64_t count = 0;
    for (auto& block : blocks_) {
        block.firstElement = count;
        count += block.elementCount;
    }
    parameters_.num_elem = count;
    parameters_.num_elem_blk = static_cast<std::int64_t>(blocks_.size());
    const auto global = pieces_.open(0)->dimensionLength("num_elems_global");
    if (global && *global != count) {
        throw Failure(path_,
                      fmt::format("its pieces have {} elements, but the whole has {}; they are not pieces of "
                                  "one run",
                                  count, *global));
    }
}

std::vector<QaRecord> DecomposedExodus::qaRecords() const {
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        if (auto records = pieces_.open(rank)->qaRecords(); !records.empty()) {
            return records;
        }
    }
    return {};
}

std::vector<double> DecomposedExodus::coordinates(int axis) const {
    std::vector<double> whole(nodes_->count());
    std::vector<bool> isPlaced(whole.size());
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        placeCoordinates(rank, axis, whole, isPlaced);
    }
    return whole;
}

void DecomposedExodus::placeCoordinates(std::size_t rank, int axis, std::vector<double>& whole,
                                        std::vector<bool>& isPlaced) const {
    const auto& places = nodes_->places(rank);
    if (places.empty()) {
        return;
    }
    const auto values = pieces_.open(rank)->coordinates(axis);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto place = places[i];
        if (isPlaced[place] && !agree(whole[place], values[i])) {
            throw Failure(
                pieces_.path(rank),
                fmt::format("has node {} at {} = {}, but a piece before it has it at {}; they are not "
                            "pieces of one run",
                            nodes_->ids()[place], "xyz"[axis], values[i], whole[place]));
        }
        if (!isPlaced[place]) {
            whole[place] = values[i];
            isPlaced[place] = true;
        }
    }
}

std::vector<std::int64_t> DecomposedExodus::idMap(ex_entity_type type, std::int64_t) const {
    if (type == EX_NODE_MAP) {
        return nodes_->ids();
    }
    std::vector<std::int64_t> ids;
    for (const auto& block : elements_) {
        ids.insert(ids.end(), block.ids().begin(), block.ids().end());
    }
    return ids;
}

std::vector<std::int64_t> DecomposedExodus::connectivity(const ExodusBlock& block) const {
    const auto starts = connectivityStarts(block);
    std::vector<std::int64_t> whole(starts.back());
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        placeConnectivity(rank, block, starts, whole);
    }
    return whole;
}

// Where the nodes of each element begin, and where the last ones end.
std::vector<std::size_t> DecomposedExodus::connectivityStarts(const ExodusBlock& block) const {
    std::vector<std::size_t> starts = {0};
    if (ElementType(block.elementType).isNsided()) {
        for (const auto nodes : nodesOfEachElement(block)) {
            starts.push_back(starts.back() + static_cast<std::size_t>(nodes));
        }
    } else {
        for (std::int64_t i = 0; i < block.elementCount; ++i) {
            starts.push_back(starts.back() + static_cast<std::size_t>(block.nodesPerElement));
        }
    }
    return starts;
}

void DecomposedExodus::placeConnectivity(std::size_t rank, const ExodusBlock& block,
                                         const std::vector<std::size_t>& starts,
                                         std::vector<std::int64_t>& whole) const {
    const auto piece = pieces_.open(rank);
    const auto* const own = findBlock(*piece, block.id);
    if (own == nullptr) {
        return;
    }
    const auto& nodes = nodes_->places(rank);
    const auto connectivity = piece->connectivity(*own);
    auto next = connectivity.begin();
    for (const auto place : elements_[placeOf(block.id)].places(rank)) {
        for (auto at = starts[place]; at < starts[place + 1]; ++at, ++next) {
            if (next == connectivity.end() || *next < 1 || *next > std::ssize(nodes)) {
                throw Failure(piece->path(), fmt::format("damaged: {} refers to a node that is not there",
                                                         visibleText(blockName(block))));
            }
            whole[at] = std::int64_t{nodes[static_cast<std::size_t>(*next - 1)]} + 1;
        }
    }
}

std::vector<int> DecomposedExodus::nodesOfEachElement(const ExodusBlock& block) const {
    std::vector<int> whole(static_cast<std::size_t>(block.elementCount));
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        const auto piece = pieces_.open(rank);
        const auto* const own = findBlock(*piece, block.id);
        if (own == nullptr) {
            continue;
        }
        const auto counts = piece->nodesOfEachElement(*own);
        const auto& places = elements_[placeOf(block.id)].places(rank);
        for (std::size_t i = 0; i < places.size(); ++i) {
            whole[places[i]] = counts[i];
        }
    }
    return whole;
}

std::vector<std::string> DecomposedExodus::variableNames(ex_entity_type type) const {
    return pieces_.open(pieceWithVariables(type))->variableNames(type);
}

std::vector<int> DecomposedExodus::elementTruthTable(std::size_t variableCount) const {
    std::vector<int> table(blocks_.size() * variableCount);
    std::vector<bool> isKnown(blocks_.size());
    for (std::size_t rank = 0; rank < pieces_.count() && variableCount > 0; ++rank) {
        fillTruthTable(rank, variableCount, table, isKnown);
    }
    return table;
}

// A piece without elements of a block says nothing about it.
void DecomposedExodus::fillTruthTable(std::size_t rank, std::size_t variableCount, std::vector<int>& table,
                                      std::vector<bool>& isKnown) const {
    const auto piece = pieces_.open(rank);
    if (!canHoldVariables(*piece, EX_ELEM_BLOCK)) {
        return;
    }
    const auto own = piece->elementTruthTable(variableCount);
    for (std::size_t i = 0; i < piece->blocks().size(); ++i) {
        const auto& block = piece->blocks()[i];
        if (block.elementCount == 0) {
            continue;
        }
        const auto place = placeOf(block.id);
        for (std::size_t variable = 0; variable < variableCount; ++variable) {
            const int has = own[i * variableCount + variable] != 0 ? 1 : 0;
            auto& cell = table[place * variableCount + variable];
            if (isKnown[place] && cell != has) {
                throw Failure(
                    piece->path(),
                    fmt::format("has {} variable \"{}\" on {}, unlike the pieces before it; they are not "
                                "pieces of one run",
                                has != 0 ? "a" : "no", visibleText(variableNames(EX_ELEM_BLOCK)[variable]),
                                visibleText(blockName(block))));
            }
            cell = has;
        }
        isKnown[place] = true;
    }
}

std::vector<double> DecomposedExodus::values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                                             std::size_t step, std::int64_t) const {
    return type == EX_NODAL ? nodeValues(variable, step) : elementValues(variable, entity, step);
}

// The first piece with a node comes last, so that its value stays.
std::vector<double> DecomposedExodus::nodeValues(std::size_t variable, std::size_t step) const {
    std::vector<double> whole(nodes_->count());
    for (auto rank = pieces_.count(); rank-- > 0;) {
        const auto& places = nodes_->places(rank);
        if (places.empty()) {
            continue;
        }
        const auto values =
            pieces_.open(rank)->values(EX_NODAL, variable, 1, step, static_cast<std::int64_t>(places.size()));
        for (std::size_t i = 0; i < places.size(); ++i) {
            whole[places[i]] = values[i];
        }
    }
    return whole;
}

std::vector<double> DecomposedExodus::elementValues(std::size_t variable, std::int64_t block,
                                                    std::size_t step) const {
    const auto& numbering = elements_[placeOf(block)];
    std::vector<double> whole(numbering.count());
    for (std::size_t rank = 0; rank < pieces_.count(); ++rank) {
        const auto& places = numbering.places(rank);
        if (places.empty()) {
            continue;
        }
        const auto values = pieces_.open(rank)->values(EX_ELEM_BLOCK, variable, block, step,
                                                       static_cast<std::int64_t>(places.size()));
        for (std::size_t i = 0; i < places.size(); ++i) {
            whole[places[i]] = values[i];
        }
    }
    return whole;
}

std::vector<double> DecomposedExodus::globalValues(std::size_t step, std::size_t variableCount) const {
    return pieces_.open(0)->globalValues(step, variableCount);
}

std::size_t DecomposedExodus::placeOf(std::int64_t blockId) const {
    return static_cast<std::size_t>(std::ranges::find(blocks_, blockId, &ExodusBlock::id) - blocks_.begin());
}

} // namespace MoxTool
