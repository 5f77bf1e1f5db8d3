#include "MoxReader/GlobalInformation.h"

#include "MoxReader/ReadHelpers.h"
#include "MoxReader/VersionedRecord.h"

namespace MoxReader {

namespace {

ModifierInfo readModifierInfo(StreamReader& global) {
    VersionedRecord record(global);
    ModifierInfo info;
    info.version = record.version();
    info.sourceName = global.readString();
    info.sourceVersion = global.readString();
    info.formatVersion = global.readString();
    info.date = global.readString();
    info.computer = global.readString();
    info.user = global.readString();
    info.comment = global.readString();
    record.finish();
    return info;
}

} // namespace

GlobalInformation readGlobalInformation(StreamReader& global) {
    GlobalInformation information;
    const auto count = global.readCount(Format::VersionedRecordMinSize);
    for (std::uint32_t i = 0; i < count; ++i) {
        information.modifiers.push_back(inRecord([&] { return readModifierInfo(global); },
                                                 [&] { return "modifier " + std::to_string(i); }));
    }
    information.resultAttributeCount = global.readNumber<std::uint32_t>();
    if (information.resultAttributeCount == 0) {
        requireEnd(global);
    }
    return information;
}

} // namespace MoxReader
