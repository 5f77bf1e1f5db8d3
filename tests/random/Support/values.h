#pragma once

#include "random/Support/Call.h"

#include <Qel/Mox2/Attributes.h>
#include <Qel/Mox2/NodeProperties.h>
#include <Qel/Mox2/StepList.h>

/// The library's value classes, filled by each way that they offer.
namespace RandomUse {

Qel::Mox2::Attributes attributesOf(const AttributePairs& pairs);
Qel::Mox2::NodeProperties propertiesOf(const PropertyPairs& pairs);
Qel::Mox2::Step stepOf(const StepUse& step);
/// @throws std::logic_error if the list does not give the names that were set.
Qel::Mox2::StepList stepListOf(const std::vector<StepUse>& steps);

} // namespace RandomUse
