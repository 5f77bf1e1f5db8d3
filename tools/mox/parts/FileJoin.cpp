#include "FileJoin.h"

#include "../common/BlockSizeSetting.h"
#include "../common/Failure.h"
#include "../common/FileHandle.h"
#include "../common/OutputFile.h"
#include "../common/utf8Path.h"
#include "StoredModel.h"
#include "TreeMerge.h"
#include "savedBy.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace MoxTool {

namespace {

namespace fs = std::filesystem;

// To notice that a file changes between the reading of its tree and the copying of its blocks.
struct FileState {
    std::uintmax_t size = 0;
    fs::file_time_type time;

    bool operator==(const FileState&) const = default;
};

FileState stateOf(const std::string& path) {
    std::error_code ignored;
    return {fs::file_size(pathOf(path), ignored), fs::last_write_time(pathOf(path), ignored)};
}

/// A file whose tree has been merged and whose blocks are still to be copied.
struct MergedFile {
    std::string path;
    FileState state;
    std::vector<StoredBlock> blocks;
};

class FileJoin {
public:
    FileJoin(const JoinRequest& request, const JoinProgress& progress)
        : request_(request),
          progress_(progress),
          output_(pathOf(request.output), request.overwrite),
          joined_(utf8Of(output_.temporaryPath()), request.output) {}

    JoinSummary run() {
        mergeTrees();
        copyNumbers();
        summary_.nodes = joined_.tree().GetNodes().size();
        summary_.numberBytes = joined_.heavySize();
        joined_.save(by_.value_or(SavedBy{.sourceName = "mox join", .sourceVersion = MOX_VERSION}));
        if (request_.review) {
            request_.review(utf8Of(output_.temporaryPath()));
        }
        output_.commit();
        return std::move(summary_);
    }

private:
    double part(std::size_t place) const {
        return static_cast<double>(place) / static_cast<double>(request_.inputs.size());
    }

    void mergeTrees() {
        TreeMerge merge(joined_.tree(), request_.preferFirst);
        std::uint64_t start = 0; // of the numbers of the next file
        for (std::size_t place = 0; place < request_.inputs.size(); ++place) {
            progress_("reading the trees", part(place));
            start += mergeTree(merge, place, start);
        }
        summary_.files = request_.inputs.size();
        summary_.datasets = merge.datasetCount();
        summary_.leftOut.insert(summary_.leftOut.end(), merge.leftOut().begin(), merge.leftOut().end());
    }

    /// @return the bytes of numbers in the file.
    std::uint64_t mergeTree(TreeMerge& merge, std::size_t place, std::uint64_t start) {
        const auto& path = request_.inputs[place];
        const auto state = stateOf(path);
        const PartFile file(path, request_.check, [&](double done) {
            progress_("reading the files", part(place) + done / static_cast<double>(request_.inputs.size()));
        });
        NumberMap numbers;
        std::uint64_t size = 0;
        for (const auto& block : file.blocks()) {
            numbers.add(block.start, block.contentLength, start + size);
            size += block.contentLength;
        }
        merge.add(
            {.path = path,
             .model = file.model(),
             .numbers = numbers,
             .takesNode = [&](const MoxReader::Node& node) { return file.isReadable(node); },
             .takesDataset = [&](const MoxReader::Dataset& dataset) { return file.isReadable(dataset); },
             .group = expandPlaceholders(request_.under, place, path),
             .suffix = expandPlaceholders(request_.suffix, place, path)});
        if (!file.blocks().empty()) {
            isLastMarked_ = file.isLastBlockMarked();
        }
        takeSaver(place, file.model());
        summary_.leftOut.insert(summary_.leftOut.end(), file.lost().begin(), file.lost().end());
        files_.push_back({path, state, file.blocks()});
        return size;
    }

    void takeSaver(std::size_t place, const MoxReader::Model& model) {
        const auto by = savedBy(model);
        if (place == 0) {
            by_ = by;
        } else if (by_ != by) {
            by_.reset();
        }
    }

    void copyNumbers() {
        for (std::size_t place = 0; place < files_.size(); ++place) {
            progress_("copying the numbers", part(place));
            copyBlocks(files_[place]);
        }
        if (isLastMarked_) {
            joined_.markLastBlock();
        }
    }

    void copyBlocks(const MergedFile& file) {
        if (file.blocks.empty()) {
            return;
        }
        const FileHandle source(std::fopen(file.path.c_str(), "rb"));
        if (source == nullptr || stateOf(file.path) != file.state) {
            throw Failure(file.path, "has changed while it was joined");
        }
        std::setvbuf(source.get(), nullptr, _IONBF, 0);
        joined_.copyBlocks(source.get(), file.path, file.blocks);
        if (stateOf(file.path) != file.state) {
            throw Failure(file.path, "has changed while it was joined");
        }
    }

    const JoinRequest& request_;
    const JoinProgress& progress_;
    OutputFile output_;
    StoredModel joined_;
    std::vector<MergedFile> files_;
    std::optional<SavedBy> by_; // what all files agree on so far
    bool isLastMarked_ = false;
    JoinSummary summary_;
};

void refuseToReplaceInputs(const JoinRequest& request) {
    for (const auto& input : request.inputs) {
        std::error_code missing;
        if (fs::equivalent(pathOf(input), pathOf(request.output), missing)) {
            throw Failure(request.output, "is one of the inputs itself");
        }
    }
}

void replaceAll(std::string& text, const std::string& word, const std::string& replacement) {
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + replacement.size())) {
        text.replace(at, word.size(), replacement);
    }
}

} // namespace

JoinSummary joinFiles(const JoinRequest& request, const JoinProgress& progress) {
    refuseToReplaceInputs(request);
    const BlockSizeSetting independent(std::nullopt);
    return FileJoin(request, progress).run();
}

std::string expandPlaceholders(const std::string& pattern, std::size_t place, const std::string& path) {
    auto text = pattern;
    replaceAll(text, "{n}", std::to_string(place + 1));
    replaceAll(text, "{rank}", std::to_string(place));
    replaceAll(text, "{file}", utf8Of(pathOf(path).stem()));
    return text;
}

} // namespace MoxTool
