#pragma once

#include <Qel/Util/AttributeList.h>

#include <MoxReader/Attributes.h>

#include <string>

namespace MoxTool {

/// A text as a file has it, in whole.
QelUtil::AttributeValue textValue(std::string text);

/// The attributes of a file for a new one, with the same keys, kinds and values.
QelUtil::AttributeList toAttributeList(const MoxReader::Attributes& attributes);

} // namespace MoxTool
