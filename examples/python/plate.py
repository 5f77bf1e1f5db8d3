#!/usr/bin/env python3
"""Saves a plate with a hole under tension, reads it back and plots it.

    PYTHONPATH=build/python python3 plate.py [plate.mox [plate.png]]

The displacements and stresses are those of Kirsch's solution for a hole in an infinite plate.
"""

import sys

import numpy as np
from matplotlib.collections import PolyCollection
from matplotlib.figure import Figure

import moxwriter
from moxwriter import DatasetType, Step

RADIUS = 10.0  # mm, of the hole
OUTER = 60.0  # mm
YOUNG, POISSON = 210_000.0, 0.3  # N/mm2, plane stress
STEPS = {"Load 1": 50.0, "Load 2": 100.0, "Load 3": 150.0}  # N/mm2, far from the hole


def mesh(rings=24, sectors=72):
    """Nodes (n, 3) in mm and quadrilaterals (m, 4) of a ring around the hole, finer towards it."""
    radii = RADIUS * (OUTER / RADIUS) ** np.linspace(0, 1, rings + 1)
    angles = np.linspace(0, 2 * np.pi, sectors, endpoint=False)
    r, a = np.meshgrid(radii, angles, indexing="ij")
    nodes = np.stack([r * np.cos(a), r * np.sin(a), np.zeros_like(r)], axis=-1).reshape(-1, 3)
    ring, sector = np.meshgrid(np.arange(rings), np.arange(sectors), indexing="ij")
    following = (sector + 1) % sectors
    corners = (ring * sectors + sector, (ring + 1) * sectors + sector,
               (ring + 1) * sectors + following, ring * sectors + following)
    return nodes, np.stack(corners, axis=-1).reshape(-1, 4)


def stress(points, tension):
    """xx, yy, zz, xy, yz, zx at points (n, 3), for a tension along x."""
    r, a = np.hypot(points[:, 0], points[:, 1]), np.arctan2(points[:, 1], points[:, 0])
    k = (RADIUS / r) ** 2
    result = np.zeros((len(points), 6))
    result[:, 0] = tension * (1 - k * (1.5 * np.cos(2 * a) + np.cos(4 * a)) + 1.5 * k**2 * np.cos(4 * a))
    result[:, 1] = tension * (-k * (0.5 * np.cos(2 * a) - np.cos(4 * a)) - 1.5 * k**2 * np.cos(4 * a))
    result[:, 3] = tension * (-k * (0.5 * np.sin(2 * a) + np.sin(4 * a)) + 1.5 * k**2 * np.sin(4 * a))
    return result


def displacement(points, tension):
    """x, y, z in mm at points (n, 3)."""
    r, a = np.hypot(points[:, 0], points[:, 1]), np.arctan2(points[:, 1], points[:, 0])
    shear, kappa = YOUNG / (2 * (1 + POISSON)), (3 - POISSON) / (1 + POISSON)
    scale, s = tension * RADIUS / (8 * shear), RADIUS / r
    x = (kappa + 1) / s * np.cos(a) + 2 * s * ((1 + kappa) * np.cos(a) + np.cos(3 * a)) - 2 * s**3 * np.cos(3 * a)
    y = (kappa - 3) / s * np.sin(a) + 2 * s * ((1 - kappa) * np.sin(a) + np.sin(3 * a)) - 2 * s**3 * np.sin(3 * a)
    return scale * np.stack([x, y, np.zeros_like(x)], axis=-1)


def save(path):
    nodes, quads = mesh()
    centres = nodes[quads].mean(axis=1)
    with moxwriter.Model(path, overwrite=True, source=("plate example", "1.0")) as model:
        model.add_group("Assembly", {"Unit": "mm"})
        plate = model.add_shape("Plate")
        model.set_node_data(plate, diffuse_color=(0.5, 0.6, 0.8))
        model.add_array(plate, "Coordinates", nodes, convert=True)
        model.add_array(plate, DatasetType.CONNECTIVITY_1, quads.ravel(), convert=True)
        model.add_array(plate, DatasetType.POLYLENGTH_1, np.full(len(quads), 4, np.uint32))
        for time, (name, tension) in enumerate(STEPS.items(), start=1):
            step = Step(name, time=time, attributes={"Tension": tension})
            model.add_array(plate, "Displacement", displacement(nodes, tension), step=step, convert=True)
            model.add_array(plate, "Stress", stress(centres, tension), type=DatasetType.ELEMENT_SIX_A, step=step,
                            attributes={"Unit": "N/mm2"}, convert=True)


def plot(path, picture, step="Load 3"):
    with moxwriter.open(path) as file:
        plate = file["Assembly/Plate"]
        nodes = plate["Coordinates"].read()
        quads = plate["Connectivity"].read().reshape(-1, 4)
        moved = nodes + 100 * plate["Displacement", step].read()
        xx = plate["Stress", step].read()[:, 0]
    figure = Figure(figsize=(7, 5.5), layout="constrained")
    axes = figure.subplots()
    cells = PolyCollection(moved[quads][:, :, :2], array=xx, cmap="viridis", edgecolors="face")
    axes.add_collection(cells)
    axes.set(aspect="equal", xlabel="x in mm, displacements 100 times", ylabel="y in mm", title=f"Plate, {step}")
    axes.autoscale_view()
    figure.colorbar(cells, label="stress xx in N/mm²")
    figure.savefig(picture, dpi=80, metadata={"Software": None})
    return xx.max()


def main(path="plate.mox", picture="plate.png"):
    save(path)
    with moxwriter.open(path) as file:
        print(file)
    largest = plot(path, picture)
    print(f"largest stress xx: {largest:.1f} N/mm2, {largest / STEPS['Load 3']:.2f} times the tension")


if __name__ == "__main__":
    main(*sys.argv[1:])
