#include "random/Support/PlainModel.h"

#include "random/Support/narrowed.h"
#include "random/Support/outcomes.h"

#include <array>

namespace RandomUse {

namespace {

struct DatasetRow {
    unsigned width;
    const char* name; // Null for none.
    std::uint32_t variableType;
};

// By the number of the dataset type.
constexpr std::array<DatasetRow, 31> DatasetRows = {{
    {1, "Connectivity", 4},  {1, "Connectivity", 5},  {1, "Connectivity", 6},  {1, "Polylength", 9},
    {1, "Polylength", 9},    {1, "Polylength", 9},    {1, "Part Elements", 4}, {1, "Part Elements", 5},
    {1, "Part Elements", 6}, {3, "Coordinates", 1},   {1, nullptr, 12},        {3, nullptr, 13},
    {6, nullptr, 14},        {6, nullptr, 15},        {1, nullptr, 16},        {3, nullptr, 17},
    {6, nullptr, 18},        {6, nullptr, 19},        {1, nullptr, 20},        {3, nullptr, 21},
    {6, nullptr, 22},        {6, nullptr, 23},        {1, nullptr, 24},        {1, nullptr, 25},
    {3, nullptr, 26},        {6, nullptr, 27},        {6, nullptr, 28},        {1, "Node Ids", 12},
    {1, "Element IDs", 16},  {3, "Displacement", 13}, {6, "Displacement", 14},
}};

// Opening any of these fails.
const std::string NoPath;
const std::string Folder = ".";
const std::string InMissingFolder = "missing/file.mox";

bool canBeOpened(const std::string& file) {
    return file != NoPath && file != Folder && file != InMissingFolder;
}

std::string separatorOf(const std::optional<std::string>& argument) {
    return argument.value_or("/");
}

// Sorted, each once, with the attributes that were given last.
std::vector<std::pair<std::string, AttributePairs>>
sorted(const std::vector<std::pair<std::string, AttributePairs>>& paths) {
    std::map<std::string, AttributePairs> map;
    for (const auto& [path, attributes] : paths) {
        map[path] = attributes;
    }
    return {map.begin(), map.end()};
}

std::vector<std::pair<std::string, AttributePairs>> withoutAttributes(const std::vector<std::string>& paths) {
    std::vector<std::pair<std::string, AttributePairs>> pairs;
    for (const std::string& path : paths) {
        pairs.push_back({path, {}});
    }
    return pairs;
}

// A table with rows can't have a negative number of columns, and an array of a negative size can't be copied.
bool canBeMade(const AddArray& call, std::int64_t rows, std::int64_t cols) {
    return (rows == 0 || cols >= 0) && (call.making != Making::Copied || rows * cols >= 0);
}

// Several components, each after a byte that separates it.
std::string joined(const std::vector<std::string>& names) {
    std::string path;
    for (const std::string& name : names) {
        path += '\x1e' + name;
    }
    return path;
}

} // namespace

Outcome PlainModel::play(const Action& action, const std::optional<std::string>& blockSize) {
    if (const auto* const call = std::get_if<SaveTo>(&action)) {
        return saveTo(*call);
    }
    if (std::holds_alternative<Close>(action) || std::holds_alternative<Destroy>(action)) {
        return close();
    }
    if (std::holds_alternative<Share>(action) || std::holds_alternative<SetBlockSize>(action)) {
        return nothing();
    }
    if (const auto* const call = std::get_if<AddPaths>(&action)) {
        return addPaths(withoutAttributes(call->paths), call->separator);
    }
    if (const auto* const call = std::get_if<AddPathsWithAttributes>(&action)) {
        return addPaths(sorted(call->paths), call->separator);
    }
    if (const auto* const call = std::get_if<AddArray>(&action)) {
        return addArray(*call, blockSize);
    }
    if (const auto* const call = std::get_if<AddNode>(&action)) {
        return tree_ ? tree_->addNode(*call) : fileNotOpen();
    }
    if (const auto* const call = std::get_if<SetNodeData>(&action)) {
        return tree_ ? tree_->setNodeData(*call) : fileNotOpen();
    }
    if (!tree_) {
        return notInitialized();
    }
    if (const auto* const call = std::get_if<SetCurrentNodeId>(&action)) {
        return tree_->setCurrentNodeId(call->id);
    }
    if (const auto* const call = std::get_if<GetNodeId>(&action)) {
        return tree_->find(call->path, separatorOf(call->separator));
    }
    if (const auto* const call = std::get_if<GetNodeIdOfNames>(&action)) {
        return tree_->find(joined(call->names), "\x1e");
    }
    return tree_->moveToParentNode();
}

// The model is open from the first moment on, also if the file can't be opened then.
Outcome PlainModel::saveTo(const SaveTo& call) {
    if (tree_) {
        return notEmpty();
    }
    tree_.emplace();
    heavy_ = PlainStream();
    sourceName_ = "";
    sourceVersion_ = "";
    if (!call.overwrite && (call.file == Folder || files_->count(call.file) != 0)) {
        return fileExists();
    }
    if (!canBeOpened(call.file)) {
        return unableToOpen(call.file.empty() ? "" : path_ + call.file);
    }
    file_ = call.file;
    (*files_)[call.file] = std::nullopt;
    if (!call.sourceName.empty()) {
        sourceName_ = call.sourceName;
        sourceVersion_ = call.sourceVersion;
    }
    return nothing();
}

Outcome PlainModel::close() {
    if (tree_ && file_) {
        (*files_)[*file_] = PlainFile{sourceName_, sourceVersion_, tree_->nodes(), heavy_.bytes()};
    }
    tree_.reset();
    file_.reset();
    return nothing();
}

Outcome PlainModel::addPaths(const std::vector<std::pair<std::string, AttributePairs>>& paths,
                             const std::optional<std::string>& separator) {
    if (paths.empty()) {
        return nothing();
    }
    return tree_ ? tree_->addPaths(paths, separatorOf(separator)) : fileNotOpen();
}

Outcome PlainModel::addArray(const AddArray& call, const std::optional<std::string>& blockSize) {
    const std::int64_t rows = narrowed(call.rows);
    const std::int64_t cols = call.isTable ? narrowed(call.cols) : 1;
    if (!canBeMade(call, rows, cols)) {
        return noMemory();
    }
    const bool isKnown = call.type >= 0 && static_cast<std::size_t>(call.type) < DatasetRows.size();
    if (!call.name && (!isKnown || DatasetRows[static_cast<std::size_t>(call.type)].name == nullptr)) {
        return noName();
    }
    if (!isKnown) {
        return noWidth();
    }
    const DatasetRow& row = DatasetRows[static_cast<std::size_t>(call.type)];
    if (!tree_) {
        return fileNotOpen();
    }
    if ((call.ids.empty() && !call.isNegativeIdCount) || rows == 0) {
        return nothing();
    }
    if (call.isNegativeIdCount || rows < 0) {
        return negativeCount();
    }
    if (cols != row.width) {
        return otherWidth();
    }
    PlainDataset array;
    array.position = heavy_.put(call.bits, row.width, blockSize);
    if (heavy_.flushFails(file_.has_value())) {
        return savingTheBufferFailed();
    }
    array.variableType = row.variableType;
    array.elementTag = call.isFloat ? 1 : 5;
    array.width = row.width;
    array.bits = call.bits;
    return tree_->record(call, call.name ? *call.name : row.name, array);
}

} // namespace RandomUse
