#include "describeLoss.h"

#include "../common/visibleText.h"
#include "countLosses.h"
#include "indexState.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

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

std::string_view meaningOf(std::string_view name) {
    const auto found = std::ranges::find(StreamMeanings, name, &StreamMeaning::name);
    return found != StreamMeanings.end() ? found->meaning : "of a use that is not known";
}

std::string lineOf(const StreamLoss& loss) {
    return fmt::format("{} of {} blocks of \"{}\": {} (saved in part: {}, stored bytes not read: {})",
                       loss.missing, loss.blocks, visibleText(loss.name), meaningOf(loss.name), loss.begun,
                       loss.unread);
}

std::vector<std::string> lossWithoutIndex(const std::vector<SalvagedBlock>& saved) {
    std::vector<std::string> lines = {"the index: which block holds what"};
    const auto whole = std::ranges::count_if(saved, &SalvagedBlock::isWhole);
    if (const auto begun = std::ssize(saved) - whole; begun > 0) {
        lines.push_back(
            fmt::format("what is missing or wrong in blocks that are cut off or damaged: {}", begun));
    }
    return lines;
}

// Blocks of numbers go to disk as they fill, everything else when the file is closed.
std::vector<std::string> lossOfUnfinished(const std::vector<SalvagedBlock>& saved) {
    auto lines = lossWithoutIndex(saved);
    for (const auto& [name, meaning] : StreamMeanings) {
        const bool isHeavy = name == Format::HeavyStream;
        lines.push_back(fmt::format("{}\"{}\": {}{}", isHeavy ? "the end of " : "", name, meaning,
                                    isHeavy ? " that had not filled a block" : ""));
    }
    return lines;
}

std::vector<std::string> lossAfterIndex(const MoxReader::RawIndex& index,
                                        const std::vector<StreamLoss>& losses) {
    std::vector<std::string> lines = {
        fmt::format("the index after its first {} entries: what blocks there were, and what they held",
                    index.blocks.size())};
    for (const auto& [name, meaning] : StreamMeanings) {
        if (std::ranges::find(losses, name, &StreamLoss::name) == losses.end()) {
            lines.push_back(fmt::format("\"{}\", or where in the file it is: {}", name, meaning));
        }
    }
    return lines;
}

} // namespace

std::vector<std::string> describeLoss(const MoxReader::RawIndex& index,
                                      const std::vector<SalvagedBlock>& saved) {
    if (isUnfinished(index)) {
        return lossOfUnfinished(saved);
    }
    if (index.blocks.empty()) {
        return lossWithoutIndex(saved);
    }
    std::vector<std::string> lines;
    const auto losses = countLosses(index, saved);
    for (const auto& loss : losses) {
        if (loss.missing > 0) {
            lines.push_back(lineOf(loss));
        }
    }
    if (isIncomplete(index)) {
        std::ranges::copy(lossAfterIndex(index, losses), std::back_inserter(lines));
    }
    return lines;
}

} // namespace MoxTool
