#pragma once

#include "OpenModel.h"

#include <MoxReader/HeavyData.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace MoxTool {

/// The numbers of a dataset, row-major: one row for each item.
using Numbers = std::variant<std::vector<float>, std::vector<std::uint32_t>>;

/// A file with its model and its numbers, for commands that read both. Every fault of the file is reported as
/// a Failure that names it.
class NumberFile {
public:
    /// @param name "-" stands for stdin.
    /// @param noLimit Whether the datasets may claim more bytes in total than the file holds.
    /// @throws Failure as requireNumbersFit() does, unless there is no limit.
    explicit NumberFile(const std::string& name, bool noLimit = false);
    NumberFile(const NumberFile&) = delete;
    NumberFile& operator=(const NumberFile&) = delete;

    const std::string& path() const { return name_; }
    const MoxReader::Model& model() const { return opened_.model(); }

    /// The dataset that holds the numbers: the given one or the end of its chain of links.
    const MoxReader::Dataset& holder(const MoxReader::Dataset& dataset) const;
    /// The numbers of a dataset or of what it links to. Best called in order of the holders' positions.
    Numbers read(const MoxReader::Dataset& dataset);
    /// The place, among the blocks of numbers, of the block in which a holder's numbers begin. Reading from
    /// one block and then from another decompresses both.
    std::size_t blockOf(const MoxReader::Dataset& holder) { return heavy_.stream().blockAt(holder.position); }
    std::uint64_t fileSize() const { return opened_.file().size(); }
    std::vector<MoxReader::NodeSet> readSets(const MoxReader::NodeSets& descriptor);

private:
    std::string name_;
    OpenModel opened_;
    MoxReader::HeavyData heavy_;
};

} // namespace MoxTool
