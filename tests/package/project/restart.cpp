// A solver that goes on from what it has saved: it reads the coordinates, moves them, and saves and reads them again.

#include <MoxReader/HeavyData.h>
#include <Qel/Mox2/Model.h>

#include <cstdio>
#include <vector>

namespace {

std::vector<float> readCoordinates(const char* path) {
    const MoxReader::File file(path);
    const MoxReader::Model model = MoxReader::readModel(file);
    for (const auto& node : model.nodes()) {
        if (const auto* geometry = node.geometry()) {
            return MoxReader::HeavyData(file, model).readFloats(geometry->datasets.at(0));
        }
    }
    return {};
}

void saveCoordinates(const char* path, const std::vector<float>& coordinates) {
    using namespace Qel::Mox2;
    SaverOptions options;
    options.overwrite = true;
    Model model;
    model.saveTo(path, options);
    model.addNode(Group, "outside");
    const unsigned int part = model.addNode(Shape, "part");
    const Array2d<float> rows(coordinates.size() / 3, 3, coordinates);
    model.addArrayProperty(Coordinates, rows, part, Step());
    model.close();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: restart SAVED FILE\n");
        return 2;
    }
    std::vector<float> coordinates = readCoordinates(argv[1]);
    for (float& coordinate : coordinates) {
        coordinate += 1.0F;
    }
    saveCoordinates(argv[2], coordinates);
    return readCoordinates(argv[2]) == std::vector<float>{2.0F, 3.0F, 4.0F} ? 0 : 1;
}
