#include "FolderExtraction.h"

#include "../common/OutputFolder.h"
#include "../common/datasetText.h"
#include "../common/safeFileName.h"
#include "../common/utf8Path.h"
#include "../common/writeFile.h"
#include "../mesh/columnNames.h"
#include "NumberTable.h"
#include "writeTables.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <tuple>
#include <utility>

namespace MoxTool {

using MoxReader::Dataset;
using MoxReader::Node;

FolderExtraction::FolderExtraction(NumberFile& file, StepFilter steps, std::string formatName, bool header,
                                   Terminal& messages)
    : file_(file),
      steps_(std::move(steps)),
      paths_(file.model().nodes()),
      formatName_(std::move(formatName)),
      header_(header),
      messages_(messages) {}

void FolderExtraction::writeTo(const std::string& name) {
    OutputFolder folder(pathOf(name));
    writeDatasets(folder.temporaryPath());
    writeIndex(folder.temporaryPath());
    folder.commit();
}

void FolderExtraction::writeDatasets(const std::filesystem::path& folder) const {
    const auto format = NumberFormats.at(formatName_);
    const auto holders = holdersByPosition();
    for (std::size_t i = 0; i < holders.size(); ++i) {
        messages_.progress("extracting", static_cast<double>(i) / static_cast<double>(holders.size()));
        const auto& holder = *holders[i];
        const std::vector<NumberTable> tables = {
            {columnNames(holder.name, holder), file_.read(holder), holder.width}};
        const auto name = fileName(holder);
        writeFile(folder / pathOf(name), name,
                  [&](std::ostream& out) { writeTables(out, tables, format, header_); });
    }
    messages_.clearProgress();
}

// In the order of positions, each block of the file is inflated once. A link can be of a chosen step, and its
// holder of another.
std::vector<const Dataset*> FolderExtraction::holdersByPosition() const {
    std::vector<const Dataset*> holders;
    for (const auto& node : file_.model().nodes()) {
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            if (steps_.takes(dataset)) {
                holders.push_back(&file_.holder(dataset));
            }
        }
    }
    const auto place = [](const Dataset* each) {
        return std::tuple(each->position, each->nodeId, each->index);
    };
    std::ranges::sort(holders, {}, place);
    holders.erase(std::unique(holders.begin(), holders.end()), holders.end());
    return holders;
}

std::string FolderExtraction::fileName(const Dataset& holder) const {
    const auto title = holder.step.empty() ? holder.name : holder.name + "-" + holder.step;
    return fmt::format("{}-{}-{}.{}", holder.nodeId, holder.index, safeFileName(title), formatName_);
}

void FolderExtraction::writeIndex(const std::filesystem::path& folder) const {
    auto entries = Json::array();
    for (const auto& node : file_.model().nodes()) {
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            if (steps_.takes(dataset)) {
                entries.push_back(indexEntry(node, dataset));
            }
        }
    }
    const Json index = {{"format", formatName_}, {"datasets", std::move(entries)}};
    writeFile(folder / "index.json", "index.json", [&](std::ostream& out) { out << index.dump(2) << '\n'; });
}

Json FolderExtraction::indexEntry(const Node& node, const Dataset& dataset) const {
    const auto& holder = file_.holder(dataset);
    Json entry = {{"file", fileName(holder)},
                  {"node", paths_.of(node.id)},
                  {"id", node.id},
                  {"name", jsonText(dataset.name)}};
    if (!dataset.step.empty()) {
        entry["step"] = jsonText(dataset.step);
    }
    entry["type"] = variableTypeText(dataset);
    entry["element"] = elementTypeText(holder);
    entry["items"] = itemCount(holder);
    entry["components"] = holder.width;
    entry["link"] = dataset.isLink;
    return entry;
}

} // namespace MoxTool
