#pragma once

#include <MoxReader/Source.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace MoxTool {

/// How an import reads a file that is not a MOX file.
enum class ForeignFormat {
    Exodus, ///< A netCDF file, and every HDF5 file that is not CGNS, since netCDF keeps files in HDF5 too.
    Cgns,
    Gmsh,
    Other, ///< Not at all.
};

/// What a file is by its first bytes.
struct ForeignKind {
    ForeignFormat format;
    std::string_view text;         ///< For the user: what it is and what can be done about it.
    std::string_view decompressor; ///< The program that decompresses it; empty if it is not compressed.
};

/// How much of a file's beginning is enough to recognise it: the names by which files in a common container are
/// told apart are near it.
inline constexpr std::size_t ForeignSearchLength = std::size_t{1} << 20U;

/// @param start The first bytes.
bool isMox(std::string_view start);

/// @param start The first bytes, up to ForeignSearchLength.
std::optional<ForeignKind> recogniseForeign(std::string_view start);

/// What a file that is not a MOX file is, by its first bytes, with what can be done about it, such as "an
/// Exodus II file; mox import converts it". Empty for a MOX file and for a file of no known kind.
/// @throws MoxReader::Error with ReadFailed only.
std::string foreignKind(MoxReader::Source& source);

/// @throws Failure if the file is of a known kind other than MOX.
void refuseForeignFile(const std::string& path, MoxReader::Source& source);

} // namespace MoxTool
