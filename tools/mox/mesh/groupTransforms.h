#pragma once

#include <MoxReader/Model.h>

#include <Eigen/Geometry>

#include <vector>

namespace MoxTool {

/// For each node of model.nodes() the product of the transforms of all groups from the root down to it, which
/// takes its coordinates into those of the whole model. A group scales, then rotates about an axis by an
/// angle in radians, then translates. Exactly the identity where no group does any of it.
std::vector<Eigen::Affine3d> groupTransforms(const MoxReader::Model& model);

} // namespace MoxTool
