#pragma once

#include <filesystem>
#include <random>
#include <string>

/// The name of a file that is removed in the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& extension = ".mox")
        : path((std::filesystem::temp_directory_path() /
                ("moxwriter-benchmark-" + std::to_string(std::random_device()()) + extension))
                   .string()) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path); }

    const std::string path;
};
