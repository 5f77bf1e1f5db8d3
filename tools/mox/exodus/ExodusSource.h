#pragma once

#include "ExodusBlock.h"
#include "QaRecord.h"

#include <exodusII.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// The mesh and the results of an Exodus II model, from one file or from several.
///
/// Steps, variables and blocks count from 0 here. Every function throws Failure, with a file's path, if what is
/// asked for can't be read.
class ExodusSource {
public:
    ExodusSource() = default;
    ExodusSource(const ExodusSource&) = delete;
    ExodusSource& operator=(const ExodusSource&) = delete;
    virtual ~ExodusSource() = default;

    /// For messages, and to name the model by.
    virtual const std::string& path() const = 0;
    /// Counts of everything and the title, as the library gives them.
    virtual const ex_init_params& counts() const = 0;
    int dimension() const { return static_cast<int>(counts().num_dim); }
    /// The version of the library that wrote the file.
    virtual float apiVersion() const = 0;
    virtual float fileVersion() const = 0;
    virtual std::vector<QaRecord> qaRecords() const = 0;

    virtual const std::vector<ExodusBlock>& blocks() const = 0;
    /// One coordinate of every node, for an axis below dimension().
    virtual std::vector<double> coordinates(int axis) const = 0;
    /// The application's ids, one for each node or element; 1, 2, 3 and so on where the file has none.
    virtual std::vector<std::int64_t> idMap(ex_entity_type type, std::int64_t count) const = 0;
    /// One-based numbers of nodes, element by element.
    virtual std::vector<std::int64_t> connectivity(const ExodusBlock& block) const = 0;
    /// The number of nodes of each element of an NSIDED block.
    virtual std::vector<int> nodesOfEachElement(const ExodusBlock& block) const = 0;

    virtual const std::vector<double>& times() const = 0;
    virtual std::vector<std::string> variableNames(ex_entity_type type) const = 0;
    /// Row by row, one row for each block: whether the block has the variable.
    virtual std::vector<int> elementTruthTable(std::size_t variableCount) const = 0;
    /// One step of one variable.
    /// @param entity The id of an element block; anything for nodes.
    virtual std::vector<double> values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                                       std::size_t step, std::int64_t count) const = 0;
    /// All global variables of one step.
    virtual std::vector<double> globalValues(std::size_t step, std::size_t variableCount) const = 0;
};

} // namespace MoxTool
