#pragma once

#include "../../exodus/ExodusSource.h"
#include "../PieceFiles.h"
#include "ExodusPieces.h"
#include "PieceNumbering.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace MoxTool {

/// The whole of a decomposed Exodus model: the pieces put together again, in the order in which the whole file has
/// its nodes and elements.
///
/// The number maps give that order. Where every piece has a map "original_global_id_map" beside them, that one holds
/// the ids, as the usual decomposers write it; elsewhere the number maps do. A node that pieces share has the
/// coordinates and results of the first of them. The title is empty if it differs, since it then names a processor.
///
/// Keeps the places of all nodes and elements in memory, and one array of numbers at a time.
class DecomposedExodus final : public ExodusSource {
public:
    /// @throws Failure if a piece can't be read, or if they don't fit together; it names the piece.
    explicit DecomposedExodus(const PieceFiles& files);

    const ExodusPieces& pieces() const { return pieces_; }
    /// Nodes of the whole that no piece has.
    std::int64_t absentNodes() const { return absentNodes_; }

    /// The name of the maps that hold the application's ids, where there are any.
    static const char* takenMap() { return "original_global_id_map"; }

    const std::string& path() const override { return path_; }
    const ex_init_params& counts() const override { return parameters_; }
    float apiVersion() const override { return pieces_.open(0)->apiVersion(); }
    float fileVersion() const override { return pieces_.open(0)->fileVersion(); }
    /// Those of the first piece that has any.
    std::vector<QaRecord> qaRecords() const override;

    const std::vector<ExodusBlock>& blocks() const override { return blocks_; }
    std::vector<double> coordinates(int axis) const override;
    std::vector<std::int64_t> idMap(ex_entity_type type, std::int64_t count) const override;
    std::vector<std::int64_t> connectivity(const ExodusBlock& block) const override;
    std::vector<int> nodesOfEachElement(const ExodusBlock& block) const override;

    const std::vector<double>& times() const override { return times_; }
    /// Those of the first piece that can have any.
    std::vector<std::string> variableNames(ex_entity_type type) const override;
    std::vector<int> elementTruthTable(std::size_t variableCount) const override;
    std::vector<double> values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                               std::size_t step, std::int64_t count) const override;
    /// Those of the first piece.
    std::vector<double> globalValues(std::size_t step, std::size_t variableCount) const override;

private:
    void readCounts(std::size_t count);
    void checkVariables() const;
    std::size_t pieceWithVariables(ex_entity_type type) const;
    void addCounts(const ex_init_params& counts);
    void addBlocks(std::size_t rank);
    std::size_t addBlock(std::size_t rank, const ExodusBlock& block, std::size_t next);
    void numberNodes();
    void numberElements();
    std::vector<std::vector<PieceNumbers>> readElementNumbers() const;
    void countElements();
    std::vector<std::size_t> connectivityStarts(const ExodusBlock& block) const;
    void placeCoordinates(std::size_t rank, int axis, std::vector<double>& whole,
                          std::vector<bool>& isPlaced) const;
    void placeConnectivity(std::size_t rank, const ExodusBlock& block, const std::vector<std::size_t>& starts,
                           std::vector<std::int64_t>& whole) const;
    std::vector<double> nodeValues(std::size_t variable, std::size_t step) const;
    std::vector<double> elementValues(std::size_t variable, std::int64_t block, std::size_t step) const;
    void fillTruthTable(std::size_t rank, std::size_t variableCount, std::vector<int>& table,
                        std::vector<bool>& isKnown) const;
    std::size_t placeOf(std::int64_t blockId) const;

    std::string path_;
    ExodusPieces pieces_;
    ex_init_params parameters_{};
    std::vector<ExodusBlock> blocks_;
    std::vector<double> times_;
    std::unique_ptr<PieceNumbering> nodes_;
    std::vector<PieceNumbering> elements_; // of each block
    std::int64_t absentNodes_ = 0;
};

} // namespace MoxTool
