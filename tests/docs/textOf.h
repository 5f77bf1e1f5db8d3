#pragma once

#include <filesystem>
#include <string>

/// All of a file.
std::string textOf(const std::filesystem::path& path);
