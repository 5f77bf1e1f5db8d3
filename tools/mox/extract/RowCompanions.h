#pragma once

#include "../mesh/ResultPlace.h"
#include "NumberTable.h"

#include <MoxReader/Node.h>

#include <span>
#include <string>
#include <vector>

namespace MoxTool {

/// What the rows of a dataset belong to: the ids and the places of its nodes or elements.
class RowCompanions {
public:
    /// All must outlive this object.
    /// @param geometry The one that has the dataset.
    RowCompanions(NumberFile& file, const MoxReader::Node& geometry, const MoxReader::Dataset& dataset);

    // Each throws Failure if the geometry lacks what it takes.

    /// A column "id": those of "Node Ids" or of "Element IDs".
    NumberTable ids() const;
    /// The columns "x", "y" and "z", as the file has them: without the transforms of groups. Of an element it
    /// is the mean of its nodes.
    NumberTable coordinates() const;

private:
    NumberTable centres() const;
    void addCentre(std::vector<float>& centres, const std::vector<float>& points,
                   std::span<const std::uint32_t> element) const;
    std::vector<float> readPoints() const;
    std::vector<std::uint32_t> readIntegers(const MoxReader::Dataset* dataset, const char* name) const;
    std::string title() const;
    void requirePlace(const char* option) const;
    void requireRows(const NumberTable& table, const char* name) const;
    [[noreturn]] void fail(const std::string& reason) const;

    NumberFile& file_;
    const MoxReader::Node& geometry_;
    const MoxReader::Dataset& dataset_;
    ResultPlace place_;
};

} // namespace MoxTool
