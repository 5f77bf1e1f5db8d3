#pragma once

#include "../common/MoxRun.h"
#include "Support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// A run of `mox salvage` on a file of these bytes, and its output.
class Salvage {
public:
    explicit Salvage(const std::vector<std::uint8_t>& bytes, const std::vector<std::string>& options = {})
        : run(runMox(commandLine(bytes, options))), index(readIndex()) {}

    bool madeFolder() const { return std::filesystem::exists(folder_.path("out")); }
    std::string content(const nlohmann::json& entry) const {
        return folder_.read("out/" + entry.at("file").get<std::string>());
    }
    std::vector<std::string> lost() const { return index.at("lost").get<std::vector<std::string>>(); }

private:
    std::vector<std::string> commandLine(const std::vector<std::uint8_t>& bytes,
                                         const std::vector<std::string>& options) const {
        std::vector<std::string> line = {
            "salvage", folder_.write("damaged.mox", {bytes.begin(), bytes.end()}), folder_.path("out")};
        line.insert(line.end(), options.begin(), options.end());
        return line;
    }
    nlohmann::json readIndex() const {
        return madeFolder() ? nlohmann::json::parse(folder_.read("out/index.json")) : nlohmann::json();
    }

    Support::TemporaryFolder folder_;

public:
    MoxRun run;
    nlohmann::json index; ///< Null if there is none.
};
