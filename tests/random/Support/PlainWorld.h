#pragma once

#include "random/Support/Call.h"
#include "random/Support/PlainModel.h"

#include <optional>
#include <string>
#include <vector>

namespace RandomUse {

/// All models of a process, their folder and the process's environment.
struct PlainWorld {
    /// @param path The folder's path, with a slash at the end.
    PlainWorld(const std::string& path, unsigned modelCount) : models(modelCount, PlainModel(path, files)) {}
    PlainWorld(const PlainWorld&) = delete;
    PlainWorld& operator=(const PlainWorld&) = delete;

    Outcome play(const Call& call) {
        if (const auto* const setting = std::get_if<SetBlockSize>(&call.action)) {
            blockSize = setting->value;
        }
        return models.at(call.model).play(call.action, blockSize);
    }

    PlainFolder files;
    std::vector<PlainModel> models;
    std::optional<std::string> blockSize;
};

/// Models that sequences use at the same time.
constexpr unsigned ModelCount = 3;

} // namespace RandomUse
