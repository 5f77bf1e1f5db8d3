"""The element types of meshio and what a model makes of them.

A model keeps the nodes of all elements in the order of Exodus II, whatever file they came from; meshio has that of
VTK, but for the linear wedge, where it agrees with Exodus.
"""

from __future__ import annotations

from typing import Any

import numpy as np
import numpy.typing as npt

# For each node of a cell of VTK the node of the element of Exodus.
_HEXAHEDRON = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 12, 13, 14, 15, 23, 24, 25, 26, 21, 22, 20]
_ORDERS = {
    "wedge15": [0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11],
    "hexahedron20": _HEXAHEDRON[:20],
    "hexahedron27": _HEXAHEDRON,
}

#: The types by dimension (1 also for single nodes) and number of nodes, where nothing else says what they are.
_TYPES = {
    (1, 1): "vertex", (1, 2): "line", (1, 3): "line3", (2, 3): "triangle", (2, 4): "quad", (2, 6): "triangle6",
    (2, 8): "quad8", (2, 9): "quad9", (3, 4): "tetra", (3, 5): "pyramid", (3, 6): "wedge", (3, 8): "hexahedron",
    (3, 10): "tetra10", (3, 13): "pyramid13", (3, 14): "pyramid14", (3, 15): "wedge15", (3, 18): "wedge18",
    (3, 20): "hexahedron20", (3, 27): "hexahedron27",
}


def to_model(cell_type: str, cells: npt.NDArray[Any]) -> npt.NDArray[Any]:
    """The nodes of cells (n, k) in the order of a model.

    >>> to_model("wedge15", np.arange(15)[None])[0].tolist()
    [0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11]
    """
    order = _ORDERS.get(cell_type)
    return cells if order is None else cells[:, np.argsort(order)]


def to_meshio(cell_type: str, cells: npt.NDArray[Any]) -> npt.NDArray[Any]:
    """The nodes of elements (n, k) of a model in the order of meshio."""
    order = _ORDERS.get(cell_type)
    return cells if order is None else cells[:, order]


def type_of(dimension: int, nodes: int, named: str, known: dict[str, int], counts: dict[str, int]) -> str:
    """The type of elements of a model; "" for elements that meshio has no type for.

    Args:
        dimension: From 1 to 3.
        named: What the model calls the type, which can be the word of another program.
        known: The dimensions of meshio's types.
        counts: The numbers of nodes of those types that have a fixed one.
    """
    if max(known.get(named, -1), 1) == dimension and named in known and counts.get(named, nodes) == nodes:
        return named
    return _TYPES.get((dimension, nodes), "polygon" if dimension == 2 and nodes > 2 else "")
