#pragma once

#include "ViewModel.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <ostream>
#include <string>

namespace MoxTool {

/// The page that shows a model, as one file.
class ViewPage {
public:
    /// What became of the model's results.
    struct Contents {
        std::uint64_t bytes = 0; ///< Of the page's data.
        std::size_t results = 0; ///< Results of one step each that are in the page.
        std::size_t leftOut = 0; ///< Those for which there was no room.
    };

    /// @param model    Must outlive the page.
    /// @param mostBytes The size that the page's data must not exceed.
    ViewPage(ViewModel& model, std::uint64_t mostBytes) : model_(model), mostBytes_(mostBytes) {}

    /// To be called once. Results go in step by step, the last step first, as far as there is room.
    /// @param path The model's file, for messages.
    /// @throws Failure if not even the mesh finds room; MoxReader::Error.
    Contents write(std::ostream& out, const std::string& path);

private:
    bool putBlock(const std::string& name, std::string_view bytes);
    void putMesh(const std::string& path);
    void putResults();
    std::vector<std::pair<std::size_t, std::size_t>> resultsInOrder() const;
    void putDescription();

    ViewModel& model_;
    std::uint64_t mostBytes_;
    std::ostream* out_ = nullptr;
    Contents contents_;
    Json ranges_ = Json::object(); ///< By the names of blocks.
};

/// JSON that can stand in a page: without characters that could end the element it is in.
std::string pageJson(const Json& value);

} // namespace MoxTool
