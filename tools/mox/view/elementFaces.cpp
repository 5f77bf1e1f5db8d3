#include "elementFaces.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace MoxTool {

namespace {

using Edge = std::pair<std::uint32_t, std::uint32_t>;

// What all elements of a form have in common, with and without nodes between the corners.
struct Form {
    int dimension;
    std::uint32_t corners;
    std::vector<std::vector<std::uint32_t>> faces;
    std::vector<Edge> edges;            // in the order of the nodes in their middle, which follow the corners
    std::vector<std::uint32_t> centres; // of the faces, for the element that has them
    std::size_t nodesWithCentres;
};

const std::vector<Form>& forms() {
    static const std::vector<Form> All = {
        {2, 3, {{0, 1, 2}}, {{0, 1}, {1, 2}, {2, 0}}, {}, 0},
        {2, 4, {{0, 1, 2, 3}}, {{0, 1}, {1, 2}, {2, 3}, {3, 0}}, {8}, 9},
        {3,
         4,
         {{0, 1, 3}, {1, 2, 3}, {0, 3, 2}, {0, 2, 1}},
         {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}},
         {},
         0},
        {3,
         5,
         {{0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {0, 4, 3}, {0, 3, 2, 1}},
         {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}},
         {},
         0},
        {3,
         6,
         {{0, 1, 4, 3}, {1, 2, 5, 4}, {0, 3, 5, 2}, {0, 2, 1}, {3, 4, 5}},
         {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 4}, {2, 5}, {3, 4}, {4, 5}, {5, 3}},
         {},
         0},
        {3,
         8,
         {{0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {0, 4, 7, 3}, {0, 3, 2, 1}, {4, 5, 6, 7}},
         {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 5}, {2, 6}, {3, 7}, {4, 5}, {5, 6}, {6, 7}, {7, 4}},
         {25, 24, 26, 23, 21, 22},
         27},
    };
    return All;
}

std::uint32_t middleOf(const Form& form, std::uint32_t from, std::uint32_t to) {
    const auto found = std::find_if(form.edges.begin(), form.edges.end(), [=](const Edge& edge) {
        return edge == Edge(from, to) || edge == Edge(to, from);
    });
    return form.corners + static_cast<std::uint32_t>(found - form.edges.begin());
}

std::vector<std::uint32_t> withMiddles(const Form& form, const std::vector<std::uint32_t>& corners) {
    std::vector<std::uint32_t> border;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        border.push_back(corners[i]);
        border.push_back(middleOf(form, corners[i], corners[(i + 1) % corners.size()]));
    }
    return border;
}

} // namespace

std::vector<ElementFace> elementFaces(int dimension, std::size_t nodes) {
    std::vector<ElementFace> faces;
    for (const auto& form : forms()) {
        const bool isLinear = nodes == form.corners;
        const bool hasCentres = nodes == form.nodesWithCentres;
        const bool fits = isLinear || hasCentres || nodes == form.corners + form.edges.size();
        if (form.dimension != dimension || !fits) {
            continue;
        }
        for (std::size_t i = 0; i < form.faces.size(); ++i) {
            ElementFace face;
            face.border = isLinear ? form.faces[i] : withMiddles(form, form.faces[i]);
            face.isQuadratic = !isLinear;
            if (hasCentres) {
                face.centre = form.centres[i];
            }
            faces.push_back(std::move(face));
        }
    }
    return faces;
}

ElementFace polygonFace(std::size_t nodes) {
    ElementFace face;
    face.border.resize(nodes);
    std::iota(face.border.begin(), face.border.end(), 0U);
    return face;
}

} // namespace MoxTool
