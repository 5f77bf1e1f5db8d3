#pragma once

#include "../export/vtk/VtkReading.h"
#include "ModelContent.h"

/// Expects that a VTK file holds the mesh of the file from which a model was made, and its results in one
/// step.
/// @param step Its place; anything if the original has none.
void expectVtk(const VtkMeshRead& mesh, const ModelContent& original, std::size_t step);
