#include "Support/TemporaryFolder.h"

#include <random>
#include <stdexcept>
#include <system_error>

namespace Support {

TemporaryFolder::TemporaryFolder() {
    constexpr int attempts = 100;
    std::random_device random;
    for (int i = 0; i < attempts; ++i) {
        folder = std::filesystem::temp_directory_path() / ("moxwriter-test-" + std::to_string(random()));
        if (std::filesystem::create_directory(folder)) {
            return;
        }
    }
    throw std::runtime_error("no name is free for a temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string TemporaryFolder::path(const std::string& name) const {
    return (folder / name).string();
}

} // namespace Support
