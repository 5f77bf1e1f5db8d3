// An application that knows the writer only by its installed package.

#include <Qel/Exception/Exception.h>
#include <Qel/Mox2/Model.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    using namespace Qel::Mox2;
    if (argc != 2) {
        std::fprintf(stderr, "usage: save FILE\n");
        return 2;
    }
    Model model;
    model.saveTo(argv[1], SaverOptions());
    model.addNode(Group, "outside");
    const unsigned int part = model.addNode(Shape, "part");
    model.addArrayProperty(Coordinates, Array2d<float>(1, 3, {1.0F, 2.0F, 3.0F}), part, Step());
    model.close();

    // The exception is caught by its class across the library's boundary.
    try {
        model.addNode(Group, "late");
    } catch (const Qel::Exception::InvalidObjectState& refused) {
        return std::string(refused.what()) == "File not open." ? 0 : 1;
    }
    return 1;
}
