#pragma once

#include "ResultDataset.h"

#include <Qel/Mox2/Attributes.h>

#include <string>
#include <vector>

namespace MoxTool {

/// "Component 1", "Component 2" and so on: the file's names of the variables that a dataset is made of. Empty
/// where the dataset has the name of its one variable.
/// @param names The list that ResultDataset::variables are places in.
Qel::Mox2::Attributes componentAttributes(const ResultDataset& result, const std::vector<std::string>& names);

} // namespace MoxTool
