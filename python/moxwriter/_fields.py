"""Point and cell data of meshio as datasets of a model, and back.

What a dataset does not say by itself is in attributes whose keys begin with "meshio".
"""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any, Iterator, Sequence

import numpy as np
import numpy.typing as npt

from ._reading import Dataset
from ._types import AttributeValue, DatasetType

FIELD = "meshio Field"  #: The name of the data, if the dataset has another.
COLUMN = "meshio Column"  #: Which of several columns the dataset is, from 1, if each has one of its own.
COLUMNS = "meshio Columns"  #: How many columns there are, if the dataset has more or fewer.
SHAPE = "meshio Shape"  #: Of the data of one point or cell, such as "3 3".
TYPE = "meshio Type"  #: The type of the numbers, such as "int64".
SET = "meshio Set"  #: The name of the set whose members have 1 and all others 0.

_MESH_NAMES = {"Connectivity", "Coordinates", "Element IDs", "Node Ids", "Part Elements", "Polylength"}
_DISPLACEMENTS = {"disp", "displ", "displacement"}
_AXES = "xyz"
_WIDE = 3
_SIX = 6


class Loss:
    """An account of what is lost when numbers become floats of 32 bits."""

    def __init__(self) -> None:
        self.rounded = 0
        self.too_large = 0
        self.too_small = 0
        self.largest = 0.0

    def narrow(self, numbers: npt.NDArray[Any]) -> npt.NDArray[Any]:
        """As float32; as uint32 where integers fit."""
        if numbers.dtype.kind in "bui":
            if not numbers.size or (numbers.min() >= 0 and numbers.max() < 2**32):
                return numbers.astype(np.uint32)
        with np.errstate(over="ignore"):
            narrow = numbers.astype(np.float32)
        if numbers.dtype.itemsize > narrow.dtype.itemsize or numbers.dtype.kind != "f":
            self._count(numbers.astype(np.float64), narrow.astype(np.float64))
        return narrow

    def _count(self, before: npt.NDArray[Any], after: npt.NDArray[Any]) -> None:
        changed = (before != after) & np.isfinite(before)
        large = changed & ~np.isfinite(after)
        small = changed & (np.abs(before) < np.finfo(np.float32).tiny)
        rounded = changed & ~large & ~small
        self.too_large += int(large.sum())
        self.too_small += int(small.sum())
        self.rounded += int(rounded.sum())
        if rounded.any():
            relative = np.abs(after[rounded] / before[rounded] - 1)
            self.largest = max(self.largest, float(relative.max()))

    def sentences(self) -> list[str]:
        lines = []
        if self.rounded:
            lines.append(f"numbers rounded to float: {self.rounded}, the largest relative loss is {self.largest:.2g}")
        if self.too_large:
            lines.append(f"numbers beyond the range of a float, now infinite: {self.too_large}")
        if self.too_small:
            lines.append(f"numbers near 0 that became 0 or lost digits: {self.too_small}")
        return lines


@dataclass
class Piece:
    """One dataset to be made from data."""

    name: str
    numbers: npt.NDArray[Any]  #: (n, columns)
    attributes: dict[str, AttributeValue] = field(default_factory=dict)
    displaces: bool = False

    def type(self, on_nodes: bool) -> DatasetType:
        kind = {1: "SCALAR", _WIDE: "VECTOR", _SIX: "SIX_A"}[self.numbers.shape[1]]
        if self.displaces:
            return DatasetType.DISPLACEMENT_VECTOR
        return DatasetType[("NODE_" if on_nodes else "ELEMENT_") + kind]


def pieces_of(name: str, values: npt.NDArray[Any], on_nodes: bool, loss: Loss) -> list[Piece]:
    """The datasets that data (n, ...) becomes; none if a model can't have its type."""
    if values.dtype.kind not in "buif" or values.ndim == 0 or (len(values) and values.size == 0):
        return []
    table = values.reshape(len(values), -1) if len(values) else values.reshape(0, 1)
    numbers = loss.narrow(table)
    columns = numbers.shape[1]
    common: dict[str, AttributeValue] = {}
    if values.dtype.name != numbers.dtype.name:
        common[TYPE] = values.dtype.newbyteorder("=").name
    if values.ndim > 2 or (values.ndim == 2 and columns == 1):
        common[SHAPE] = " ".join(map(str, values.shape[1:]))
    if columns in (1, 2, _WIDE, _SIX):
        return [_one_piece(name, numbers, on_nodes, common)]
    return [Piece(f"{name}_{column + 1}", numbers[:, [column]],
                  {**common, FIELD: name, COLUMN: column + 1, COLUMNS: columns}) for column in range(columns)]


def _one_piece(name: str, numbers: npt.NDArray[Any], on_nodes: bool, common: dict[str, AttributeValue]) -> Piece:
    piece = Piece(name, numbers, dict(common))
    columns = numbers.shape[1]
    if columns == 2:
        piece.numbers = np.pad(numbers, ((0, 0), (0, 1)))
        piece.attributes[COLUMNS] = 2
    if on_nodes and columns in (2, _WIDE) and name.lower() in _DISPLACEMENTS:
        piece.displaces = True
        piece.name = "Displacement"
        if name != piece.name:
            piece.attributes[FIELD] = name
            piece.attributes.update({f"Component {i + 1}": f"{name}_{_AXES[i]}" for i in range(columns)})
    return piece


class Names:
    """Gives each dataset a name of its own, the same in all steps."""

    def __init__(self) -> None:
        self._taken = set(_MESH_NAMES)
        self._names: dict[tuple[bool, str, str], str] = {}
        self.renamed: dict[str, str] = {}

    def name(self, field_name: str, wanted: str, on_nodes: bool) -> str:
        key = (on_nodes, field_name, wanted)
        if key not in self._names:
            self._names[key] = self._unique(wanted.replace("\x1e", "_"))
            if self._names[key] != wanted:
                self.renamed[wanted] = self._names[key]
        return self._names[key]

    def _unique(self, wanted: str) -> str:
        name, number = wanted, 2
        while name in self._taken:
            name, number = f"{wanted} ({number})", number + 1
        self._taken.add(name)
        return name


class Fields:
    """The data of a part of the nodes or elements: arrays by name, made from datasets."""

    def __init__(self, count: int, datasets: Sequence[Dataset]) -> None:
        self.count = count
        self._pieces: dict[str, dict[int, Dataset]] = {}
        for dataset in datasets:
            name = str(dataset.attributes.get(FIELD, dataset.name))
            column = dataset.attributes.get(COLUMN, 1)
            self._pieces.setdefault(name, {})[column if isinstance(column, int) else 1] = dataset

    def arrays(self) -> Iterator[tuple[str, npt.NDArray[Any]]]:
        for name, pieces in self._pieces.items():
            yield from _split_six(name, self._array(pieces), pieces)

    def _array(self, pieces: dict[int, Dataset]) -> npt.NDArray[Any]:
        first = pieces[min(pieces)]
        attributes = first.attributes
        columns = attributes.get(COLUMNS)
        if COLUMN in attributes:
            numbers = np.stack([pieces[column].read() for column in sorted(pieces)], axis=-1)
        else:
            numbers = first.read()
            if isinstance(columns, int) and numbers.ndim == 2:
                numbers = numbers[:, :columns]
        if len(numbers) != self.count:
            raise ValueError(f"{first!r} of {first.node.path!r} has {len(numbers)} rows, not {self.count}")
        return _restored(numbers, attributes)


def _restored(numbers: npt.NDArray[Any], attributes: dict[str, Any]) -> npt.NDArray[Any]:
    try:
        if SHAPE in attributes:
            numbers = numbers.reshape((len(numbers), *map(int, str(attributes[SHAPE]).split())))
        if TYPE in attributes:
            wanted = np.dtype(str(attributes[TYPE]))
            numbers = numbers.astype(wanted) if wanted.kind in "buif" else numbers
    except (TypeError, ValueError):
        pass  # another program has changed them
    return numbers


# A displacement of six has the rotation after it, as other programs have them apart.
def _split_six(name: str, numbers: npt.NDArray[Any],
               pieces: dict[int, Dataset]) -> Iterator[tuple[str, npt.NDArray[Any]]]:
    is_six = numbers.ndim == 2 and numbers.shape[1] == _SIX and pieces[min(pieces)].type == "NodeSixA"
    if is_six and name == "Displacement":
        yield name, np.ascontiguousarray(numbers[:, :_WIDE])
        yield "Rotation", np.ascontiguousarray(numbers[:, _WIDE:])
    else:
        yield name, numbers


def filled(parts: Sequence[npt.NDArray[Any] | None], counts: Sequence[int]) -> list[npt.NDArray[Any]]:
    """Arrays for all parts: not-a-number where a part has none, or one of another shape."""
    model = next(part for part in parts if part is not None)
    if all(part is not None and part.shape[1:] == model.shape[1:] for part in parts):
        return [part for part in parts if part is not None]
    result = []
    for part, count in zip(parts, counts):
        fits = part is not None and part.shape[1:] == model.shape[1:]
        result.append(part.astype(np.float64) if fits and part is not None
                      else np.full((count, *model.shape[1:]), np.nan))
    return result
