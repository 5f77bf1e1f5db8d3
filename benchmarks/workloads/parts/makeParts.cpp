// Saves the parts of a model as the ranks of a solver would: each part has a shape of its own with a field for each
// step. usage: make_parts FOLDER PARTS DATASETS FLOATS (of each dataset)

#include "common/sampleFields.h"

#include <Qel/Mox2/Model.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace Qel::Mox2;

using Fields = std::vector<Array2d<float>>;

// A few fields that repeat, as the large works have them: making numbers takes longer than saving few of them.
Fields makeFields(std::uint64_t floats) {
    const auto rows = static_cast<std::size_t>(floats / Workloads::FieldColumns);
    Fields fields;
    for (std::size_t i = 0; i < Workloads::FieldCount; ++i) {
        fields.emplace_back(static_cast<unsigned int>(rows),
                            static_cast<unsigned int>(Workloads::FieldColumns),
                            Workloads::sampleField(rows, Workloads::FieldColumns, i));
    }
    return fields;
}

void savePart(const std::string& path, std::uint64_t part, std::uint64_t datasets, const Fields& fields) {
    Model model;
    model.saveTo(path, {true, "make_parts", "1", ""});
    model.addNode(Group, "model");
    const auto shape = model.addNode(Shape, "part " + std::to_string(part));
    for (std::uint64_t i = 0; i < datasets; ++i) {
        Step step{"Step " + std::to_string(i + 1), {}};
        step.attributes.set("Time", static_cast<float>(i) * 0.01F);
        model.addArrayProperty("Displacement", DisplacementVector, fields[(i + part) % fields.size()], shape,
                               step);
    }
    model.close();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: make_parts FOLDER PARTS DATASETS FLOATS\n");
        return 2;
    }
    const auto parts = std::strtoull(argv[2], nullptr, 10);
    const auto datasets = std::strtoull(argv[3], nullptr, 10);
    const auto floats = std::strtoull(argv[4], nullptr, 10);
    try {
        const auto fields = makeFields(floats);
        for (std::uint64_t part = 0; part < parts; ++part) {
            const auto number = std::to_string(1'000'000 + part).substr(1);
            savePart(std::string(argv[1]) + "/part." + number + ".mox", part, datasets, fields);
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "make_parts: %s\n", failure.what());
        return 1;
    }
    return 0;
}
