#pragma once

#include <cgnslib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MoxTool {

/// One zone of a CGNS file.
struct CgnsZone {
    int base = 0;   ///< The library's number, from 1.
    int number = 0; ///< In its base, from 1.
    std::string name;
    bool isStructured = false;
    /// Along each index: one for an unstructured zone, up to three for a structured one; else 1.
    std::array<std::int64_t, 3> vertexExtents{1, 1, 1};
    std::array<std::int64_t, 3> cellExtents{1, 1, 1};
    int indexCount = 1;

    std::size_t vertices() const;
    std::size_t cells() const;
};

/// One base of a CGNS file.
struct CgnsBase {
    std::string name;
    int cellDimension = 0;
    int physicalDimension = 0;
    std::vector<CgnsZone> zones;
    std::vector<double> times; ///< One for each step; empty if the base has no steps.
};

/// A range of elements of a zone.
struct CgnsSection {
    int number = 0; ///< From 1.
    std::string name;
    CGNS_ENUMT(ElementType_t) type{};
    std::int64_t first = 0; ///< The number of its first element in the zone.
    std::size_t count = 0;
    bool hasParents = false;
};

/// The elements of a section as they are in the file.
struct CgnsElements {
    std::vector<cgsize_t> data; ///< Nodes from 1; in a mixed section each element's type before its nodes.
    /// Where in the data each element begins, and the last one ends; only where elements differ in size.
    std::vector<cgsize_t> offsets;
};

/// Results of one zone at one place of its elements.
struct CgnsSolution {
    int number = 0; ///< From 1.
    std::string name;
    CGNS_ENUMT(GridLocation_t) location{};
    bool isPartial = false; ///< On some vertices or cells only.
    std::vector<std::string> fields;
};

/// A node of the file's tree.
struct CgnsNode {
    double id = 0;
    std::string name;
    std::string label; ///< Its kind, such as "Family_t".
};

/// An open CGNS file, for reading: the CGNS library in terms of vectors and strings.
///
/// Every function throws Failure, with the file's path, if the library can't read what is asked for.
class CgnsFile {
public:
    /// @throws Failure if it is no CGNS file, or if it is damaged or cut off.
    explicit CgnsFile(const std::string& filePath);
    CgnsFile(const CgnsFile&) = delete;
    CgnsFile& operator=(const CgnsFile&) = delete;

    const std::string& path() const { return filePath_; }
    /// The version of the library that wrote the file.
    float version() const;
    std::vector<CgnsBase> bases() const;

    std::vector<std::string> coordinateNames(const CgnsZone& zone) const;
    /// One coordinate of every vertex.
    std::vector<double> coordinates(const CgnsZone& zone, const std::string& name) const;

    std::vector<CgnsSection> sections(const CgnsZone& zone) const;
    CgnsElements elements(const CgnsZone& zone, const CgnsSection& section) const;

    std::vector<CgnsSolution> solutions(const CgnsZone& zone) const;
    /// One value for each vertex, or for each cell, as the solution is located.
    std::vector<double> field(const CgnsZone& zone, const CgnsSolution& solution,
                              const std::string& name) const;
    /// For each step the names of the zone's solutions; empty if the file does not give them.
    std::vector<std::vector<std::string>> solutionsOfSteps(const CgnsZone& zone) const;

    CgnsNode root() const;
    std::vector<CgnsNode> children(const CgnsNode& node) const;

private:
    // Closes the file, even if the constructor fails.
    struct Handle {
        ~Handle();
        int id = -1;
    };

    struct ArrayHead;

    CgnsBase readBase(int number) const;
    CgnsZone readZone(int base, int number, int cellDimension) const;
    std::vector<double> readTimes(int base) const;
    std::vector<ArrayHead> arraysHere() const;
    CgnsSolution readSolution(const CgnsZone& zone, int number) const;
    CgnsNode describe(double id) const;
    int treeHandle() const;
    void check(int status, const char* what) const;

    std::string filePath_;
    Handle file_;
};

} // namespace MoxTool
