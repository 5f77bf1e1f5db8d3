#include "importExodus.h"

#include "../../exodus/ExodusFile.h"
#include "../model/saveImported.h"
#include "DecomposedExodus.h"
#include "ExodusMeshImporter.h"
#include "ExodusResultImporter.h"
#include "listSkippedExodusContent.h"

#include <fmt/core.h>

#include <filesystem>

namespace MoxTool {

namespace {

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
                                std::filesystem::path(input.path()).filename().string(), pieces, advice));
}

void importFile(const ImportRequest& request, ImportTarget& target) {
    const ExodusFile input(request.input);
    importFrom(input, request, target);
    listSkippedExodusContent(input, target.summary);
    noteIfPiece(input, target.summary);
}

void importPieces(const ImportRequest& request, ImportTarget& target) {
    const DecomposedExodus input(*request.pieces);
    importFrom(input, request, target);
    for (std::size_t rank = 0; rank < input.pieces().count(); ++rank) {
        ConversionSummary ofPiece(request.output);
        listSkippedExodusContent(*input.pieces().open(rank), ofPiece, input.takenMap());
        target.summary.addSkippedOf(ofPiece);
    }
    target.summary.addSkipped("nodes of the whole that no piece has", input.absentNodes());
}

} // namespace

ConversionSummary importExodus(const ImportRequest& request, Terminal& terminal) {
    return saveImported(request, "libexodus", terminal, [&](ImportTarget& target) {
        if (request.pieces) {
            importPieces(request, target);
        } else {
            importFile(request, target);
        }
    });
}

} // namespace MoxTool
