#pragma once

#include <string>

namespace MoxTool {

/// The kinds of files that `mox import` reads.
enum class ModelFormat {
    Exodus, ///< A netCDF file, and every HDF5 file that is not CGNS, since netCDF keeps files in HDF5 too.
    Cgns,   ///< HDF5 with the nodes of CGNS, or ADF.
    Gmsh,   ///< A mesh file that begins with $MeshFormat, or with $Comments before it.
    Unknown,
};

/// Recognises a file by its content; its name does not matter.
/// @throws Failure if there is no such file, or it can't be read.
ModelFormat recogniseFormat(const std::string& path);

} // namespace MoxTool
