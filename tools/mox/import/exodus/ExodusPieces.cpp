#include "ExodusPieces.h"

#include "../../common/utf8Path.h"
#include "../../common/visibleText.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace MoxTool {

namespace {

constexpr std::size_t MostOpen = 64; // each takes a descriptor, of which a process may have no more than 256

} // namespace

ExodusPieces::ExodusPieces(std::vector<std::string> paths)
    : paths_(std::move(paths)), opened_(std::min(MostOpen, paths_.size())) {}

std::string ExodusPieces::name(std::size_t rank) const {
    return visibleText(utf8Of(pathOf(paths_[rank]).filename()));
}

std::shared_ptr<const ExodusFile> ExodusPieces::open(std::size_t rank) const {
    if (rank >= opened_.size()) {
        return std::make_shared<ExodusFile>(paths_[rank]);
    }
    auto& file = opened_[rank];
    if (!file) {
        file = std::make_shared<ExodusFile>(paths_[rank]);
    }
    return file;
}

} // namespace MoxTool
