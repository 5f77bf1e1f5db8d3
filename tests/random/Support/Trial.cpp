#include "random/Support/Trial.h"

#include "random/Support/Player.h"
#include "random/Support/fileDifference.h"

#include <filesystem>

namespace RandomUse {

std::string Trial::play(const Sequence& calls) {
    PlainWorld world(path_, ModelCount);
    blockSize_.set({});
    const std::string difference = playAll(calls, world);
    for (const auto& [file, content] : world.files) {
        std::filesystem::remove(path_ + file);
    }
    return difference;
}

std::string Trial::playAll(const Sequence& calls, PlainWorld& world) {
    Player player(path_, ModelCount);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const std::string difference = playCall(calls[i], player, world);
        if (!difference.empty()) {
            return "call " + std::to_string(i + 1) + ", " + describe(calls[i]) + ":\n" + difference;
        }
    }
    for (unsigned model = 0; model < ModelCount; ++model) {
        const std::string difference = playCall({model, Destroy{}}, player, world);
        if (!difference.empty()) {
            return "at the end, model " + std::to_string(model) + ":\n" + difference;
        }
    }
    return "";
}

std::string Trial::playCall(const Call& call, Player& player, PlainWorld& world) {
    PlainModel& model = world.models.at(call.model);
    const std::optional<std::string> fileBefore = model.file();
    const Outcome expected = world.play(call);
    if (std::holds_alternative<SetBlockSize>(call.action)) {
        blockSize_.set(world.blockSize);
        return "";
    }
    const std::string difference = player.play(call, expected);
    if (!difference.empty()) {
        return difference;
    }
    const auto* const opening = std::get_if<SaveTo>(&call.action);
    if (opening != nullptr && world.files.count(opening->file) != 0) {
        return compareFile(opening->file, world);
    }
    return fileBefore && !model.file() ? compareFile(*fileBefore, world) : "";
}

std::string Trial::compareFile(const std::string& file, const PlainWorld& world) const {
    constexpr std::uintmax_t bytesAtOpening = 12;
    const std::optional<PlainFile>& content = world.files.at(file);
    if (content) {
        return fileDifference(path_ + file, *content);
    }
    // A file that takes blocks before it is finished is longer.
    return std::filesystem::file_size(path_ + file) < bytesAtOpening ? "the opened file lacks its first bytes"
                                                                     : "";
}

Sequence Trial::shortened(Sequence calls) {
    for (std::size_t count = calls.size(); count > 0;) {
        if (!shorten(calls, count)) {
            count /= 2;
        }
    }
    return calls;
}

bool Trial::shorten(Sequence& calls, std::size_t count) {
    for (std::size_t start = 0; start + count <= calls.size(); ++start) {
        Sequence rest = calls;
        const auto from = rest.begin() + static_cast<std::ptrdiff_t>(start);
        rest.erase(from, from + static_cast<std::ptrdiff_t>(count));
        if (!play(rest).empty()) {
            calls = rest;
            return true;
        }
    }
    return false;
}

} // namespace RandomUse
