#pragma once

#include "MoxReader/Model.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace MoxReader {

/// A named set of pairs.
struct NodeSet {
    std::string name; ///< As the application gave it.
    /// What the two numbers mean is up to the application.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> members;
};

/// A cursor over the stream "Heavy Data".
///
/// Where blocks are lost together with their content lengths, the arrays show where the blocks after them
/// begin: a writer puts one array after another into a block until it has a limit or more. A limit fits if it
/// gives every block of known length that length. If none fits, if several give different beginnings, or if
/// bytes of the stream belong to no array, the stream ends before the first lost block.
/// @param nodes Their datasets list the arrays.
StreamReader openHeavyStream(const File& file, const std::vector<Node>& nodes);

/// Reads numbers from the stream "Heavy Data". Holds one decompressed block between calls, so datasets are
/// best read in order of their positions.
class HeavyData {
public:
    /// @param model  Resolves the links; must outlive this object.
    HeavyData(const File& file, const Model& model);
    /// Reads from any cursor over the stream.
    HeavyData(StreamReader stream, const Model& model);

    // A dataset may be a link: the numbers are then those of Model::resolve(). All of the following throw
    // Error: those of Model::resolve(), BadDatasetSize if the size is not a whole number of items,
    // EndOfStream if the numbers reach past the stream, and those of StreamReader.

    /// The numbers, row-major: one row for each item, as many columns as the dataset is wide.
    /// @throws Error  WrongElementType if they are not floats.
    std::vector<float> readFloats(const Dataset& dataset);
    /// Likewise for unsigned integers. @throws Error  WrongElementType
    std::vector<std::uint32_t> readUnsigned(const Dataset& dataset);
    /// The bytes as stored in the stream: component by component, in four byte planes each.
    std::vector<std::uint8_t> readBytes(const Dataset& dataset);

    /// The sets of a NodeSets node. @throws Error  BadNodeSets, BadCount, EndOfStream, those of StreamReader.
    std::vector<NodeSet> readNodeSets(const NodeSets& descriptor);

    /// The cursor that all of these read from.
    StreamReader& stream() { return stream_; }

private:
    std::span<const std::uint8_t> viewPayload(const Dataset& holder, std::vector<std::uint8_t>& room);
    const Dataset& holderOf(const Dataset& dataset, std::uint8_t elementTag) const;

    const Model& model_;
    StreamReader stream_;
};

} // namespace MoxReader
