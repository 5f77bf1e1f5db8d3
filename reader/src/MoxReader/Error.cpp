#include "MoxReader/Error.h"

#include <array>
#include <utility>

namespace MoxReader {

namespace {

struct Entry {
    ErrorCode code;
    std::string_view name;
    std::string_view text;
};

constexpr std::array Entries = {
    Entry{ErrorCode::OpenFailed, "OpenFailed", "no regular file that can be opened"},
    Entry{ErrorCode::ReadFailed, "ReadFailed", "the system failed to read"},
    Entry{ErrorCode::Truncated, "Truncated", "the file ends inside its header or index"},
    Entry{ErrorCode::BadSignature, "BadSignature",
          "the first eight bytes are not the signature of this format"},
    Entry{ErrorCode::UnsupportedFileVersion, "UnsupportedFileVersion", "the file has an unknown version"},
    Entry{ErrorCode::NotFinished, "NotFinished", "the file was never closed by its writer"},
    Entry{ErrorCode::BadIndexTable, "BadIndexTable", "an index table has a wrong length, count or place"},
    Entry{ErrorCode::BadIndexRecord, "BadIndexRecord", "an index record has a wrong name length"},
    Entry{ErrorCode::NoSuchBlock, "NoSuchBlock", "there is no such block"},
    Entry{ErrorCode::BlockBeyondFile, "BlockBeyondFile", "the block reaches past the end of the file"},
    Entry{ErrorCode::ContentLost, "ContentLost", "the block has no bytes because its compression failed"},
    Entry{ErrorCode::ContentLengthMissing, "ContentLengthMissing",
          "the block is too short for its content length"},
    Entry{ErrorCode::ContentLengthImplausible, "ContentLengthImplausible",
          "the content length is more than the block's bytes can give"},
    Entry{ErrorCode::ZlibDamaged, "ZlibDamaged", "the compressed bytes are damaged"},
    Entry{ErrorCode::ZlibIncomplete, "ZlibIncomplete", "the block ends before its compressed bytes do"},
    Entry{ErrorCode::ContentTooShort, "ContentTooShort", "the content is shorter than stated"},
    Entry{ErrorCode::ContentTooLong, "ContentTooLong", "the content is longer than stated"},
    Entry{ErrorCode::ChecksumMismatch, "ChecksumMismatch", "the content does not match its checksum"},
    Entry{ErrorCode::TrailingBytes, "TrailingBytes", "there are bytes after the compressed content"},
    Entry{ErrorCode::BlockOverwritten, "BlockOverwritten", "the block's writer wrote over it later"},
    Entry{ErrorCode::MissingStream, "MissingStream", "the file lacks a stream that every file has"},
    Entry{ErrorCode::EndOfStream, "EndOfStream", "the stream ends before the value does"},
    Entry{ErrorCode::BadCount, "BadCount", "a count does not fit its stream"},
    Entry{ErrorCode::BadValue, "BadValue", "a truth value is neither 0 nor 1"},
    Entry{ErrorCode::BadRecordSize, "BadRecordSize", "a record's size does not fit its fields"},
    Entry{ErrorCode::UnsupportedRecordVersion, "UnsupportedRecordVersion", "the node has an unknown version"},
    Entry{ErrorCode::UnknownNodeType, "UnknownNodeType", "the node has an unknown type"},
    Entry{ErrorCode::BadPosition, "BadPosition", "the node's descriptor is not where the one before it ends"},
    Entry{ErrorCode::TrailingStreamBytes, "TrailingStreamBytes", "the stream goes on after its last record"},
    Entry{ErrorCode::BadAttributes, "BadAttributes",
          "the lists of an attribute record contradict each other"},
    Entry{ErrorCode::BadNodeSets, "BadNodeSets", "the node sets contradict themselves"},
    Entry{ErrorCode::NoSuchNode, "NoSuchNode", "there is no such node or dataset"},
    Entry{ErrorCode::BadNodeId, "BadNodeId", "the node ids are not 1, 2, 3 and so on"},
    Entry{ErrorCode::BadTreeLink, "BadTreeLink", "the node's links contradict the tree"},
    Entry{ErrorCode::BadLinkTarget, "BadLinkTarget",
          "the dataset is a link to a dataset that does not exist"},
    Entry{ErrorCode::LinkCycle, "LinkCycle", "the dataset is a link that leads back to itself"},
    Entry{ErrorCode::WrongElementType, "WrongElementType", "the dataset's numbers are of another type"},
    Entry{ErrorCode::BadDatasetSize, "BadDatasetSize", "the dataset's size is no whole number of items"},
};

constexpr bool entriesFollowCodes() {
    for (std::size_t i = 0; i < Entries.size(); ++i) {
        if (Entries[i].code != static_cast<ErrorCode>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(entriesFollowCodes());

const Entry& entryOf(ErrorCode code) {
    return Entries.at(static_cast<std::size_t>(code));
}

void append(std::string& list, const std::string& item) {
    list += list.empty() ? "" : ", ";
    list += item;
}

std::string describe(const Place& place) {
    std::string list;
    if (!place.path.empty()) {
        append(list, place.path);
    }
    if (!place.record.empty()) {
        append(list, place.record);
    }
    if (place.blockId) {
        append(list, "block " + std::to_string(*place.blockId));
    }
    if (!place.name.empty()) {
        append(list, "\"" + place.name + "\"");
    }
    if (place.streamOffset) {
        append(list, "stream offset " + std::to_string(*place.streamOffset));
    }
    if (place.fileOffset) {
        append(list, "file offset " + std::to_string(*place.fileOffset));
    }
    return list;
}

std::string message(ErrorCode code, const Place& place) {
    const auto where = describe(place);
    return std::string(errorText(code)) + (where.empty() ? "" : " (" + where + ")");
}

} // namespace

std::string_view errorName(ErrorCode code) {
    return entryOf(code).name;
}

std::string_view errorText(ErrorCode code) {
    return entryOf(code).text;
}

Error::Error(ErrorCode code, Place place)
    : std::runtime_error(message(code, place)),
      code_(code),
      place_(std::make_shared<const Place>(std::move(place))) {}

Error Error::inRecord(const std::string& record) const {
    auto place = *place_;
    place.record += place.record.empty() ? record : " of " + record;
    return Error(code_, std::move(place));
}

} // namespace MoxReader
