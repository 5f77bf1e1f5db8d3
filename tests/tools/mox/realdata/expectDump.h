#pragma once

#include "ModelContent.h"

#include <nlohmann/json.hpp>

/// Expects that the output of `mox dump` has the geometries, nodes, elements, datasets and steps of the file
/// from which the model was made.
void expectDump(const nlohmann::json& dump, const ModelContent& original);
