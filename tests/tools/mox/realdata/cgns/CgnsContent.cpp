#include "CgnsContent.h"

#include "../cellKinds.h"

#include <cgnslib.h>

#include <algorithm>
#include <numeric>
#include <set>
#include <stdexcept>

namespace {

using Name = std::array<char, 33>;

const std::map<CGNS_ENUMT(ElementType_t), int> VtkCells = {
    {CGNS_ENUMV(NODE), 1},     {CGNS_ENUMV(BAR_2), 3},     {CGNS_ENUMV(BAR_3), 21},
    {CGNS_ENUMV(TRI_3), 5},    {CGNS_ENUMV(TRI_6), 22},    {CGNS_ENUMV(QUAD_4), 9},
    {CGNS_ENUMV(QUAD_8), 23},  {CGNS_ENUMV(QUAD_9), 28},   {CGNS_ENUMV(NGON_n), 7},
    {CGNS_ENUMV(TETRA_4), 10}, {CGNS_ENUMV(TETRA_10), 24}, {CGNS_ENUMV(PYRA_5), 14},
    {CGNS_ENUMV(PYRA_13), 27}, {CGNS_ENUMV(PENTA_6), 13},  {CGNS_ENUMV(PENTA_15), 26},
    {CGNS_ENUMV(HEXA_8), 12},  {CGNS_ENUMV(HEXA_20), 25},  {CGNS_ENUMV(HEXA_27), 29},
};

void requireCgns(int status) {
    if (status != CG_OK) {
        throw std::runtime_error(cg_get_error());
    }
}

class CgnsReading {
public:
    explicit CgnsReading(const std::string& path) {
        requireCgns(cg_open(path.c_str(), CG_MODE_READ, &file_));
    }
    CgnsReading(const CgnsReading&) = delete;
    CgnsReading& operator=(const CgnsReading&) = delete;
    ~CgnsReading() { cg_close(file_); }

    ModelContent read() {
        content_.ordering = NodeOrdering::Cgns;
        Name name{};
        int physicalDimension = 0;
        requireCgns(cg_base_read(file_, 1, name.data(), &cellDimension_, &physicalDimension));
        content_.title = name.data();
        readTimes();
        int zones = 0;
        requireCgns(cg_nzones(file_, 1, &zones));
        for (zone_ = 1; zone_ <= zones; ++zone_) {
            readZone();
        }
        for (std::size_t i = 0; i < content_.blocks.size(); ++i) {
            content_.blocks[i].id = static_cast<std::int64_t>(i) + 1;
        }
        return content_;
    }

private:
    void readTimes() {
        Name name{};
        int steps = 0;
        if (cg_biter_read(file_, 1, name.data(), &steps) != CG_OK) {
            return;
        }
        Numbers times(static_cast<std::size_t>(steps));
        requireCgns(cg_goto(file_, 1, "BaseIterativeData_t", 1, "end"));
        requireCgns(cg_array_read_as(arrayHere("TimeValues"), CGNS_ENUMV(RealDouble), times.data()));
        for (std::size_t step = 0; step < times.size(); ++step) {
            content_.steps.push_back({"Step " + std::to_string(step + 1), times[step]});
        }
    }

    // The number of an array below the current node; 0 if there is none.
    static int arrayHere(const std::string& wanted) {
        int count = 0;
        requireCgns(cg_narrays(&count));
        for (int number = 1; number <= count; ++number) {
            Name name{};
            auto type = CGNS_ENUMV(DataTypeNull);
            int dimension = 0;
            std::array<cgsize_t, 12> extents{};
            requireCgns(cg_array_info(number, name.data(), &type, &dimension, extents.data()));
            if (wanted == name.data()) {
                return number;
            }
        }
        return 0;
    }

    void readZone() {
        Name name{};
        sizes_.fill(0);
        auto type = CGNS_ENUMV(ZoneTypeNull);
        requireCgns(cg_zone_read(file_, 1, zone_, name.data(), sizes_.data()));
        requireCgns(cg_zone_type(file_, 1, zone_, &type));
        isStructured_ = type == CGNS_ENUMV(Structured);
        zoneBlocks_.clear();
        firstNode_ = static_cast<std::int64_t>(content_.nodeIds.size());
        readVertices();
        if (isStructured_) {
            addCells();
        }
        int sections = 0;
        requireCgns(cg_nsections(file_, 1, zone_, &sections));
        for (int section = 1; section <= sections; ++section) {
            readSection(section);
        }
        readSolutions();
    }

    std::vector<cgsize_t> extents(CGNS_ENUMT(GridLocation_t) location) const {
        const auto width = isStructured_ ? static_cast<std::size_t>(cellDimension_) : 1;
        const auto first = sizes_.begin() + (location == CGNS_ENUMV(Vertex) ? 0 : static_cast<int>(width));
        return {first, first + static_cast<int>(width)};
    }

    static std::size_t product(const std::vector<cgsize_t>& extents) {
        return static_cast<std::size_t>(
            std::accumulate(extents.begin(), extents.end(), cgsize_t{1}, std::multiplies<>()));
    }

    void readVertices() {
        const auto last = extents(CGNS_ENUMV(Vertex));
        const std::vector<cgsize_t> first(last.size(), 1);
        const auto count = product(last);
        content_.points.resize(content_.points.size() + 3 * count);
        std::size_t axis = 0;
        for (const auto* name : {"CoordinateX", "CoordinateY", "CoordinateZ"}) {
            Numbers values(count);
            requireCgns(cg_coord_read(file_, 1, zone_, name, CGNS_ENUMV(RealDouble), first.data(),
                                      last.data(), values.data()));
            for (std::size_t vertex = 0; vertex < count; ++vertex) {
                content_.points[content_.points.size() - 3 * (count - vertex) + axis] = values[vertex];
            }
            ++axis;
        }
        for (std::size_t vertex = 1; vertex <= count; ++vertex) {
            content_.nodeIds.push_back(static_cast<std::int64_t>(vertex));
        }
        content_.zones.push_back(count);
    }

    // For a structured zone of three dimensions: the bottom of each cell anticlockwise, then its top.
    void addCells() {
        const auto width = sizes_[0];
        const auto layer = sizes_[0] * sizes_[1];
        std::vector<cgsize_t> nodes;
        for (cgsize_t k = 0; k < sizes_[5]; ++k) {
            for (cgsize_t j = 0; j < sizes_[4]; ++j) {
                for (cgsize_t i = 0; i < sizes_[3]; ++i) {
                    const auto corner = k * layer + j * width + i + 1;
                    for (const auto lowest : {corner, corner + layer}) {
                        nodes.insert(nodes.end(), {lowest, lowest + 1, lowest + width + 1, lowest + width});
                    }
                }
            }
        }
        auto& block = addBlock("Cells", CGNS_ENUMV(HEXA_8));
        for (std::size_t first = 0; first < nodes.size(); first += 8) {
            addElement(block, static_cast<std::int64_t>(first / 8 + 1), &nodes[first], 8);
        }
    }

    BlockContent& addBlock(const std::string& name, CGNS_ENUMT(ElementType_t) type) {
        BlockContent block;
        block.name = name;
        block.vtkCell = VtkCells.at(type);
        block.type = cellKind(block.vtkCell).exodusType;
        block.zone = content_.zones.size() - 1;
        zoneBlocks_.push_back(content_.blocks.size());
        content_.blocks.push_back(block);
        return content_.blocks.back();
    }

    void addElement(BlockContent& block, std::int64_t id, const cgsize_t* nodes, std::int64_t count) const {
        block.elementIds.push_back(id);
        block.lengths.push_back(count);
        for (std::int64_t node = 0; node < count; ++node) {
            block.nodes.push_back(firstNode_ + nodes[node] - 1);
        }
    }

    void readSection(int section) {
        Name name{};
        auto type = CGNS_ENUMV(ElementTypeNull);
        cgsize_t first = 0;
        cgsize_t last = 0;
        cgsize_t size = 0;
        int boundary = 0;
        int parents = 0;
        requireCgns(cg_section_read(file_, 1, zone_, section, name.data(), &type, &first, &last, &boundary,
                                    &parents));
        requireCgns(cg_ElementDataSize(file_, 1, zone_, section, &size));
        std::vector<cgsize_t> data(static_cast<std::size_t>(size));
        std::vector<cgsize_t> offsets(static_cast<std::size_t>(last - first + 2));
        if (type == CGNS_ENUMV(MIXED) || type == CGNS_ENUMV(NGON_n)) {
            requireCgns(
                cg_poly_elements_read(file_, 1, zone_, section, data.data(), offsets.data(), nullptr));
        } else {
            requireCgns(cg_elements_read(file_, 1, zone_, section, data.data(), nullptr));
            for (std::size_t i = 0; i < offsets.size(); ++i) {
                offsets[i] = static_cast<cgsize_t>(i * data.size() / (offsets.size() - 1));
            }
        }
        if (type == CGNS_ENUMV(MIXED)) {
            addMixed(name.data(), first, data, offsets);
        } else {
            addUniform(addBlock(name.data(), type), first, data, offsets);
        }
    }

    void addUniform(BlockContent& block, cgsize_t first, const std::vector<cgsize_t>& data,
                    const std::vector<cgsize_t>& offsets) const {
        for (std::size_t i = 0; i + 1 < offsets.size(); ++i) {
            addElement(block, first + static_cast<std::int64_t>(i),
                       &data[static_cast<std::size_t>(offsets[i])], offsets[i + 1] - offsets[i]);
        }
    }

    // A block for each type, in the order of the library's numbers for them.
    void addMixed(const std::string& name, cgsize_t first, const std::vector<cgsize_t>& data,
                  const std::vector<cgsize_t>& offsets) {
        const auto typeOf = [&](std::size_t element) {
            return static_cast<CGNS_ENUMT(ElementType_t)>(data[static_cast<std::size_t>(offsets[element])]);
        };
        std::set<CGNS_ENUMT(ElementType_t)> types;
        for (std::size_t i = 0; i + 1 < offsets.size(); ++i) {
            types.insert(typeOf(i));
        }
        for (const auto type : types) {
            auto& block =
                addBlock(types.size() == 1 ? name : name + " (" + cg_ElementTypeName(type) + ")", type);
            for (std::size_t i = 0; i + 1 < offsets.size(); ++i) {
                if (typeOf(i) == type) {
                    addElement(block, first + static_cast<std::int64_t>(i),
                               &data[static_cast<std::size_t>(offsets[i]) + 1],
                               offsets[i + 1] - offsets[i] - 1);
                }
            }
        }
    }

    // Each solution belongs to the steps that refer to it, or to all steps if none does.
    void readSolutions() {
        const auto pointed = pointedSolutions();
        int solutions = 0;
        requireCgns(cg_nsols(file_, 1, zone_, &solutions));
        for (int solution = 1; solution <= solutions; ++solution) {
            Name name{};
            auto location = CGNS_ENUMV(GridLocationNull);
            requireCgns(cg_sol_info(file_, 1, zone_, solution, name.data(), &location));
            const auto steps = pointed.find(name.data());
            const bool isStatic = steps == pointed.end();
            for (const auto step : isStatic ? std::set<std::size_t>{0} : steps->second) {
                readFields(solution, location, step, isStatic);
            }
        }
    }

    std::map<std::string, std::set<std::size_t>> pointedSolutions() const {
        std::map<std::string, std::set<std::size_t>> steps;
        Name name{};
        if (cg_ziter_read(file_, 1, zone_, name.data()) != CG_OK) {
            return steps;
        }
        requireCgns(cg_goto(file_, 1, "Zone_t", zone_, "ZoneIterativeData_t", 1, "end"));
        for (const auto* array : {"FlowSolutionPointers", "CellSolutionPointers"}) {
            const int number = arrayHere(array);
            if (number == 0) {
                continue;
            }
            std::string texts(32 * content_.steps.size(), ' ');
            requireCgns(cg_array_read(number, texts.data()));
            for (std::size_t step = 0; step < content_.steps.size(); ++step) {
                const auto text = texts.substr(32 * step, 32);
                steps[text.substr(0, text.find_last_not_of(' ') + 1)].insert(step);
            }
        }
        return steps;
    }

    void readFields(int solution, CGNS_ENUMT(GridLocation_t) location, std::size_t step, bool isStatic) {
        const auto last = extents(location);
        const std::vector<cgsize_t> first(last.size(), 1);
        int fields = 0;
        requireCgns(cg_nfields(file_, 1, zone_, solution, &fields));
        for (int field = 1; field <= fields; ++field) {
            Name name{};
            auto type = CGNS_ENUMV(DataTypeNull);
            requireCgns(cg_field_info(file_, 1, zone_, solution, field, &type, name.data()));
            Numbers values(product(last));
            requireCgns(cg_field_read(file_, 1, zone_, solution, name.data(), CGNS_ENUMV(RealDouble),
                                      first.data(), last.data(), values.data()));
            auto& variable = variableOf(location == CGNS_ENUMV(Vertex), name.data(), isStatic);
            if (variable.isNodal) {
                variable.values[{step, content_.zones.size() - 1}] = values;
            } else {
                addCellValues(variable, step, values);
            }
        }
    }

    VariableContent& variableOf(bool isNodal, const std::string& name, bool isStatic) {
        for (auto& variable : content_.variables) {
            if (variable.isNodal == isNodal && variable.name == name) {
                return variable;
            }
        }
        content_.variables.push_back({isNodal, name, isStatic, {}});
        return content_.variables.back();
    }

    // The cells are the elements of the base's dimension, by their numbers.
    void addCellValues(VariableContent& variable, std::size_t step, const Numbers& values) const {
        std::map<std::int64_t, double> valueOf;
        for (const auto block : cellBlocks()) {
            for (const auto id : content_.blocks[block].elementIds) {
                valueOf[id] = 0;
            }
        }
        if (valueOf.size() != values.size()) {
            throw std::runtime_error("the cells are not the elements");
        }
        auto next = values.begin();
        for (auto& [id, value] : valueOf) {
            value = *next++;
        }
        for (const auto block : cellBlocks()) {
            auto& target = variable.values[{step, block}];
            for (const auto id : content_.blocks[block].elementIds) {
                target.push_back(valueOf.at(id));
            }
        }
    }

    std::vector<std::size_t> cellBlocks() const {
        std::vector<std::size_t> blocks;
        std::copy_if(zoneBlocks_.begin(), zoneBlocks_.end(), std::back_inserter(blocks), [this](auto block) {
            return cellKind(content_.blocks[block].vtkCell).dimension == cellDimension_;
        });
        return blocks;
    }

    int file_ = 0;
    int zone_ = 0;
    int cellDimension_ = 0;
    std::array<cgsize_t, 9> sizes_{};
    bool isStructured_ = false;
    std::int64_t firstNode_ = 0;
    std::vector<std::size_t> zoneBlocks_;
    ModelContent content_;
};

} // namespace

ModelContent readCgns(const std::string& path) {
    return CgnsReading(path).read();
}
