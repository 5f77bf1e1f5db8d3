#pragma once

#include <cgnslib.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

/// A CGNS file that a test writes, with one base. Everything is numbered from 1, as in the library.
class SmallCgnsFile {
public:
    explicit SmallCgnsFile(const std::string& path, int cellDimension = 3) {
        require(cg_open(path.c_str(), CG_MODE_WRITE, &file_));
        addBase("Base", cellDimension);
    }
    SmallCgnsFile(const SmallCgnsFile&) = delete;
    SmallCgnsFile& operator=(const SmallCgnsFile&) = delete;
    ~SmallCgnsFile() { cg_close(file_); }

    int handle() const { return file_; }

    /// What follows goes into the base added last, and into the zone added last.
    void addBase(const std::string& name, int cellDimension) {
        require(cg_base_write(file_, name.c_str(), cellDimension, 3, &base_));
        zoneWithSteps_ = 0;
    }

    void addZone(const std::string& name, cgsize_t vertices, cgsize_t cells) {
        const std::array<cgsize_t, 3> sizes = {vertices, cells, 0};
        require(cg_zone_write(file_, base_, name.c_str(), sizes.data(), CGNS_ENUMV(Unstructured), &zone_));
    }
    void addStructuredZone(const std::string& name, std::vector<cgsize_t> vertices) {
        auto sizes = vertices;
        for (const auto count : vertices) {
            sizes.push_back(count - 1);
        }
        sizes.resize(3 * vertices.size());
        require(cg_zone_write(file_, base_, name.c_str(), sizes.data(), CGNS_ENUMV(Structured), &zone_));
    }

    void coordinate(const std::string& name, const std::vector<double>& values) {
        int number = 0;
        require(cg_coord_write(file_, base_, zone_, CGNS_ENUMV(RealDouble), name.c_str(), values.data(),
                               &number));
    }
    /// X counts from 0 up, Y and Z are 0.
    void lineOfVertices(std::size_t count) {
        std::vector<double> x(count);
        for (std::size_t i = 0; i < count; ++i) {
            x[i] = static_cast<double>(i);
        }
        coordinate("CoordinateX", x);
        coordinate("CoordinateY", std::vector<double>(count));
        coordinate("CoordinateZ", std::vector<double>(count));
    }

    void section(const std::string& name, CGNS_ENUMT(ElementType_t) type, cgsize_t first, cgsize_t last,
                 const std::vector<cgsize_t>& nodes) {
        int number = 0;
        require(
            cg_section_write(file_, base_, zone_, name.c_str(), type, first, last, 0, nodes.data(), &number));
    }
    void sectionWithOffsets(const std::string& name, CGNS_ENUMT(ElementType_t) type, cgsize_t first,
                            cgsize_t last, const std::vector<cgsize_t>& data,
                            const std::vector<cgsize_t>& offsets) {
        int number = 0;
        require(cg_poly_section_write(file_, base_, zone_, name.c_str(), type, first, last, 0, data.data(),
                                      offsets.data(), &number));
    }

    void solution(const std::string& name, CGNS_ENUMT(GridLocation_t) location) {
        require(cg_sol_write(file_, base_, zone_, name.c_str(), location, &solutionNumber_));
    }
    /// A solution on these vertices only.
    void partialSolution(const std::string& name, const std::vector<cgsize_t>& vertices) {
        require(cg_sol_ptset_write(file_, base_, zone_, name.c_str(), CGNS_ENUMV(Vertex),
                                   CGNS_ENUMV(PointList), static_cast<cgsize_t>(vertices.size()),
                                   vertices.data(), &solutionNumber_));
    }
    /// A field of the solution added last.
    void field(const std::string& name, const std::vector<double>& values) {
        int number = 0;
        require(cg_field_write(file_, base_, zone_, solutionNumber_, CGNS_ENUMV(RealDouble), name.c_str(),
                               values.data(), &number));
    }

    void times(const std::vector<double>& values) {
        require(cg_biter_write(file_, base_, "Iteration", static_cast<int>(values.size())));
        require(cg_goto(file_, base_, "BaseIterativeData_t", 1, "end"));
        const auto count = static_cast<cgsize_t>(values.size());
        require(cg_array_write("TimeValues", CGNS_ENUMV(RealDouble), 1, &count, values.data()));
    }
    /// One solution for each step, in an array of this name.
    void solutionsOfSteps(const std::vector<std::string>& names,
                          const std::string& array = "FlowSolutionPointers") {
        std::string texts;
        for (auto name : names) {
            name.resize(32, ' ');
            texts += name;
        }
        if (zoneWithSteps_ != zone_) {
            require(cg_ziter_write(file_, base_, zone_, "ZoneIteration"));
        }
        zoneWithSteps_ = zone_;
        require(cg_goto(file_, base_, "Zone_t", zone_, "ZoneIterativeData_t", 1, "end"));
        const std::array<cgsize_t, 2> extents = {32, static_cast<cgsize_t>(names.size())};
        require(cg_array_write(array.c_str(), CGNS_ENUMV(Character), 2, extents.data(), texts.data()));
    }

    static void require(int status) {
        if (status != CG_OK) {
            throw std::runtime_error(cg_get_error());
        }
    }

private:
    int file_ = 0;
    int base_ = 0;
    int zone_ = 0;
    int zoneWithSteps_ = 0;
    int solutionNumber_ = 0;
};
