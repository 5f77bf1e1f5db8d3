#pragma once

#include <Qel/Mox2/Model.h>

#include <array>
#include <vector>

/// A box of hexahedra from the origin on, in the arrays that the library takes.
struct BoxMesh {
    Qel::Mox2::Array2d<float> coordinates;         ///< x, y, z of each node.
    Qel::Mox2::Array1d<unsigned int> connectivity; ///< Eight nodes of each element, counted from 0.
    Qel::Mox2::Array1d<unsigned int> nodesPerElement;

    /// @param size  Lengths along x, y and z.
    /// @param count Elements along x, y and z.
    BoxMesh(const std::array<float, 3>& size, const std::array<unsigned int, 3>& count) {
        const auto [nx, ny, nz] = count;
        std::vector<float> points;
        for (unsigned int k = 0; k <= nz; ++k) {
            for (unsigned int j = 0; j <= ny; ++j) {
                for (unsigned int i = 0; i <= nx; ++i) {
                    points.push_back(size[0] * static_cast<float>(i) / static_cast<float>(nx));
                    points.push_back(size[1] * static_cast<float>(j) / static_cast<float>(ny));
                    points.push_back(size[2] * static_cast<float>(k) / static_cast<float>(nz));
                }
            }
        }
        const unsigned int row = nx + 1;
        const unsigned int layer = row * (ny + 1);
        std::vector<unsigned int> corners;
        for (unsigned int k = 0; k < nz; ++k) {
            for (unsigned int j = 0; j < ny; ++j) {
                for (unsigned int i = 0; i < nx; ++i) {
                    const unsigned int first = k * layer + j * row + i;
                    for (const unsigned int face : {first, first + layer}) {
                        corners.insert(corners.end(), {face, face + 1, face + row + 1, face + row});
                    }
                }
            }
        }
        coordinates = Qel::Mox2::Array2d<float>(points.size() / 3, 3, points);
        connectivity = Qel::Mox2::Array1d<unsigned int>(corners);
        nodesPerElement = Qel::Mox2::Array1d<unsigned int>(corners.size() / 8, 8U);
    }

    /// Adds the mesh to a geometry, or once for several.
    template <typename Ids>
    void addTo(Qel::Mox2::Model& model, const Ids& geometries) const {
        const Qel::Mox2::Step noStep;
        model.addArrayProperty(Qel::Mox2::Coordinates, coordinates, geometries, noStep);
        model.addArrayProperty(Qel::Mox2::Connectivity2, connectivity, geometries, noStep);
        model.addArrayProperty(Qel::Mox2::Polylength2, nodesPerElement, geometries, noStep);
    }
};
