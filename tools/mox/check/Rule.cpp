#include "Rule.h"

#include <algorithm>
#include <array>

namespace MoxTool {

namespace {

using MoxReader::ErrorCode;
using enum RuleId;
using enum Level;

constexpr std::array Rules = {
    // The front of the file and its index
    Rule{Signature, Error, "signature", "The first eight bytes are the signature"},
    Rule{FileVersion, Error, "file version", "The version is 1.3"},
    Rule{HeadIndex, Error, "head index",
         "The head index has 2784 bytes; a file that was never closed has none"},
    Rule{TableInside, Error, "index table inside", "Every index table lies inside the file"},
    Rule{TableForm, Error, "index table form",
         "The head index has 20 records, an Index Block 200, and it is the last block of the table that "
         "names it"},
    Rule{FileSize, Error, "file size", "The lengths of the blocks add up to the size of the file"},
    Rule{RecordNumber, Error, "record number", "The records are numbered from 1, wrapping at 256"},
    Rule{RecordNameLength, Error, "name length", "Every record says that its name has 128 bytes"},
    Rule{BlockName, Error, "block name", "Every block has a known name, with zeros after it"},
    Rule{BlockFlags, Error, "block flags",
         "Blocks of data are compressed, Index Blocks and free entries are not, only Heavy Data is streamed"},
    Rule{ReservedByte, Error, "reserved byte", "The last byte of every record is 0"},
    Rule{FreeEntries, Error, "free entries",
         "Free entries have no bytes, and no block in use stands after one"},
    Rule{StreamedFlag, Warning, "streamed flag",
         "A block of Heavy Data is marked as streamed if another dataset was written after its first"},
    Rule{BlockPlaces, Error, "block places",
         "Every block lies where the one before it ends; a single dataset that fills the block before an "
         "Index "
         "Block makes writers place what follows it too low"},
    // Single blocks
    Rule{BlockInside, Error, "block inside", "Every block lies inside the file"},
    Rule{ContentLost, Error, "content lost", "No compressed block is empty; its writer lost its content"},
    Rule{ContentLength, Error, "content length", "A compressed block states a length that it can hold"},
    Rule{ZlibStream, Error, "compressed bytes", "A compressed block holds one whole zlib stream"},
    Rule{ContentSize, Error, "content size", "A block decompresses to exactly the length it states"},
    Rule{Checksum, Error, "checksum", "The content of a block has the checksum after it"},
    Rule{BytesAfterStream, Error, "bytes after stream", "A block ends where its zlib stream does"},
    Rule{BlockOverwritten, Error, "block written over", "No block lies over a part of another one"},
    // Streams
    Rule{StreamMissing, Error, "stream missing", "Mox Tree and Global Information are there"},
    Rule{StreamTooShort, Error, "stream too short", "No record reaches past the end of its stream"},
    Rule{Count, Error, "count", "No count promises more than its stream can hold, and there is a root"},
    Rule{BytesLeftOver, Error, "bytes left over", "A stream ends with its last record"},
    Rule{TruthValue, Error, "truth value", "Truth values are 0 or 1"},
    Rule{RecordSize, Error, "record size", "The size at the front of a record fits its fields"},
    Rule{NotChecked, Note, "not checked", "No damage keeps a part of the file from being checked"},
    // The tree
    Rule{NodeIds, Error, "node ids", "The nodes are numbered 1, 2, 3 and so on"},
    Rule{Parent, Error, "parent", "Every node but the root has a parent, whose id is lower"},
    Rule{Siblings, Error, "siblings", "Siblings name each other, in ascending ids, and have one parent"},
    Rule{Children, Error, "children", "A node names its first and its last child, if it has any"},
    Rule{NodeType, Error, "node type", "The type of a node is known; only a root can be without one"},
    Rule{NodeVersion, Error, "node version", "The version of a node is the one of its type"},
    Rule{DescriptorPlace, Error, "descriptor place",
         "A node's descriptor begins where the one before it ends"},
    // Descriptors
    Rule{GroupKind, Error, "group kind", "A group's kind is 0, or 1 for a root"},
    Rule{MaterialRecord, Error, "material record", "A material has version 0.3, 84 bytes and the flag 1"},
    Rule{AttributeRecord, Error, "attribute record",
         "Every attribute has a key of its own, a kind and a value"},
    Rule{NodeSetsRecord, Error, "node sets",
         "The lists of node sets fit each other, their count and their size"},
    Rule{GlobalRecord, Error, "global information",
         "The records of who saved the file are of version 0.1 and 1.3"},
    Rule{AttributeOrder, Error, "attribute order",
         "The keys of attributes stand in ascending order of bytes"},
    // Datasets
    Rule{VariableType, Error, "variable type", "A dataset's type is known"},
    Rule{ElementType, Error, "element type", "A dataset's numbers are floats or unsigned integers"},
    Rule{Width, Error, "width", "A dataset has as many components as its type"},
    Rule{DatasetSize, Error, "dataset size", "A dataset's size is a whole number of items, at least one"},
    Rule{DatasetInside, Error, "dataset inside", "A dataset's numbers lie inside Heavy Data"},
    Rule{DatasetOneBlock, Error, "dataset in one block", "A dataset's numbers lie in one block"},
    Rule{DatasetOverlap, Error, "dataset overlap", "No numbers belong to two datasets that are no links"},
    Rule{KeyTwice, Error, "key twice", "No geometry has two datasets of one name and step"},
    Rule{LinkTarget, Error, "link target", "A link names a dataset that exists"},
    Rule{LinkCycle, Error, "link cycle",
         "A link does not lead back to itself; its numbers would be out of reach"},
    Rule{LinkChain, Warning, "link chain", "A link names a dataset that is no link"},
    Rule{LinkType, Warning, "link type", "A link has the type of the dataset whose numbers it shares"},
    Rule{LinkAttributes, Warning, "link attributes",
         "A link has no attributes, unless its key was given again"},
    Rule{FixedFields, Warning, "fixed fields", "The fields of a dataset without a known meaning are 0"},
    // What the model says
    Rule{NotFinite, Warning, "not finite", "The numbers of datasets are finite"},
    Rule{LooksNotFinite, Warning, "looks not finite", "The numbers of transforms and materials are finite"},
    Rule{Connectivity, Warning, "connectivity", "Connectivity stays below the number of coordinates"},
    Rule{Polylength, Warning, "polylength", "The lengths of the elements add up to their connectivity"},
    Rule{ResultLength, Warning, "result length", "Results of nodes and of elements have an item for each"},
    Rule{SiblingNames, Warning, "sibling names",
         "No two siblings have one name, so that paths tell them apart"},
    Rule{StepMix, Warning, "with and without step", "A dataset has steps or none, not both"},
    Rule{UnusedNumbers, Note, "unused numbers", "All numbers in Heavy Data belong to a dataset"},
};

struct Mapping {
    ErrorCode code;
    RuleId rule;
    bool ofBlock = false;
};

constexpr std::array Mappings = {
    Mapping{ErrorCode::Truncated, TableInside},
    Mapping{ErrorCode::BadSignature, Signature},
    Mapping{ErrorCode::UnsupportedFileVersion, FileVersion},
    Mapping{ErrorCode::NotFinished, HeadIndex},
    Mapping{ErrorCode::BadIndexTable, TableForm},
    Mapping{ErrorCode::BadIndexRecord, RecordNameLength},
    Mapping{ErrorCode::BlockBeyondFile, BlockInside, true},
    Mapping{ErrorCode::ContentLost, ContentLost, true},
    Mapping{ErrorCode::ContentLengthMissing, ContentLength, true},
    Mapping{ErrorCode::ContentLengthImplausible, ContentLength, true},
    Mapping{ErrorCode::ZlibDamaged, ZlibStream, true},
    Mapping{ErrorCode::ZlibIncomplete, ZlibStream, true},
    Mapping{ErrorCode::ContentTooShort, ContentSize, true},
    Mapping{ErrorCode::ContentTooLong, ContentSize, true},
    Mapping{ErrorCode::ChecksumMismatch, Checksum, true},
    Mapping{ErrorCode::TrailingBytes, BytesAfterStream, true},
    Mapping{ErrorCode::BlockOverwritten, BlockOverwritten, true},
    Mapping{ErrorCode::MissingStream, StreamMissing},
    Mapping{ErrorCode::EndOfStream, StreamTooShort},
    Mapping{ErrorCode::BadCount, Count},
    Mapping{ErrorCode::TrailingStreamBytes, BytesLeftOver},
    Mapping{ErrorCode::BadValue, TruthValue},
    Mapping{ErrorCode::BadRecordSize, RecordSize},
    Mapping{ErrorCode::BadAttributes, AttributeRecord},
    Mapping{ErrorCode::BadNodeSets, NodeSetsRecord},
    Mapping{ErrorCode::UnknownNodeType, NotChecked},
    Mapping{ErrorCode::BadLinkTarget, LinkTarget},
    Mapping{ErrorCode::LinkCycle, LinkCycle},
};

const Mapping* findMapping(ErrorCode code) {
    const auto found = std::ranges::find(Mappings, code, &Mapping::code);
    return found == Mappings.end() ? nullptr : &*found;
}

} // namespace

std::string_view levelName(Level level) {
    constexpr std::array<std::string_view, 3> Names = {"note", "warning", "error"};
    return Names[static_cast<std::size_t>(level)];
}

std::span<const Rule> allRules() {
    return Rules;
}

const Rule& ruleOf(RuleId id) {
    return *std::ranges::find(Rules, id, &Rule::id);
}

RuleId brokenRule(MoxReader::ErrorCode code) {
    const auto* mapping = findMapping(code);
    return mapping != nullptr ? mapping->rule : RecordSize;
}

bool isBlockDamage(MoxReader::ErrorCode code) {
    const auto* mapping = findMapping(code);
    return mapping != nullptr && mapping->ofBlock;
}

} // namespace MoxTool
