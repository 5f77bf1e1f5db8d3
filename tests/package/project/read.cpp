// An application that knows the reader only by its installed package: it reads what save.cpp has saved.

#include <MoxReader/HeavyData.h>
#include <MoxReader/MemorySource.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

// A source of the application's own, of which the library knows the base class alone.
class EmptySource : public MoxReader::Source {
public:
    std::uint64_t size() const override { return 0; }

protected:
    void readInside(std::uint64_t, std::span<std::uint8_t>) override {}
};

// The exception is caught by its class across the library's boundary.
bool refusesEmptySource() {
    try {
        MoxReader::File file(std::make_shared<EmptySource>());
    } catch (const MoxReader::Error& error) {
        return error.code() == MoxReader::ErrorCode::Truncated;
    }
    return false;
}

bool hasSavedCoordinates(const char* path) {
    const MoxReader::File file(path);
    const MoxReader::Model model = MoxReader::readModel(file);
    MoxReader::HeavyData heavy(file, model);
    for (const auto& node : model.nodes()) {
        if (const auto* geometry = node.geometry()) {
            return node.name == "part" && geometry->datasets.size() == 1 &&
                   heavy.readFloats(geometry->datasets.front()) == std::vector<float>{1.0F, 2.0F, 3.0F};
        }
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: read FILE\n");
        return 2;
    }
    return refusesEmptySource() && hasSavedCoordinates(argv[1]) ? 0 : 1;
}
