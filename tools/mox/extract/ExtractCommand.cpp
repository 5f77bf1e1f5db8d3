#include "ExtractCommand.h"

#include "../common/CommandLine.h"
#include "../common/NumberFile.h"
#include "../common/OutputFile.h"
#include "../common/Platform.h"
#include "../common/UsageError.h"
#include "../common/writeFile.h"
#include "FolderExtraction.h"
#include "findDataset.h"
#include "writeNumbers.h"

#include <filesystem>
#include <iostream>

namespace MoxTool {

namespace {

constexpr const char* Details =
    R"(A path is "/" and a name for each level from the root on; the path of a shape stands for its geometry as
well. In a name \/ stands for a slash and \\ for a backslash. "#12" is the node of id 12, and "/car/door#12"
too: so does mox print a path where several siblings have one name. Quote paths for the shell. mox tree shows
names, ids, datasets and steps.

Formats:
  csv  one line for each node or element, commas between its components, no title. Each number reads back
       equal; what is no number stands as nan, inf or -inf
  npy  for NumPy: float32 or uint32, of shape (items,) or (items, components)
  raw  the numbers alone: 4 bytes each, lowest byte first, item by item
Without --format the end of the name given by -o decides; otherwise it is csv.

--all makes one file for each dataset with numbers of its own, and index.json, which says for each dataset,
links as well, its node, name, step, type, shape and file.

Examples:
  mox extract bracket.mox --node /bracket/rib --data Coordinates
  mox extract bracket.mox --node /bracket/rib --data Displacement --step "Load 1" -o rib.npy
  mox extract bracket.mox --node '/bracket/left\/right' --data Stress
  mox extract bracket.mox --all numbers --format npy)";

std::vector<std::string> formatNames() {
    std::vector<std::string> names;
    for (const auto& [name, format] : NumberFormats) {
        names.push_back(name);
    }
    return names;
}

} // namespace

std::string ExtractCommand::name() const {
    return "extract";
}

std::string ExtractCommand::summary() const {
    return "Get the numbers of datasets out, as CSV, for NumPy, or raw";
}

std::optional<Command::Example> ExtractCommand::example() const {
    return Example{"mox extract bracket.mox --all out", "its numbers as CSV, or for NumPy"};
}

void ExtractCommand::addOptions(CommandLine& line) {
    line.add("FILE", input_, "The file to read; - reads stdin").required();
    auto node = line.add("--node", choice_.path, "The path of the node, such as /bracket/rib");
    node.typeName("PATH");
    auto id = line.add("--id", choice_.id, "The id of the node, instead of its path");
    id.typeName("N").positive().excludes({node});
    auto data = line.add("--data", choice_.name, "The name of the dataset, such as Displacement");
    data.typeName("KEY");
    auto step = line.add("--step", choice_.step, "Its step; without it, the dataset that has no step");
    step.typeName("NAME");
    line.add("--format", format_, "csv, npy or raw").typeName("FORMAT").oneOf(formatNames());
    auto file = line.add("-o,--output", output_, "The file to write; else stdout");
    file.typeName("FILE");
    line.addFlag("-f,--overwrite", overwrite_,
                 "Replace the file given by -o if it exists; else that is an error");
    line.add("--all", folder_, "Write all datasets into a new folder")
        .typeName("OUTDIR")
        .excludes({node, id, data, step, file});
    line.setCheck([this] { requireChoice(); });
    line.setDetails(Details);
}

void ExtractCommand::requireChoice() const {
    if (!folder_.empty()) {
        return;
    }
    if (choice_.path.empty() && choice_.id == 0) {
        throw UsageError("--node, --id or --all is required");
    }
    if (choice_.name.empty()) {
        throw UsageError("--data is required");
    }
}

int ExtractCommand::run(Terminal& terminal) {
    NumberFile file(input_);
    if (folder_.empty()) {
        extractOne(file);
    } else {
        FolderExtraction(file, formatName(), terminal).writeTo(folder_);
    }
    return 0;
}

std::string ExtractCommand::formatName() const {
    if (!format_.empty()) {
        return format_;
    }
    const auto extension = std::filesystem::path(output_).extension().string();
    const auto known = NumberFormats.find(extension.empty() ? extension : extension.substr(1));
    return known == NumberFormats.end() ? "csv" : known->first;
}

void ExtractCommand::extractOne(NumberFile& file) const {
    const auto& dataset = findDataset(file, choice_);
    const auto width = file.holder(dataset).width;
    const auto fill = [&](std::ostream& out) {
        writeNumbers(out, file.read(dataset), width, NumberFormats.at(formatName()));
    };
    if (output_.empty() || output_ == "-") {
        Platform::makeBinary(stdout);
        return fill(std::cout);
    }
    std::error_code missing;
    if (std::filesystem::equivalent(input_, output_, missing)) {
        throw Failure(output_, "is the input itself");
    }
    OutputFile target(output_, overwrite_);
    writeFile(target.temporaryPath(), output_, fill);
    target.commit();
}

} // namespace MoxTool
