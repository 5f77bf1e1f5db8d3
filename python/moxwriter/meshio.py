"""The format .mox for meshio.

    import meshio
    import moxwriter.meshio

    mesh = meshio.read("bracket.inp")
    meshio.write("bracket.mox", mesh)

Importing this module registers the format. `meshio.read` takes the last step of a model with several; `read` here
takes any, and `TimeSeriesReader` and `TimeSeriesWriter` all.

What becomes of the parts of a mesh is in docs/python.md.
"""

from __future__ import annotations

import os
import warnings
from types import TracebackType
from typing import Any, Mapping, Sequence

import meshio
import numpy as np

from ._meshes import MeshReader, MeshWriter, Summary
from ._types import Step

__all__ = ["TimeSeriesReader", "TimeSeriesWriter", "read", "register", "write"]

FORMAT = "mox"

# Types that meshio lists with their numbers of nodes, but has no dimension for, so that it can't make blocks of them.
_LEFT_OUT = {"wedge15": 3, "pyramid13": 3, "hexahedron24": 3}


def register() -> None:
    """Registers the format, once; importing this module does."""
    for kind, dimension in _LEFT_OUT.items():
        _dimensions().setdefault(kind, dimension)
    if FORMAT not in meshio._helpers.reader_map:
        meshio.register_format(FORMAT, [".mox"], read, {FORMAT: write})


def _dimensions() -> dict[str, int]:
    table: dict[str, int] = meshio._mesh.topological_dimension
    return table


def open_reader(path: str | os.PathLike[str]) -> MeshReader:
    if not isinstance(path, (str, os.PathLike)):
        raise TypeError("a .mox file is read from a path, not from a buffer")
    return MeshReader(path, _dimensions(), meshio._common.num_nodes_per_cell)


def read(filename: str | os.PathLike[str], step: str | int | None = None) -> meshio.Mesh:
    """Reads a model as one mesh.

    Args:
        step: The name of a step, or its place from 0 (-1 is the last); without it the last one. Data that belongs to
            no step is always there.
    Raises:
        moxwriter.DamagedFile: if the file is not whole.
        KeyError: if there is no such step.
    """
    reader = open_reader(filename)
    try:
        return read_mesh(reader, step)
    finally:
        reader.close()


def read_mesh(reader: MeshReader, step: str | int | None) -> meshio.Mesh:
    """The mesh with the data of one step."""
    name = _step_of(reader, step)
    points, cells = reader.read_points(), reader.read_cells()
    point_data, cell_data = _data(reader, name)
    return meshio.Mesh(points, cells, point_data, cell_data, reader.read_field_data(),
                       point_sets=reader.read_point_sets(), cell_sets=reader.read_cell_sets())


def _step_of(reader: MeshReader, step: str | int | None) -> str:
    if isinstance(step, str):
        if step not in reader.steps:
            raise KeyError(f"there is no step {step!r}; there are {', '.join(map(repr, reader.steps)) or 'none'}")
        return step
    if step is None:
        return reader.steps[-1] if reader.steps else ""
    return reader.steps[step]


def _data(reader: MeshReader, step: str) -> tuple[dict[str, Any], dict[str, list[Any]]]:
    point_data, cell_data = reader.read_point_data(), reader.read_cell_data()
    if step:
        point_data.update(reader.read_point_data(step))
        cell_data.update(reader.read_cell_data(step))
    return point_data, cell_data


def write(filename: str | os.PathLike[str], mesh: meshio.Mesh, name: str | None = None) -> None:
    """Saves a mesh with its data, which belongs to no step then. Replaces the file when it is complete.

    Args:
        name: Of the root of the assembly; without it the name of the file.

    What a model can't take is warned of.
    """
    writer = _open_writer(filename, name)
    try:
        write_mesh(writer, mesh)
        writer.write_data(mesh.point_data, mesh.cell_data)
    except BaseException:
        writer.abandon()
        raise
    _warn(writer.close())


def _open_writer(filename: Any, name: str | None) -> MeshWriter:
    if not isinstance(filename, (str, os.PathLike)):
        raise TypeError("a .mox file is written to a path, not to a buffer")
    return MeshWriter(filename, name=name, source=("meshio", meshio.__version__))


def write_mesh(writer: MeshWriter, mesh: meshio.Mesh) -> None:
    """All but the data."""
    writer.write_mesh(mesh.points, mesh.cells, mesh.point_sets, mesh.cell_sets, mesh.field_data)
    if mesh.gmsh_periodic:
        writer.summary.skip("periodic links", *map(str, range(1, len(mesh.gmsh_periodic) + 1)))


def _warn(summary: Summary) -> None:
    for kind, names in summary.skipped.items():
        warnings.warn(f"not taken: {kind}: {', '.join(names)}", stacklevel=3)


class TimeSeriesReader:
    """Reads all steps of a model, as meshio's reader of XDMF does.

        with TimeSeriesReader("beam.mox") as reader:
            points, cells = reader.read_points_cells()
            for k in range(reader.num_steps):
                t, point_data, cell_data = reader.read_data(k)
    """

    def __init__(self, filename: str | os.PathLike[str]) -> None:
        self._reader = open_reader(filename)
        self._has_mesh = False

    def __enter__(self) -> TimeSeriesReader:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._reader.close()

    @property
    def num_steps(self) -> int:
        return len(self._reader.steps)

    @property
    def steps(self) -> list[str]:
        """Their names."""
        return list(self._reader.steps)

    def read_points_cells(self) -> tuple[Any, list[meshio.CellBlock]]:
        """To be called once, first."""
        if self._has_mesh:
            raise ValueError("the mesh has been read already")
        self._has_mesh = True
        points = self._reader.read_points()
        return points, [meshio.CellBlock(kind, data) for kind, data in self._reader.read_cells()]

    def read_data(self, k: int) -> tuple[float, dict[str, Any], dict[str, list[Any]]]:
        """The time, point data and cell data of the step at place `k`, with what belongs to no step."""
        if not self._has_mesh:
            self.read_points_cells()
        return (self._reader.times[k], *_data(self._reader, self._reader.steps[k]))


class TimeSeriesWriter:
    """Saves a mesh with data of several times, as meshio's writer of XDMF does.

        with TimeSeriesWriter("beam.mox") as writer:
            writer.write_points_cells(points, cells)
            for t in times:
                writer.write_data(t, point_data={"u": u(t)})
    """

    def __init__(self, filename: str | os.PathLike[str], name: str | None = None) -> None:
        self._writer = _open_writer(filename, name)
        self._steps = 0

    def __enter__(self) -> TimeSeriesWriter:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        if error is None:
            _warn(self._writer.close())
        else:
            self._writer.abandon()

    def write_points_cells(self, points: Any, cells: Sequence[Any] | Mapping[str, Any]) -> None:
        write_mesh(self._writer, meshio.Mesh(np.asarray(points), list(cells.items()) if isinstance(cells, Mapping)
                                             else list(cells)))

    def write_data(self, t: float, point_data: Mapping[str, Any] | None = None,
                   cell_data: Mapping[str, Any] | None = None) -> None:
        self._steps += 1
        self._writer.write_data(point_data, cell_data, Step(f"Step {self._steps}", time=float(t)))


register()
