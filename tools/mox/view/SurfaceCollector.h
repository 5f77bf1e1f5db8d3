#pragma once

#include "../mesh/ModelMesh.h"
#include "Surface.h"
#include "elementFaces.h"

#include <Eigen/Core>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <utility>
#include <vector>

namespace MoxTool {

/// Finds the surface of a mesh, part by part: a part that is shown alone is closed.
class SurfaceCollector {
public:
    /// @param mesh Must outlive the collector.
    explicit SurfaceCollector(const ModelMesh& mesh) : mesh_(mesh) {}

    /// To be called once.
    Surface collect();

private:
    /// A face of an element.
    struct Face {
        std::array<std::uint32_t, 4> key; ///< Its corners, each once, ascending: the same for both its sides.
        std::uint32_t element;            ///< Place in the mesh.
        const ElementFace* shape;
        const std::uint32_t* nodes; ///< Of the element.

        std::uint32_t node(std::uint32_t place) const { return nodes[place]; }
    };
    /// A piece of a face's border.
    struct Edge {
        std::uint32_t low, high; ///< Its nodes.
        std::size_t face;        ///< Place in faces_.
    };

    void addPart(const MeshPart& part);
    void addBlock(const MeshBlock& block);
    const std::vector<ElementFace>& facesOf(const MeshBlock& block, std::size_t nodes);
    void addFaces(std::span<const std::uint32_t> nodes, const std::vector<ElementFace>& shapes);
    void addLines(std::span<const std::uint32_t> nodes);
    void addPoints(std::span<const std::uint32_t> nodes);
    void dropInnerFaces();
    void addTriangles(const Face& face);
    void addQuadrangle(const std::array<std::uint32_t, 4>& nodes, std::uint32_t element);
    void addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t element);
    void addEdges();
    bool isOutline(std::span<const Edge> edges) const;
    Eigen::Vector3f normalOf(const Face& face) const;
    Eigen::Vector3f pointOf(std::uint32_t node) const;
    void renumber();

    const ModelMesh& mesh_;
    Surface surface_;
    std::map<std::pair<int, std::size_t>, std::vector<ElementFace>> shapes_; ///< By dimension and nodes.
    std::vector<Face> faces_;                                                ///< Of the present part.
    std::uint32_t element_ = 0; ///< Place of the present element in the mesh.
};

} // namespace MoxTool
