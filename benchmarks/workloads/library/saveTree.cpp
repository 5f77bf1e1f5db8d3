#include "common/NumberedName.h"
#include "library/open.h"
#include "library/works.h"

namespace Workloads::Library {

using namespace Qel::Mox2;

void saveTree(std::uint64_t shapes, const std::string& path, Stopwatch& watch) {
    watch.start("add");
    Model model;
    open(model, path);
    const unsigned int root = model.addNode(Group, "root");
    NumberedName groupName("part ");
    NumberedName shapeName("body ");
    for (std::uint64_t i = 0; i < shapes; ++i) {
        model.setCurrentNodeId(root);
        model.addNode(Group, groupName(i));
        model.addNode(Shape, shapeName(i));
    }
    watch.start("close");
    model.close();
}

} // namespace Workloads::Library
