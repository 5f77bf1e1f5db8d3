"""Saving models."""

from __future__ import annotations

import os
import re
import warnings
from types import TracebackType
from typing import Any, Iterable, Mapping, Sequence, Union

import numpy as np
import numpy.typing as npt

from . import _errors, _writer
from ._types import Attributes, DatasetType, NodeType, PropertyType, Step

INVALID_ID: int = _writer.INVALID_ID
DEFAULT_PATH_SEPARATOR: str = _writer.DEFAULT_PATH_SEPARATOR

#: A node that the next calls refer to by the id that a call of the model returned.
Ids = Union[int, Sequence[int], "npt.NDArray[Any]"]
StepLike = Union[Step, str, Sequence[Union[Step, str]], None]

_INT = range(-2**31, 2**31)
_UNSIGNED = range(0, 2**32)
_DEFAULT_LIMIT = 209_715_200  # of a block, where nothing else is said
_SMALLEST_BLOCK = 1 << 16
_LARGEST_BLOCK = 1 << 30
_LARGEST_CONTENT = 3_400_000_000  # that a block can be compressed from
_SMALLEST_LIMIT = 8  # above the bytes of one number
_LARGEST_LIMIT = 3_000_000_000
_SIX = 6
_NAMED_TYPES = {
    "Coordinates": DatasetType.COORDINATES,
    "Node Ids": DatasetType.NODE_IDS,
    "Element IDs": DatasetType.ELEMENT_IDS,
}


def compressor(name: str | None = None) -> str:
    """Which code compresses the files that this process saves: "zlib" or "deflate".

    With a name it chooses, for all blocks from then on. "deflate" is the library moxwriter-deflate, which takes half
    the time; it must be installed. The files are equal but for some per cent of their size.

    Returns:
        What is in use.
    Raises:
        ValueError: for another name.
        RuntimeError: if "deflate" is not installed.

    >>> compressor("zlib")
    'zlib'
    """
    if name is not None:
        _writer.choose_compressor(name)
    return _writer.compressor()


def compressed_by_deflate() -> int:
    """How many blocks "deflate" has compressed in this process."""
    return _writer.deflate_calls()


class Model:
    """A finite-element model on its way into a file.

    An assembly tree of groups and shapes, and numbers on the geometry of the shapes. Nodes have ids, from 1 in order
    of creation. One node is the *current* node; new nodes go below it.

    >>> import tempfile
    >>> path = os.path.join(tempfile.mkdtemp(), "cube.mox")
    >>> with Model(path, source=("solver", "1.0")) as model:
    ...     root = model.add_node(NodeType.GROUP, "Assembly")
    ...     cube = model.add_node(NodeType.SHAPE, "Cube")
    ...     model.add_array(cube, "Coordinates", np.zeros((8, 3), np.float32))
    ...     model.add_array(cube, "Displacement", np.ones((8, 3), np.float32), step=Step("Load 1", time=0.1))
    >>> cube
    3

    Args:
        path: The file. Without a path the model is empty until `save_to`.
        overwrite: Whether an existing file is replaced.
        source: The application, and its version.
        block_size: From how many bytes on a block of the file is full, from 65536 to 1073741824, and the step by
            which buffers grow. Smaller blocks take less memory. Without it the environment variable
            MOXWRITER_DEFAULT_BLOCK_SIZE counts, else 209715200 for the block and 10485760 for the step.

    What a call did before it failed stays done, and the model stays usable; only after a failed `close` it is lost.
    All calls of all models take turns, so a model can be used by any thread; while numbers are compressed, other
    threads of Python run. A model can be neither copied nor pickled, and must not be used in a child after a fork.
    """

    def __init__(self, path: str | os.PathLike[str] | None = None, *, overwrite: bool = False,
                 source: str | tuple[str, str] | None = None, block_size: int | None = None) -> None:
        if block_size is not None and not _SMALLEST_BLOCK <= block_size <= _LARGEST_BLOCK:
            raise ValueError(f"block_size is {block_size}, and must be from {_SMALLEST_BLOCK} to {_LARGEST_BLOCK}")
        self._block_size = block_size
        self._path: str | None = None
        self._limit: int | None = None
        self._native = _writer.Model(block_size or 0)
        if path is not None:
            try:
                self.save_to(path, overwrite=overwrite, source=source)
            except BaseException:
                self.close()
                raise

    def save_to(self, path: str | os.PathLike[str], *, overwrite: bool = False,
                source: str | tuple[str, str] | None = None) -> None:
        """Opens the file and writes its first bytes. The model is then open, with no node.

        Raises:
            InvalidObjectState: if the model is open.
            FileOpenException: if the file exists and must not be replaced.
            MiscelleneousException: if the file can't be opened.
        """
        name, version = (source, "") if isinstance(source, str) else source or ("", "")
        try:
            self._native.save_to(os.fsencode(path), overwrite, _bytes(name), _bytes(version), b"")
        except _errors.InvalidObjectState:
            raise
        except _errors.WriterError:
            # The library is open now, without a file: whatever was added would be lost.
            self._native.close()
            raise
        self._path = os.fspath(path)
        self._limit = None

    @property
    def path(self) -> str | None:
        """The file that is being written; None for an empty model."""
        return self._path

    @property
    def closed(self) -> bool:
        """Whether the model is empty: not opened yet, or closed."""
        return self._path is None

    def close(self) -> None:
        """Writes everything that is still in memory, completes the file and closes it.

        It then looks whether all blocks are in the file, since the results of writes are not examined before. Does
        nothing on an empty model.

        Raises:
            IncompleteFile: if the file is not whole: the disk is full, for example.
            WriterError: if the file could not be completed. The model is then empty, and what it held is lost.
        """
        path, self._path = self._path, None
        self._native.close()
        if path is not None and os.path.isfile(path):
            _require_whole(path)

    def __enter__(self) -> Model:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        try:
            self.close()
        except Exception as failure:  # noqa: BLE001 - the first exception is the one that matters
            if error is None:
                raise
            error.add_note(f"Closing the model failed too: {failure}")

    def __del__(self) -> None:
        if getattr(self, "_path", None) is not None:
            warnings.warn(f"the model {self._path!r} was never closed", ResourceWarning, source=self, stacklevel=2)
            try:
                self.close()
            except Exception as failure:  # noqa: BLE001 - nobody could catch it
                warnings.warn(f"the model was lost: {failure}", ResourceWarning, stacklevel=2)

    def __repr__(self) -> str:
        return f"<moxwriter.Model {'empty' if self.closed else f'writing {self._path!r}'}>"

    def __copy__(self) -> Model:
        raise TypeError("a model can't be copied: it is a file that is being written")

    def __deepcopy__(self, memo: object) -> Model:
        return self.__copy__()

    def __reduce_ex__(self, protocol: object) -> Any:
        raise TypeError("a model can't be pickled: it is a file that is being written")

    # --- The tree

    def add_node(self, type: NodeType, name: str, attributes: Attributes | None = None) -> int:
        """Adds a node below the current node, or the first node of the model, and makes it current.

        A shape below another node gets a geometry of the same name below it, whose id is returned: the one that
        `add_array` takes. To add a sibling of a shape, first call `move_to_parent_node` twice.

        Args:
            attributes: Kept for groups; ignored for shapes.
        Returns:
            The id of the node that is now current.
        Raises:
            InvalidObjectState: if the model is not open.
            InvalidArguments: for a root type below the first node, and for an attribute that a file can't keep.
            KeyNotFound: if a failed `add_array` left an id current that is not in the tree.
        """
        return self._native.add_node(int(type), _bytes(name), _attributes(attributes))

    def add_group(self, name: str, attributes: Attributes | None = None) -> int:
        """`add_node` for a group."""
        return self.add_node(NodeType.GROUP, name, attributes)

    def add_shape(self, name: str) -> int:
        """`add_node` for a shape; returns the id of its geometry."""
        return self.add_node(NodeType.SHAPE, name)

    def set_current_node_id(self, id: int) -> None:
        """Makes the node `id` current.

        Raises:
            InvalidObjectState: if the model is not open.
            OutOfBounds: if there is no such node. The current node stays the same.
        """
        self._native.set_current_node_id(_id(id))

    def move_to_parent_node(self) -> None:
        """Makes the parent of the current node current; at the root it does nothing.

        Raises:
            InvalidObjectState: if the model is not open.
        """
        self._native.move_to_parent_node()

    def get_node_id(self, path: str | Sequence[str], separator: str = DEFAULT_PATH_SEPARATOR) -> int:
        """Looks up a node, and makes the root current.

        Args:
            path: "/car/body/door": for each level from the root on, the separator and the node's name; or the names
                as a list or tuple, which then can hold separators.
        Returns:
            The id, or 0 if there is no such node.
        Raises:
            InvalidObjectState: if the model is not open.
            PositionError: for a path that names only the root, whose id is 1.
        """
        if isinstance(path, str):
            return self._native.get_node_id(_bytes(path), _bytes(separator))
        return self._native.get_node_id_of([_bytes(name) for name in path])

    def add_assembly_components(self, paths: Iterable[str] | Mapping[str, Attributes | None],
                                separator: str = DEFAULT_PATH_SEPARATOR) -> list[int]:
        """Merges paths into the tree: adds the nodes that are missing and finds those that exist.

        A path begins with the separator and the root's name. One that ends in the separator names a group, any other
        a shape with its geometry. Leaves the last node of the last path current.

        Args:
            paths: Texts; or a mapping from texts to attributes, which is taken in ascending order of its keys.
                The attributes are checked and then dropped; set them with `set_node_data`.
        Returns:
            One id for each path: of the group, or of the shape's geometry.
        Raises:
            InvalidObjectState: if the model is not open.
            InvalidArguments: for a path that does not begin with the separator. Nodes of the paths before it stay.
            NotYetImplemented: for a path below another root.
        """
        if isinstance(paths, str):
            raise TypeError("paths must be several texts, not one")
        if isinstance(paths, Mapping):
            items = [(_bytes(path), _attributes(attributes)) for path, attributes in paths.items()]
            return self._native.add_assembly_components_with(items, _bytes(separator))
        return self._native.add_assembly_components([_bytes(path) for path in paths], _bytes(separator))

    def set_node_data(self, id: int, properties: Mapping[PropertyType, Any] | None = None,
                      attributes: Attributes | None = None, **named: Any) -> None:
        """Sets properties and attributes of a node and makes it current. A geometry stands for its shape.

        Args:
            properties: Values by type.
            attributes: Added to those of a group; ignored for other nodes.
            named: Values by the names of their types in lower case, as in `diffuse_color=(1, 0, 0)`.
        Raises:
            InvalidObjectState: if the model is not open.
            OutOfBounds: if there is no such node.
            InvalidArguments: for a property that the node doesn't have, or a wrong number of values.
            TemplateSpecializationNotDefined: for a value of the wrong type, and for `SHAPE_SWITCH`.
        """
        values = dict(properties or {})
        for name, value in named.items():
            if name.upper() not in PropertyType.__members__:
                raise TypeError(f"there is no property {name!r}; there are "
                                + ", ".join(kind.name.lower() for kind in PropertyType))
            values[PropertyType[name.upper()]] = value
        items = [(int(key), *_property(value)) for key, value in values.items()]
        self._native.set_node_data(_id(id), items, _attributes(attributes))

    # --- Numbers

    def add_array(self, ids: Ids, name: str | DatasetType, array: npt.ArrayLike, *, type: DatasetType | None = None,
                  step: StepLike = None, attributes: Attributes | None = None, convert: bool = False) -> None:
        """Writes an array once and attaches it to geometries, for one step or several.

        The first geometry and step hold the numbers; all others refer to them. A name that a geometry already has in
        a step is overwritten. The array can be reused as soon as the call returns. The last of the ids is then current.

        Args:
            ids: Geometries, as `add_node` and `add_assembly_components` return them.
            name: The name of the dataset; or a type, whose own name it gets.
            array: One row for each node or element: (n, 3) for a vector; (n,) or (n, 1) for a scalar. float32 and
                uint32 in C order are taken as they are. Other orders and types are converted if that is exact; lists
                and other Python numbers always are.
            type: What the numbers are. It can be left out for "Coordinates", "Displacement", "Node Ids" and
                "Element IDs".
            step: A `Step`, the name of one, several of them, or None for numbers that belong to no step. Of several
                steps, only the attributes of the first reach the file.
            attributes: Describe the dataset; where a step has the same key, these win.
            convert: Whether float64 is rounded to float32 (beyond its range to infinity) and integers become uint32.

        Raises:
            TypeError: for an array that would lose something by a conversion that was not asked for.
            ValueError: for integers that do not fit into uint32, for an array that is too large (divide it), and for
                an id or a step that comes twice.
            InvalidArguments: for a wrong number of columns, and for a name that is needed and missing.
            KeyNotFound: for an id that is not in the tree; that id is then current.
            InvalidObjectState: if the model is not open.
        """
        kind, text = _type_and_name(name, type, array)
        nodes = _ids(ids)
        steps = _steps(step)
        numbers = as_numbers(array, convert=convert)
        self._require_room(numbers.nbytes)
        if numbers.nbytes >= self._block_limit():
            # The library loses track of the place of a block that a single array has filled from its beginning on.
            # One number before the array, which belongs to no dataset, begins the block.
            self._native.add_array(b"", int(DatasetType.NODE_IDS), np.zeros((1, 1), np.uint32), nodes, [], [])
        self._native.add_array(text, kind, numbers, nodes, steps, _attributes(attributes))

    # The limit that the library takes when the first array is put.
    def _block_limit(self) -> int:
        if self._limit is None:
            limit = self._block_size or environment_limit()
            if not _SMALLEST_LIMIT <= limit <= _LARGEST_LIMIT:
                raise ValueError(f"MOXWRITER_DEFAULT_BLOCK_SIZE means {limit}, with which files would lose numbers; "
                                 f"it must be from {_SMALLEST_LIMIT} to {_LARGEST_LIMIT}")
            self._limit = limit
        return self._limit

    def _require_room(self, size: int) -> None:
        largest = _LARGEST_CONTENT - self._block_limit()
        if size > largest:
            raise ValueError(f"an array of {size} bytes is too large: divide it into arrays of {largest} at most")


def environment_limit() -> int:
    """The size of a full block as the library takes it from its environment: digits, or 0 where there are none."""
    text = os.environ.get("MOXWRITER_DEFAULT_BLOCK_SIZE")
    found = re.match(r"[ \t\n\v\f\r]*([+-]?)([0-9]*)", text or "")
    if text is None or found is None:
        return _DEFAULT_LIMIT
    number = int(found[2] or 0)
    number = number if number >= 2**32 else (-number if found[1] == "-" else number) % 2**32
    return _DEFAULT_LIMIT if number >= 2**32 - 1 else number


def _require_whole(path: str) -> None:
    from . import _reader

    try:
        _reader.require_whole(os.fsencode(path))
    except _errors.DamagedFile as damage:
        error = _errors.IncompleteFile(f"{path}: the saved file is not whole: {damage.text}; is the disk full?")
        raise error from damage


def _bytes(text: str) -> bytes:
    if not isinstance(text, str):
        raise TypeError(f"a text is needed, not {type(text).__name__}")
    return text.encode("utf-8", "surrogateescape")


def _id(value: Any) -> int:
    number = _integer(value)
    if number not in _UNSIGNED:
        raise ValueError(f"{number} is not a node id")
    return number


def _integer(value: Any) -> int:
    try:
        return int(value.__index__())
    except AttributeError:
        raise TypeError(f"a node id is an integer, not {type(value).__name__}") from None


def _ids(ids: Ids) -> list[int]:
    single = isinstance(ids, (int, np.integer))
    nodes = [_id(ids)] if single else [_id(one) for one in ids]  # type: ignore[union-attr]
    if len(set(nodes)) != len(nodes):
        raise ValueError("an id comes twice: its numbers would be out of reach")
    return nodes


def _steps(step: StepLike) -> list[tuple[bytes, list[tuple[bytes, str, Any]]]]:
    if step is None:
        step = Step()
    several: Sequence[Step | str] = [step] if isinstance(step, (Step, str)) else step
    steps = [Step(one) if isinstance(one, str) else one for one in several]
    if len({one.name for one in steps}) != len(steps):
        raise ValueError("a step comes twice: its numbers would be out of reach")
    return [(_bytes(one.name), _attributes(one.all_attributes())) for one in steps]


def _type_and_name(name: str | DatasetType, kind: DatasetType | None, array: Any) -> tuple[int, bytes | None]:
    if not isinstance(name, str):
        if kind is not None and kind != name:
            raise TypeError("a type instead of a name and another type")
        return int(name), None
    if kind is None:
        kind = _type_of_name(name, array)
    return int(kind), _bytes(name)


def _type_of_name(name: str, array: Any) -> DatasetType:
    if name == "Displacement":
        return DatasetType.DISPLACEMENT_SIX if np.shape(array)[-1:] == (_SIX,) else DatasetType.DISPLACEMENT_VECTOR
    if name in _NAMED_TYPES:
        return _NAMED_TYPES[name]
    raise TypeError(f"the name {name!r} does not say what the numbers are: add type=DatasetType.NODE_SCALAR, or another")


# --- Attributes and properties: (key, letter of the kind, value), as the native module takes them.


def _attributes(attributes: Attributes | None) -> list[tuple[bytes, str, Any]]:
    return [(_bytes(key), *_value(value)) for key, value in (attributes or {}).items()]


def _value(value: Any) -> tuple[str, Any]:
    if isinstance(value, str):
        return "s", _bytes(value)
    if isinstance(value, (bool, np.bool_)):
        return "i", int(value)
    if isinstance(value, (int, np.integer)):
        return _integer_kind([int(value)]), int(value)
    if isinstance(value, (float, np.floating)):
        return "f", float(value)
    return _values(value)


def _values(values: Any) -> tuple[str, Any]:
    array = np.asarray(values)
    if array.ndim == 1 and array.dtype.kind in "iu":
        numbers = [int(one) for one in array]
        return _integer_kind(numbers).upper(), numbers
    if array.ndim == 1 and array.dtype.kind == "f":
        return "F", [float(one) for one in array]
    raise TypeError(f"an attribute or property is a text, a number or a list of numbers, not {values!r}")


def _integer_kind(numbers: list[int]) -> str:
    if all(number in _INT for number in numbers):
        return "i"
    if all(number in _UNSIGNED for number in numbers):
        return "u"
    raise ValueError(f"an integer of an attribute has 32 bits; give {numbers[0]} as a text")


# Integers are fine for numbers that the library knows as floats.
def _property(value: Any) -> tuple[str, Any]:
    if isinstance(value, (bool, np.bool_)):
        return "i", int(value)
    if isinstance(value, (int, float, np.integer, np.floating)):
        return "f", float(value)
    if isinstance(value, str):
        return "s", _bytes(value)
    return "F", [float(one) for one in np.asarray(value, dtype=np.float64)]


# --- Arrays


def as_numbers(array: npt.ArrayLike, *, convert: bool = False) -> npt.NDArray[Any]:
    """A C-contiguous table of float32 or uint32: the array itself where that is possible.

    >>> as_numbers([1, 2]).dtype, as_numbers([1, 2]).shape
    (dtype('uint32'), (2, 1))
    >>> as_numbers(np.zeros(3))
    Traceback (most recent call last):
    ...
    TypeError: float64 does not go into float32 without loss: give float32, or say convert=True
    """
    if isinstance(array, np.ma.MaskedArray):
        raise TypeError("a masked array has no numbers where it is masked: fill it first, with filled(numpy.nan)")
    numbers = np.asarray(array)
    convert = convert or not hasattr(array, "dtype")
    if numbers.ndim not in (1, 2):
        raise TypeError(f"an array has one or two dimensions, not {numbers.ndim}")
    if numbers.size == 0 and not hasattr(array, "dtype"):
        numbers = numbers.astype(np.float32)
    numbers = np.ascontiguousarray(_narrowed(numbers, convert))
    return numbers.reshape(numbers.shape[0], 1) if numbers.ndim == 1 else numbers


def _narrowed(numbers: npt.NDArray[Any], convert: bool) -> npt.NDArray[Any]:
    if numbers.dtype.kind not in "buif":
        raise TypeError(f"an array of {numbers.dtype} can't be saved: give float32 or uint32")
    target = np.dtype(np.float32 if numbers.dtype.kind == "f" else np.uint32)
    if np.can_cast(numbers.dtype, target, "safe"):
        return numbers.astype(target, copy=False)
    if not convert:
        raise TypeError(f"{numbers.dtype} does not go into {target} without loss: give {target}, or say convert=True")
    if numbers.dtype.kind in "iu" and numbers.size and not (numbers.min() >= 0 and numbers.max() < 2**32):
        raise ValueError(f"integers from {numbers.min()} to {numbers.max()} do not fit into uint32: give float32")
    return numbers.astype(target)
