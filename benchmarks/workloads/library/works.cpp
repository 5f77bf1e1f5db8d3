#include "library/works.h"

#include "common/Work.h"

namespace Workloads {

const std::vector<Work>& works() {
    static const std::vector<Work> all = {
        {"bulk", "MiB of fields", Library::saveBulk},
        {"array", "MiB of one array", Library::saveArray},
        {"tree", "shapes, each with a group and a geometry", Library::saveTree},
        {"merge-flat", "paths", Library::mergeFlat},
        {"merge-deep", "paths", Library::mergeDeep},
        {"small", "datasets on 100 shapes", Library::saveSmall},
        {"small-timed", "datasets on 100 shapes, whose steps have a time", Library::saveSmallTimed},
        {"keys", "datasets on one shape", Library::saveKeys},
        {"blocks", "blocks of 4,000 bytes", Library::saveBlocks},
    };
    return all;
}

} // namespace Workloads
