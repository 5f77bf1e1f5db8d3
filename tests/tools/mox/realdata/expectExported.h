#pragma once

#include "ModelContent.h"

/// Expects that an Exodus file holds everything that an import and an export preserve of the original file.
void expectExported(const ModelContent& exported, const ModelContent& original);
