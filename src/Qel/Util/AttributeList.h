#pragma once

#include <Qel/Util/AttributeValue.h>

#include <boost/container/flat_map.hpp>

#include <string>

namespace QelUtil {

/// The attributes of a group or a dataset, as the tree keeps and writes them, in byte order of their keys. All
/// of a list lie in one run of memory: there are many lists, each with few attributes.
using AttributeList = boost::container::flat_map<std::string, AttributeValue>;

} // namespace QelUtil
