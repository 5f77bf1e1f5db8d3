#include "SalvageReport.h"

#include "../common/visibleText.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

namespace MoxTool {

namespace {

namespace Format = MoxReader::Format;

struct StreamMeaning {
    std::string_view name;
    std::string_view meaning;
};

constexpr std::array StreamMeanings = {
    StreamMeaning{Format::HeavyStream, "the numbers of datasets"},
    StreamMeaning{Format::TreeStream, "the tree: names, types and ids of nodes"},
    StreamMeaning{Format::LightStream,
                  "the descriptors: transforms, and name, step, type, size and place of each dataset"},
    StreamMeaning{Format::AttributesStream, "the attributes of groups and datasets"},
    StreamMeaning{Format::ResourcesStream, "the materials"},
    StreamMeaning{Format::GlobalStream, "who saved the file, and when"},
};

constexpr std::string_view PayloadHint = "a raw file of numbers holds datasets one behind the other, each "
                                         "component by component and each component "
                                         "as its lowest bytes, then its second bytes and so on; without "
                                         "descriptors nothing tells where one begins";

} // namespace

SalvageReport::SalvageReport(std::string path, std::string wrong, const MoxReader::RawIndex& index,
                             const BlockWalk& walk)
    : file(std::move(path)),
      state(std::move(wrong)),
      fileSize(index.fileSize),
      blocks(walk.blocks()),
      gaps(walk.gaps()) {
    listLoss(index);
}

// Without names the blocks of a file that was never closed are those that go out early, and these hold
// numbers.
void SalvageReport::listLoss(const MoxReader::RawIndex& index) {
    const bool hasNames = !index.blocks.empty();
    std::set<std::uint64_t> saved;
    for (const auto& block : blocks)
        saved.insert(block.offset);
    for (const auto& stream : StreamMeanings) {
        const bool isHeavy = stream.name == Format::HeavyStream;
        std::size_t inFile = 0, missing = 0;
        for (const auto& record : index.blocks) {
            if (record.name != stream.name)
                continue;
            ++inFile;
            missing += saved.contains(record.position) ? 0u : 1u;
        }
        if (hasNames && missing > 0)
            lost.push_back(
                fmt::format("{} of {} blocks of \"{}\": {}", missing, inFile, stream.name, stream.meaning));
        else if (!hasNames && !isHeavy)
            lost.push_back(
                fmt::format("\"{}\", or where in the file it is: {}", stream.name, stream.meaning));
    }
}

void SalvageReport::print(std::FILE* out) const {
    fmt::print(out, "{}: {}\n", visibleText(file), state);
    for (const auto& block : blocks)
        fmt::print(out, "{}  offset {}, {} bytes, inflated {}{}\n", block.file, block.offset, block.stored,
                   block.content, block.name.empty() ? "" : fmt::format(", \"{}\"", visibleText(block.name)));
    for (const auto& gap : gaps)
        fmt::print(out, "not saved       offset {}, {} bytes: {}\n", gap.offset, gap.size, gap.what);
    for (const auto& line : lost)
        fmt::print(out, "lost: {}\n", line);
    fmt::print(out, "note: {}\n", PayloadHint);
}

Json SalvageReport::toJson() const {
    Json json = {{"file", jsonText(file)}, {"state", state}, {"fileSize", fileSize}};
    json["blocks"] = Json::array();
    for (const auto& block : blocks)
        json["blocks"].push_back({{"file", block.file},
                                  {"offset", block.offset},
                                  {"stored", block.stored},
                                  {"content", block.content},
                                  {"name", block.name.empty() ? Json() : jsonText(block.name)}});
    json["notSaved"] = Json::array();
    for (const auto& gap : gaps)
        json["notSaved"].push_back({{"offset", gap.offset}, {"size", gap.size}, {"what", gap.what}});
    json["lost"] = lost;
    json["note"] = PayloadHint;
    return json;
}

} // namespace MoxTool
