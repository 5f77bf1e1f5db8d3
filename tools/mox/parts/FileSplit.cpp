#include "FileSplit.h"

#include "../common/BlockSizeSetting.h"
#include "../common/Failure.h"
#include "../common/FileHandle.h"
#include "../common/OutputFolder.h"
#include "../common/readFailure.h"
#include "../common/safeFileName.h"
#include "../common/utf8Path.h"
#include "StoredModel.h"
#include "TreeMerge.h"
#include "savedBy.h"

#include <MoxReader/BlockContent.h>
#include <MoxReader/FileSource.h>
#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace MoxTool {

namespace {

// Each part in the making takes a few KiB.
constexpr std::uint32_t PartsAtOnce = 1000;

/// Bytes of the stream "Heavy Data".
struct Interval {
    std::uint64_t from;
    std::uint64_t to;

    auto operator<=>(const Interval&) const = default;
};

using Intervals = std::vector<Interval>;

// Sorted, and none overlaps or touches the next.
Intervals joined(const Intervals& sorted) {
    Intervals result;
    for (const auto& interval : sorted) {
        if (!result.empty() && interval.from <= result.back().to) {
            result.back().to = std::max(result.back().to, interval.to);
        } else {
            result.push_back(interval);
        }
    }
    return result;
}

/// What of a block a part gets: the pieces in the order of the stream.
struct BlockUse {
    std::size_t block;
    Intervals pieces;

    std::uint64_t size() const {
        std::uint64_t sum = 0;
        for (const auto& piece : pieces) {
            sum += piece.to - piece.from;
        }
        return sum;
    }
};

std::vector<BlockUse> divideByBlocks(const Intervals& intervals, const std::vector<StoredBlock>& blocks) {
    std::vector<BlockUse> uses = {};
    std::size_t block = 0;
    for (auto interval : intervals) {
        while (interval.from < interval.to) {
            while (block < blocks.size() && blocks[block].end() <= interval.from) {
                ++block;
            }
            if (block == blocks.size()) {
                return uses;
            }
            if (uses.empty() || uses.back().block != block) {
                uses.push_back({block, {}});
            }
            const auto end = std::min(interval.to, blocks[block].end());
            uses.back().pieces.push_back({interval.from, end});
            interval.from = end;
        }
    }
    return uses;
}

/// One file of the split, in the making.
struct Part {
    std::uint32_t number;
    std::unique_ptr<StoredModel> file;
    Intervals arrays; ///< Sorted, each once.
    std::vector<BlockUse> uses = {};
    std::size_t nextUse = 0;
    NumberMap numbers = {};
};

MoxReader::BlockRecord recordOf(const StoredBlock& block) {
    MoxReader::BlockRecord record;
    record.position = block.place;
    record.length = block.length;
    record.flags = block.isCompressed ? MoxReader::Format::FlagCompressed : std::uint8_t{0};
    record.contentLength = block.contentLength;
    return record;
}

class FileSplit {
public:
    FileSplit(const SplitRequest& request, const JoinProgress& progress)
        : request_(request),
          progress_(progress),
          input_(request.input, PartCheck::Structure,
                 [&](double done) { progress("reading the tree", done); }),
          plan_(input_.model(), request.kind),
          source_(pathOf(request.input)),
          folder_(pathOf(request.folder)) {}

    SplitSummary run() {
        source();
        collectArrays();
        for (std::uint32_t first = 0; first < plan_.count(); first += PartsAtOnce) {
            splitInto(first, std::min(first + PartsAtOnce, plan_.count()));
        }
        folder_.commit();
        summary_.files = plan_.count();
        return summary_;
    }

private:
    const MoxReader::Model& model() const { return input_.model(); }

    std::FILE* source() {
        if (stream_ == nullptr) {
            stream_.reset(std::fopen(request_.input.c_str(), "rb"));
            if (stream_ == nullptr) {
                throw Failure(request_.input, "can't be opened; check the path and the permissions");
            }
            std::setvbuf(stream_.get(), nullptr, _IONBF, 0);
        }
        return stream_.get();
    }

    // --- What each part needs

    void collectArrays() {
        arraysOfParts_.resize(plan_.count());
        for (const auto& node : model().nodes()) {
            auto& arrays = arraysOfParts_[plan_.ownPart(node.id)];
            if (const auto* sets = node.nodeSets()) {
                arrays.push_back({sets->heavyPosition, sets->heavyPosition + sets->heavySize});
            }
            if (node.geometry() == nullptr) {
                continue;
            }
            for (const auto& dataset : node.geometry()->datasets) {
                const auto& holder = model().resolve(dataset);
                arrays.push_back({holder.position, holder.position + holder.sizeInBytes});
            }
        }
        Intervals all;
        for (auto& arrays : arraysOfParts_) {
            std::ranges::sort(arrays);
            arrays.erase(std::unique(arrays.begin(), arrays.end()), arrays.end());
            all.insert(all.end(), arrays.begin(), arrays.end());
        }
        std::ranges::sort(all);
        usedBytes_.resize(input_.blocks().size());
        for (const auto& use : divideByBlocks(joined(all), input_.blocks())) {
            usedBytes_[use.block] = use.size();
        }
    }

    // A part takes a block as it is if there is nothing in it for another part.
    bool isCopied(const BlockUse& use) const {
        return use.size() == usedBytes_[use.block] && input_.blocks()[use.block].isCompressed;
    }

    Part planPart(std::uint32_t number) {
        const auto path = utf8Of(folder_.temporaryPath() / pathOf(fileName(number)));
        const auto shown = utf8Of(pathOf(request_.folder) / pathOf(fileName(number)));
        Part part{.number = number,
                  .file = std::make_unique<StoredModel>(path, shown),
                  .arrays = std::move(arraysOfParts_[number])};
        part.uses = divideByBlocks(joined(part.arrays), input_.blocks());
        std::uint64_t size = 0;
        for (const auto& use : part.uses) {
            if (isCopied(use)) {
                const auto& block = input_.blocks()[use.block];
                part.numbers.add(block.start, block.contentLength, size);
                size += block.contentLength;
                continue;
            }
            for (const auto& piece : use.pieces) {
                part.numbers.add(piece.from, piece.to - piece.from, size);
                size += piece.to - piece.from;
            }
        }
        return part;
    }

    std::string fileName(std::uint32_t number) const {
        const auto width = std::to_string(plan_.count()).size();
        return fmt::format("{:0{}}-{}.mox", number + 1, width, safeFileName(plan_.name(number)));
    }

    // --- Writing

    void splitInto(std::uint32_t first, std::uint32_t end) {
        std::vector<Part> parts;
        for (auto number = first; number < end; ++number) {
            parts.push_back(planPart(number));
        }
        std::vector<std::vector<Part*>> users(input_.blocks().size());
        for (auto& part : parts) {
            for (const auto& use : part.uses) {
                users[use.block].push_back(&part);
            }
        }
        for (std::size_t block = 0; block < users.size(); ++block) {
            progress_("dividing the numbers", static_cast<double>(block) / static_cast<double>(users.size()));
            writeBlock(block, users[block]);
        }
        for (auto& part : parts) {
            finish(part);
        }
    }

    void writeBlock(std::size_t number, const std::vector<Part*>& users) {
        const auto& block = input_.blocks()[number];
        std::vector<std::uint8_t> content;
        for (auto* part : users) {
            const auto& use = part->uses[part->nextUse++];
            if (isCopied(use)) {
                part->file->copyBlocks(source(), request_.input, std::span(&block, 1));
                ++summary_.copiedBlocks;
            } else {
                if (content.empty()) {
                    content = inflated(block);
                    ++summary_.dividedBlocks;
                }
                part->file->addContent(cutOut(content, block, use));
            }
            // A part alone in a row of blocks stays open.
            if (users.size() > 1 || part->nextUse == part->uses.size() ||
                part->uses[part->nextUse].block != number + 1) {
                part->file->pause();
            }
        }
    }

    std::vector<std::uint8_t> inflated(const StoredBlock& block) {
        return explainErrors(request_.input, [&] {
            auto content = MoxReader::readBlockContent(source_, recordOf(block));
            if (content.damage) {
                throw MoxReader::Error(*content.damage, {.fileOffset = block.place});
            }
            return std::move(content.bytes);
        });
    }

    static std::vector<std::uint8_t> cutOut(const std::vector<std::uint8_t>& content,
                                            const StoredBlock& block, const BlockUse& use) {
        std::vector<std::uint8_t> bytes;
        bytes.reserve(static_cast<std::size_t>(use.size()));
        for (const auto& piece : use.pieces) {
            const auto from = content.begin() + static_cast<std::ptrdiff_t>(piece.from - block.start);
            bytes.insert(bytes.end(), from, from + static_cast<std::ptrdiff_t>(piece.to - piece.from));
        }
        return bytes;
    }

    void finish(Part& part) {
        TreeMerge merge(part.file->tree(), false);
        merge.add({.path = request_.input,
                   .model = model(),
                   .numbers = part.numbers,
                   .takesNode = [&](const auto& node) { return plan_.needs(part.number, node.id); },
                   .takesDataset =
                       [&](const auto& dataset) { return plan_.ownPart(dataset.nodeId) == part.number; }});
        if (hasMoreThanOneArrayInLastBlock(part)) {
            part.file->markLastBlock();
        }
        part.file->save(savedBy(model()));
        part.file.reset();
    }

    bool hasMoreThanOneArrayInLastBlock(const Part& part) const {
        if (part.uses.empty()) {
            return false;
        }
        const auto& use = part.uses.back();
        const auto& block = input_.blocks()[use.block];
        const auto size = isCopied(use) ? std::uint64_t{block.contentLength} : use.size();
        const auto& last = part.arrays.back();
        return last.from < block.start || last.to - last.from != size;
    }

    const SplitRequest& request_;
    const JoinProgress& progress_;
    const PartFile input_;
    const PartPlan plan_;
    MoxReader::FileSource source_;
    FileHandle stream_;
    OutputFolder folder_;
    std::vector<Intervals> arraysOfParts_;
    std::vector<std::uint64_t> usedBytes_; ///< Of each block, by any part.
    SplitSummary summary_;
};

} // namespace

SplitSummary splitFile(const SplitRequest& request, const JoinProgress& progress) {
    const BlockSizeSetting independent(std::nullopt);
    return FileSplit(request, progress).run();
}

} // namespace MoxTool
