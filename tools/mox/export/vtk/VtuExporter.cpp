#include "VtuExporter.h"

#include "../../mesh/DatasetNames.h"
#include "../noteUnknownShapes.h"

#include <MoxReader/Format.h>

#include <fmt/core.h>

#include <algorithm>
#include <fstream>

namespace MoxTool {

namespace {

template <typename T>
void put(std::ostream& stream, const std::vector<T>& numbers) {
    stream.write(reinterpret_cast<const char*>(numbers.data()),
                 static_cast<std::streamsize>(numbers.size() * sizeof(T)));
}

// Some columns of each row, as another type.
template <typename T>
std::vector<T> columnsOf(const std::vector<double>& table, std::size_t width, std::size_t first,
                         std::size_t columns) {
    std::vector<T> numbers;
    numbers.reserve(table.size() / width * columns);
    for (std::size_t row = 0; row < table.size(); row += width) {
        for (std::size_t column = first; column < first + columns; ++column) {
            numbers.push_back(static_cast<T>(table[row + column]));
        }
    }
    return numbers;
}

void putNodes(std::ostream& stream, const MeshBlock& block) {
    const std::vector<std::int64_t> nodes(block.nodes.begin(), block.nodes.end());
    const auto order = block.shape->vtkOrder;
    if (order.empty()) {
        put(stream, nodes);
        return;
    }
    std::vector<std::int64_t> ordered;
    ordered.reserve(nodes.size());
    for (std::size_t element = 0; element < nodes.size(); element += order.size()) {
        for (const auto place : order) {
            ordered.push_back(nodes[element + place]);
        }
    }
    put(stream, ordered);
}

// Writes, for each cell, the place after its last node.
void putOffsets(std::ostream& stream, const MeshBlock& block, std::int64_t& end) {
    std::vector<std::int64_t> offsets;
    offsets.reserve(block.rows.size());
    for (std::size_t i = 0; i < block.rows.size(); ++i) {
        end += static_cast<std::int64_t>(block.lengths.empty() ? block.nodesPerElement : block.lengths[i]);
        offsets.push_back(end);
    }
    put(stream, offsets);
}

// Writes one number for each cell, the same for all of a block.
template <typename T, typename NumberOfBlock>
void putForEachCell(std::ostream& stream, const ModelMesh& mesh, NumberOfBlock number) {
    for (const auto& block : mesh.blocks) {
        put(stream, std::vector<T>(block.rows.size(), static_cast<T>(number(block))));
    }
}

std::string uniqueName(const std::string& wanted, std::set<std::string>& taken) {
    auto name = wanted;
    for (int number = 2; !taken.insert(name).second; ++number) {
        name = fmt::format("{} ({})", wanted, number);
    }
    return name;
}

bool isDisplacementWithRotation(const ResultField& field) {
    return MoxReader::Format::isType(field.variableType, MoxReader::Format::VariableType::NodeSixA) &&
           field.name == DatasetNames::Displacement;
}

} // namespace

VtuExporter::VtuExporter(ExportModel& source) : source_(source), reader_(source.reader()) {
    const auto unknown = std::ranges::count(source_.mesh().blocks, &UnknownShape, &MeshBlock::shape);
    noteUnknownShapes(source_.summary(), static_cast<std::size_t>(unknown), "are loose points");
}

void VtuExporter::write(std::size_t step, double value, const std::filesystem::path& path,
                        const std::string& shownPath) {
    std::ofstream stream(path, std::ios::binary);
    write(step, value, stream);
    stream.close();
    if (!stream) {
        throw Failure(shownPath, "can't be written; is the disk full?");
    }
}

void VtuExporter::write(std::size_t step, double value, std::ostream& stream) {
    VtuFile file(source_.mesh().nodeCount(), source_.mesh().elementCount());
    addLabels(file, step, value);
    addMesh(file);
    addFields(file, step);
    file.write(stream);
}

void VtuExporter::addLabels(VtuFile& file, std::size_t step, double value) const {
    if (step != ResultField::NoStep) {
        file.setTime(value);
        file.addTexts("Step", {source_.results().steps[step].name});
    }
    std::vector<std::string> names;
    for (const auto& part : source_.mesh().parts) {
        names.push_back(part.geometry->name);
    }
    file.addTexts("Part Names", names);
}

void VtuExporter::addMesh(VtuFile& file) const {
    const auto& mesh = source_.mesh();
    std::size_t nodes = 0;
    for (const auto& block : mesh.blocks) {
        nodes += block.nodes.size();
    }
    file.setPoints({"Points", "Float32", 4, 3, mesh.nodeCount(), {}, [&mesh](std::ostream& stream) {
                        put(stream, mesh.points);
                    }});
    file.addCells({"connectivity", "Int64", 8, 1, nodes, {}, [&mesh](std::ostream& stream) {
                       for (const auto& block : mesh.blocks) {
                           putNodes(stream, block);
                       }
                   }});
    file.addCells({"offsets", "Int64", 8, 1, mesh.elementCount(), {}, [&mesh](std::ostream& stream) {
                       std::int64_t end = 0;
                       for (const auto& block : mesh.blocks) {
                           putOffsets(stream, block, end);
                       }
                   }});
    file.addCells({"types", "UInt8", 1, 1, mesh.elementCount(), {}, [&mesh](std::ostream& stream) {
                       putForEachCell<std::uint8_t>(stream, mesh,
                                                    [](const auto& block) { return block.shape->vtkCell; });
                   }});
    file.addCellData({"Part", "UInt32", 4, 1, mesh.elementCount(), {}, [&mesh](std::ostream& stream) {
                          putForEachCell<std::uint32_t>(stream, mesh,
                                                        [](const auto& block) { return block.part; });
                      }});
}

void VtuExporter::addFields(VtuFile& file, std::size_t step) {
    std::set<std::string> pointNames;
    std::set<std::string> cellNames = {"Part"};
    for (const auto& field : source_.results().fields) {
        if (field.stands(step)) {
            addField(file, field, step, field.place == ResultPlace::Nodes ? pointNames : cellNames);
        }
    }
}

// A displacement with rotations is split, so that its first three columns can warp the mesh.
void VtuExporter::addField(VtuFile& file, const ResultField& field, std::size_t step,
                           std::set<std::string>& names) {
    const auto name = uniqueName(field.name, names);
    const bool splits = isDisplacementWithRotation(field);
    const auto add = [&](VtuArray array) {
        field.place == ResultPlace::Nodes ? file.addPointData(std::move(array))
                                          : file.addCellData(std::move(array));
    };
    add(fieldArray(field, step, {name, 0, splits ? 3 : field.width}));
    if (splits) {
        add(fieldArray(field, step, {uniqueName("Rotation", names), 3, 3}));
    }
    ++source_.summary().datasets;
}

// Integers have no NaN for the places without numbers.
VtuArray VtuExporter::fieldArray(const ResultField& field, std::size_t step, const Slice& slice) {
    bool isWhole = true;
    for (std::size_t target = 0; target < targetCount(source_.mesh(), field.place); ++target) {
        isWhole = isWhole && field.source(step, target) != nullptr;
    }
    if (!isWhole) {
        source_.summary().addNote("NaN stands where a node or an element has no result in a step");
    }
    if (!field.isInteger) {
        return typedArray<float>("Float32", field, step, slice);
    }
    return isWhole ? typedArray<std::uint32_t>("UInt32", field, step, slice)
                   : typedArray<double>("Float64", field, step, slice);
}

template <typename T>
VtuArray VtuExporter::typedArray(const char* type, const ResultField& field, std::size_t step,
                                 const Slice& slice) {
    const auto& mesh = source_.mesh();
    const auto tuples = field.place == ResultPlace::Nodes ? mesh.nodeCount() : mesh.elementCount();
    VtuArray array{slice.name, type, sizeof(T), slice.columns, tuples, {}, {}};
    for (auto i = slice.firstColumn; i < std::min(slice.firstColumn + slice.columns, field.components.size());
         ++i) {
        array.columnNames.push_back(field.components[i]);
    }
    array.write = [this, &field, step, first = slice.firstColumn,
                   columns = slice.columns](std::ostream& stream) {
        put(stream, columnsOf<T>(reader_.readAll(field, step), field.width, first, columns));
    };
    return array;
}

} // namespace MoxTool
