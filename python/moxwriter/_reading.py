"""Reading files."""

from __future__ import annotations

import html
import operator
import os
from contextlib import contextmanager
from types import TracebackType
from typing import Any, Iterator, Mapping, Union

import numpy as np
import numpy.typing as npt

from . import _reader
from ._errors import DamagedFile

#: What the numbers of a dataset are, by the number in the file.
VARIABLE_TYPES: dict[int, str] = {
    1: "Coordinates", 4: "Connectivity0", 5: "Connectivity1", 6: "Connectivity2", 9: "Polylength", 12: "NodeScalar",
    13: "NodeVector", 14: "NodeSixA", 15: "NodeSixB", 16: "ElementScalar", 17: "ElementVector", 18: "ElementSixA",
    19: "ElementSixB", 20: "ThirdScalar", 21: "ThirdVector", 22: "ThirdSixA", 23: "ThirdSixB", 24: "FourthScalarA",
    25: "FourthScalarB", 26: "FourthVector", 27: "FourthSixA", 28: "FourthSixB",
}

Key = Union[str, "tuple[str, str]"]

_DTYPES: dict[int, np.dtype[Any]] = {1: np.dtype(np.float32), 5: np.dtype(np.uint32)}
_SHOWN_CHILDREN = 100
_SHOWN_DATASETS = 20


def open(path: str | os.PathLike[str]) -> File:
    """Opens a file for reading. Its tree is read at once, its numbers only when they are asked for.

    >>> import tempfile, moxwriter
    >>> path = os.path.join(tempfile.mkdtemp(), "bar.mox")
    >>> with moxwriter.Model(path) as model:
    ...     root, bar = model.add_group("Assembly"), model.add_shape("Bar")
    ...     model.add_array(bar, "Displacement", np.ones((2, 3), np.float32), step=moxwriter.Step("Load 1", time=0.1))
    >>> with open(path) as file:
    ...     print(file["Assembly/Bar"]["Displacement", "Load 1"].read())
    [[1. 1. 1.]
     [1. 1. 1.]]

    Raises:
        FileNotFoundError: and the like, if the path can't be opened.
        DamagedFile: if it is no whole file of this format.
    """
    return File(path)


class _NotCopied:
    def __copy__(self) -> Any:
        raise TypeError(f"a {type(self).__name__} can't be copied: it is a view of an open file; copy its arrays")

    def __deepcopy__(self, memo: object) -> Any:
        return self.__copy__()

    def __reduce_ex__(self, protocol: Any) -> Any:
        raise TypeError(f"a {type(self).__name__} can't be pickled: it is a view of an open file; pickle its arrays, "
                        "or the path")


class File(_NotCopied):
    """An open file: its nodes and the datasets of its geometries.

    `file["Assembly/Beam"]` is the node with that path, `file[4]` the one with that id; iteration goes over all nodes
    in the order of their ids. A slash that is part of a name is written `\\\\/`.

    Any thread can read from it; reads of one file take turns, and other threads of Python run meanwhile.
    """

    def __init__(self, path: str | os.PathLike[str]) -> None:
        self._path = os.fspath(path)
        with os.fdopen(os.open(self._path, os.O_RDONLY)):  # with Python's own exceptions
            pass
        self._native: _reader.File | None = None
        with self._naming_damage():
            self._native = _reader.File(os.fsencode(self._path))
        self._nodes = [Node(self, *node) for node in self._open().nodes()]
        for node in self._nodes[1:]:
            self._nodes[node.parent_id - 1]._children.append(node)

    def close(self) -> None:
        """Closes the file. Arrays that have been read stay."""
        self._native = None

    @property
    def closed(self) -> bool:
        """Whether `close` was called."""
        return self._native is None

    def __enter__(self) -> File:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.close()

    def _open(self) -> _reader.File:
        if self._native is None:
            raise ValueError(f"the file {self._path!r} is closed")
        return self._native

    @contextmanager
    def _naming_damage(self) -> Iterator[None]:
        try:
            yield
        except DamagedFile as damage:
            damage.place = damage.place._replace(path=self._path)
            raise

    @property
    def path(self) -> str:
        """The path that the file was opened by."""
        return self._path

    @property
    def size(self) -> int:
        """The size of the file in bytes."""
        return self._open().size()

    @property
    def format_version(self) -> str:
        """The version of the file format, such as "1.3"."""
        return self._open().version()

    @property
    def writers(self) -> list[dict[str, str]]:
        """Who saved the file: "source", "source_version", "date", "comment", one for each save."""
        return self._open().writers()

    @property
    def root(self) -> Node:
        """The node of id 1."""
        return self._nodes[0]

    @property
    def nodes(self) -> list[Node]:
        """All nodes in the order of their ids."""
        return list(self._nodes)

    @property
    def geometries(self) -> list[Node]:
        """The nodes that have datasets of their own."""
        return [node for node in self._nodes if node.kind == "Geometry"]

    @property
    def steps(self) -> list[str]:
        """The names of all steps in the order in which the file has them."""
        return list(dict.fromkeys(dataset.step for node in self.geometries for dataset in node.datasets
                                  if dataset.step))

    def times(self) -> dict[str, float | None]:
        """For each step its time, or its frequency, exactly if the file has that; None without either."""
        result: dict[str, float | None] = {}
        for node in self.geometries:
            for dataset in node.datasets:
                if dataset.step and result.get(dataset.step) is None:
                    result[dataset.step] = _time_of(dataset.attributes)
        return result

    def __getitem__(self, path: str | int) -> Node:
        """The node with this path or id.

        Raises:
            KeyError: if there is none; the text says which part of the path is missing.
        """
        if not isinstance(path, str):
            number = operator.index(path)
            if not 1 <= number <= len(self._nodes):
                raise KeyError(f"there is no node {number}: ids run from 1 to {len(self._nodes)}")
            return self._nodes[number - 1]
        names = _split(path)
        if not names or names[0] != self.root.name:
            raise KeyError(f"the path {path!r} does not begin with the root {self.root.name!r}")
        node = self.root
        for name in names[1:]:
            node = node.child(name)
        return node

    def __contains__(self, path: object) -> bool:
        try:
            self[path]  # type: ignore[index]
        except (KeyError, TypeError):
            return False
        return True

    def __iter__(self) -> Iterator[Node]:
        return iter(self._nodes)

    def __len__(self) -> int:
        return len(self._nodes)

    def __repr__(self) -> str:
        state = "closed" if self.closed else f"{len(self._nodes)} nodes, {len(self.geometries)} geometries, " \
                                             f"{len(self.steps)} steps"
        return f"<moxwriter.File {self._path!r}: {state}>"

    def _repr_html_(self) -> str:
        return f"<b>{_escaped(os.path.basename(self._path))}</b>" + self.root._repr_html_()


class Node(_NotCopied):
    """A node of the assembly: a group, a shape, a geometry, sets of nodes, or a plain node.

    It is a read-only mapping of the datasets of its geometry, also at the shape above it: by name, or by name and
    step, as in `node["Displacement", "Load 1"]`. A name alone finds the dataset that has no step.

    Attributes:
        id: From 1 in order of creation.
        name: Its name.
        kind: "Group", "Shape", "Geometry", "NodeSets", "Node"; "" for the root of an empty model.
        parent_id: The id of the node above; 0 for the root.
    """

    def __init__(self, file: File, id: int, parent_id: int, name: str, kind: str) -> None:
        self.file = file
        self.id = id
        self.parent_id = parent_id
        self.name = name
        self.kind = kind
        self._children: list[Node] = []
        self._content: dict[str, Any] | None = None
        self._datasets: dict[tuple[str, str], Dataset] | None = None

    @property
    def parent(self) -> Node | None:
        """The node above; None for the root."""
        return self.file[self.parent_id] if self.parent_id else None

    @property
    def children(self) -> list[Node]:
        """The nodes below, in order of creation."""
        return list(self._children)

    @property
    def path(self) -> str:
        """What `file[...]` finds it by, unless a sibling before it has the same name."""
        own = self.name.replace("/", "\\/")
        return f"{self.parent.path}/{own}" if self.parent else own

    def child(self, name: str) -> Node:
        """The first child of that name.

        Raises:
            KeyError: if there is none.
        """
        for node in self._children:
            if node.name == name:
                return node
        raise KeyError(f"{self.path!r} has no child {name!r}")

    @property
    def geometry(self) -> Node | None:
        """The node that has the datasets: this one, or the one below a shape."""
        if self.kind == "Geometry":
            return self
        if self.kind == "Shape":
            return next((node for node in self._children if node.kind == "Geometry"), None)
        return None

    def _values(self) -> dict[str, Any]:
        if self._content is None:
            self._content = self.file._open().content(self.id)
        return self._content

    @property
    def attributes(self) -> dict[str, Any]:
        """The attributes of a group; of other nodes none."""
        return dict(self._values().get("attributes", {}))

    @property
    def transform(self) -> dict[str, Any] | None:
        """Of a group "translation" (x, y, z), "rotation" (axis, angle) and "scale"; else None."""
        names = ("translation", "rotation", "scale")
        return {name: tuple(self._values()[name]) for name in names} if self.kind == "Group" else None

    @property
    def material(self) -> dict[str, Any] | None:
        """Of a shape its colours (red, green, blue, alpha), "transparency" and "shininess"; else None."""
        return dict(self._values()) if self.kind == "Shape" else None

    @property
    def sets(self) -> dict[str, npt.NDArray[np.uint32]]:
        """Of a node with sets, the pairs of each: shape (n, 2).

        Raises:
            DamagedFile: if they can't be read.
        """
        with self.file._naming_damage():
            sets = self.file._open().node_sets(self.id)
        return {name: np.array(members, np.uint32).reshape(-1, 2) for name, members in sets}

    def _entries(self) -> dict[tuple[str, str], Dataset]:
        geometry = self.geometry
        if geometry is None:
            return {}
        if geometry._datasets is None:
            entries = enumerate(self.file._open().datasets(geometry.id))
            datasets = [Dataset(geometry, index, entry) for index, entry in entries]
            # A key that comes twice means its first entry.
            geometry._datasets = {(one.name, one.step): one for one in reversed(datasets)}
            geometry._datasets = dict(reversed(geometry._datasets.items()))
        return geometry._datasets

    @property
    def datasets(self) -> list[Dataset]:
        """All datasets of the geometry, in the order of the file."""
        return list(self._entries().values())

    @property
    def steps(self) -> list[str]:
        """The names of the steps that the geometry has datasets in."""
        return list(dict.fromkeys(step for _, step in self._entries() if step))

    def keys(self) -> list[Key]:
        """What `node[...]` takes: names, and pairs of a name and a step."""
        return [(name, step) if step else name for name, step in self._entries()]

    def __getitem__(self, key: Key) -> Dataset:
        """The dataset of this name, or name and step.

        Raises:
            KeyError: if there is none; the text lists those that there are.
        """
        name, step = key if isinstance(key, tuple) else (key, "")
        try:
            return self._entries()[name, step]
        except KeyError:
            raise KeyError(self._missing(name, step)) from None

    def _missing(self, name: str, step: str) -> str:
        steps = [known for dataset, known in self._entries() if dataset == name]
        if steps:
            return f"{name!r} of {self.path!r} has " + ("no step " + repr(step) if step else "steps") + \
                f"; there are {', '.join(map(repr, steps[:_SHOWN_DATASETS]))}"
        names = list(dict.fromkeys(dataset for dataset, _ in self._entries()))
        return f"{self.path!r} has no dataset {name!r}; there are {', '.join(map(repr, names)) or 'none'}"

    def __contains__(self, key: object) -> bool:
        return (key if isinstance(key, tuple) else (key, "")) in self._entries()

    def __iter__(self) -> Iterator[Key]:
        return iter(self.keys())

    def __len__(self) -> int:
        return len(self._entries())

    def __bool__(self) -> bool:
        return True

    def __repr__(self) -> str:
        parts = [f"{len(self._children)} children"] if self._children and self.kind != "Shape" else []
        parts += [f"{len(self._entries())} datasets"] if self.geometry and not self.file.closed else []
        return f"<moxwriter.Node {self.id} {self.kind} {self.path!r}" + "".join(f", {part}" for part in parts) + ">"

    def _repr_html_(self) -> str:
        shown = [node for node in self._children if not (self.kind == "Shape" and node.kind == "Geometry")]
        rows = [dataset._html_row() for dataset in self.datasets[:_SHOWN_DATASETS]]
        if len(self.datasets) > _SHOWN_DATASETS:
            rows.append(f"<li>… {len(self.datasets) - _SHOWN_DATASETS} more datasets</li>")
        rows += [f"<li>{node._repr_html_()}</li>" for node in shown[:_SHOWN_CHILDREN]]
        if len(shown) > _SHOWN_CHILDREN:
            rows.append(f"<li>… {len(shown) - _SHOWN_CHILDREN} more nodes</li>")
        label = f"{_escaped(self.name)} <small>{_escaped(self.kind)} {self.id}</small>"
        return f"<details{' open' if self.parent_id == 0 else ''}><summary>{label}</summary>" \
               f"<ul>{''.join(rows)}</ul></details>"


class Dataset(_NotCopied):
    """An array of a geometry that has not been read yet.

    `read()` reads it; so do `dataset[...]` and NumPy's functions, each time anew, so keep the array.

    Attributes:
        node: The geometry.
        name: Its name.
        step: The name of its step; empty for numbers that belong to no step.
        type: What the numbers are, as "NodeVector" (`VARIABLE_TYPES`); "" for a number that is not known.
        attributes: What describes it, those of the step included.
        is_vibration: Whether it is a mode shape.
        is_link: Whether another entry holds the numbers.
    """

    def __init__(self, node: Node, index: int, entry: Mapping[str, Any]) -> None:
        self.node = node
        self.name: str = entry["name"]
        self.step: str = entry["step"]
        self.type: str = VARIABLE_TYPES.get(entry["type"], "")
        self.is_vibration: bool = entry["vibration"]
        self.is_link: bool = entry["is_link"]
        self.attributes: dict[str, Any] = entry.get("attributes", {})
        self._index = index
        self._holder: tuple[int, int] | None = entry.get("holder")
        self._width: int = entry.get("width", 0)
        self._size: int = entry.get("size", 0)
        self._tag: int = entry.get("element_tag", 0)

    @property
    def dtype(self) -> np.dtype[Any]:
        """float32 or uint32."""
        return _DTYPES.get(self._tag, np.dtype(np.float32))

    @property
    def shape(self) -> tuple[int, ...]:
        """(n,) for one column, else (n, columns)."""
        rows = self._size // (4 * self._width) if self._width else 0
        return (rows,) if self._width == 1 else (rows, self._width)

    @property
    def ndim(self) -> int:
        """1 for one column, else 2."""
        return len(self.shape)

    @property
    def size(self) -> int:
        """How many numbers there are: rows x columns."""
        return self._size // 4

    @property
    def nbytes(self) -> int:
        """Bytes of the numbers in memory."""
        return self._size

    @property
    def holder(self) -> Dataset | None:
        """The dataset that has the numbers: itself, or where links lead; None if they lead nowhere."""
        if self._holder is None:
            return None
        geometry = self.node.file[self._holder[0]]
        if self._holder == (self.node.id, self._index):
            return self
        return next((one for one in geometry.datasets if one._index == self._holder[1]), None)

    def read(self) -> npt.NDArray[Any]:
        """The numbers, in an array of the caller's own.

        Raises:
            DamagedFile: if they can't be read.
        """
        with self.node.file._naming_damage():
            return self.node.file._open().read(self.node.id, self._index)

    def __array__(self, dtype: npt.DTypeLike = None, copy: bool | None = None) -> npt.NDArray[Any]:
        if copy is False:
            raise ValueError("a dataset is read into a new array")
        array = self.read()
        return array if dtype is None else array.astype(dtype, copy=False)

    def __getitem__(self, index: Any) -> Any:
        """What NumPy's index takes out of `read()`: all numbers are read each time."""
        return self.read()[index]

    def __len__(self) -> int:
        return self.shape[0]

    def __repr__(self) -> str:
        step = f" of {self.step!r}" if self.step else ""
        return f"<moxwriter.Dataset {self.name!r}{step}: {self.type or 'unknown type'}, {self.dtype}, {self.shape}>"

    def _html_row(self) -> str:
        step = f" · {_escaped(self.step)}" if self.step else ""
        return f"<li>{_escaped(self.name)}{step} <small>{self.type} {self.dtype} {self.shape}</small></li>"


def _escaped(text: str) -> str:
    """What a page may show: without markup, control characters, and bytes that are no text."""
    visible = "".join(one if one.isprintable() else "\N{REPLACEMENT CHARACTER}" for one in text)
    return html.escape(visible)


def _split(path: str) -> list[str]:
    r"""The names of a path; a slash at its beginning does no harm.

    >>> _split("/car/a\\/b"), _split("car")
    (['car', 'a/b'], ['car'])
    """
    names = path.replace("\\/", "\0").removeprefix("/").split("/")
    return [name.replace("\0", "/") for name in names]


def _time_of(attributes: Mapping[str, Any]) -> float | None:
    for key in ("Time (exact)", "Time", "Frequency (exact)", "Frequency"):
        try:
            return float(attributes[key])
        except (KeyError, TypeError, ValueError):
            continue
    return None
