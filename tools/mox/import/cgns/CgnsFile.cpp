#include "CgnsFile.h"

#include "../../common/Failure.h"
#include "../../common/visibleText.h"

#include <cgns_io.h>
#include <fmt/core.h>
#include <hdf5.h>

#include <algorithm>
#include <numeric>
#include <string_view>

namespace MoxTool {

static_assert(CGNS_VERSION >= 3400, "sections of elements of several sizes are read by their offsets");

namespace {

constexpr std::size_t NameLength = CGIO_MAX_NAME_LENGTH;
using CgnsName = std::array<char, NameLength + 1>;

// The library leaves HDF5 open if it fails to open a file, and HDF5 would complain about that at the end of
// the process; it also reports all damage on stderr.
void silenceHdf5() {
    H5dont_atexit();
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
}

std::size_t product(const std::array<std::int64_t, 3>& extents) {
    return static_cast<std::size_t>(extents[0] * extents[1] * extents[2]);
}

// The library's texts name parts of the file.
std::string libraryText() {
    std::string text = cg_get_error();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return visibleText(text);
}

std::string withoutEndSpaces(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(std::string_view(" \0", 2)) + 1));
}

} // namespace

// What an array below the current node holds.
struct CgnsFile::ArrayHead {
    std::string name;
    CGNS_ENUMT(DataType_t) type{};
    std::vector<cgsize_t> extents;

    std::size_t size() const {
        return std::accumulate(extents.begin(), extents.end(), std::size_t{1},
                               [](auto left, auto right) { return left * static_cast<std::size_t>(right); });
    }
};

std::size_t CgnsZone::vertices() const {
    return product(vertexExtents);
}

std::size_t CgnsZone::cells() const {
    return product(cellExtents);
}

CgnsFile::Handle::~Handle() {
    if (id >= 0) {
        cg_close(id);
    }
}

CgnsFile::CgnsFile(const std::string& filePath) : filePath_(filePath) {
    silenceHdf5();
    if (cg_open(filePath.c_str(), CG_MODE_READ, &file_.id) != CG_OK) {
        file_.id = -1;
        throw Failure(filePath, fmt::format("no CGNS file, or damaged ({})", libraryText()));
    }
}

float CgnsFile::version() const {
    float result = 0;
    check(cg_version(file_.id, &result), "the version");
    return result;
}

std::vector<CgnsBase> CgnsFile::bases() const {
    int count = 0;
    check(cg_nbases(file_.id, &count), "the number of bases");
    std::vector<CgnsBase> result;
    for (int number = 1; number <= count; ++number) {
        result.push_back(readBase(number));
    }
    return result;
}

CgnsBase CgnsFile::readBase(int number) const {
    CgnsName name{};
    CgnsBase base;
    check(cg_base_read(file_.id, number, name.data(), &base.cellDimension, &base.physicalDimension),
          "a base");
    base.name = name.data();
    int zones = 0;
    check(cg_nzones(file_.id, number, &zones), "the number of zones");
    for (int zone = 1; zone <= zones; ++zone) {
        base.zones.push_back(readZone(number, zone, base.cellDimension));
    }
    base.times = readTimes(number);
    return base;
}

CgnsZone CgnsFile::readZone(int base, int number, int cellDimension) const {
    CgnsName name{};
    std::array<cgsize_t, 9> sizes{};
    auto type = CGNS_ENUMV(ZoneTypeNull);
    check(cg_zone_read(file_.id, base, number, name.data(), sizes.data()), "a zone");
    check(cg_zone_type(file_.id, base, number, &type), "the type of a zone");
    CgnsZone zone;
    zone.base = base;
    zone.number = number;
    zone.name = name.data();
    zone.isStructured = type == CGNS_ENUMV(Structured);
    zone.indexCount = zone.isStructured ? cellDimension : 1;
    for (int axis = 0; axis < zone.indexCount; ++axis) {
        const auto place = static_cast<std::size_t>(axis);
        zone.vertexExtents[place] = sizes[place];
        zone.cellExtents[place] = sizes[place + static_cast<std::size_t>(zone.indexCount)];
        if (zone.vertexExtents[place] < 0 || zone.cellExtents[place] < 0) {
            throw Failure(filePath_,
                          fmt::format("damaged: zone {} has a negative size", visibleText(zone.name)));
        }
    }
    return zone;
}

// A base without iterative data has no steps; if its steps have no times, their numbers are used.
std::vector<double> CgnsFile::readTimes(int base) const {
    CgnsName name{};
    int steps = 0;
    const int status = cg_biter_read(file_.id, base, name.data(), &steps);
    if (status == CG_NODE_NOT_FOUND || steps < 0) {
        return {};
    }
    check(status, "the iterative data");
    std::vector<double> times(static_cast<std::size_t>(steps));
    std::iota(times.begin(), times.end(), 1.0);
    check(cg_goto(file_.id, base, "BaseIterativeData_t", 1, "end"), "the iterative data");
    const auto arrays = arraysHere();
    for (const auto* wanted : {"IterationValues", "TimeValues"}) {
        for (std::size_t place = 0; place < arrays.size(); ++place) {
            if (arrays[place].name == wanted && arrays[place].size() == times.size()) {
                check(cg_array_read_as(static_cast<int>(place) + 1, CGNS_ENUMV(RealDouble), times.data()),
                      "the times");
            }
        }
    }
    return times;
}

std::vector<std::string> CgnsFile::coordinateNames(const CgnsZone& zone) const {
    int count = 0;
    check(cg_ncoords(file_.id, zone.base, zone.number, &count), "the number of coordinates");
    std::vector<std::string> names;
    for (int number = 1; number <= count; ++number) {
        CgnsName name{};
        auto type = CGNS_ENUMV(DataTypeNull);
        check(cg_coord_info(file_.id, zone.base, zone.number, number, &type, name.data()), "a coordinate");
        names.emplace_back(name.data());
    }
    return names;
}

std::vector<double> CgnsFile::coordinates(const CgnsZone& zone, const std::string& name) const {
    const std::array<cgsize_t, 3> first = {1, 1, 1};
    std::array<cgsize_t, 3> last{};
    std::transform(zone.vertexExtents.begin(), zone.vertexExtents.end(), last.begin(),
                   [](auto extent) { return static_cast<cgsize_t>(extent); });
    std::vector<double> values(zone.vertices());
    check(cg_coord_read(file_.id, zone.base, zone.number, name.c_str(), CGNS_ENUMV(RealDouble), first.data(),
                        last.data(), values.data()),
          "the coordinates");
    return values;
}

std::vector<CgnsSection> CgnsFile::sections(const CgnsZone& zone) const {
    int count = 0;
    check(cg_nsections(file_.id, zone.base, zone.number, &count), "the number of sections");
    std::vector<CgnsSection> result;
    for (int number = 1; number <= count; ++number) {
        CgnsName name{};
        CgnsSection section;
        cgsize_t first = 0;
        cgsize_t last = 0;
        int boundaryElements = 0;
        int parents = 0;
        check(cg_section_read(file_.id, zone.base, zone.number, number, name.data(), &section.type, &first,
                              &last, &boundaryElements, &parents),
              "a section of elements");
        if (first < 1 || last < first - 1) {
            throw Failure(filePath_, fmt::format("damaged: section {} goes from element {} to {}",
                                                 visibleText(name.data()), first, last));
        }
        section.number = number;
        section.name = name.data();
        section.first = first;
        section.count = static_cast<std::size_t>(last - first + 1);
        section.hasParents = parents != 0;
        result.push_back(section);
    }
    return result;
}

CgnsElements CgnsFile::elements(const CgnsZone& zone, const CgnsSection& section) const {
    cgsize_t size = 0;
    check(cg_ElementDataSize(file_.id, zone.base, zone.number, section.number, &size),
          "the size of a section");
    CgnsElements elements;
    elements.data.resize(static_cast<std::size_t>(std::max<cgsize_t>(0, size)));
    const bool hasOffsets = section.type == CGNS_ENUMV(MIXED) || section.type == CGNS_ENUMV(NGON_n);
    if (!hasOffsets) {
        check(
            cg_elements_read(file_.id, zone.base, zone.number, section.number, elements.data.data(), nullptr),
            "the nodes of the elements");
        return elements;
    }
    elements.offsets.resize(section.count + 1);
    check(cg_poly_elements_read(file_.id, zone.base, zone.number, section.number, elements.data.data(),
                                elements.offsets.data(), nullptr),
          "the nodes of the elements");
    return elements;
}

std::vector<CgnsSolution> CgnsFile::solutions(const CgnsZone& zone) const {
    int count = 0;
    check(cg_nsols(file_.id, zone.base, zone.number, &count), "the number of solutions");
    std::vector<CgnsSolution> result;
    for (int number = 1; number <= count; ++number) {
        result.push_back(readSolution(zone, number));
    }
    return result;
}

CgnsSolution CgnsFile::readSolution(const CgnsZone& zone, int number) const {
    CgnsName name{};
    CgnsSolution solution;
    check(cg_sol_info(file_.id, zone.base, zone.number, number, name.data(), &solution.location),
          "a solution");
    solution.number = number;
    solution.name = name.data();
    auto points = CGNS_ENUMV(PointSetTypeNull);
    cgsize_t pointCount = 0;
    check(cg_sol_ptset_info(file_.id, zone.base, zone.number, number, &points, &pointCount), "a solution");
    solution.isPartial = points != CGNS_ENUMV(PointSetTypeNull);
    int fields = 0;
    check(cg_nfields(file_.id, zone.base, zone.number, number, &fields), "the number of fields");
    for (int field = 1; field <= fields; ++field) {
        auto type = CGNS_ENUMV(DataTypeNull);
        check(cg_field_info(file_.id, zone.base, zone.number, number, field, &type, name.data()), "a field");
        solution.fields.emplace_back(name.data());
    }
    return solution;
}

std::vector<double> CgnsFile::field(const CgnsZone& zone, const CgnsSolution& solution,
                                    const std::string& name) const {
    const bool isOnVertices = solution.location == CGNS_ENUMV(Vertex);
    const auto& extents = isOnVertices ? zone.vertexExtents : zone.cellExtents;
    const std::array<cgsize_t, 3> first = {1, 1, 1};
    std::array<cgsize_t, 3> last{};
    std::transform(extents.begin(), extents.end(), last.begin(),
                   [](auto extent) { return static_cast<cgsize_t>(extent); });
    std::vector<double> values(isOnVertices ? zone.vertices() : zone.cells());
    check(cg_field_read(file_.id, zone.base, zone.number, solution.number, name.c_str(),
                        CGNS_ENUMV(RealDouble), first.data(), last.data(), values.data()),
          "a field");
    return values;
}

// The arrays below the node that cg_goto() found last, in order.
std::vector<CgnsFile::ArrayHead> CgnsFile::arraysHere() const {
    int count = 0;
    check(cg_narrays(&count), "the iterative data");
    std::vector<ArrayHead> heads;
    for (int number = 1; number <= count; ++number) {
        CgnsName name{};
        int dimension = 0;
        std::array<cgsize_t, CGIO_MAX_DIMENSIONS> extents{};
        ArrayHead head;
        check(cg_array_info(number, name.data(), &head.type, &dimension, extents.data()),
              "an array of the iterative data");
        head.name = name.data();
        head.extents.assign(extents.begin(), extents.begin() + dimension);
        heads.push_back(head);
    }
    return heads;
}

std::vector<std::vector<std::string>> CgnsFile::solutionsOfSteps(const CgnsZone& zone) const {
    CgnsName name{};
    const int status = cg_ziter_read(file_.id, zone.base, zone.number, name.data());
    if (status == CG_NODE_NOT_FOUND) {
        return {};
    }
    check(status, "the iterative data of a zone");
    check(cg_goto(file_.id, zone.base, "Zone_t", zone.number, "ZoneIterativeData_t", 1, "end"),
          "the iterative data of a zone");
    std::vector<std::vector<std::string>> steps;
    const auto arrays = arraysHere();
    for (std::size_t place = 0; place < arrays.size(); ++place) {
        const auto& array = arrays[place];
        if (!array.name.ends_with("SolutionPointers") || array.type != CGNS_ENUMV(Character) ||
            array.extents.size() != 2) {
            continue;
        }
        std::string texts(array.size(), '\0');
        check(cg_array_read_as(static_cast<int>(place) + 1, CGNS_ENUMV(Character), texts.data()),
              "the solutions of the steps");
        const auto width = static_cast<std::size_t>(array.extents[0]);
        steps.resize(std::max(steps.size(), static_cast<std::size_t>(array.extents[1])));
        for (std::size_t step = 0; step * width < texts.size(); ++step) {
            steps[step].push_back(withoutEndSpaces(std::string_view(texts).substr(step * width, width)));
        }
    }
    return steps;
}

CgnsNode CgnsFile::root() const {
    double id = 0;
    check(cg_root_id(file_.id, &id), "its tree");
    return describe(id);
}

std::vector<CgnsNode> CgnsFile::children(const CgnsNode& node) const {
    int count = 0;
    check(cgio_number_children(treeHandle(), node.id, &count), "its tree");
    std::vector<double> ids(static_cast<std::size_t>(std::max(0, count)));
    if (ids.empty()) {
        return {};
    }
    check(cgio_children_ids(treeHandle(), node.id, 1, count, &count, ids.data()), "its tree");
    std::vector<CgnsNode> nodes;
    nodes.reserve(ids.size());
    for (const auto id : ids) {
        nodes.push_back(describe(id));
    }
    return nodes;
}

CgnsNode CgnsFile::describe(double id) const {
    CgnsName name{};
    std::array<char, CGIO_MAX_LABEL_LENGTH + 1> label{};
    check(cgio_get_name(treeHandle(), id, name.data()), "its tree");
    check(cgio_get_label(treeHandle(), id, label.data()), "its tree");
    return {id, name.data(), label.data()};
}

int CgnsFile::treeHandle() const {
    int handle = 0;
    check(cg_get_cgio(file_.id, &handle), "its tree");
    return handle;
}

void CgnsFile::check(int status, const char* what) const {
    if (status != CG_OK) {
        throw Failure(filePath_, fmt::format("damaged: {} can't be read ({})", what, libraryText()));
    }
}

} // namespace MoxTool
