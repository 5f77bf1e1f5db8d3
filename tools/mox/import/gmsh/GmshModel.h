#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// The nodes of a Gmsh model.
struct GmshNodes {
    std::vector<std::size_t> tags;
    std::vector<double> coordinates; ///< x, y and z of each node.
};

/// A part of a Gmsh model's geometry: a point, a curve, a surface or a volume.
struct GmshEntity {
    int dimension = 0;
    int tag = 0;
    std::string name;              ///< Empty if the file gives none.
    std::vector<int> physicalTags; ///< The tags of the physical groups that it belongs to.
};

/// The elements of one type of an entity.
struct GmshElements {
    int type = 0;         ///< Gmsh's number of the type.
    std::string typeName; ///< Such as "Triangle 6".
    std::size_t nodesPerElement = 0;
    std::vector<std::size_t> tags;
    std::vector<std::size_t> nodeTags; ///< Element by element.
};

/// A result over one or more steps.
struct GmshView {
    int tag = 0;
    std::string name;
    int steps = 0; ///< One more than the highest place of a step; there may be gaps.
};

/// One step of a result.
struct GmshViewStep {
    std::string kind; ///< "NodeData", "ElementData" or "ElementNodeData".
    double time = 0;
    std::size_t components = 0;
    std::vector<std::size_t> tags; ///< The tags of nodes or elements.
    /// All components of the first tag, then of the next; none if their number differs.
    std::vector<double> values;
};

/// A mesh file that the Gmsh library has read, in terms of vectors and strings.
///
/// The library and its dozens of dependencies take a tenth of a second to load, so they stay out of the
/// program: the only class that implements this interface is in a module, which loadGmshModel() loads when it
/// is needed.
///
/// All functions throw Failure if the library fails.
class GmshModel {
public:
    GmshModel() = default;
    GmshModel(const GmshModel&) = delete;
    GmshModel& operator=(const GmshModel&) = delete;
    virtual ~GmshModel() = default;

    /// The version of the file's format, such as "4.1".
    virtual std::string version() const = 0;
    /// The names of all sections of the file, such as "Nodes", in order.
    virtual std::vector<std::string> sections() const = 0;
    /// How many nodes the file has; Gmsh may drop those that belong to no element. 0 if that is not known.
    virtual std::uint64_t nodesInFile() const = 0;

    virtual GmshNodes nodes() const = 0;
    virtual std::vector<GmshEntity> entities() const = 0;
    /// Empty if the file gives none.
    virtual std::string physicalName(int dimension, int tag) const = 0;
    virtual std::vector<GmshElements> elements(const GmshEntity& entity) const = 0;
    virtual std::vector<GmshView> views() const = 0;
    /// @param step From 0. @return nothing for a gap.
    virtual std::optional<GmshViewStep> viewStep(const GmshView& view, int step) const = 0;
};

/// The only function of the module: reads a file. The caller owns the model; there can be only one at a time.
/// @throws Failure if it is not a Gmsh file, or if it is damaged or cut off.
using OpenGmshModel = GmshModel*(const char* path);
/// The function's name.
constexpr const char* OpenGmshModelName = "moxOpenGmshModel";

} // namespace MoxTool
