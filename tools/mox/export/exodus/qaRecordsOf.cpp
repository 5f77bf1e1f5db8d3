#include "qaRecordsOf.h"

#include "../../common/attributeValue.h"
#include "../../exodus/ExodusOutput.h"
#include "../../mesh/AttributeNames.h"

#include <fmt/core.h>

#include <string_view>

namespace MoxTool {

namespace {

QaRecord cut(const QaRecord& record) {
    const auto field = [](const std::string& text) { return text.substr(0, ExodusOutput::LongestText); };
    return {field(record.program), field(record.version), field(record.date), field(record.time)};
}

// Removes and returns what follows the last comma.
std::string takeLast(std::string& text) {
    constexpr std::string_view Separator = ", ";
    const auto place = text.rfind(Separator);
    if (place == std::string::npos) {
        return "";
    }
    auto last = text.substr(place + Separator.size());
    text.resize(place);
    return last;
}

// A program's name can contain a comma; the other three fields rarely do.
QaRecord parse(std::string text) {
    QaRecord record;
    record.time = takeLast(text);
    record.date = takeLast(text);
    record.version = takeLast(text);
    record.program = text;
    return record;
}

} // namespace

std::vector<QaRecord> qaRecordsOf(const MoxReader::Attributes& root) {
    std::vector<QaRecord> records;
    for (std::size_t number = 1;; ++number) {
        const auto key = AttributeNames::numbered(AttributeNames::QaRecord, number);
        if (!root.contains(key)) {
            break;
        }
        records.push_back(cut(parse(textAttribute(root, key))));
    }
    if (!records.empty() && root.contains(AttributeNames::SourceProgram)) {
        records.front() = cut({textAttribute(root, AttributeNames::SourceProgram),
                               textAttribute(root, AttributeNames::SourceVersion),
                               textAttribute(root, AttributeNames::SourceDate),
                               textAttribute(root, AttributeNames::SourceTime)});
    }
    return records;
}

} // namespace MoxTool
