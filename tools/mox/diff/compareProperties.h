#pragma once

#include "DifferenceList.h"

#include <MoxReader/GlobalInformation.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

// Each adds to the list, at its current place, how two things of one kind differ.

void compareGroups(DifferenceList& list, const MoxReader::Group& a, const MoxReader::Group& b);

/// The fourth value of the emissive colour means nothing and is ignored.
void compareMaterials(DifferenceList& list, const MoxReader::Material& a, const MoxReader::Material& b);

/// Pairs sets of one name in order.
void compareNodeSets(DifferenceList& list, const std::vector<MoxReader::NodeSet>& a,
                     const std::vector<MoxReader::NodeSet>& b);

/// Compares who saved the files.
/// @param withDate Whether the dates count.
void compareSaves(DifferenceList& list, const MoxReader::GlobalInformation& a,
                  const MoxReader::GlobalInformation& b, bool withDate);

} // namespace MoxTool
