#pragma once

#include "../../common/ConversionSummary.h"
#include "RealTable.h"

#include <Qel/Mox2/Model.h>

#include <string>
#include <vector>

namespace MoxTool {

/// Adds datasets to a model and counts them; refuses what the file format would silently cut off.
class DatasetWriter {
public:
    using Ids = Qel::Mox2::Array1d<unsigned int>;

    /// Both must outlive the writer.
    DatasetWriter(Qel::Mox2::Model& model, ConversionSummary& summary) : model_(model), summary_(summary) {}

    // Both throw std::length_error for a dataset of 4 GiB or more, BlockTooSmall for one that needs larger blocks, and
    // what Model::addArrayProperty() throws. They do nothing without ids or rows.

    /// One column of integers that belong to no step, under the type's own name.
    void writeIntegers(Qel::Mox2::DatasetType type, const std::vector<unsigned int>& values, const Ids& ids,
                       const Qel::Mox2::Attributes& attributes = {});
    void writeReals(const std::string& name, Qel::Mox2::DatasetType type, const RealTable& table,
                    const Ids& ids, const Qel::Mox2::Step& step,
                    const Qel::Mox2::Attributes& attributes = {});

private:
    Qel::Mox2::Model& model_;
    ConversionSummary& summary_;
};

} // namespace MoxTool
