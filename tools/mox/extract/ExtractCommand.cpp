#include "ExtractCommand.h"

#include "../common/CommandLine.h"
#include "../common/NumberFile.h"
#include "../common/OutputFile.h"
#include "../common/Platform.h"
#include "../common/UsageError.h"
#include "../common/WorkLimit.h"
#include "../common/datasetText.h"
#include "../common/pathHelp.h"
#include "../common/utf8Path.h"
#include "../common/writeFile.h"
#include "../mesh/columnNames.h"
#include "FolderExtraction.h"
#include "RowCompanions.h"
#include "RowRange.h"
#include "findDataset.h"
#include "writeTables.h"

#include <fmt/format.h>

#include <filesystem>
#include <iostream>

namespace MoxTool {

namespace {

constexpr const char* Start = "mox tree shows which nodes and datasets there are, and their steps.\n\n";

constexpr const char* ExtractDetails = R"(

Formats:
  csv  for spreadsheets: one line for each node or element, commas between its components, and a first line
       with the names of the columns. Each number reads back equal; nan, inf and -inf stand for what is no
       number
  npy  for NumPy: float32 or uint32, of shape (items,) or (items, components)
  raw  the numbers alone: 4 bytes each, lowest byte first, item by item
Without --format the end of the name given by -o decides; otherwise it is csv.

Rows are counted from 0, as mox diff counts them, and both ends of a range are taken: --rows 0:99 are the
first hundred, --rows 100: is the rest, --rows 7 is one. A range may end after the last row.

--ids puts a column "id" in front, with the numbers that nodes or elements had where the model comes from.
--coordinates adds x, y and z of each node, or of the middle of an element's nodes, as the file has them:
without the transforms of groups.

--all makes one file for each dataset with numbers of its own, and index.json, which says for each dataset,
links as well, its node, name, step, type, shape and file.

Examples:
  mox extract bracket.mox -n /bracket/rib -d Coordinates
  mox extract bracket.mox -n /bracket/rib -d Stress -s "Load 1" --ids --coordinates -o stress.csv
  mox extract bracket.mox -n /bracket/rib -d Displacement -s @0.25 -o rib.npy
  mox extract bracket.mox -n '/bracket/left\/right' -d Stress --rows 0:99
  mox extract bracket.mox --all numbers --format npy)";

constexpr const char* Csv = "csv";

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
    line.add("FILE", input_, "The file to read; - for stdin").required();
    auto node = line.add("-n,--node", choice_.path, "The node that has the dataset, such as /bracket/rib");
    node.typeName("PATH");
    auto id = line.add("--id", choice_.id, "The id of the node, instead of its path");
    id.positive().excludes({node});
    auto data =
        line.add("-d,--dataset,--data", choice_.name, "The name of the dataset, such as Displacement");
    line.add("-s,--step", choice_.step.text,
             "Its step; without it, the dataset that has no step. With --all, only the datasets of these "
             "steps")
        .typeName("STEP");
    auto rows =
        line.add("--rows", rows_, "These rows alone, such as 0:99").typeName("RANGE").check([](auto& text) {
            return RowRange::parse(text) ? ""
                                         : "must be rows from 0 on, such as 0:99, 100: or 7, not " + text;
        });
    auto ids = line.addFlag("--ids", withIds_, "A column with the ids of the nodes or elements (csv)");
    auto places = line.addFlag("--coordinates", withCoordinates_, "Columns with x, y and z (csv)");
    line.addFlag("--no-header", withoutHeader_, "No line with the names of the columns (csv)");
    line.add("--format", format_, "csv, npy or raw").typeName("FORMAT").oneOf(formatNames());
    auto file = line.add("-o,--output", output_, "The file to write; stdout if not given");
    file.typeName("FILE");
    line.addFlag("-f,--overwrite", overwrite_,
                 "Replace the file given by -o if it exists; else that is an error");
    line.add("--all", folder_, "Write all datasets into a new folder")
        .typeName("OUTDIR")
        .excludes({node, id, data, rows, ids, places, file});
    line.addFlag(WorkLimit::Option, noLimit_, WorkLimit::Help);
    line.setCheck([this] { requireChoice(); });
    line.setDetails(fmt::format("{}A {}.\n\n{}{}", Start, StepChoice::Syntax, PathHelp, ExtractDetails));
}

void ExtractCommand::requireChoice() const {
    if ((withIds_ || withCoordinates_ || withoutHeader_) && formatName() != Csv) {
        throw UsageError("--ids, --coordinates and --no-header are for csv alone");
    }
    if (!folder_.empty()) {
        return;
    }
    if (choice_.path.empty() && choice_.id == 0) {
        throw UsageError("--node, --id or --all is required");
    }
    if (choice_.name.empty()) {
        throw UsageError("--dataset is required");
    }
}

int ExtractCommand::run(Terminal& terminal) {
    NumberFile file(input_, noLimit_);
    if (folder_.empty()) {
        extractOne(file);
    } else {
        const StepFilter steps(choice_.step, file.model(), file.path());
        FolderExtraction(file, steps, formatName(), !withoutHeader_, terminal).writeTo(folder_);
    }
    return 0;
}

std::string ExtractCommand::formatName() const {
    if (!format_.empty()) {
        return format_;
    }
    const auto extension = utf8Of(pathOf(output_).extension());
    const auto known = NumberFormats.find(extension.empty() ? extension : extension.substr(1));
    return known == NumberFormats.end() ? Csv : known->first;
}

void ExtractCommand::extractOne(NumberFile& file) const {
    const auto tables = readTables(file);
    const auto fill = [&](std::ostream& out) {
        writeTables(out, tables, NumberFormats.at(formatName()), !withoutHeader_);
    };
    if (output_.empty() || output_ == "-") {
        Platform::makeBinary(stdout);
        return fill(std::cout);
    }
    std::error_code missing;
    if (std::filesystem::equivalent(pathOf(input_), pathOf(output_), missing)) {
        throw Failure(output_, "is the input itself");
    }
    OutputFile target(pathOf(output_), overwrite_);
    writeFile(target.temporaryPath(), output_, fill);
    target.commit();
}

/// The chosen rows of the dataset, after those of what is wanted with it.
std::vector<NumberTable> ExtractCommand::readTables(NumberFile& file) const {
    const auto& dataset = findDataset(file, choice_);
    const auto& holder = file.holder(dataset);
    const RowCompanions companions(file, file.model().node(dataset.nodeId), dataset);
    const auto range = RowRange::parse(rows_).value_or(RowRange());
    requireRow(range.first(), itemCount(holder));
    std::vector<NumberTable> tables;
    if (withIds_) {
        tables.push_back(companions.ids());
    }
    if (withCoordinates_) {
        tables.push_back(companions.coordinates());
    }
    tables.push_back({columnNames(dataset.name, holder), file.read(dataset), holder.width});
    for (auto& table : tables) {
        range.cut(table);
    }
    return tables;
}

void ExtractCommand::requireRow(std::size_t first, std::size_t count) const {
    if (first != 0 && first >= count) {
        throw Failure(input_,
                      fmt::format("the dataset has no row {}: it has {}, counted from 0", first, count));
    }
}

} // namespace MoxTool
