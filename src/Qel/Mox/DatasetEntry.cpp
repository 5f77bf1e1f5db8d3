#include <Qel/Mox/DatasetEntry.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace QelMox {

namespace {

constexpr std::array<std::string_view, 5> DroppedKeys = {"Complex", "Contents", "DataSource", "DataType",
                                                         "Structure"};
constexpr std::string_view DroppedPrefix = "Link.";

bool isDropped(std::string_view key) {
    return std::ranges::find(DroppedKeys, key) != DroppedKeys.end() || key.starts_with(DroppedPrefix);
}

bool isVibration(const QelUtil::AttributeList& list) {
    const auto category = list.find("Category");
    return category != list.end() && category->second.kind == QelUtil::AttributeValue::Text &&
           category->second.text == "Vibration";
}

} // namespace

void DatasetEntry::SetAttributes(const QelUtil::AttributeList& list) {
    vibration = isVibration(list);
    attributes.reserve(list.size());
    for (const auto& [attributeKey, value] : list) {
        if (!isDropped(attributeKey)) {
            attributes.insert_or_assign(attributeKey, value);
        }
    }
}

void DatasetEntry::LinkTo(unsigned int nodeId, unsigned int index, const QelUtil::AttributeList& list) {
    vibration = isVibration(list);
    isLink = true;
    linkNodeId = nodeId;
    linkIndex = index;
    QelUtil::AttributeList().swap(attributes);
}

} // namespace QelMox
