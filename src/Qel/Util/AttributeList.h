#pragma once

#include <Qel/Util/AttributeValue.h>

#include <map>
#include <string>

namespace QelUtil {

/// The attributes of a group or a dataset, as the tree keeps and writes them, in byte order of their keys.
using AttributeList = std::map<std::string, AttributeValue>;

} // namespace QelUtil
