#pragma once

#include "ExodusBlock.h"
#include "QaRecord.h"

#include <exodusII.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// An open Exodus II file, for reading: the Exodus library in terms of vectors and strings.
///
/// Steps, variables and blocks count from 0 here. Every function throws Failure, with the file's path, if the
/// library can't read what is asked for. The library's own messages are silenced, for the whole process.
class ExodusFile {
public:
    /// @throws Failure if there is no such file, if it is no Exodus II file, or if it is damaged or cut off.
    explicit ExodusFile(const std::string& filePath);
    ExodusFile(const ExodusFile&) = delete;
    ExodusFile& operator=(const ExodusFile&) = delete;

    const std::string& path() const { return filePath_; }
    /// The library's number of the open file, which netCDF functions take as well.
    int handle() const { return file_.id; }

    /// Counts of everything and the title, as the library gives them.
    const ex_init_params& counts() const { return parameters_; }
    int dimension() const { return static_cast<int>(parameters_.num_dim); }
    /// The version of the library that wrote the file.
    float apiVersion() const;
    float fileVersion() const { return version_; }
    bool hasDoublePrecision() const { return wordSize_ == 8; }
    std::vector<QaRecord> qaRecords() const;
    /// One of the library's counts.
    std::int64_t inquire(ex_inquiry what) const;

    const std::vector<ExodusBlock>& blocks() const { return elementBlocks_; }
    /// One coordinate of every node, for an axis below dimension().
    std::vector<double> coordinates(int axis) const;
    /// The application's ids, one for each node or element; 1, 2, 3 and so on where the file has none.
    std::vector<std::int64_t> idMap(ex_entity_type type, std::int64_t count) const;
    /// One-based numbers of nodes, element by element.
    std::vector<std::int64_t> connectivity(const ExodusBlock& block) const;
    /// The number of nodes of each element of an NSIDED block.
    std::vector<int> nodesOfEachElement(const ExodusBlock& block) const;

    /// The names of the numbers that the file gives for each element of a block.
    std::vector<std::string> attributeNames(const ExodusBlock& block) const;
    /// One name for each axis; may be empty.
    std::vector<std::string> coordinateNames() const;

    /// The ids of all sets, blocks or maps of a type.
    std::vector<std::int64_t> ids(ex_entity_type type, std::int64_t count) const;
    /// Their names; an empty text for each that has none.
    std::vector<std::string> names(ex_entity_type type, std::int64_t count) const;

    const std::vector<double>& times() const { return stepTimes_; }
    std::vector<std::string> variableNames(ex_entity_type type) const;
    /// Row by row, one row for each block: whether the block has the variable.
    std::vector<int> elementTruthTable(std::size_t variableCount) const;
    /// One step of one variable.
    /// @param entity The id of an element block; anything for nodes.
    std::vector<double> values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                               std::size_t step, std::int64_t count) const;
    /// All global variables of one step.
    std::vector<double> globalValues(std::size_t step, std::size_t variableCount) const;

private:
    // Closes the file, even if the constructor fails.
    struct Handle {
        ~Handle();
        int id = -1;
    };

    void open();
    void readParameters();
    void readBlocks();
    void readTimes();
    void refuseRepeatedIds(const std::vector<std::int64_t>& blockIds,
                           const std::vector<std::string>& blockNames) const;
    void checkElementType(std::size_t place) const;
    void check(int status, const char* what) const;

    std::string filePath_;
    Handle file_;
    int wordSize_ = 0;
    float version_ = 0;
    std::size_t nameLength_ = 0;
    ex_init_params parameters_{};
    std::vector<ExodusBlock> elementBlocks_;
    std::vector<double> stepTimes_;
};

} // namespace MoxTool
