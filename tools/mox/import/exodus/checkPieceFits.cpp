#include "checkPieceFits.h"

#include "../../common/Failure.h"
#include "../../common/utf8Path.h"
#include "../../common/visibleText.h"

#include <fmt/core.h>

#include <filesystem>
#include <string>
#include <vector>

namespace MoxTool {

namespace {

std::string fileName(const ExodusFile& file) {
    return visibleText(utf8Of(pathOf(file.path()).filename()));
}

[[noreturn]] void refuse(const ExodusFile& piece, const std::string& has, const ExodusFile& first,
                         const std::string& otherHas) {
    throw Failure(piece.path(), fmt::format("has {}, but {} has {}; they are not pieces of one run", has,
                                            fileName(first), otherHas));
}

std::string counted(std::int64_t count, const std::string& thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

void checkProcessors(const ExodusFile& piece, std::size_t count) {
    const auto processors = piece.dimensionLength("num_processors");
    if (processors && *processors != static_cast<std::int64_t>(count)) {
        throw Failure(piece.path(),
                      fmt::format("is one of {} pieces, but by its name one of {}", *processors, count));
    }
}

struct GlobalCount {
    const char* dimension;
    const char* thing;
};

constexpr GlobalCount GlobalCounts[] = {
    {"num_nodes_global", "node"},
    {"num_elems_global", "element"},
    {"num_el_blk_global", "element block"},
};

void checkGlobalCounts(const ExodusFile& piece, const ExodusFile& first) {
    if (piece.dimension() != first.dimension()) {
        refuse(piece, counted(piece.dimension(), "dimension"), first, std::to_string(first.dimension()));
    }
    for (const auto& global : GlobalCounts) {
        const auto count = piece.dimensionLength(global.dimension);
        const auto other = first.dimensionLength(global.dimension);
        if (count && other && *count != *other) {
            refuse(piece, fmt::format("a share of {}", counted(*count, global.thing)), first,
                   fmt::format("one of {}", *other));
        }
    }
}

void refuseVariables(const ExodusFile& piece, const std::vector<std::string>& names, const ExodusFile& other,
                     const std::vector<std::string>& others, const char* kind) {
    if (names.size() != others.size()) {
        refuse(piece, counted(static_cast<std::int64_t>(names.size()), fmt::format("{} variable", kind)),
               other, std::to_string(others.size()));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] != others[i]) {
            refuse(piece, fmt::format("{} variable {} \"{}\"", kind, i + 1, visibleText(names[i])), other,
                   fmt::format("\"{}\"", visibleText(others[i])));
        }
    }
}

const char* kindOf(ex_entity_type type) {
    return type == EX_NODAL ? "nodal" : type == EX_ELEM_BLOCK ? "element" : "global";
}

[[noreturn]] void refuseWithoutSteps(const ExodusFile& piece, const ExodusFile& other) {
    throw Failure(piece.path(), fmt::format("has no steps, but {} has {}; it was not written to its end, or "
                                            "they are not pieces of one run",
                                            fileName(other), other.times().size()));
}

void checkSteps(const ExodusFile& piece, const ExodusFile& first) {
    const auto& times = piece.times();
    const auto& others = first.times();
    if (times.empty() != others.empty()) {
        times.empty() ? refuseWithoutSteps(piece, first) : refuseWithoutSteps(first, piece);
    }
    if (times.size() != others.size()) {
        refuse(piece, counted(static_cast<std::int64_t>(times.size()), "step"), first,
               std::to_string(others.size()));
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (times[i] != others[i]) {
            refuse(piece, fmt::format("the time {} at step {}", times[i], i + 1), first,
                   fmt::format("{}", others[i]));
        }
    }
}

} // namespace

void checkPieceFits(const ExodusFile& piece, const ExodusFile& first, std::size_t count) {
    checkProcessors(piece, count);
    checkGlobalCounts(piece, first);
    checkSteps(piece, first);
}

void checkPieceVariables(const ExodusFile& piece, const ExodusFile& other, ex_entity_type type) {
    const auto names = piece.variableNames(type);
    if (!names.empty() || canHoldVariables(piece, type)) {
        refuseVariables(piece, names, other, other.variableNames(type), kindOf(type));
    }
}

bool canHoldVariables(const ExodusFile& piece, ex_entity_type type) {
    switch (type) {
    case EX_NODAL:
        return piece.counts().num_nodes > 0;
    case EX_ELEM_BLOCK:
        return piece.counts().num_elem > 0;
    default:
        return true;
    }
}

} // namespace MoxTool
