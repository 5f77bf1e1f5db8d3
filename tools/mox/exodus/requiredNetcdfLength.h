#pragma once

#include <cstdint>
#include <istream>

namespace MoxTool {

/// The minimum number of bytes that a netCDF file of one of the classic kinds (CDF-1, CDF-2, CDF-5) must have
/// to hold everything that its header promises.
///
/// The netCDF library reads zeros where such a file ends too early, so only its length shows that a file was
/// cut off.
///
/// @param file At its first byte; moved.
/// @throws std::runtime_error if the header itself is cut off or makes no sense.
std::uint64_t requiredNetcdfLength(std::istream& file);

} // namespace MoxTool
