// Runs one work and prints its figures, a line for each phase and one for all of them:
//
//     phase NAME wall_s=... cpu_s=... user_s=... sys_s=... [compress_s=...]
//     total wall_s=... cpu_s=... user_s=... sys_s=... [compress_s=...] peak_kib=... file_bytes=...

#include "common/Work.h"
#include "common/process.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string_view>

namespace {

using namespace Workloads;

int printHelp(const char* const program) {
    std::fprintf(stderr,
                 "Usage: %s WORK SIZE FILE\nSaves a model into FILE, replacing it, and prints the "
                 "figures.\n",
                 program);
    for (const Work& work : works()) {
        std::fprintf(stderr, "  %-16s SIZE: %s\n", work.name, work.unit);
    }
    return 2;
}

void printUsage(const Usage& usage) {
    std::printf(" wall_s=%.6f cpu_s=%.6f user_s=%.6f sys_s=%.6f", usage.wall, usage.cpu, usage.user,
                usage.system);
    if (usage.compress) {
        std::printf(" compress_s=%.6f", *usage.compress);
    }
}

void add(Usage& sum, const Usage& usage) {
    sum.wall += usage.wall;
    sum.cpu += usage.cpu;
    sum.user += usage.user;
    sum.system += usage.system;
    if (usage.compress) {
        sum.compress = sum.compress.value_or(0) + *usage.compress;
    }
}

void printFigures(const Stopwatch& watch, const std::string& path) {
    Usage total;
    for (const Stopwatch::Phase& phase : watch.phases()) {
        std::printf("phase %s", phase.name.c_str());
        printUsage(phase.usage);
        std::printf("\n");
        add(total, phase.usage);
    }
    std::printf("total");
    printUsage(total);
    std::printf(" peak_kib=%llu file_bytes=%llu\n", static_cast<unsigned long long>(peakMemory()),
                static_cast<unsigned long long>(std::filesystem::file_size(path)));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        return printHelp(arguments[0]);
    }
    const auto work = std::ranges::find_if(
        works(), [&](const Work& each) { return std::strcmp(each.name, arguments[1]) == 0; });
    const std::string_view text = arguments[2];
    std::uint64_t size = 0;
    const auto parsed = std::from_chars(text.begin(), text.end(), size);
    if (work == works().end() || parsed.ec != std::errc() || parsed.ptr != text.end() || size == 0) {
        return printHelp(arguments[0]);
    }
    try {
        const std::string path = arguments[3];
        std::filesystem::remove(path);
        Stopwatch watch;
        work->run(size, path, watch);
        watch.stop();
        printFigures(watch, path);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s: %s\n", arguments[0], failure.what());
        return 1;
    }
    return 0;
}
