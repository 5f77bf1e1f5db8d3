"""Meshes of meshio in models: what `moxwriter.meshio` and `moxwriter.convert` are made of."""

from __future__ import annotations

import errno
import math
import os
import secrets
from dataclasses import dataclass, field
from typing import Any, Mapping, Sequence

import numpy as np
import numpy.typing as npt

from . import _cells, _fields, _reading
from ._errors import Error
from ._types import AttributeValue, DatasetType, Step
from ._writing import Model, compressor

_GOLDEN_RATIO = (1 + math.sqrt(5)) / 2
_FIELD_DATA = "meshio Field Data: "
_NODAL = ("NodeScalar", "NodeVector", "NodeSixA", "NodeSixB")
_ELEMENTAL = ("ElementScalar", "ElementVector", "ElementSixA", "ElementSixB")
_MESH = ("Coordinates", "Connectivity0", "Connectivity1", "Connectivity2", "Polylength")
_MOST_NAMES = 10

Array = npt.NDArray[Any]
Data = Mapping[str, Any]


@dataclass
class Summary:
    """What a conversion took and what it did not."""

    shapes: int = 0
    nodes: int = 0
    elements: int = 0
    steps: int = 0
    datasets: int = 0
    skipped: dict[str, list[str]] = field(default_factory=dict)  #: Names by kind.
    notes: list[str] = field(default_factory=list)
    compressor: str = ""

    def skip(self, kind: str, *names: str) -> None:
        known = self.skipped.setdefault(kind, [])
        known += [name for name in names if name not in known]

    def note(self, sentence: str) -> None:
        if sentence not in self.notes:
            self.notes.append(sentence)

    def lines(self, output: str, verbose: bool = False) -> list[str]:
        lines = [f"{visible(output)}: shapes: {self.shapes}, nodes: {self.nodes}, elements: {self.elements}, "
                 f"steps: {self.steps}, datasets: {self.datasets}"]
        if self.compressor:
            lines[0] += f", compressor: {self.compressor}"
        for kind, names in self.skipped.items():
            lines.append(f"not taken: {kind}: {len(names)}{_listed(names, verbose)}")
        return lines + [f"note: {note}" for note in self.notes]


def _listed(names: Sequence[str], verbose: bool) -> str:
    shown = list(names) if verbose else list(names)[:_MOST_NAMES]
    more = f" and {len(names) - len(shown)} more; --verbose lists all" if len(shown) < len(names) else ""
    return f" ({', '.join(map(visible, shown))}{more})"


def visible(text: str) -> str:
    r"""A text without control characters.

    >>> visible("a\x1b[1m")
    'a\\x1b[1m'
    """
    return "".join(one if one.isprintable() else one.encode("unicode_escape", "surrogateescape").decode("latin-1")
                   for one in text)


class MeshWriter:
    """Saves one mesh with its data, under a temporary name that becomes the final one when it is complete."""

    def __init__(self, path: str | os.PathLike[str], *, name: str | None = None,
                 attributes: Mapping[str, AttributeValue] | None = None, source: tuple[str, str] | None = None) -> None:
        self.path = os.path.realpath(os.fspath(path))
        self.summary = Summary()
        self._loss = _fields.Loss()
        self._names = _fields.Names()
        self._root = name if name is not None else os.path.splitext(os.path.basename(self.path))[0]
        self._attributes = dict(attributes or {})
        self._blocks: list[int] = []  # places in the mesh of those that the model has
        self._geometries: list[int] = []
        self._given_blocks = 0
        if os.path.exists(self.path) and not os.path.isfile(self.path):
            raise OSError(errno.EINVAL, "is no regular file", os.fspath(path))
        folder, base = os.path.split(self.path)
        self._temporary = os.path.join(folder, f".{base}.{secrets.token_hex(6)}")
        os.close(os.open(self._temporary, os.O_CREAT | os.O_EXCL | os.O_WRONLY, 0o666))
        try:
            self._model = Model(self._temporary, overwrite=True, source=source)
        except BaseException:
            os.unlink(self._temporary)
            raise

    def write_mesh(self, points: npt.ArrayLike, cells: Sequence[Any], point_sets: Data | None = None,
                   cell_sets: Data | None = None, field_data: Data | None = None) -> None:
        """The mesh; once, before any data.

        Args:
            cells: Blocks with `type`, `dim` and `data`.
        """
        places = _as_points(points)
        self._add_root(places, cells, field_data or {})
        self._add_blocks(cells)
        if self._geometries and len(places):
            self._add_nodes(places)
        self._add_cells(cells, len(places))
        self._given_blocks = len(cells)
        for name, members in (point_sets or {}).items():
            self._add_set(name, [members], self._geometries, [len(places)], True)
        for name, members in (cell_sets or {}).items():
            self._add_cell_set(name, members, cells)

    def _add_root(self, places: Array, cells: Sequence[Any], field_data: Data) -> None:
        attributes: dict[str, AttributeValue] = {
            **self._attributes, "Dimensions": places.shape[1], "Nodes": len(places),
            "Elements": sum(len(block) for block in cells), "Element Blocks": len(cells)}
        for name, values in field_data.items():
            attributes[_FIELD_DATA + name] = " ".join(str(one) for one in np.asarray(values).ravel().tolist())
        self._model.add_group(self._root, attributes)

    def _add_blocks(self, cells: Sequence[Any]) -> None:
        for place, block in enumerate(cells):
            label = f"Block {place + 1}"
            if block.type.startswith("polyhedron"):
                self.summary.skip("blocks of polyhedra", label)
            elif len(block) == 0:
                self.summary.skip("blocks without cells", label)
            else:
                self._add_shape(label, place)
                self._blocks.append(place)
        if not self._blocks and not cells:
            self._add_shape("Nodes", 0)

    def _add_shape(self, name: str, place: int) -> None:
        self._model.set_current_node_id(1)
        geometry = self._model.add_shape(name)
        self._model.set_node_data(geometry, diffuse_color=_color(place))
        self._geometries.append(geometry)
        self.summary.shapes += 1

    def _add_nodes(self, places: Array) -> None:
        missing = 3 - places.shape[1]
        coordinates = np.pad(self._loss.narrow(places.astype(np.float64)).astype(np.float32), ((0, 0), (0, missing)))
        self._add(self._geometries, DatasetType.COORDINATES, coordinates)
        self._add(self._geometries, DatasetType.NODE_IDS, np.arange(1, len(places) + 1, dtype=np.uint32))
        self.summary.nodes = len(places)

    def _add_cells(self, cells: Sequence[Any], nodes: int) -> None:
        first = 1
        for place, block in enumerate(cells):
            if place in self._blocks:
                self._add_elements(self._geometries[self._blocks.index(place)], block, nodes, first)
            first += len(block)

    def _add_elements(self, geometry: int, block: Any, nodes: int, first: int) -> None:
        data = np.asarray(block.data)
        if data.ndim != 2 or data.dtype.kind not in "ui":
            raise ValueError(f"the cells of a block of {block.type!r} are no table of integers")
        if data.size and not (data.min() >= 0 and data.max() < nodes):
            raise ValueError(f"a block of {block.type!r} has nodes from {data.min()} to {data.max()}, "
                             f"but there are {nodes} points")
        digit = max(block.dim, 1) - 1
        attributes = {"Element Type": block.type, "Elements": len(data), "Nodes per Element": data.shape[1]}
        connectivity = _cells.to_model(block.type, data).astype(np.uint32).ravel()
        self._add([geometry], DatasetType(DatasetType.CONNECTIVITY_0 + digit), connectivity, attributes=attributes)
        self._add([geometry], DatasetType(DatasetType.POLYLENGTH_0 + digit),
                  np.full(len(data), data.shape[1], np.uint32))
        self._add([geometry], DatasetType.ELEMENT_IDS, np.arange(first, first + len(data), dtype=np.uint32))
        self.summary.elements += len(data)

    def _add_set(self, name: str, members: Sequence[Any], geometries: Sequence[int], counts: Sequence[int],
                 on_nodes: bool) -> None:
        kind = "Node Set" if on_nodes else "Element Set"
        dataset = self._names.name(name, f"{kind} {name}", on_nodes)
        for place, (one, count) in enumerate(zip(members, counts)):
            flags = np.zeros(count, np.uint32)
            flags[np.asarray(one, dtype=np.int64)] = 1
            targets = list(geometries) if on_nodes else [geometries[place]]
            if targets and count:
                self._add(targets, dataset, flags, on_nodes=on_nodes, attributes={_fields.SET: name})

    def _add_cell_set(self, name: str, members: Sequence[Any], cells: Sequence[Any]) -> None:
        taken = [members[place] if members[place] is not None else [] for place in self._blocks]
        self._add_set(name, taken, self._geometries, [len(cells[place]) for place in self._blocks], False)

    def write_data(self, point_data: Data | None = None, cell_data: Data | None = None,
                   step: Step | None = None) -> None:
        """The data of one step, or that which belongs to none."""
        for name, values in (point_data or {}).items():
            self._add_field(name, np.asarray(values), self._geometries, True, step)
        for name, blocks in (cell_data or {}).items():
            if len(blocks) != self._given_blocks:
                raise ValueError(f"the cell data {name!r} has {len(blocks)} blocks, not {self._given_blocks}")
            for geometry, place in zip(self._geometries, self._blocks):
                self._add_field(name, np.asarray(blocks[place]), [geometry], False, step)
        self.summary.steps += step is not None

    def _add_field(self, name: str, values: Array, geometries: Sequence[int], on_nodes: bool,
                   step: Step | None) -> None:
        pieces = _fields.pieces_of(name, values, on_nodes, self._loss)
        if not pieces:
            kind = "point data" if on_nodes else "cell data"
            self.summary.skip(f"{kind} of a type that a model can't have", name)
        for piece in pieces:
            dataset = self._names.name(name, piece.name, on_nodes)
            if dataset != name and _fields.FIELD not in piece.attributes:
                piece.attributes[_fields.FIELD] = name
            if geometries and len(piece.numbers):
                self._add(geometries, dataset, piece.numbers, on_nodes=on_nodes, kind=piece.type(on_nodes),
                          attributes=piece.attributes, step=step)

    def _add(self, geometries: Sequence[int], name: str | DatasetType, numbers: Array, *, on_nodes: bool = True,
             kind: DatasetType | None = None, attributes: Mapping[str, AttributeValue] | None = None,
             step: Step | None = None) -> None:
        if kind is None and isinstance(name, str):
            kind = DatasetType.NODE_SCALAR if on_nodes else DatasetType.ELEMENT_SCALAR
        self._model.add_array(geometries, name, numbers, type=kind, step=step, attributes=attributes)
        self.summary.datasets += 1

    def close(self) -> Summary:
        """Completes the file and gives it its name."""
        self.summary.compressor = compressor()
        for sentence in self._loss.sentences():
            self.summary.note(sentence)
        for wanted, name in self._names.renamed.items():
            self.summary.note(f'"{visible(wanted)}" is named "{visible(name)}", since another dataset has its name')
        try:
            self._model.close()
            os.replace(self._temporary, self.path)
        except BaseException:
            self.abandon()
            raise
        return self.summary

    def abandon(self) -> None:
        """Leaves nothing behind."""
        try:
            self._model.close()
        except Error:
            pass
        if os.path.exists(self._temporary):
            os.unlink(self._temporary)


def _as_points(points: npt.ArrayLike) -> Array:
    places = np.asarray(points)
    if places.size == 0:
        return np.zeros((0, 3))
    if places.ndim != 2 or not 1 <= places.shape[1] <= 3:
        raise ValueError(f"points have the shape {places.shape}, not (n, 3)")
    return places


# A colour unlike those of the blocks near it: each hue follows the last by the golden ratio.
def _color(place: int) -> tuple[float, ...]:
    hue = place / _GOLDEN_RATIO % 1.0
    distances = [min(abs(hue - primary), 1 - abs(hue - primary)) for primary in (0, 1 / 3, 2 / 3)]
    return tuple(0.35 + 0.55 * min(max(2 - 6 * distance, 0.0), 1.0) for distance in distances)


@dataclass
class _Part:
    """A geometry with a mesh, or with nodes alone."""

    node: _reading.Node
    coordinates: _reading.Dataset
    connectivity: _reading.Dataset | None
    polylength: _reading.Dataset | None
    group: int = 0  # of nodes
    blocks: list[tuple[str, Array]] = field(default_factory=list)  # types, and the places of the elements


@dataclass
class _NodeGroup:
    coordinates: _reading.Dataset
    transform: Array
    node: _reading.Node
    first: int
    count: int


class MeshReader:
    """Reads a model as one mesh, by the rules of `mox export`."""

    def __init__(self, path: str | os.PathLike[str], dimensions: Mapping[str, int], counts: Mapping[str, int]) -> None:
        """The last two are meshio's tables of its types."""
        self.summary = Summary()
        self._dimensions, self._node_counts = dict(dimensions), dict(counts)
        self._file = _reading.open(path)
        self._groups: list[_NodeGroup] = []
        self._parts = self._find_parts()
        self.steps = self._file.steps
        times = self._file.times()
        self.times = [_or(times[step], float(place)) for place, step in enumerate(self.steps)]

    def close(self) -> None:
        self._file.close()

    def _find_parts(self) -> list[_Part]:
        parts: list[_Part] = []
        nodes: list[_Part] = []
        for geometry in self._file.geometries:
            found = _mesh_of(geometry)
            if found is None:
                if geometry.datasets:
                    self.summary.skip("geometries without a mesh", geometry.path)
            else:
                (parts if found.connectivity is not None else nodes).append(found)
        for left in nodes if parts else []:
            self.summary.skip("geometries without a mesh", left.node.path)
        return parts or nodes

    # --- The mesh

    def read_points(self) -> Array:
        """All points (n, 1 to 3), as doubles, for which some of meshio's writers take them unseen."""
        places: list[Array] = []
        sharing: dict[Any, int] = {}
        for part in self._parts:
            transform = _transform_of(part.node)
            key = (part.coordinates._holder, transform.tobytes(), _nodal_holders(part.node))
            if key not in sharing:
                sharing[key] = len(self._groups)
                points = self._moved(part.coordinates.read(), transform)
                first = sum(len(one) for one in places)
                self._groups.append(_NodeGroup(part.coordinates, transform, part.node, first, len(points)))
                places.append(points)
            part.group = sharing[key]
        points = np.concatenate([np.zeros((0, 3)), *places])
        self.summary.nodes = len(points)
        dimensions = self._file.root.attributes.get("Dimensions")
        if isinstance(dimensions, int) and 1 <= dimensions < 3 and not points[:, dimensions:].any():
            points = np.ascontiguousarray(points[:, :dimensions])
        return points

    def _moved(self, points: Array, transform: Array) -> Array:
        if np.array_equal(transform, np.eye(4)):
            return points
        self.summary.note("transforms of groups are applied to coordinates, not to results")
        moved = points.astype(np.float64) @ transform[:3, :3].T + transform[:3, 3]
        narrow: Array = moved.astype(np.float32)
        return narrow

    def read_cells(self) -> list[tuple[str, Array]]:
        """The blocks. After `read_points`."""
        blocks = []
        for part in self._parts:
            if part.connectivity is not None and part.polylength is not None:
                blocks += self._read_part(part, part.connectivity, part.polylength)
        return blocks

    def _read_part(self, part: _Part, connectivity: _reading.Dataset,
                   polylength: _reading.Dataset) -> list[tuple[str, Array]]:
        nodes = connectivity.read().astype(np.int64)
        lengths = polylength.read().astype(np.int64)
        group = self._groups[part.group]
        if lengths.sum() != len(nodes):
            raise ValueError(f"{part.node.path!r}: the lengths of the elements do not add up to their connectivity")
        if len(nodes) and nodes.max() >= group.count:
            raise ValueError(f"{part.node.path!r}: an element has the node {nodes.max()}, but there are {group.count}")
        starts = np.concatenate([[0], np.cumsum(lengths)])[:-1]
        dimension = int(connectivity.type[-1]) + 1
        named = str(connectivity.attributes.get("Element Type", ""))
        blocks = []
        for length in dict.fromkeys(lengths.tolist()):
            rows = np.flatnonzero(lengths == length)
            kind = _cells.type_of(dimension, length, named, self._dimensions, self._node_counts)
            if not kind:
                self.summary.skip("elements of an unknown shape", f"{part.node.path} ({len(rows)} of {length} nodes)")
                continue
            table = nodes[starts[rows][:, None] + np.arange(length)]
            part.blocks.append((kind, rows))
            blocks.append((kind, _cells.to_meshio(kind, table) + group.first))
            self.summary.elements += len(rows)
        self.summary.shapes += 1
        return blocks

    # --- Data

    def read_point_data(self, step: str = "") -> dict[str, Array]:
        """Of one step, or of none. After `read_points`."""
        fields = [dict(_fields.Fields(group.count, _results(group.node, step, _NODAL)).arrays())
                  for group in self._groups]
        counts = [group.count for group in self._groups]
        return {name: np.concatenate(arrays) for name, arrays in self._merged(fields, counts).items()}

    def read_cell_data(self, step: str = "") -> dict[str, list[Array]]:
        """After `read_cells`: one array for each block."""
        counts = [_element_count(part) for part in self._parts]
        fields = [dict(_fields.Fields(count, _results(part.node, step, _ELEMENTAL)).arrays())
                  for part, count in zip(self._parts, counts)]
        return {name: [array[rows] for part, array in zip(self._parts, arrays) for _, rows in part.blocks]
                for name, arrays in self._merged(fields, counts).items()}

    def _merged(self, fields: Sequence[dict[str, Array]], counts: Sequence[int]) -> dict[str, list[Array]]:
        names = dict.fromkeys(name for one in fields for name in one)
        result = {}
        for name in names:
            arrays = [one.get(name) for one in fields]
            result[name] = _fields.filled(arrays, counts)
            self.summary.datasets += 1
        return result

    def read_point_sets(self) -> dict[str, Array]:
        sets: dict[str, list[Array]] = {}
        for group in self._groups:
            for dataset in _sets(group.node, _NODAL):
                members = np.flatnonzero(dataset.read()) + group.first
                sets.setdefault(str(dataset.attributes[_fields.SET]), []).append(members)
        return {name: np.concatenate(members) for name, members in sets.items()}

    def read_cell_sets(self) -> dict[str, list[Array]]:
        names = dict.fromkeys(str(one.attributes[_fields.SET]) for part in self._parts
                              for one in _sets(part.node, _ELEMENTAL))
        sets: dict[str, list[Array]] = {name: [] for name in names}
        for part in self._parts:
            own = {str(one.attributes[_fields.SET]): one.read() for one in _sets(part.node, _ELEMENTAL)}
            for name, blocks in sets.items():
                flags = own.get(name)
                blocks += [np.flatnonzero(flags[rows]) if flags is not None else np.zeros(0, np.int64)
                           for _, rows in part.blocks]
        return sets

    def read_field_data(self) -> dict[str, Array]:
        result = {}
        for key, value in self._file.root.attributes.items():
            if key.startswith(_FIELD_DATA) and isinstance(value, str):
                result[key[len(_FIELD_DATA):]] = np.array([_number(word) for word in value.split()])
        return result

    def note_rest(self) -> None:
        """Notes what of the model no mesh can have."""
        known = {*_MESH, *_NODAL, *_ELEMENTAL}
        for node in self._file:
            if node.kind == "NodeSets":
                self.summary.skip("sets of nodes", node.path)
            for dataset in node.datasets if node.kind == "Geometry" else []:
                if dataset.type not in known or dataset.name == "Part Elements":
                    self.summary.skip("datasets that are neither mesh nor results", dataset.name)


def _or(value: float | None, other: float) -> float:
    return other if value is None else value


def _number(word: str) -> int | float:
    try:
        return int(word)
    except ValueError:
        return float(word)


def _mesh_of(geometry: _reading.Node) -> _Part | None:
    def first(*types: str) -> _reading.Dataset | None:
        return next((one for one in geometry.datasets
                     if one.type in types and not one.step and one.name != "Part Elements"), None)

    coordinates = first("Coordinates")
    if coordinates is None:
        return None
    connectivity, polylength = first("Connectivity0", "Connectivity1", "Connectivity2"), first("Polylength")
    whole = connectivity is not None and polylength is not None
    return _Part(geometry, coordinates, connectivity if whole else None, polylength if whole else None)


def _element_count(part: _Part) -> int:
    return 0 if part.polylength is None else part.polylength.shape[0]


def _is_id(dataset: _reading.Dataset) -> bool:
    return dataset.name in ("Node Ids", "Element IDs") and dataset.dtype == np.uint32


def _results(geometry: _reading.Node, step: str, types: Sequence[str]) -> list[_reading.Dataset]:
    return [one for one in geometry.datasets
            if one.step == step and one.type in types and _fields.SET not in one.attributes and not _is_id(one)]


def _sets(geometry: _reading.Node, types: Sequence[str]) -> list[_reading.Dataset]:
    return [one for one in geometry.datasets if one.type in types and _fields.SET in one.attributes]


def _nodal_holders(geometry: _reading.Node) -> frozenset[Any]:
    return frozenset((one.name, one.step, one._holder) for one in geometry.datasets if one.type in _NODAL)


def _transform_of(node: _reading.Node) -> Array:
    matrix = np.eye(4)
    above: _reading.Node | None = node
    while above is not None:
        if above.transform is not None:
            matrix = _matrix(above.transform) @ matrix
        above = above.parent
    return matrix


def _matrix(transform: Mapping[str, Any]) -> Array:
    matrix = np.eye(4)
    axis, angle = np.array(transform["rotation"][:3], np.float64), float(transform["rotation"][3])
    rotation = np.eye(3)
    if angle != 0 and axis.any():
        x, y, z = axis / np.linalg.norm(axis)
        cross = np.array([[0, -z, y], [z, 0, -x], [-y, x, 0]])
        rotation = rotation + math.sin(angle) * cross + (1 - math.cos(angle)) * cross @ cross
    matrix[:3, :3] = rotation @ np.diag(np.array(transform["scale"], np.float64))
    matrix[:3, 3] = transform["translation"]
    return matrix
