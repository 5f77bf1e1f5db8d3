"""The numbers and small values of the interface."""

from __future__ import annotations

from dataclasses import dataclass, field
from enum import IntEnum
from typing import Mapping, Sequence, Union

import numpy as np

#: What a file can keep as an attribute: a text (cut to 256 bytes), an integer of 32 bits or a float.
AttributeValue = Union[str, int, float, np.generic, Sequence[int], Sequence[float]]
Attributes = Mapping[str, AttributeValue]


class NodeType(IntEnum):
    """What `Model.add_node` makes. Below the first node there are only groups and shapes."""

    ROOT_MARKED_GROUP = 1  #: A group, only as the first node, that the file marks with group kind 1.
    ROOT_GROUP = 2  #: A group, only as the first node.
    GROUP = 3  #: A transform and attributes for everything below it.
    SHAPE = 4  #: A material, and below it (unless it is the first node) its geometry.


class PropertyType(IntEnum):
    """What `Model.set_node_data` can set. Colours are red, green, blue, each from 0 to 1."""

    TRANSLATION = 0  #: Group, 3 numbers, in the unit of the coordinates.
    ROTATION = 1  #: Group, 4 numbers: the axis and the angle.
    SCALE = 2  #: Group, 3 numbers.
    DIFFUSE_COLOR = 3  #: Shape, 3 or 4 numbers.
    SPECULAR_COLOR = 4  #: Shape, 3 or 4 numbers.
    EMISSIVE_COLOR = 5  #: Shape, 3 numbers.
    AMBIENT_COLOR = 6  #: Shape, 3 numbers.
    TRANSPARENCY = 7  #: Shape, one number.
    AMBIENT_INTENSITY = 8  #: Shape, one number: the ambient colour becomes the diffuse colour times it.
    SHININESS = 9  #: Shape, one number.
    SHAPE_SWITCH = 10  #: Always refused.


class DatasetType(IntEnum):
    """What the numbers of an array mean, which determines its columns (`width`).

    The digits 0, 1 and 2 stand for elements of one, two and three dimensions: lines, faces, solids.
    """

    CONNECTIVITY_0 = 0  #: 1 column, "Connectivity": zero-based places of nodes, element by element.
    CONNECTIVITY_1 = 1
    CONNECTIVITY_2 = 2
    POLYLENGTH_0 = 3  #: 1 column, "Polylength": the number of nodes of each element.
    POLYLENGTH_1 = 4
    POLYLENGTH_2 = 5
    PART_ELEMENTS_0 = 6  #: 1 column, "Part Elements": places of the elements of a part.
    PART_ELEMENTS_1 = 7
    PART_ELEMENTS_2 = 8
    COORDINATES = 9  #: 3 columns, "Coordinates": x, y, z of each node.
    NODE_SCALAR = 10  #: 1 column: a value for each node.
    NODE_VECTOR = 11  #: 3 columns: x, y, z.
    NODE_SIX_A = 12  #: 6 columns; the tools take them for xx, yy, zz, xy, yz, zx.
    NODE_SIX_B = 13  #: 6 columns, second kind.
    ELEMENT_SCALAR = 14  #: The same for elements.
    ELEMENT_VECTOR = 15
    ELEMENT_SIX_A = 16
    ELEMENT_SIX_B = 17
    THIRD_SCALAR = 18  #: The same for items of a third kind.
    THIRD_VECTOR = 19
    THIRD_SIX_A = 20
    THIRD_SIX_B = 21
    FOURTH_SCALAR_A = 22  #: The same for items of a fourth kind.
    FOURTH_SCALAR_B = 23
    FOURTH_VECTOR = 24
    FOURTH_SIX_A = 25
    FOURTH_SIX_B = 26
    NODE_IDS = 27  #: 1 column, "Node Ids": the application's id of each node.
    ELEMENT_IDS = 28  #: 1 column, "Element IDs": the application's id of each element.
    DISPLACEMENT_VECTOR = 29  #: 3 columns, "Displacement": the translation of each node.
    DISPLACEMENT_SIX = 30  #: 6 columns, "Displacement": translation and rotation of each node.

    @property
    def width(self) -> int:
        """The number of columns.

        >>> DatasetType.NODE_VECTOR.width
        3
        """
        return _WIDTHS.get(self, 1)

    @property
    def default_name(self) -> str | None:
        """The name that an array gets if none is given; None for a type that needs one.

        >>> DatasetType.DISPLACEMENT_SIX.default_name
        'Displacement'
        """
        return _NAMES.get(self)


_WIDTHS: dict[DatasetType, int] = {}
_NAMES: dict[DatasetType, str] = {}


def _fill_tables() -> None:
    for kind in DatasetType:
        if kind.name.endswith("VECTOR") or kind is DatasetType.COORDINATES:
            _WIDTHS[kind] = 3
        elif "SIX" in kind.name:
            _WIDTHS[kind] = 6
        for prefix, name in (("CONNECTIVITY", "Connectivity"), ("POLYLENGTH", "Polylength"),
                             ("PART_ELEMENTS", "Part Elements"), ("COORDINATES", "Coordinates"),
                             ("NODE_IDS", "Node Ids"), ("ELEMENT_IDS", "Element IDs"),
                             ("DISPLACEMENT", "Displacement")):
            if kind.name.startswith(prefix):
                _NAMES[kind] = name


_fill_tables()


@dataclass(frozen=True)
class Step:
    """A step of an analysis that an array belongs to: a time, or a mode of vibration.

    `time`, `frequency` and `mode` become the attributes that the tools look for: `Time` and `Frequency` as floats
    and, so that nothing is lost, as texts (`Time (exact)`); a frequency also marks the step as a mode shape.

    >>> Step("Load 1", time=0.1).all_attributes()
    {'Time': 0.1, 'Time (exact)': '0.1'}
    """

    name: str = ""  #: Empty for numbers that belong to no step.
    time: float | None = None
    frequency: float | None = None
    mode: int | None = None
    attributes: Attributes = field(default_factory=dict)

    def all_attributes(self) -> dict[str, AttributeValue]:
        """The attributes, those of `time`, `frequency` and `mode` included; the given ones win."""
        made: dict[str, AttributeValue] = {}
        for key, value in (("Time", self.time), ("Frequency", self.frequency)):
            if value is not None:
                made[key] = float(value)
                made[f"{key} (exact)"] = _shortest(float(value))
        if self.frequency is not None:
            made["Category"] = "Vibration"
        if self.mode is not None:
            made["Mode"] = int(self.mode)
        return {**made, **self.attributes}


def _shortest(value: float) -> str:
    """The shortest text of a float, as the tools write it: without ".0" after a whole number.

    >>> _shortest(2.0), _shortest(0.25), _shortest(1e-7)
    ('2', '0.25', '1e-07')
    """
    text = repr(value)
    return text[:-2] if text.endswith(".0") else text
