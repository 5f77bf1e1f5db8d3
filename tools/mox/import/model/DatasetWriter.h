#pragma once

#include "../../common/ConversionSummary.h"
#include "FloatNarrowing.h"

#include <Qel/Mox2/Model.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace MoxTool {

/// A table of floats that is filled column by column from doubles.
class RealTable {
public:
    /// All zeros.
    RealTable(std::size_t rows, std::size_t columns) : width(columns), cells(rows * columns) {}

    /// @param values One for each row.
    void setColumn(std::size_t column, std::span<const double> values, FloatNarrowing& narrowing);

    std::size_t columns() const { return width; }
    std::size_t rows() const { return cells.size() / width; }
    /// Row by row.
    const std::vector<float>& numbers() const { return cells; }

private:
    std::size_t width;
    std::vector<float> cells;
};

/// Adds datasets to a model and counts them; refuses what the file format would cut off in silence.
class DatasetWriter {
public:
    using Ids = Qel::Mox2::Array1d<unsigned int>;

    /// Both must outlive the writer.
    DatasetWriter(Qel::Mox2::Model& target, ConversionSummary& results) : model(target), summary(results) {}

    // Both throw std::length_error for a dataset of 4 GiB or more, and what Model::addArrayProperty() throws.
    // They do nothing without ids or rows.

    /// One column of integers that belong to no step, under the type's own name.
    void writeIntegers(Qel::Mox2::DatasetType type, const std::vector<unsigned int>& values, const Ids& ids,
                       const Qel::Mox2::Attributes& attributes = {});
    void writeReals(const std::string& name, Qel::Mox2::DatasetType type, const RealTable& table,
                    const Ids& ids, const Qel::Mox2::Step& step,
                    const Qel::Mox2::Attributes& attributes = {});

private:
    Qel::Mox2::Model& model;
    ConversionSummary& summary;
};

} // namespace MoxTool
