#include "common/sampleFields.h"
#include "library/open.h"
#include "library/works.h"

namespace Workloads::Library {

using namespace Qel::Mox2;

void saveArray(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    Array2d<float> array(fieldsIn(mebibytes) * FieldRows, FieldColumns);
    fillLongArray(mebibytes, &array(0, 0));

    watch.start("add");
    Model model;
    open(model, path);
    model.addNode(Group, "root");
    model.addArrayProperty(DisplacementVector, array, model.addNode(Shape, "part"), Step());
    watch.start("close");
    model.close();
}

} // namespace Workloads::Library
