#pragma once

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>
#if !defined(__clang__)
#include <source_location>
#endif

/// All that differs between systems and compilers.
namespace QelUtil::Platform {

/// Whether anything exists at this path.
bool pathExists(const std::string& path);

/// Moves a stream to an offset from its start, even beyond its end.
/// @return whether it did; a null stream can't be moved.
bool seekTo(std::FILE* stream, std::uint64_t offset);

/// The local calendar time of `time`, in the time zone that the environment names now.
std::tm localTime(std::time_t time);

/// The host's name, cut to 79 bytes; empty if it can't be determined.
// Kept though nothing calls it; see docs/oddities.md.
std::string computerName();

/// The name of the user who runs the process, cut to 79 bytes; empty if it can't be determined.
// Kept though nothing calls it; see docs/oddities.md.
std::string userName();

// The column of the call, if the call leaves the argument out.
#if defined(__clang__)
constexpr std::uint_least32_t callColumn(std::uint_least32_t column = __builtin_COLUMN()) {
    return column;
}
#else
constexpr std::uint_least32_t
callColumn(const std::source_location& place = std::source_location::current()) {
    return place.column();
}
#endif

} // namespace QelUtil::Platform
