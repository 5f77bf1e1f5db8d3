#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

/// The paths of the Exodus files at hand; one empty path if there are none, so that tests can say so.
inline std::vector<std::string> realExodusFiles() {
    const std::set<std::string> extensions = {".e", ".g", ".exo", ".ex2"};
    std::vector<std::string> paths;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(MOXWRITER_DATA_DIR, missing)) {
        if (extensions.contains(entry.path().extension().string()))
            paths.push_back(entry.path().string());
    }
    std::sort(paths.begin(), paths.end());
    return paths.empty() ? std::vector<std::string>{""} : paths;
}

inline std::string nameOfRealFile(const testing::TestParamInfo<std::string>& info) {
    auto name = info.param.empty() ? "none" : std::filesystem::path(info.param).filename().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
}
