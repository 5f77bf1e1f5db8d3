#include "ShapeWriter.h"

#include "blockColor.h"

#include <cstdint>

namespace MoxTool {

using Qel::Mox2::DatasetType;

namespace {

// The dataset types of elements of one dimension.
struct ElementDatasets {
    DatasetType connectivity;
    DatasetType polylength;
};

// By dimension, from 0.
constexpr ElementDatasets DatasetsByDimension[] = {
    {DatasetType::Connectivity0, DatasetType::Polylength0},
    {DatasetType::Connectivity0, DatasetType::Polylength0},
    {DatasetType::Connectivity1, DatasetType::Polylength1},
    {DatasetType::Connectivity2, DatasetType::Polylength2},
};

} // namespace

unsigned int ShapeWriter::addShape(unsigned int parent, const std::string& name, std::size_t place) {
    model_.setCurrentNodeId(parent);
    const auto geometry = model_.addNode(Qel::Mox2::NodeType::Shape, name);
    Qel::Mox2::NodeProperties properties;
    properties.set(Qel::Mox2::PropertyType::DiffuseColor, blockColor(place));
    model_.setNodeData(geometry, properties);
    ++summary_.shapes;
    return geometry;
}

void ShapeWriter::addElements(unsigned int geometry, const ElementTable& elements) {
    const auto& types = DatasetsByDimension[elements.dimension];
    const DatasetWriter::Ids target(1, geometry);
    writer_.writeIntegers(types.connectivity, elements.connectivity, target, elements.attributes);
    writer_.writeIntegers(types.polylength, elements.polylength, target);
    writer_.writeIntegers(DatasetType::ElementIds, elements.ids, target);
    summary_.elements += static_cast<std::int64_t>(elements.polylength.size());
}

} // namespace MoxTool
