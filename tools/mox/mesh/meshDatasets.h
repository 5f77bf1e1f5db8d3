#pragma once

#include <MoxReader/Node.h>

namespace MoxTool {

// Which datasets of a geometry form its mesh. All are recognised by their type, and connectivity is
// distinguished from a part's list of elements by the latter's name.

/// Null if the geometry has none without a step; the same goes for the next two.
const MoxReader::Dataset* findCoordinates(const MoxReader::Node& geometry);
const MoxReader::Dataset* findConnectivity(const MoxReader::Node& geometry);
const MoxReader::Dataset* findPolylength(const MoxReader::Node& geometry);
/// Whether it has all three.
bool isComplete(const MoxReader::Node& geometry);

/// The dimension, from 1 to 3, of the elements of a connectivity.
int connectivityDimension(const MoxReader::Dataset& connectivity);

} // namespace MoxTool
