#include "../libraryVersions.h"

#include <cgnslib.h>
#include <hdf5.h>

#include <fmt/format.h>

namespace MoxTool {

std::string cgnsVersion() {
    unsigned int major = 0, minor = 0, release = 0;
    H5get_libversion(&major, &minor, &release);
    return fmt::format("{}.{}.{} with HDF5 {}.{}.{}", CGNS_VERSION / 1000, CGNS_VERSION / 100 % 10,
                       CGNS_VERSION / 10 % 10, major, minor, release);
}

} // namespace MoxTool
