#include "GoldenFiles.h"

#include "GoldenModel.h"
#include "smallModels.h"

namespace Golden {

const std::vector<GoldenFile>& goldenFiles() {
    static const std::vector<GoldenFile> files = {
        {"golden", saveGoldenModel},
        {"empty", saveEmptyModel},
        {"root-shape", saveRootShape},
        {"groups", saveGroups},
        {"materials", saveMaterials},
        {"attributes", saveAttributes},
        {"types", saveTypes},
        {"mesh", saveMesh},
        {"steps", saveSteps},
        {"links", saveLinks},
        {"names", saveNames},
        {"numbers", saveNumbers},
        {"node-sets", saveNodeSets},
        {"small-blocks", saveSmallBlocks},
        {"index-block", saveIndexBlock},
        {"low-blocks", saveLowBlocks},
    };
    return files;
}

} // namespace Golden
