#pragma once

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

namespace MoxPython {

/// The numbers of a dataset, row by row.
struct ReadNumbers {
    std::variant<std::vector<float>, std::vector<std::uint32_t>> numbers;
    std::size_t width;
};

/// An open file with its model. Threads that read its numbers take turns.
class ReadFile {
public:
    /// @throws MoxReader::Error for a file that is not there or not whole.
    explicit ReadFile(const std::string& path);

    const MoxReader::File& file() const { return file_; }
    const MoxReader::Model& model() const { return model_; }

    /// The entry that holds a dataset's numbers; null if a link leads nowhere.
    const MoxReader::Dataset* holderOf(const MoxReader::Dataset& dataset) const;

    // To be called without the GIL. @throws MoxReader::Error

    /// @throws MoxReader::Error NoSuchNode also for a place that the geometry does not have.
    ReadNumbers read(std::uint32_t node, std::uint32_t index);
    std::vector<MoxReader::NodeSet> readNodeSets(std::uint32_t node);

private:
    MoxReader::File file_;
    MoxReader::Model model_;
    MoxReader::HeavyData heavy_;
    std::mutex turn_;
};

/// Looks at the index and at the places of all blocks.
/// @throws MoxReader::Error for a block that is not whole in the file.
void requireWhole(const std::string& path);

} // namespace MoxPython
