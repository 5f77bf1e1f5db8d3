#pragma once

#include "ExodusBlock.h"
#include "QaRecord.h"

#include <exodusII.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// An Exodus II file in the making: the Exodus library in terms of vectors and strings. All real numbers are
/// written in double precision, so that times keep all digits.
///
/// Steps and variables count from 0 here. The calls must come in the order in which they are declared. Every
/// function throws Failure if the library can't write. The library's own messages are silenced, for the whole
/// process.
class ExodusOutput {
public:
    static constexpr std::size_t LongestName = 255; ///< The longest name of a block or a variable.
    static constexpr std::size_t LongestTitle = MAX_LINE_LENGTH;
    /// The longest element type or field of a QA record.
    static constexpr std::size_t LongestText = MAX_STR_LENGTH;

    struct Layout {
        std::string title;
        int dimension = 3;
        std::size_t nodes = 0;
        std::size_t elements = 0;
        std::size_t blocks = 0;
        std::size_t nameLength = 0; ///< The length of the longest name of a block or a variable.
        bool largeIds = false;      ///< An id map or a block has an id beyond 2147483647.
    };

    /// Replaces a file of that name.
    /// @param shown For failures: the path as the user gave it.
    ExodusOutput(const std::string& path, std::string shown, const Layout& layout);
    ExodusOutput(const ExodusOutput&) = delete;
    ExodusOutput& operator=(const ExodusOutput&) = delete;
    /// Closes the file and ignores errors.
    ~ExodusOutput();

    void qaRecords(const std::vector<QaRecord>& records);
    /// One coordinate of every node. @param axis Below the dimension.
    void coordinates(int axis, const std::vector<double>& values);
    /// @param nodes   Places of nodes, from 0, element by element.
    /// @param lengths The number of nodes of each element of an NSIDED block; else none.
    void block(const ExodusBlock& block, const std::vector<std::uint32_t>& nodes,
               const std::vector<std::uint32_t>& lengths);
    /// @param type EX_NODE_MAP or EX_ELEM_MAP.
    void idMap(ex_entity_type type, const std::vector<std::int64_t>& ids);
    /// Does nothing without names.
    void variables(ex_entity_type type, const std::vector<std::string>& names);
    /// Row by row, one row for each block: whether the block has the element variable.
    void truthTable(std::size_t blocks, std::size_t variables, std::vector<int> table);

    void time(std::size_t step, double time);
    void globals(std::size_t step, const std::vector<double>& values);
    /// Values of nodes that follow one another. @param first Counted from 0.
    void nodal(std::size_t step, std::size_t variable, std::size_t first, const std::vector<double>& values);
    void elemental(std::size_t step, std::size_t variable, std::int64_t block,
                   const std::vector<double>& values);

    /// Completes the file. To be called once, at the end.
    void close();

private:
    void create(const std::string& path, bool largeIds);
    void check(int status) const;

    std::string shown_;
    int file_ = -1;
};

} // namespace MoxTool
