// Makes the files of the corpus anew: make_golden FOLDER. Leaves those that are the same but for the date and
// the lengths that zlib decides.

#include "Support/FileContent.h"
#include "Support/GoldenFiles.h"

#include <MoxReader/Error.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

bool isUpToDate(const fs::path& former, const fs::path& today) {
    if (!fs::exists(former)) {
        return false;
    }
    try {
        return Golden::readFileContent(former.string()) == Golden::readFileContent(today.string());
    } catch (const MoxReader::Error&) {
        return false;
    }
}

void make(const Golden::GoldenFile& file, const fs::path& folder) {
    const auto path = folder / (file.name + ".mox");
    const auto today = folder / (file.name + ".mox.new");
    file.save(today.string());
    if (isUpToDate(path, today)) {
        fs::remove(today);
    } else {
        fs::rename(today, path);
        std::printf("%s\n", path.string().c_str());
    }
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_golden FOLDER\n");
        return 2;
    }
    for (const auto& file : Golden::goldenFiles()) {
        make(file, argv[1]);
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "make_golden: %s\n", error.what());
    return 1;
}
