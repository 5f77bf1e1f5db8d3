#include "../libraryVersions.h"

#include <exodusII.h>
#include <netcdf.h>

#include <fmt/format.h>

#include <string_view>

namespace MoxTool {

// netCDF adds the date of its making to its version.
std::string exodusVersion() {
    const std::string_view netcdf = nc_inq_libvers();
    return fmt::format("{:.2f} with netCDF {}", EX_API_VERS, netcdf.substr(0, netcdf.find(' ')));
}

} // namespace MoxTool
