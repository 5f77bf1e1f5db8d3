#include "followLinks.h"

#include <system_error>

namespace MoxTool {

namespace fs = std::filesystem;

fs::path followLinks(fs::path path) {
    constexpr int MostLinks = 40; // as many as Linux follows
    std::error_code error;
    for (int i = 0; i < MostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        const auto next = fs::read_symlink(path, error);
        if (error) {
            break;
        }
        path = path.parent_path() / next;
    }
    return path;
}

} // namespace MoxTool
