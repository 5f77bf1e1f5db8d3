#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>

namespace Support {

namespace {

// Names in UTF-8, whatever the system keeps them in.
std::string utf8NameOf(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    constexpr int attempts = 100;
    std::random_device random;
    for (int i = 0; i < attempts; ++i) {
        folder_ = std::filesystem::temp_directory_path() / ("moxwriter-test-" + std::to_string(random()));
        if (std::filesystem::create_directory(folder_)) {
            return;
        }
    }
    throw std::runtime_error("no name is free for a temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string TemporaryFolder::path(const std::string& name) const {
    return utf8NameOf(folder_ / std::u8string(name.begin(), name.end()));
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
}

std::string TemporaryFolder::read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TemporaryFolder::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
        names.push_back(utf8NameOf(entry.path().filename()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace Support
