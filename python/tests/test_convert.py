import contextlib
import io
import os
import signal
import subprocess
import sys
import time
from pathlib import Path
from types import SimpleNamespace

import moxwriter
import numpy as np
import pytest
from support import mox

meshio = pytest.importorskip("meshio")

from moxwriter.convert import Failure, chosen, main  # noqa: E402
from moxwriter.meshio import TimeSeriesReader, TimeSeriesWriter  # noqa: E402

DATA = Path(os.environ.get("MOXWRITER_DATA_DIR", "none"))


def convert(*arguments, folder):
    """The command in this process, in a folder."""
    stdout, stderr, before = io.StringIO(), io.StringIO(), os.getcwd()
    os.chdir(folder)
    try:
        with contextlib.redirect_stdout(stdout), contextlib.redirect_stderr(stderr):
            code = main([str(argument) for argument in arguments])
    finally:
        os.chdir(before)
    return SimpleNamespace(returncode=code, stdout=stdout.getvalue(), stderr=stderr.getvalue())


def test_the_command_runs_as_a_module(tmp_path, plate):
    meshio.write(tmp_path / "plate.inp", plate)
    done = subprocess.run([sys.executable, "-m", "moxwriter.convert", "plate.inp", "plate.mox"], cwd=tmp_path,
                          capture_output=True, text=True, check=False)
    assert (done.returncode, done.stdout) == (0, ""), done.stderr
    assert done.stderr.startswith("plate.mox: shapes: 2, ")


@pytest.fixture
def plate():
    points = np.array([[x, y, 0] for y in range(3) for x in range(3)], float)
    quads = np.array([[0, 1, 4, 3], [1, 2, 5, 4], [3, 4, 7, 6]])
    return meshio.Mesh(points, [("quad", quads), ("triangle", np.array([[4, 5, 8], [4, 8, 7]]))],
                       point_data={"T": np.arange(9.0)}, cell_data={"s": [np.arange(3.0), np.arange(2.0)]},
                       point_sets={"fixed": np.array([0, 1])})


@pytest.fixture
def series(tmp_path, plate):
    with TimeSeriesWriter(tmp_path / "series.mox") as writer:
        writer.write_points_cells(plate.points, plate.cells)
        for number in range(4):
            writer.write_data(number / 8, {"T": np.full(9, float(number))}, {"s": [np.ones(3) * number, np.ones(2)]})
    return tmp_path / "series.mox"


@pytest.mark.parametrize("extension", [".inp", ".bdf", ".med", ".mesh", ".vtk", ".vtu"])
def test_meshes_go_to_a_model_and_back(tmp_path, plate, extension):
    source, back = tmp_path / f"plate{extension}", tmp_path / f"back{extension}"
    meshio.write(source, plate)
    there = convert(source, "plate.mox", folder=tmp_path)
    assert there.returncode == 0, there.stderr
    assert there.stderr.startswith("plate.mox: shapes: 2, nodes: 9, elements: 5, steps: 0, datasets: ")
    assert mox("check", tmp_path / "plate.mox").stdout == f"{tmp_path / 'plate.mox'}: whole\n"
    again = convert("plate.mox", back, folder=tmp_path)
    assert again.returncode == 0, again.stderr
    first, second = meshio.read(source), meshio.read(back)
    assert np.allclose(first.points, second.points)
    assert [one.type for one in first.cells] == [one.type for one in second.cells]
    assert all(np.array_equal(one.data, other.data) for one, other in zip(first.cells, second.cells))
    with moxwriter.open(tmp_path / "plate.mox") as file:
        assert file.root.name == "plate" and file.root.attributes["Source File"] == source.name


def test_what_the_other_format_leaves_out_is_listed(tmp_path, plate):
    meshio.write(tmp_path / "plate.vtu", plate)
    assert convert("plate.vtu", "plate.mox", folder=tmp_path).returncode == 0
    done = convert("plate.mox", "plate.inp", folder=tmp_path)
    assert done.returncode == 0
    assert "not taken: point data: 2 (T, fixed)\nnot taken: cell data: 1 (s)\n" in done.stderr


def test_cells_that_the_other_format_leaves_out_are_counted(tmp_path, series):
    done = convert("series.mox", "a.xml", folder=tmp_path)
    assert done.returncode == 0 and "note: 3 of 5 cells are not in the output\n" in done.stderr


def test_rounded_numbers_are_counted(tmp_path, plate):
    plate.point_data["T"] = np.full(9, 0.1)
    meshio.write(tmp_path / "plate.vtu", plate)
    done = convert("plate.vtu", "plate.mox", folder=tmp_path)
    assert "note: numbers rounded to float: 9, the largest relative loss is 1.5e-08\n" in done.stderr


def test_a_series_goes_to_xdmf_and_back_with_its_times(tmp_path, series):
    (tmp_path / "out").mkdir()
    done = convert("series.mox", "out/series.xdmf", folder=tmp_path)
    assert done.returncode == 0, done.stderr
    assert "steps: 4" in done.stderr
    assert {file.name for file in (tmp_path / "out").iterdir()} <= {"series.xdmf", "series.h5"}
    back = convert("out/series.xdmf", "back.mox", folder=tmp_path)
    assert back.returncode == 0, back.stderr
    with TimeSeriesReader(tmp_path / "back.mox") as reader:
        reader.read_points_cells()
        times, points, cells = zip(*(reader.read_data(k) for k in range(reader.num_steps)))
    assert times == (0, 0.125, 0.25, 0.375)
    assert [one["T"][0] for one in points] == [0, 1, 2, 3]
    assert [one["s"][0].tolist() for one in cells] == [[number] * 3 for number in range(4)]


def test_chosen_steps_alone_are_taken(tmp_path, series):
    done = convert("--step", "2:3", "series.mox", "part.xdmf", folder=tmp_path)
    assert done.returncode == 0 and "steps: 2" in done.stderr
    assert convert("--step", "2", "part.xdmf", "part.mox", folder=tmp_path).returncode == 0
    with moxwriter.open(tmp_path / "part.mox") as file:
        assert file.times() == {"Step 2": 0.25}


def test_formats_without_steps_take_the_last_and_list_the_others(tmp_path, series):
    done = convert("series.mox", "last.vtu", folder=tmp_path)
    assert "not taken: steps: 3 (Step 1, Step 2, Step 3)\n" in done.stderr
    assert meshio.read(tmp_path / "last.vtu").point_data["T"][0] == 3
    done = convert("--step", "Step 2", "series.mox", "second.vtu", folder=tmp_path)
    assert "not taken" not in done.stderr
    assert meshio.read(tmp_path / "second.vtu").point_data["T"][0] == 1


@pytest.mark.parametrize("arguments, reason", [
    (["none.inp", "a.mox"], "none.inp: is not there"), (["folder", "a.mox"], "folder: is a folder"),
    (["text.inp", "a.mox"], "can't be read"), (["text.odd", "a.mox"], "meshio knows no format of that extension"),
    (["text.mox", "a.vtu"], "signature"), (["text.inp", "b.vtu"], "must be a .mox file"),
    (["--from", "odd", "text.inp", "a.mox"], "there is no format 'odd'; meshio knows abaqus"),
    (["series.mox", "series.stl", "--step", "9"], "--step 9: there is no such step; there are 4"),
    (["series.mox", "series.e"], "series.e: "), (["series.mox", "text.inp"], "exists; use --overwrite"),
    (["series.mox", "nowhere/a.vtu"], "nowhere"),
    (["vertices.mox", "a.inp"], "can't be written: meshio fails with KeyError, 'vertex'"), (["--step", "1", "plate.vtu", "a.mox"], "--step needs"),
])
def test_failures_are_one_line_and_leave_nothing(tmp_path, series, plate, arguments, reason):
    (tmp_path / "folder").mkdir()
    for name in ("text.inp", "text.odd", "text.mox"):
        (tmp_path / name).write_text("*NODE\n1, a, b, c\n" * 900)
    meshio.write(tmp_path / "plate.vtu", plate)
    meshio.write(tmp_path / "vertices.mox", meshio.Mesh(plate.points, [("vertex", np.array([[0]]))]))
    if arguments[-1] == "series.e":
        try:
            import netCDF4  # noqa: F401
        except ImportError:
            reason = "the Python module netCDF4 is missing"
        else:
            pytest.skip("netCDF4 is installed, so Exodus files can be written")
    before = sorted(tmp_path.iterdir())
    done = convert(*arguments, folder=tmp_path)
    assert done.returncode == 1 and done.stdout == ""
    assert done.stderr.startswith("moxwriter.convert: ") and done.stderr.count("\n") == 1, done.stderr
    assert reason in done.stderr
    assert sorted(tmp_path.iterdir()) == before


def test_a_signal_leaves_nothing(tmp_path):
    big = meshio.Mesh(np.random.default_rng(0).random((1000000, 3)), [("vertex", np.arange(1000000)[:, None])])
    meshio.write(tmp_path / "big.vtk", big)
    command = subprocess.Popen([sys.executable, "-m", "moxwriter.convert", "big.vtk", "big.mox"], cwd=tmp_path,
                               stderr=subprocess.DEVNULL)
    deadline = time.monotonic() + 60
    while len(list(tmp_path.iterdir())) < 2 and time.monotonic() < deadline:
        time.sleep(0.01)
    command.send_signal(signal.SIGTERM)
    assert command.wait(timeout=60) == 128 + signal.SIGTERM
    assert [file.name for file in tmp_path.iterdir()] == ["big.vtk"]


def test_devices_are_not_replaced(tmp_path, plate, series):
    meshio.write(tmp_path / "plate.inp", plate)
    for arguments in (("--to", "mox", "plate.inp"), ("--to", "vtk", "series.mox")):
        done = convert("--overwrite", *arguments, os.devnull, folder=tmp_path)
        assert done.returncode == 1 and done.stderr == f"moxwriter.convert: {os.devnull}: is no regular file\n"


def test_outputs_are_replaced_when_asked(tmp_path, series):
    (tmp_path / "a.vtk").write_text("old")
    assert convert("--overwrite", "-q", "series.mox", "a.vtk", folder=tmp_path).stderr == ""
    assert meshio.read(tmp_path / "a.vtk").point_data["T"][0] == 3


def test_a_model_is_known_by_its_content(tmp_path, series):
    os.rename(series, tmp_path / "model.bin")
    assert convert("model.bin", "a.vtu", folder=tmp_path).returncode == 0


@pytest.mark.parametrize("choice, places", [("first", [0]), ("2", [1]), ("b", [1]), ("2:last", [1, 2])])
def test_steps_are_chosen_as_mox_does(choice, places):
    assert chosen(["a", "b", "c"], [choice]) == places


@pytest.mark.parametrize("choice", ["0", "4", "d", "3:2", ":", "-1"])
def test_steps_that_are_not_there_are_refused(choice):
    with pytest.raises(Failure):
        chosen(["a", "b", "c"], [choice])


@pytest.mark.skipif(not (DATA / "horn.msh").exists(), reason="the models of others are not here")
def test_a_mesh_of_others_is_converted(tmp_path):
    done = convert(DATA / "horn.msh", "horn.mox", folder=tmp_path)
    assert done.returncode == 0, done.stderr
    assert "shapes: 2, nodes: 10754, elements: 5366" in done.stderr
    assert mox("check", tmp_path / "horn.mox").stdout == f"{tmp_path / 'horn.mox'}: whole\n"
