#include "common/process.h"
#include "common/sampleFields.h"
#include "common/sizes.h"
#include "library/open.h"
#include "library/works.h"

#include <vector>

namespace Workloads::Library {

using namespace Qel::Mox2;

void saveBlocks(std::uint64_t blocks, const std::string& path, Stopwatch& watch) {
    setVariable("MOXWRITER_DEFAULT_BLOCK_SIZE", TinyBlockSize);
    std::vector<Array1d<float>> arrays;
    arrays.reserve(SmallArrayCount);
    for (std::size_t i = 0; i < SmallArrayCount; ++i) {
        arrays.emplace_back(sampleField(ValuesOfTinyArray, 1, i));
    }

    watch.start("add");
    Model model;
    open(model, path);
    model.addNode(Group, "root");
    const unsigned int geometry = model.addNode(Shape, "part");
    // The same key again and again: the tree stays small, and the blocks are all that grows.
    const Step step;
    const std::string dataset = "Temperature";
    for (std::uint64_t i = 0; i < blocks * ArraysInTinyBlock; ++i) {
        model.addArrayProperty(dataset, NodeScalar, arrays[i % SmallArrayCount], geometry, step);
    }
    watch.start("close");
    model.close();
}

} // namespace Workloads::Library
