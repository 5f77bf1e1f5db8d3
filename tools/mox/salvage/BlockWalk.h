#pragma once

#include "inflateStream.h"

#include <MoxReader/RawIndex.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// A block that could be inflated.
struct SalvagedBlock {
    std::uint64_t offset;  ///< In the file, of its content length word.
    std::uint64_t stored;  ///< Bytes in the file, with that word.
    std::uint64_t content; ///< Bytes after inflating.
    std::string name;      ///< From the index; empty if that does not tell.
    std::string file;      ///< The name of the file that holds its content.
};

/// Bytes between blocks that could be inflated.
struct SalvageGap {
    std::uint64_t offset;
    std::uint64_t size;
    std::string what; ///< What stands there, in words.
};

/// Walks the compressed blocks of a file without believing its index: a block ends where its zlib stream
/// does. Behind bytes that are no whole block the next one is searched for.
class BlockWalk {
public:
    /// @param index Gives the blocks their names, as far as it can be read.
    BlockWalk(MoxReader::Source& source, const MoxReader::RawIndex& index);

    /// Writes the content of each whole block to a file of its own.
    /// @param folder   Exists; gets block-0001.raw and so on.
    /// @param progress Called with the share of the work that is done, from 0 to 1.
    /// @throws Failure if a file can't be written.
    /// @throws MoxReader::Error ReadFailed.
    /// @par Cost Constant memory; time in proportion to the file, since attempts that fail have a budget.
    /// When
    ///           it is used up, the rest of the file is one gap.
    void run(const std::filesystem::path& folder, const std::function<void(double)>& progress);

    const std::vector<SalvagedBlock>& blocks() const { return found; }
    const std::vector<SalvageGap>& gaps() const { return lost; }

private:
    std::optional<std::uint64_t> take(std::uint64_t position, const std::filesystem::path& folder);
    std::optional<std::uint64_t> findCandidate(std::uint64_t from);
    void addGap(std::uint64_t from, std::uint64_t to, const std::string& what);
    std::string describeFailure() const;
    bool isZero(std::uint64_t from, std::uint64_t to);
    std::string nameAt(std::uint64_t position) const;

    MoxReader::Source& source;
    const MoxReader::RawIndex& index;
    std::vector<SalvagedBlock> found;
    std::vector<SalvageGap> lost;
    std::uint64_t stated = 0; ///< The content length of the last attempt.
    InflateResult attempt;    ///< The last one.
    std::uint64_t budget;     ///< Bytes that failing attempts may still use.
};

} // namespace MoxTool
