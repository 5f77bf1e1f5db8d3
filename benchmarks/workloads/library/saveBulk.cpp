#include "common/NumberedName.h"
#include "common/sampleFields.h"
#include "library/open.h"
#include "library/works.h"

#include <vector>

namespace Workloads::Library {

using namespace Qel::Mox2;

void saveBulk(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    std::vector<Array2d<float>> fields;
    fields.reserve(FieldCount);
    for (std::size_t i = 0; i < FieldCount; ++i) {
        fields.emplace_back(FieldRows, FieldColumns, sampleField(FieldRows, FieldColumns, i));
    }

    watch.start("add");
    Model model;
    open(model, path);
    model.addNode(Group, "root");
    const unsigned int geometry = model.addNode(Shape, "part");
    NumberedName stepName("Step ");
    Step step;
    for (std::uint64_t i = 0; i < fieldsIn(mebibytes); ++i) {
        step.name = stepName(i);
        model.addArrayProperty(DisplacementVector, fields[i % FieldCount], geometry, step);
    }
    watch.start("close");
    model.close();
}

} // namespace Workloads::Library
