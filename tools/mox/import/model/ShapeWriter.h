#pragma once

#include "../../common/ConversionSummary.h"
#include "DatasetWriter.h"
#include "ElementTable.h"

#include <Qel/Mox2/Model.h>

#include <cstddef>
#include <string>

namespace MoxTool {

/// Adds shapes and their elements to a model, and counts them.
class ShapeWriter {
public:
    /// Both must outlive the writer.
    ShapeWriter(Qel::Mox2::Model& model, ConversionSummary& summary)
        : model_(model), summary_(summary), writer_(model, summary) {}

    /// @param parent The node of the group that gets the shape.
    /// @param place  The place of the shape in its file, from 0: chooses its colour.
    /// @return the node of the shape's geometry.
    /// @throws anything that the model throws.
    unsigned int addShape(unsigned int parent, const std::string& name, std::size_t place);

    /// @throws std::length_error for more than a dataset can hold; anything that the model throws.
    void addElements(unsigned int geometry, const ElementTable& elements);

private:
    Qel::Mox2::Model& model_;
    ConversionSummary& summary_;
    DatasetWriter writer_;
};

} // namespace MoxTool
