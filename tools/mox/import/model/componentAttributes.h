#pragma once

#include "ResultDataset.h"

#include <Qel/Mox2/Attributes.h>

#include <string>
#include <vector>

namespace MoxTool {

/// "Component 1", "Component 2" and so on: the file's names of the variables that a dataset is made from.
/// Empty if the dataset has the name of its only variable.
/// @param names The list that ResultDataset::variables refers to.
Qel::Mox2::Attributes componentAttributes(const ResultDataset& result, const std::vector<std::string>& names);

} // namespace MoxTool
