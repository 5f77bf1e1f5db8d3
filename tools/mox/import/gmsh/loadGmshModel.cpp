#include "loadGmshModel.h"

#include "../../common/Failure.h"
#include "../../common/utf8Path.h"

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/dll/shared_library.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <filesystem>

namespace MoxTool {

namespace {

namespace fs = std::filesystem;

fs::path findModule() {
    const auto folder = boost::dll::program_location().parent_path();
    const auto beside = folder / MOX_GMSH_MODULE;
    return fs::exists(beside) ? beside : folder / MOX_LIBRARY_FOLDER / MOX_GMSH_MODULE;
}

boost::dll::shared_library loadModule(const std::string& path) {
    const auto module = findModule();
    if (!fs::exists(module)) {
        throw Failure(path, fmt::format("can't be read: {} is missing; install mox anew",
                                        utf8Of(module.lexically_normal())));
    }
    try {
        return boost::dll::shared_library(module);
    } catch (const std::exception& error) {
        std::string reason = error.what();
        std::replace(reason.begin(), reason.end(), '\n', ' ');
        throw Failure(path, fmt::format("can't be read: is the Gmsh library installed? ({})", reason));
    }
}

} // namespace

std::unique_ptr<GmshModel> loadGmshModel(const std::string& path) {
    // Kept until the process ends, since the library can't be loaded a second time.
    static const auto module = loadModule(path);
    return std::unique_ptr<GmshModel>(module.get<OpenGmshModel>(OpenGmshModelName)(path.c_str()));
}

} // namespace MoxTool
