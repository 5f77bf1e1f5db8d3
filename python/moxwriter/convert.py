"""Converts between .mox and the formats that meshio knows, from the terminal.

    python3 -m moxwriter.convert bracket.inp bracket.mox
    python3 -m moxwriter.convert --step last beam.mox beam.vtu
    python3 -m moxwriter.convert beam.mox beam.xdmf
"""

from __future__ import annotations

import argparse
import contextlib
import io
import os
import shutil
import signal
import sys
import tempfile
from pathlib import Path
from typing import TYPE_CHECKING, Any, Callable, Iterator, Sequence

from ._errors import Error
from ._meshes import MeshReader, MeshWriter, Summary, visible
from ._types import Step
from ._version import __version__
from ._writing import compressor

if TYPE_CHECKING:
    import meshio

PROGRAM = "moxwriter.convert"
_SIGNATURE = b"\x89TNF\r\n\x1a\n"
_SERIES = (".xdmf", ".xmf")


class Failure(Exception):
    """What ends a conversion: one line for the user."""


class Ended(BaseException):
    """A signal ends the conversion; whatever is half done is removed on the way out."""

    def __init__(self, number: int) -> None:
        super().__init__()
        self.number = number


class Terminal:
    """Shows a line of progress, where somebody sees it, and notes."""

    def __init__(self, quiet: bool) -> None:
        self._quiet = quiet
        self._shows = not quiet and sys.stderr.isatty()
        self._stream = sys.stderr

    def progress(self, text: str) -> None:
        if self._shows:
            self._stream.write(f"\r{visible(text)}\x1b[K")
            self._stream.flush()

    def note(self, line: str) -> None:
        self.clear()
        if not self._quiet:
            print(line, file=self._stream)

    def clear(self) -> None:
        if self._shows:
            self._stream.write("\r\x1b[K")


# --- Steps


def chosen(steps: Sequence[str], choices: Sequence[str]) -> list[int]:
    """The places of the steps that the user has chosen; all without a choice.

    >>> chosen(["a", "b", "c"], ["2:last"]), chosen(["a", "b", "c"], ["a", "3"])
    ([1, 2], [0, 2])
    """
    if not choices:
        return list(range(len(steps)))
    places: set[int] = set()
    for choice in choices:
        if choice in steps:
            places.add(steps.index(choice))
            continue
        first, colon, last = choice.partition(":")
        low, high = _place(first, steps, choice), _place(last if colon else first, steps, choice)
        if low > high:
            raise Failure(f"--step {choice}: the range ends before it begins")
        places.update(range(low, high + 1))
    return sorted(places)


def _place(text: str, steps: Sequence[str], choice: str) -> int:
    if text in steps:
        return steps.index(text)
    number = {"first": 1, "last": len(steps)}.get(text, int(text) if text.isdecimal() else 0)
    if not 1 <= number <= len(steps):
        raise Failure(f"--step {choice}: there is no such step; there are {len(steps)}"
                      + (f", from {steps[0]!r} to {steps[-1]!r}" if steps else ""))
    return number - 1


# --- meshio, which prints what it has to say and ends the process


def heard(work: Callable[[], Any], what: str, summary: Summary) -> Any:
    """Runs a work of meshio; what it prints becomes notes, and what it fails with a Failure."""
    printed = io.StringIO()
    try:
        with contextlib.redirect_stdout(printed), contextlib.redirect_stderr(printed):
            result = work()
    except SystemExit:
        raise Failure(f"{what}: {_words(printed.getvalue()) or 'meshio gives no reason'}") from None
    except (Error, OSError, MemoryError):
        raise
    except ModuleNotFoundError as missing:
        raise Failure(f"{what}: the Python module {missing.name} is missing") from None
    except Exception as error:  # noqa: BLE001 - readers fail with whatever they meet
        reason = _words(str(error))
        if not reason or type(error).__name__ not in ("ReadError", "WriteError"):
            reason = f"meshio fails with {type(error).__name__}" + (f", {reason}" if reason else "")
        raise Failure(f"{what}: {reason}") from None
    for warning in printed.getvalue().split("Warning:")[1:]:
        summary.note(f"meshio: {_words(warning)}")
    return result


def _words(text: str) -> str:
    return visible(" ".join(text.split()))


def _format_of(path: str, given: str | None, known: Sequence[str]) -> str | None:
    """The name of the format, "mox" or one of meshio; None for those that the extension says."""
    import meshio

    if given is not None:
        if given != "mox" and given not in known:
            raise Failure(f"there is no format {given!r}; meshio knows {', '.join(sorted(known))}")
        return given
    if path.lower().endswith(".mox"):
        return "mox"
    try:
        meshio._helpers._filetypes_from_path(Path(path))
    except meshio.ReadError:
        raise Failure(f"{visible(path)}: meshio knows no format of that extension; name one with --from or --to: "
                      f"{', '.join(sorted(known))}") from None
    return None


def _is_model(path: str) -> bool:
    with open(path, "rb") as stream:
        return stream.read(len(_SIGNATURE)) == _SIGNATURE


# --- To a model


def save_model(request: argparse.Namespace, terminal: Terminal) -> Summary:
    writer = MeshWriter(request.output, name=Path(request.input).stem, source=("moxwriter.convert", __version__),
                        attributes={"Source File": os.path.basename(request.input)})
    try:
        terminal.progress(f"reading {request.shown}")
        if not (request.input.lower().endswith(_SERIES) and _save_series(request, writer, terminal)):
            if request.step:
                raise Failure(f"{visible(request.shown)}: --step needs a file with steps")
            _save_mesh(request, writer, terminal)
        terminal.progress(f"completing {request.output}")
    except BaseException:
        writer.abandon()
        raise
    return writer.close()


def _cant_read(request: argparse.Namespace) -> str:
    return f"{visible(request.shown)}: can't be read"


def _save_mesh(request: argparse.Namespace, writer: MeshWriter, terminal: Terminal) -> None:
    import meshio

    from .meshio import write_mesh

    mesh = heard(lambda: meshio.read(request.input, getattr(request, "from")), _cant_read(request), writer.summary)
    terminal.progress(f"saving {request.output}")
    try:
        write_mesh(writer, mesh)
        writer.write_data(mesh.point_data, mesh.cell_data)
    except ValueError as error:
        raise Failure(f"{visible(request.shown)}: {error}") from None


def _save_series(request: argparse.Namespace, writer: MeshWriter, terminal: Terminal) -> bool:
    """False if the file has no steps."""
    import meshio

    try:
        reader = heard(lambda: meshio.xdmf.TimeSeriesReader(request.input), _cant_read(request), writer.summary)
    except Failure:
        return False
    with contextlib.ExitStack() as stack:
        heard(lambda: stack.enter_context(reader), _cant_read(request), writer.summary)
        points, cells = heard(reader.read_points_cells, _cant_read(request), writer.summary)
        writer.write_mesh(points, cells)
        places = chosen([f"Step {place + 1}" for place in range(reader.num_steps)], request.step)
        for count, place in enumerate(places, start=1):
            terminal.progress(f"step {count} of {len(places)}")
            time, point_data, cell_data = heard(lambda: reader.read_data(place), _cant_read(request), writer.summary)
            writer.write_data(point_data, cell_data, Step(f"Step {place + 1}", time=float(time)))
    return True


# --- From a model


def write_other(request: argparse.Namespace, terminal: Terminal) -> Summary:
    from .meshio import open_reader

    terminal.progress(f"reading {request.shown}")
    reader = open_reader(request.input)
    try:
        places = chosen(reader.steps, request.step)
        with _output_folder(request) as folder:
            if request.output.lower().endswith(_SERIES) and places:
                _write_series(request, reader, places, folder, terminal)
            else:
                _write_mesh(request, reader, places, folder, terminal)
            reader.note_rest()
    finally:
        reader.close()
    return reader.summary


@contextlib.contextmanager
def _output_folder(request: argparse.Namespace) -> Iterator[Path]:
    """A folder beside the output whose files get to their places when all of them are complete.

    It is the working folder meanwhile: some writers of meshio leave their second file there.
    """
    output, before = Path(os.path.realpath(request.output)), os.getcwd()
    folder = Path(tempfile.mkdtemp(prefix=f".{output.name}.", dir=output.parent))
    try:
        os.chdir(folder)
        try:
            yield Path(output.name)
        finally:
            os.chdir(before)
        made = sorted(folder.iterdir(), key=lambda file: file.name == output.name)
        for file in made:
            if (output.parent / file.name).exists() and not request.overwrite:
                raise Failure(f"{visible(str(output.parent / file.name))}: exists; use --overwrite to replace it")
        for file in made:
            os.replace(file, output.parent / file.name)
    finally:
        shutil.rmtree(folder)


def _cant_write(request: argparse.Namespace) -> str:
    return f"{visible(request.output)}: can't be written"


def _write_mesh(request: argparse.Namespace, reader: MeshReader, places: Sequence[int], path: Path,
                terminal: Terminal) -> None:
    import meshio

    from .meshio import read_mesh

    step = reader.steps[places[-1]] if places else ""
    mesh = read_mesh(reader, step or None)
    reader.summary.steps = int(bool(step))
    if len(places) > 1:
        reader.summary.skip("steps", *(reader.steps[place] for place in places[:-1]))
    terminal.progress(f"writing {request.output}")
    heard(lambda: meshio.write(path, mesh, request.to), _cant_write(request), reader.summary)
    terminal.progress(f"reading {request.output} back")
    _note_missing(path, request.to, mesh, reader.summary)


def _write_series(request: argparse.Namespace, reader: MeshReader, places: Sequence[int], path: Path,
                  terminal: Terminal) -> None:
    import meshio

    from .meshio import read_mesh

    mesh = read_mesh(reader, places[0])
    data_format = "HDF" if _has("h5py") else "XML"
    for kind, names in (("sets of points", mesh.point_sets), ("sets of cells", mesh.cell_sets)):
        if names:
            reader.summary.skip(kind, *names)
    with contextlib.ExitStack() as stack:
        writer = heard(lambda: stack.enter_context(meshio.xdmf.TimeSeriesWriter(path, data_format)),
                       _cant_write(request), reader.summary)
        heard(lambda: writer.write_points_cells(mesh.points, mesh.cells), _cant_write(request), reader.summary)
        point_data, cell_data = reader.read_point_data(), reader.read_cell_data()
        for count, place in enumerate(places, start=1):
            terminal.progress(f"step {count} of {len(places)}")
            name = reader.steps[place]
            heard(lambda: writer.write_data(reader.times[place], {**point_data, **reader.read_point_data(name)},
                                            {**cell_data, **reader.read_cell_data(name)}),
                  _cant_write(request), reader.summary)
    reader.summary.steps = len(places)


def _has(module: str) -> bool:
    try:
        __import__(module)
    except ImportError:
        return False
    return True


def _note_missing(path: Path, file_format: str | None, mesh: meshio.Mesh, summary: Summary) -> None:
    """Looks what of a mesh is not in the file that was made of it, where meshio can read that."""
    import meshio

    try:
        found = heard(lambda: meshio.read(path, file_format), "", Summary())
    except (Failure, Error, OSError):
        return
    for kind, before, after in (("point data", mesh.point_data, found.point_data),
                                ("cell data", mesh.cell_data, found.cell_data),
                                ("sets of points", mesh.point_sets, found.point_sets),
                                ("sets of cells", mesh.cell_sets, found.cell_sets)):
        missing = [name for name in before if name not in after]
        if missing:
            summary.skip(kind, *missing)
    cells, others = (sum(len(block) for block in one.cells) for one in (mesh, found))
    if others < cells:
        summary.note(f"{cells - others} of {cells} cells are not in the output")
    if len(found.points) < len(mesh.points):
        summary.note(f"{len(mesh.points) - len(found.points)} of {len(mesh.points)} points are not in the output")


# --- The command


def parser() -> argparse.ArgumentParser:
    made = argparse.ArgumentParser(
        prog=f"python3 -m {PROGRAM}", description="Converts between .mox and the formats that meshio knows.",
        epilog="OUT gets its name when it is complete. What could not be taken is listed at the end.")
    made.add_argument("input", metavar="IN", help="a file; one of IN and OUT is a .mox file")
    made.add_argument("output", metavar="OUT", help="the file to make; its extension says the format")
    made.add_argument("--overwrite", action="store_true", help="replace OUT if it exists")
    made.add_argument("--step", action="append", default=[], metavar="STEP",
                      help="take this step alone: its name, its number from 1, first, last, or a range such as 3:7; "
                           "can be repeated. Formats without steps take the last of them")
    made.add_argument("--from", metavar="FORMAT", help="the format of IN by meshio's name, such as abaqus")
    made.add_argument("--to", metavar="FORMAT", help="the format of OUT by meshio's name, such as gmsh22")
    made.add_argument("--compressor", choices=("zlib", "deflate"), help="what compresses a .mox file")
    made.add_argument("-v", "--verbose", action="store_true", help="list all that was not taken")
    made.add_argument("-q", "--quiet", action="store_true", help="leave out all notes")
    return made


def convert(request: argparse.Namespace, terminal: Terminal) -> Summary:
    """Does what the command line asks for.

    Raises:
        Failure: with one line for the user.
    """
    try:
        import meshio

        from . import meshio as _  # noqa: F401 - registers the format
    except ImportError as missing:
        raise Failure(f"the Python module {missing.name} is missing (Debian: python3-meshio)") from None
    request.shown = request.input
    request.input = os.path.abspath(request.input)
    if not os.path.isfile(request.input):
        raise Failure(f"{visible(request.shown)}: is "
                      + ("a folder" if os.path.isdir(request.input) else "not there"))
    if os.path.exists(request.output) and not os.path.isfile(request.output):
        raise Failure(f"{visible(request.output)}: is no regular file")
    if os.path.lexists(request.output) and not request.overwrite:
        raise Failure(f"{visible(request.output)}: exists; use --overwrite to replace it")
    known = list(meshio._helpers.reader_map)
    is_model = getattr(request, "from") is None and _is_model(request.input)
    source = "mox" if is_model else _format_of(request.input, getattr(request, "from"), known)
    target = _format_of(request.output, request.to, list(meshio._helpers._writer_map))
    if (source == "mox") == (target == "mox"):
        raise Failure("one of IN and OUT must be a .mox file, and the other not")
    if request.compressor:
        compressor(request.compressor)
    return save_model(request, terminal) if target == "mox" else write_other(request, terminal)


def main(arguments: Sequence[str] | None = None) -> int:
    request = parser().parse_args(arguments)
    terminal = Terminal(request.quiet)
    output = request.output
    try:
        summary = convert(request, terminal)
    except Ended as end:
        terminal.clear()
        return 128 + end.number
    except (Failure, Error, OSError, MemoryError, RuntimeError, ValueError) as failure:
        terminal.clear()
        print(f"{PROGRAM}: {_reason(failure)}", file=sys.stderr)
        return 1
    for line in summary.lines(output, request.verbose):
        terminal.note(line)
    return 0


def _reason(failure: BaseException) -> str:
    if isinstance(failure, OSError) and not isinstance(failure, Error) and failure.filename is not None:
        return f"{visible(os.fsdecode(failure.filename))}: {failure.strerror}"
    return _words(str(failure)) or type(failure).__name__


def _end(number: int, frame: object) -> None:
    raise Ended(number)


if __name__ == "__main__":
    for ending in (signal.SIGINT, signal.SIGTERM):
        signal.signal(ending, _end)
    sys.exit(main())
