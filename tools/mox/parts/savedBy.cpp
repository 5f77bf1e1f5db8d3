#include "savedBy.h"

#include <span>

namespace MoxTool {

namespace {

SavedBy toSavedBy(const MoxReader::ModifierInfo& record) {
    return {.sourceName = record.sourceName,
            .sourceVersion = record.sourceVersion,
            .computer = record.computer,
            .user = record.user,
            .comment = record.comment,
            .date = record.date};
}

} // namespace

SavedBy savedBy(const MoxReader::Model& model) {
    const auto& records = model.globalInformation().modifiers;
    if (records.empty()) {
        return {};
    }
    auto last = toSavedBy(records.back());
    last.date.clear();
    for (const auto& record : std::span(records).first(records.size() - 1)) {
        last.earlier.push_back(toSavedBy(record));
    }
    return last;
}

} // namespace MoxTool
