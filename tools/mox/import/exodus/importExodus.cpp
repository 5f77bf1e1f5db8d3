#include "importExodus.h"

#include "../../common/utf8Path.h"
#include "../../exodus/ExodusFile.h"
#include "../model/JoinedImport.h"
#include "../model/saveImported.h"
#include "DecomposedExodus.h"
#include "ExodusMeshImporter.h"
#include "ExodusResultImporter.h"
#include "listSkippedExodusContent.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace MoxTool {

namespace {

const std::string Library = "libexodus";

void importFrom(const ExodusSource& input, const ImportRequest& request, ImportTarget& target) {
    const auto mesh = ExodusMeshImporter(input, target).run();
    target.choices.check(request.input);
    ExodusResultImporter(input, mesh, target).run();
}

void noteIfPiece(const ExodusFile& input, ConversionSummary& summary) {
    const auto pieces = input.dimensionLength("num_processors").value_or(1);
    if (pieces < 2) {
        return;
    }
    const auto advice = PieceName::of(input.path())
                            ? "--all-parts imports all as one"
                            : "--all-parts imports all as one where they are named like run.e.4.0";
    summary.addNote(fmt::format("{} is one of {} pieces of a decomposed model; {}",
                                utf8Of(pathOf(input.path()).filename()), pieces, advice));
}

void importFile(const ImportRequest& request, ImportTarget& target) {
    const ExodusFile input(request.input);
    importFrom(input, request, target);
    listSkippedExodusContent(input, target.summary);
    noteIfPiece(input, target.summary);
}

void importWhole(const ImportRequest& request, ImportTarget& target) {
    const DecomposedExodus input(*request.pieces);
    importFrom(input, request, target);
    for (std::size_t rank = 0; rank < input.pieces().count(); ++rank) {
        ConversionSummary ofPiece(request.output);
        listSkippedExodusContent(*input.pieces().open(rank), ofPiece,
                                 request.keepsPieces ? "" : input.takenMap());
        target.summary.addSkippedOf(ofPiece);
    }
    target.summary.addSkipped("nodes of the whole that no piece has", input.absentNodes());
}

ModelFiller fillerOf(const ImportRequest& request) {
    return [request](ImportTarget& target) {
        if (request.pieces) {
            importWhole(request, target);
        } else {
            importFile(request, target);
        }
    };
}

ImportPart partOf(const ImportRequest& request, const std::string& name, const ImportShare& share) {
    auto own = request;
    own.share = share;
    return {name + ".mox", own, fillerOf(own)};
}

// What is not taken of pieces, the whole says too.
ImportPart pieceOf(const ImportRequest& request, std::size_t rank, const std::string& root) {
    auto own = request;
    own.input = request.pieces->paths[rank];
    own.pieces.reset();
    own.share.rootOfPiece = root;
    return {std::to_string(rank) + ".mox", own,
            [own](ImportTarget& target) { importFrom(ExodusFile(own.input), own, target); }};
}

void addCounts(const ConversionSummary& part, ConversionSummary& whole) {
    whole.shapes += part.shapes;
    whole.nodes += part.nodes;
    whole.elements += part.elements;
    whole.datasets += part.datasets;
}

/// The root has the attributes that it has where the pieces are put together.
ConversionSummary importEachPiece(const ImportRequest& request, Terminal& terminal) {
    JoinedImport output(request, Library, terminal);
    auto summary = output.save({partOf(request, "root", {.hasShapes = false})}).front();
    const auto root = output.rootName("root.mox");
    std::vector<ImportPart> pieces;
    for (std::size_t rank = 0; rank < request.pieces->paths.size(); ++rank) {
        pieces.push_back(pieceOf(request, rank, root));
    }
    for (const auto& piece : output.save(pieces)) {
        addCounts(piece, summary);
        summary.steps = std::max(summary.steps, piece.steps);
        summary.compressor = piece.compressor;
    }
    output.join(" piece {file}", summary);
    return summary;
}

/// Each process takes some of the steps, and the first one the mesh.
ConversionSummary importStepsAtOnce(const ImportRequest& request, Terminal& terminal) {
    JoinedImport output(request, Library, terminal);
    std::vector<ImportPart> shares;
    for (std::size_t place = 0; place < request.processes; ++place) {
        shares.push_back(
            partOf(request, std::to_string(place), {.place = place, .count = request.processes}));
    }
    const auto summaries = output.save(shares);
    auto summary = summaries.front();
    for (const auto& other : std::span(summaries).subspan(1)) {
        summary.steps += other.steps;
        summary.datasets += other.datasets;
    }
    output.join("", summary);
    return summary;
}

} // namespace

ConversionSummary importExodus(const ImportRequest& request, Terminal& terminal) {
    if (request.keepsPieces) {
        return importEachPiece(request, terminal);
    }
    if (request.processes > 1) {
        return importStepsAtOnce(request, terminal);
    }
    return saveImported(request, Library, terminal, fillerOf(request));
}

} // namespace MoxTool
