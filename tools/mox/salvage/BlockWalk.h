#pragma once

#include "AttemptBudget.h"
#include "BlockInflater.h"
#include "BlockSearch.h"
#include "KnownPlaces.h"
#include "SalvagedBlock.h"

#include <MoxReader/RawIndex.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// Bytes of the file from which nothing was saved.
struct SalvageGap {
    std::uint64_t offset;
    std::uint64_t size;
    std::string what; ///< What is there, in words.
};

/// Walks through the compressed blocks of a file without trusting its index: a block ends where its zlib
/// stream does, and the next one begins there. If none does, the walk continues at the next place where
/// either a search finds a whole block or the index has one; up to there the beginning of a damaged block is
/// saved.
///
/// What is saved and the gaps cover the file, from the place of the first block on, without overlap.
class BlockWalk {
public:
    /// @param index  Provides places at which to look, as far as it can be read.
    /// @param folder Exists and is empty; receives the content of each block as a file of its own.
    BlockWalk(MoxReader::Source& source, const MoxReader::RawIndex& index, std::filesystem::path folder);

    /// To be called once.
    /// @param progress Called with the fraction of the work that is done, from 0 to 1.
    /// @throws Failure if a file can't be written.
    /// @throws MoxReader::Error ReadFailed.
    /// @par Cost
    /// Time in proportion to the file and to the contents of its blocks; memory only for the lists. Failing
    /// attempts have a budget. When it is used up, the walk ends.
    void run(const std::function<void(double)>& progress);

    /// In the order of the file.
    const std::vector<SalvagedBlock>& blocks() const { return saved_; }
    const std::vector<SalvageGap>& gaps() const { return lost_; }
    /// The place after which blocks can have been missed, because too much of the file looks like beginnings
    /// of blocks; empty if there is none.
    std::optional<std::uint64_t> unsearchedFrom() const { return unsearched_; }

private:
    std::uint64_t step(std::uint64_t position);
    BlockAttempt inflate(std::uint64_t position, std::uint64_t end);
    void keep(const BlockAttempt& attempt);
    void keepBeginning(BlockAttempt attempt, std::uint64_t end);
    std::optional<std::uint64_t> findNext(const BlockAttempt& failed);
    std::optional<std::string> findTable(std::uint64_t position);
    bool isZero(std::uint64_t from, std::uint64_t to);
    void addGap(std::uint64_t from, std::uint64_t to, const std::string& what);

    MoxReader::Source& source_;
    std::filesystem::path folder_;
    BlockInflater inflater_;
    AttemptBudget budget_;
    BlockSearch search_;
    KnownPlaces known_;
    std::vector<SalvagedBlock> saved_;
    std::vector<SalvageGap> lost_;
    std::optional<std::uint64_t> unsearched_;
};

} // namespace MoxTool
