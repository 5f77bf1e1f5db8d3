#include "WorkLimit.h"

#include "Failure.h"
#include "numberText.h"

#include <fmt/core.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace MoxTool {

namespace {

constexpr std::uint64_t MostTimes = 100;

std::uint64_t mostBytes(std::uint64_t fileSize, std::uint64_t alwaysFine) {
    constexpr auto Most = std::numeric_limits<std::uint64_t>::max();
    return fileSize > Most / MostTimes ? Most : std::max(alwaysFine, MostTimes * fileSize);
}

} // namespace

WorkLimit::WorkLimit(std::string file, std::uint64_t fileSize, bool isOff, std::uint64_t alwaysFine)
    : file_(std::move(file)),
      fileSize_(fileSize),
      isOff_(isOff),
      mostBytes_(mostBytes(fileSize, alwaysFine)) {}

bool WorkLimit::allows(std::uint64_t bytes, std::uint64_t times) const {
    return isOff_ || bytes == 0 || times <= (mostBytes_ - total_) / bytes;
}

void WorkLimit::add(std::uint64_t bytes, std::uint64_t times) {
    if (!allows(bytes, times)) {
        throw Failure(file_, fmt::format("its {} would become more than {} of numbers, since parts or steps "
                                         "share them; {} goes on all the same",
                                         byteText(fileSize_), byteText(mostBytes_), Option));
    }
    total_ += isOff_ ? 0 : bytes * times;
}

} // namespace MoxTool
