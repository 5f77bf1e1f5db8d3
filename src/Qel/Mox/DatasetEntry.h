#pragma once

#include <Qel/Mox/NumericArray.h>
#include <Qel/Mox/VariableType.h>
#include <Qel/Util/AttributeList.h>

#include <string>

namespace QelMox {

/// What a Geometry keeps of a dataset once its numbers have gone to the file.
struct DatasetEntry {
    /// Adds the attributes, except those that only applications look at, to those that the entry has already;
    /// "Category" = "Vibration" marks the dataset as a vibration.
    void SetAttributes(const QelUtil::AttributeList& list);

    std::string key;
    VariableType variableType = {};
    bool vibration = false;
    QelUtil::AttributeList attributes;
    NumericArray values;
    /// True if the entry is a link to the one that the next two fields name. Never becomes false again.
    bool isLink = false;
    unsigned int linkNodeId = 0;
    unsigned int linkIndex = 0;
};

} // namespace QelMox
