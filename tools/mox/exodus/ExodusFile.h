#pragma once

#include "ExodusSource.h"

#include <exodusII.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// An open Exodus II file, for reading: the Exodus library in terms of vectors and strings.
///
/// Every function throws Failure, with the file's path, if the library can't read what is asked for. The library's
/// own messages are silenced, for the whole process.
class ExodusFile final : public ExodusSource {
public:
    /// @throws Failure if there is no such file, if it is no Exodus II file, or if it is damaged or cut off.
    explicit ExodusFile(const std::string& filePath);

    /// The library's number of the open file, which netCDF functions take as well.
    int handle() const { return file_.id; }
    bool hasDoublePrecision() const { return wordSize_ == 8; }
    /// One of the library's counts.
    std::int64_t inquire(ex_inquiry what) const;
    /// The length of a netCDF dimension; nothing if the file has none of this name.
    std::optional<std::int64_t> dimensionLength(const char* name) const;

    const std::string& path() const override { return filePath_; }
    const ex_init_params& counts() const override { return parameters_; }
    float apiVersion() const override;
    float fileVersion() const override { return version_; }
    std::vector<QaRecord> qaRecords() const override;

    const std::vector<ExodusBlock>& blocks() const override { return elementBlocks_; }
    std::vector<double> coordinates(int axis) const override;
    std::vector<std::int64_t> idMap(ex_entity_type type, std::int64_t count) const override;
    std::vector<std::int64_t> connectivity(const ExodusBlock& block) const override;
    std::vector<int> nodesOfEachElement(const ExodusBlock& block) const override;

    /// A further number for each node or element, from the map of this name.
    /// @param type EX_NODE_MAP or EX_ELEM_MAP.
    /// @return nothing if there is no map of this name.
    std::optional<std::vector<std::int64_t>> numberMap(ex_entity_type type, const std::string& name) const;

    /// The names of the numbers that the file gives for each element of a block.
    std::vector<std::string> attributeNames(const ExodusBlock& block) const;
    /// One name for each axis; may be empty.
    std::vector<std::string> coordinateNames() const;

    /// The ids of all sets, blocks or maps of a type.
    std::vector<std::int64_t> ids(ex_entity_type type, std::int64_t count) const;
    /// Their names; an empty text for each that has none.
    std::vector<std::string> names(ex_entity_type type, std::int64_t count) const;

    const std::vector<double>& times() const override { return stepTimes_; }
    std::vector<std::string> variableNames(ex_entity_type type) const override;
    std::vector<int> elementTruthTable(std::size_t variableCount) const override;
    std::vector<double> values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                               std::size_t step, std::int64_t count) const override;
    std::vector<double> globalValues(std::size_t step, std::size_t variableCount) const override;

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
