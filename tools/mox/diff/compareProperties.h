#pragma once

#include "DifferenceList.h"

#include <MoxReader/GlobalInformation.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

// Each adds to the list in what two things of one kind differ, at the list's place.

void compareGroups(DifferenceList& list, const MoxReader::Group& a, const MoxReader::Group& b);

/// The fourth value of the emissive colour means nothing and is not looked at.
void compareMaterials(DifferenceList& list, const MoxReader::Material& a, const MoxReader::Material& b);

/// Pairs sets of one name in their order.
void compareNodeSets(DifferenceList& list, const std::vector<MoxReader::NodeSet>& a,
                     const std::vector<MoxReader::NodeSet>& b);

/// Who saved the files.
/// @param withDate Whether the dates count.
void compareSaves(DifferenceList& list, const MoxReader::GlobalInformation& a,
                  const MoxReader::GlobalInformation& b, bool withDate);

} // namespace MoxTool
