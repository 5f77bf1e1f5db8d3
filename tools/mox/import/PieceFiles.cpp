#include "PieceFiles.h"

#include "../common/Failure.h"
#include "../common/matchesGlob.h"
#include "../common/utf8Path.h"
#include "../common/visibleText.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <system_error>

namespace MoxTool {

namespace {

namespace fs = std::filesystem;

// A folder as it has to be written before a name: empty for the current one if the user has not named it.
std::vector<std::string> filesIn(const fs::path& folder) {
    std::vector<std::string> paths;
    std::error_code unreadable;
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, unreadable), end;
         !unreadable && entry != end; entry.increment(unreadable)) {
        paths.push_back(utf8Of(folder / entry->path().filename()));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string fileName(const std::string& path) {
    return visibleText(utf8Of(pathOf(path).filename()));
}

// "piece 3", "pieces 1, 3 and 7".
std::string listed(const std::vector<std::size_t>& ranks) {
    constexpr std::size_t Most = 10;
    const auto shown = std::min(ranks.size(), Most);
    std::string text = ranks.size() == 1 ? "piece " : "pieces ";
    for (std::size_t i = 0; i < shown; ++i) {
        text += i == 0 ? "" : i + 1 == ranks.size() ? " and " : ", ";
        text += std::to_string(ranks[i]);
    }
    return shown < ranks.size() ? text + fmt::format(" and {} more", ranks.size() - shown) : text;
}

// Pieces of one model, by rank.
using Found = std::map<std::size_t, std::string>;

void add(Found& found, const PieceName& name, const std::string& path) {
    const auto [first, isNew] = found.emplace(name.rank, path);
    if (!isNew) {
        throw Failure(path, fmt::format("is piece {} as {} is; remove one of them", name.rank,
                                        fileName(first->second)));
    }
}

PieceFiles complete(const std::string& asked, const PieceName& name, const Found& found) {
    std::vector<std::size_t> missing;
    PieceFiles files{name.whole, {}};
    for (std::size_t rank = 0; rank < name.count; ++rank) {
        if (const auto piece = found.find(rank); piece != found.end()) {
            files.paths.push_back(piece->second);
        } else {
            missing.push_back(rank);
        }
    }
    if (!missing.empty()) {
        throw Failure(asked, fmt::format("{} of {}, numbered from 0, {} missing", listed(missing), name.count,
                                         missing.size() == 1 ? "is" : "are"));
    }
    return files;
}

} // namespace

std::optional<PieceName> PieceName::of(const std::string& path) {
    static const std::regex Named("(.*[^/])[.]([0-9]{1,9})[.]([0-9]{1,9})");
    std::smatch match;
    if (!std::regex_match(path, match, Named)) {
        return std::nullopt;
    }
    const PieceName name{match[1], std::stoul(match[2]), std::stoul(match[3])};
    return name.rank < name.count ? std::optional(name) : std::nullopt;
}

PieceFiles PieceFiles::matching(const std::string& pattern) {
    const auto path = pathOf(pattern);
    std::optional<PieceName> first;
    Found found;
    std::string other;
    for (const auto& file : filesIn(path.parent_path())) {
        if (!matchesGlob(utf8Of(path.filename()), utf8Of(pathOf(file).filename()))) {
            continue;
        }
        const auto name = PieceName::of(file);
        if (!name) {
            other = file;
            continue;
        }
        if (first && (first->whole != name->whole || first->count != name->count)) {
            throw Failure(pattern,
                          fmt::format("matches pieces of different models or decompositions: {} and {}",
                                      fileName(found.begin()->second), fileName(file)));
        }
        first = name;
        add(found, *name, file);
    }
    if (!first) {
        throw Failure(pattern,
                      other.empty()
                          ? "matches no file"
                          : fmt::format("matches {}, which is not named as a piece is, such as run.e.4.0",
                                        fileName(other)));
    }
    return complete(pattern, *first, found);
}

PieceFiles PieceFiles::besides(const std::string& path) {
    const auto asked = PieceName::of(path);
    if (!asked) {
        throw Failure(path, "is not named as a piece is, such as run.e.4.0");
    }
    Found found;
    for (const auto& file : filesIn(pathOf(path).parent_path())) {
        const auto name = PieceName::of(file);
        if (name && name->whole == asked->whole && name->count == asked->count) {
            add(found, *name, file);
        }
    }
    return complete(path, *asked, found);
}

bool isFilePattern(const std::string& path) {
    std::error_code unreadable;
    return utf8Of(pathOf(path).filename()).find_first_of("*?") != std::string::npos &&
           !fs::exists(pathOf(path), unreadable);
}

} // namespace MoxTool
