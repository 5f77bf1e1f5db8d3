#pragma once

#include "ModelContent.h"

#include <nlohmann/json.hpp>

/// Expects that the output of `mox dump` has the geometries, nodes, elements, datasets and steps that a file
/// has from which the model was made.
void expectDump(const nlohmann::json& dump, const ModelContent& original);
