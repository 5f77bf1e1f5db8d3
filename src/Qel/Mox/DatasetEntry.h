#pragma once

#include <Qel/Mox/NumericArray.h>
#include <Qel/Mox/VariableType.h>
#include <Qel/Util/AttributeList.h>

#include <cstdint>
#include <optional>
#include <string>

namespace QelMox {

/// What a Geometry keeps of a dataset once its numbers have gone to the file.
struct DatasetEntry {
    /// Adds the attributes, except those that only applications look at, to those that the entry has already;
    /// "Category" = "Vibration" marks the dataset as a vibration.
    void SetAttributes(const QelUtil::AttributeList& list);

    /// Makes the entry a link to another. It then has no attributes, but is marked as a vibration like an entry that
    /// is given these attributes. An entry that has become a link stays one, even when its key is used again.
    void LinkTo(unsigned int nodeId, unsigned int index, const QelUtil::AttributeList& list);

    std::string key;
    QelUtil::AttributeList attributes;
    NumericArray values;
    /// The position of the numbers in the stream of the datasets.
    std::optional<std::uint64_t> position;
    VariableType variableType = {};
    bool vibration = false;
    /// True if the entry is a link to the one that the next two fields name.
    bool isLink = false;
    unsigned int linkNodeId = 0;
    unsigned int linkIndex = 0;
};

} // namespace QelMox
