// How much memory an array takes after it has been saved: the bytes of heap for each of many arrays of one
// number, by the kind of step that the arrays are given. Needs glibc, which counts the bytes.

#include <Qel/Mox2/Model.h>

#include <malloc.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

namespace {

using namespace Qel::Mox2;

constexpr unsigned int ArrayCount = 100'000;

std::size_t heapInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

Step stepOf(unsigned int number, bool hasTime) {
    Step step{"Step " + std::to_string(number), {}};
    if (hasTime) {
        step.attributes.set("Time", 0.1F * static_cast<float>(number));
    }
    return step;
}

// The bytes of heap that each further array adds, once the first has made what all share.
double heapOfEach(const std::string& path, const std::function<Step(unsigned int)>& stepAt) {
    SaverOptions options;
    options.overwrite = true;
    Model model;
    model.saveTo(path, options);
    model.addNode(Group, "root");
    const unsigned int geometry = model.addNode(Shape, "shape");
    const Array1d<float> number(1, 1.5F);
    model.addArrayProperty("Temperature", NodeScalar, number, geometry, stepAt(0));
    const std::size_t before = heapInUse();
    for (unsigned int i = 1; i <= ArrayCount; ++i) {
        model.addArrayProperty("Temperature", NodeScalar, number, geometry, stepAt(i));
    }
    const std::size_t after = heapInUse();
    return (static_cast<double>(after) - static_cast<double>(before)) / ArrayCount;
}

} // namespace

int main() {
    const std::string path = (std::filesystem::temp_directory_path() / "moxwriter-footprint.mox").string();
    std::printf("a step of its own               %6.0f bytes for each array\n",
                heapOfEach(path, [](unsigned int i) { return stepOf(i, false); }));
    std::printf("a step of its own, with a time  %6.0f bytes for each array\n",
                heapOfEach(path, [](unsigned int i) { return stepOf(i, true); }));
    std::printf("the same step again             %6.0f bytes for each array\n",
                heapOfEach(path, [](unsigned int) { return stepOf(1, false); }));
    std::filesystem::remove(path);
}
