#include "SurfaceCollector.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>

namespace MoxTool {

namespace {

constexpr auto NoNode = std::numeric_limits<std::uint32_t>::max();
constexpr int PolygonDimension = 0;     // of the key under which the shapes of polygons are kept
constexpr float OutlineCosine = 0.866F; // of the angle between faces, 30 degrees

void put(Surface::Figures& figures, std::initializer_list<std::uint32_t> nodes, std::uint32_t element) {
    figures.nodes.insert(figures.nodes.end(), nodes);
    figures.elements.push_back(element);
}

// A corner that a collapsed element has twice counts once, so that its faces match those of its neighbours.
// Polygons of more corners are never inside, so for these any key will do.
std::array<std::uint32_t, 4> keyOf(const ElementFace& shape, std::span<const std::uint32_t> nodes) {
    std::set<std::uint32_t> corners;
    for (std::size_t i = 0; i < std::min<std::size_t>(shape.corners(), 4); ++i) {
        corners.insert(nodes[shape.corner(i)]);
    }
    std::array<std::uint32_t, 4> key = {NoNode, NoNode, NoNode, NoNode};
    std::copy(corners.begin(), corners.end(), key.begin());
    return key;
}

void sortOut(std::vector<std::uint32_t>& places) {
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
}

// Replaces places in the mesh by places in a list of them.
void renumberBy(const std::vector<std::uint32_t>& list, std::size_t all, std::vector<std::uint32_t>& places) {
    std::vector<std::uint32_t> numbers(all);
    for (std::size_t i = 0; i < list.size(); ++i) {
        numbers[list[i]] = static_cast<std::uint32_t>(i);
    }
    for (auto& place : places) {
        place = numbers[place];
    }
}

} // namespace

Surface SurfaceCollector::collect() {
    for (const auto& part : mesh_.parts) {
        addPart(part);
    }
    renumber();
    return std::move(surface_);
}

void SurfaceCollector::addPart(const MeshPart& part) {
    faces_.clear();
    for (auto block = part.firstBlock; block < part.endBlock; ++block) {
        addBlock(mesh_.blocks[block]);
    }
    if (part.dimension == 3) {
        dropInnerFaces();
    }
    for (const auto& face : faces_) {
        addTriangles(face);
    }
    addEdges();
}

void SurfaceCollector::addBlock(const MeshBlock& block) {
    const auto* nodes = block.nodes.data();
    for (std::size_t i = 0; i < block.rows.size(); ++i, ++element_) {
        const std::size_t count = block.nodesPerElement == 0 ? block.lengths[i] : block.nodesPerElement;
        const std::span element(nodes, count);
        const auto& faces = facesOf(block, count);
        if (!faces.empty()) {
            addFaces(element, faces);
        } else if (block.shape->dimension == 1 && count > 1) {
            addLines(element);
        } else {
            addPoints(element);
        }
        nodes += count;
    }
}

const std::vector<ElementFace>& SurfaceCollector::facesOf(const MeshBlock& block, std::size_t nodes) {
    const bool isPolygon = block.shape == &PolygonShape && nodes > 2;
    const std::pair key{isPolygon ? PolygonDimension : block.shape->dimension, nodes};
    const auto [found, isNew] = shapes_.try_emplace(key);
    if (isNew) {
        found->second = isPolygon ? std::vector{polygonFace(nodes)} : elementFaces(key.first, nodes);
    }
    return found->second;
}

void SurfaceCollector::addFaces(std::span<const std::uint32_t> nodes,
                                const std::vector<ElementFace>& shapes) {
    for (const auto& shape : shapes) {
        faces_.push_back({keyOf(shape, nodes), element_, &shape, nodes.data()});
    }
}

// A node between the ends comes last.
void SurfaceCollector::addLines(std::span<const std::uint32_t> nodes) {
    if (nodes.size() == 2) {
        put(surface_.lines, {nodes[0], nodes[1]}, element_);
    } else {
        put(surface_.lines, {nodes[0], nodes[2]}, element_);
        put(surface_.lines, {nodes[2], nodes[1]}, element_);
    }
}

void SurfaceCollector::addPoints(std::span<const std::uint32_t> nodes) {
    for (const auto node : nodes) {
        put(surface_.points, {node}, element_);
    }
}

// What two elements share is inside, and so is what is left of a face whose corners have been joined.
void SurfaceCollector::dropInnerFaces() {
    std::vector<std::size_t> order(faces_.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::sort(order.begin(), order.end(), [this](auto left, auto right) {
        return std::tie(faces_[left].key, left) < std::tie(faces_[right].key, right);
    });
    std::vector<std::size_t> outer;
    for (std::size_t first = 0, end = 0; first < order.size(); first = end) {
        const auto& key = faces_[order[first]].key;
        while (end < order.size() && faces_[order[end]].key == key) {
            ++end;
        }
        if (end - first == 1 && key[2] != NoNode) {
            outer.push_back(order[first]);
        }
    }
    std::sort(outer.begin(), outer.end());
    std::vector<Face> kept;
    kept.reserve(outer.size());
    for (const auto face : outer) {
        kept.push_back(faces_[face]);
    }
    faces_ = std::move(kept);
}

void SurfaceCollector::addTriangles(const Face& face) {
    const auto& border = face.shape->border;
    const auto count = border.size();
    const auto at = [&](std::size_t place) { return face.node(border[place % count]); };
    if (face.shape->centre) {
        for (std::size_t i = 0; i < count; ++i) {
            addTriangle(face.node(*face.shape->centre), at(i), at(i + 1), face.element);
        }
        return;
    }
    if (face.shape->isQuadratic) {
        for (std::size_t i = 0; i < count; i += 2) {
            addTriangle(at(i), at(i + 1), at(i + count - 1), face.element);
        }
    }
    const std::size_t first = face.shape->isQuadratic ? 1 : 0;
    const std::size_t stride = face.shape->isQuadratic ? 2 : 1;
    if (face.shape->corners() == 4) {
        addQuadrangle({at(first), at(first + stride), at(first + 2 * stride), at(first + 3 * stride)},
                      face.element);
        return;
    }
    for (std::size_t i = 1; i + 1 < face.shape->corners(); ++i) {
        addTriangle(at(first), at(first + i * stride), at(first + (i + 1) * stride), face.element);
    }
}

// Cut along the diagonal that lies inside, also where a corner points inwards.
void SurfaceCollector::addQuadrangle(const std::array<std::uint32_t, 4>& nodes, std::uint32_t element) {
    const auto normal = [&](int a, int b, int c) -> Eigen::Vector3f {
        const auto origin = pointOf(nodes[static_cast<std::size_t>(a)]);
        return (pointOf(nodes[static_cast<std::size_t>(b)]) - origin)
            .cross(pointOf(nodes[static_cast<std::size_t>(c)]) - origin);
    };
    const bool fits = normal(0, 1, 2).dot(normal(0, 2, 3)) >= 0;
    if (fits) {
        addTriangle(nodes[0], nodes[1], nodes[2], element);
        addTriangle(nodes[0], nodes[2], nodes[3], element);
    } else {
        addTriangle(nodes[0], nodes[1], nodes[3], element);
        addTriangle(nodes[1], nodes[2], nodes[3], element);
    }
}

void SurfaceCollector::addTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t element) {
    if (a != b && b != c && c != a) {
        put(surface_.triangles, {a, b, c}, element);
    }
}

void SurfaceCollector::addEdges() {
    std::vector<Edge> edges;
    for (std::size_t i = 0; i < faces_.size(); ++i) {
        const auto& border = faces_[i].shape->border;
        for (std::size_t k = 0; k < border.size(); ++k) {
            const auto from = faces_[i].node(border[k]);
            const auto to = faces_[i].node(border[(k + 1) % border.size()]);
            if (from != to) {
                edges.push_back({std::min(from, to), std::max(from, to), i});
            }
        }
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& left, const Edge& right) {
        return std::tie(left.low, left.high, left.face) < std::tie(right.low, right.high, right.face);
    });
    for (std::size_t first = 0, end = 0; first < edges.size(); first = end) {
        while (end < edges.size() && edges[end].low == edges[first].low &&
               edges[end].high == edges[first].high) {
            ++end;
        }
        const auto element = faces_[edges[first].face].element;
        put(surface_.edges, {edges[first].low, edges[first].high}, element);
        if (isOutline(std::span(edges).subspan(first, end - first))) {
            put(surface_.outline, {edges[first].low, edges[first].high}, element);
        }
    }
}

// Shells can have their normals either way, so these count without a sign.
bool SurfaceCollector::isOutline(std::span<const Edge> edges) const {
    if (edges.size() != 2) {
        return true;
    }
    const auto normal = normalOf(faces_[edges[0].face]);
    const auto other = normalOf(faces_[edges[1].face]);
    return std::abs(normal.dot(other)) < OutlineCosine * normal.norm() * other.norm();
}

Eigen::Vector3f SurfaceCollector::normalOf(const Face& face) const {
    Eigen::Vector3f normal = Eigen::Vector3f::Zero();
    const auto origin = pointOf(face.node(face.shape->corner(0)));
    for (std::size_t i = 1; i + 1 < face.shape->corners(); ++i) {
        const auto a = pointOf(face.node(face.shape->corner(i)));
        const auto b = pointOf(face.node(face.shape->corner(i + 1)));
        normal += (a - origin).cross(b - origin);
    }
    return normal;
}

Eigen::Vector3f SurfaceCollector::pointOf(std::uint32_t node) const {
    return Eigen::Map<const Eigen::Vector3f>(mesh_.points.data() + 3 * std::size_t{node});
}

void SurfaceCollector::renumber() {
    const std::array all = {&surface_.triangles, &surface_.edges, &surface_.outline, &surface_.lines,
                            &surface_.points};
    for (const auto* figures : {&surface_.triangles, &surface_.edges, &surface_.lines, &surface_.points}) {
        surface_.nodes.insert(surface_.nodes.end(), figures->nodes.begin(), figures->nodes.end());
        surface_.elements.insert(surface_.elements.end(), figures->elements.begin(), figures->elements.end());
    }
    sortOut(surface_.nodes);
    sortOut(surface_.elements);
    for (auto* figures : all) {
        renumberBy(surface_.nodes, mesh_.nodeCount(), figures->nodes);
        renumberBy(surface_.elements, mesh_.elementCount(), figures->elements);
    }
    for (const auto& part : mesh_.parts) {
        const auto end = std::lower_bound(surface_.elements.begin(), surface_.elements.end(),
                                          part.firstElement + part.elements);
        surface_.partEnds.push_back(static_cast<std::uint32_t>(end - surface_.elements.begin()));
    }
}

} // namespace MoxTool
