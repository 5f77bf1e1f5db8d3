// Saves as many results as asked for, one step after another, in a few hundred MiB of memory: numbers leave
// memory as they are added. After "ulimit -v 1048576" in the shell, 1 GiB has to do for any number of GB.

#include "BoxMesh.h"
#include "saveChecked.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace Qel::Mox2;

const BoxMesh Block({100, 100, 100}, {88, 88, 88}); // 704,969 nodes: a vector of each takes 8 MiB

// What a solver would compute: a wave of pressure, in hundredths, so that zlib has something to save.
float pressure(float x, int step) {
    return std::round(100.0F * std::sin(0.1F * x + 0.01F * static_cast<float>(step))) / 100.0F;
}

// [save]
std::uint64_t save(const std::filesystem::path& path, std::uint64_t bytes) {
    Model model;
    model.saveTo(path.string(), SaverOptions{true, "larger_than_memory", "1.0"});
    model.addNode(Group, "Assembly");
    const unsigned int shape = model.addNode(Shape, "Block");
    Block.addTo(model, shape);
    Array2d<float> displacement(Block.coordinates.rows(), 3, 0.0F); // one for all steps
    std::uint64_t saved = 0;
    for (int number = 1; saved < bytes; ++number) {
        for (std::size_t i = 0; i < displacement.rows(); ++i) {
            displacement(i, 0) = pressure(Block.coordinates(i, 0), number);
        }
        Step step{"Step " + std::to_string(number), {}};
        step.attributes.set("Time", 0.01F * static_cast<float>(number));
        model.addArrayProperty(DisplacementVector, displacement, shape, step);
        saved += displacement.size() * sizeof(float);
    }
    model.close();
    return saved;
}
// [/save]

} // namespace

int main(int argc, char** argv) try {
    const std::filesystem::path path = argc > 1 ? argv[1] : "large.mox";
    const double gigabytes = argc > 2 ? std::stod(argv[2]) : 16;
    std::uint64_t saved = 0;
    Examples::saveChecked(path, [&](const std::filesystem::path& beside) {
        saved = save(beside, static_cast<std::uint64_t>(gigabytes * 1e9));
    });
    std::cout << "Saved " << path.string() << ": " << saved / 1'000'000 << " MB of results, "
              << std::filesystem::file_size(path) / 1'000 << " kB in the file\n";
} catch (const std::exception& error) {
    std::cerr << "larger_than_memory: " << error.what() << '\n';
    return 1;
}
