#pragma once

#include <Qel/Mox/Node.h>

#include <MoxReader/Node.h>

#include <memory>
#include <string>

namespace MoxTool {

/// The content of a node of a file for a new model, without datasets and without the place of node sets.
/// @param name Its name in the new model.
/// @return null for a root that was never set.
std::unique_ptr<QelMox::Node> nodePayload(const MoxReader::Node& node, const std::string& name);

/// What an earlier node of the same type has in place of what this one has, such as "another material"; empty if one
/// can stand for both. Floats are compared by their bits, without those that mean nothing.
std::string nodeDifference(const QelMox::Node& payload, const MoxReader::Node& node);

} // namespace MoxTool
