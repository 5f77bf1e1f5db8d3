#pragma once

#include "../common/jsonValue.h"
#include "BlockWalk.h"

#include <MoxReader/RawIndex.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace MoxTool {

/// What the walk through a damaged file has saved and what it could not.
class SalvageReport {
public:
    /// @param path  The path as the user gave it.
    /// @param wrong What is wrong with the file, in words.
    /// @param index Gives the blocks their names, as far as it can be read. Must outlive this object, as must
    ///              the walk, which has been run.
    SalvageReport(std::string path, std::string wrong, const MoxReader::RawIndex& index,
                  const BlockWalk& walk);

    /// Prints lines for the user.
    void print(std::FILE* out) const;
    Json toJson() const;

private:
    std::vector<std::string> listNotes() const;
    std::string lineOf(const SalvagedBlock& block) const;
    Json entryOf(const SalvagedBlock& block) const;
    Json entriesOf(bool whole) const;
    std::size_t countWhole() const;
    std::size_t countUnnamed() const;
    std::string nameOf(const SalvagedBlock& block) const;

    std::string path_;
    std::string wrong_;
    const MoxReader::RawIndex& index_;
    const BlockWalk& walk_;
    std::map<std::uint64_t, const MoxReader::BlockRecord*>
        records_; ///< By place. If there are several, the last has the bytes.
    std::vector<std::string> lost_;
    std::vector<std::string> notes_;
};

} // namespace MoxTool
