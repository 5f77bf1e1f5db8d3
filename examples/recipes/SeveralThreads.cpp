// Four threads save a model each. The only thing that they share is the lock.

#include "saveChecked.h"

#include <Qel/Mox2/Model.h>

#include <exception>
#include <filesystem>
#include <future>
#include <iostream>
#include <mutex>
#include <string>
#include <vector>

namespace {

using namespace Qel::Mox2;

// [lock]
std::mutex oneArrayAtATime; // one for all models of the process

template <typename... Arguments>
void addArray(Model& model, const Arguments&... arguments) {
    const std::lock_guard lock(oneArrayAtATime);
    model.addArrayProperty(arguments...);
}

void savePart(const std::filesystem::path& path, int part) {
    Model model; // used by this thread alone
    model.saveTo(path.string(), SaverOptions{true, "several_threads", "1.0"});
    model.addNode(Group, "Assembly");
    const unsigned int shape = model.addNode(Shape, "Part " + std::to_string(part));
    addArray(model, Coordinates, Array2d<float>(1000, 3, 1.0F), shape, Step{});
    addArray(model, "Temperature", NodeScalar, Array1d<float>(1000, 20.0F), shape, Step{"Step 1", {}});
    model.close(); // needs no lock
}
// [/lock]

} // namespace

int main(int argc, char** argv) try {
    const std::string stem = argc > 1 ? argv[1] : "part";
    std::vector<std::future<void>> parts;
    for (int part = 0; part < 4; ++part) {
        parts.push_back(std::async(std::launch::async, [&stem, part] {
            Examples::saveChecked(stem + "." + std::to_string(part) + ".mox",
                                  [part](const std::filesystem::path& beside) { savePart(beside, part); });
        }));
    }
    for (std::future<void>& part : parts) {
        part.get(); // throws what the thread has thrown
    }
    std::cout << "Saved four parts\n";
} catch (const std::exception& error) {
    std::cerr << "several_threads: " << error.what() << '\n';
    return 1;
}
