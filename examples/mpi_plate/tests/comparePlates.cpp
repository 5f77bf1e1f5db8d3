// comparePlates WHOLE.mox ONE.mox SHAPES [part]: whether a file that joins so many ranks has the plate that one rank
// computes: nodes and elements exactly, results to the last bit or so, temperatures near the exact
// solution. Of a file that lacks a rank, "part", what is there is compared; its last step can be missing.

#include <MoxReader/File.h>
#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Ranks add in another order than one rank does: the last bit of a number up to 1 or up to 4 can differ.
constexpr float TemperatureTolerance = 1.2e-7F;
constexpr float FluxTolerance = 4.8e-7F;
// In squares of an element's edge, since bilinear elements are of second order. Here 0.39 of them are lost, by taking
// the source at the centres of the elements.
constexpr double ExactTolerance = 0.4;
constexpr double FloatRounding = 6e-8;

using Point = std::array<float, 3>;

struct Content {
    std::map<std::uint32_t, Point> nodes;                           // by node id
    std::map<std::uint32_t, std::array<std::uint32_t, 4>> elements; // ids of nodes by element id
    // By step, then by id.
    std::map<std::string, std::map<std::uint32_t, float>> temperatures;
    std::map<std::string, std::map<std::uint32_t, Point>> fluxes;
    std::size_t shapes = 0;
};

void require(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

template <typename Map, typename Value>
void addOnce(Map& map, std::uint32_t id, const Value& value, const char* what) {
    const auto [place, isNew] = map.emplace(id, value);
    require(isNew || place->second == value,
            std::string(what) + " " + std::to_string(id) + " differs between ranks");
}

class PlateReader {
public:
    explicit PlateReader(const std::string& path)
        : file_(path), model_(readModel(file_)), data_(file_, model_) {}

    Content read() {
        for (const auto& node : model_.nodes()) {
            if (node.geometry() != nullptr) {
                add(*node.geometry());
                ++content_.shapes;
            }
        }
        return content_;
    }

private:
    using Geometry = MoxReader::Geometry;

    std::vector<std::uint32_t> integers(const Geometry& geometry, const std::string& name) {
        for (const auto& dataset : geometry.datasets) {
            if (dataset.name == name) {
                return data_.readUnsigned(dataset);
            }
        }
        throw std::runtime_error("there is no dataset " + name);
    }

    void add(const Geometry& geometry) {
        const auto nodeIds = integers(geometry, "Node Ids");
        const auto elementIds = integers(geometry, "Element IDs");
        const auto nodes = integers(geometry, "Connectivity");
        for (std::size_t i = 0; i < elementIds.size(); ++i) {
            std::array<std::uint32_t, 4> corners{};
            for (std::size_t k = 0; k < 4; ++k) {
                corners.at(k) = nodeIds.at(nodes.at(4 * i + k));
            }
            require(content_.elements.emplace(elementIds[i], corners).second, "an element is there twice");
        }
        for (const auto& dataset : geometry.datasets) {
            if (dataset.name == "Coordinates") {
                const auto numbers = data_.readFloats(dataset);
                for (std::size_t i = 0; i < nodeIds.size(); ++i) {
                    addOnce(content_.nodes, nodeIds[i], pointAt(numbers, i), "node");
                }
            } else if (dataset.name == "Temperature") {
                const auto numbers = data_.readFloats(dataset);
                for (std::size_t i = 0; i < nodeIds.size(); ++i) {
                    addTemperature(content_.temperatures[dataset.step], nodeIds[i], numbers.at(i));
                }
            } else if (dataset.name == "Heat flux") {
                const auto numbers = data_.readFloats(dataset);
                for (std::size_t i = 0; i < elementIds.size(); ++i) {
                    addOnce(content_.fluxes[dataset.step], elementIds[i], pointAt(numbers, i), "flux");
                }
            }
        }
    }

    static void addTemperature(std::map<std::uint32_t, float>& all, std::uint32_t id, float value) {
        const auto [place, isNew] = all.emplace(id, value);
        require(isNew || std::abs(place->second - value) <= TemperatureTolerance,
                "two ranks have different temperatures");
    }

    static Point pointAt(const std::vector<float>& numbers, std::size_t place) {
        return {numbers.at(3 * place), numbers.at(3 * place + 1), numbers.at(3 * place + 2)};
    }

    MoxReader::File file_;
    MoxReader::Model model_;
    MoxReader::HeavyData data_;
    Content content_;
};

double exactTemperature(double x, double y) {
    return 16 * x * (1 - x) * y * (1 - y);
}

void compareResults(const Content& found, const Content& one) {
    const double edgeSquare = 1.0 / static_cast<double>(one.elements.size());
    for (const auto& [step, temperatures] : found.temperatures) {
        const double factor = std::stod(step.substr(5)) / static_cast<double>(one.temperatures.size());
        for (const auto& [id, value] : temperatures) {
            const auto& [x, y, z] = one.nodes.at(id);
            const double exact = factor * exactTemperature(x, y);
            require(std::abs(value - one.temperatures.at(step).at(id)) <= TemperatureTolerance,
                    "a temperature differs");
            require(std::abs(value - exact) <= factor * ExactTolerance * edgeSquare + FloatRounding,
                    "a temperature is far from the exact one");
        }
        for (const auto& [id, value] : found.fluxes.at(step)) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                require(std::abs(value.at(axis) - one.fluxes.at(step).at(id).at(axis)) <= FluxTolerance,
                        "a heat flux differs");
            }
        }
    }
}

void compare(const Content& found, const Content& one, std::size_t shapes) {
    require(found.shapes == shapes, "there are " + std::to_string(found.shapes) + " shapes");
    require(found.nodes == one.nodes, "the nodes differ");
    require(found.elements == one.elements, "the elements differ");
    require(found.temperatures.size() == one.temperatures.size(), "the number of steps differs");
    for (const auto& [step, temperatures] : found.temperatures) {
        require(temperatures.size() == one.nodes.size(), "a step lacks temperatures");
        require(found.fluxes.at(step).size() == one.elements.size(), "a step lacks fluxes");
    }
    compareResults(found, one);
}

void comparePart(const Content& found, const Content& one, std::size_t shapes) {
    require(found.shapes == shapes, "there are " + std::to_string(found.shapes) + " shapes");
    require(found.elements.size() < one.elements.size(), "no element is missing");
    require(found.temperatures.size() + 1 >= one.temperatures.size(),
            "steps before the last one are missing");
    for (const auto& [id, corners] : found.elements) {
        require(one.elements.at(id) == corners, "an element differs");
    }
    compareResults(found, one);
}

} // namespace

int main(int argc, char** argv) try {
    require(argc == 4 || argc == 5, "comparePlates WHOLE.mox ONE.mox SHAPES [part]");
    const auto found = PlateReader(argv[1]).read();
    const auto one = PlateReader(argv[2]).read();
    (argc == 5 ? comparePart : compare)(found, one, std::stoul(argv[3]));
    std::printf("%zu shapes, %zu nodes, %zu elements, %zu steps are alike\n", found.shapes,
                found.nodes.size(), found.elements.size(), found.temperatures.size());
} catch (const std::exception& failure) {
    std::fprintf(stderr, "comparePlates: %s\n", failure.what());
    return 1;
}
