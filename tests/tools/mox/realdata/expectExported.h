#pragma once

#include "ModelContent.h"

/// Expects that an Exodus file holds all that a file held from which a model was made: what is left of it
/// after an import and an export.
void expectExported(const ModelContent& exported, const ModelContent& original);
