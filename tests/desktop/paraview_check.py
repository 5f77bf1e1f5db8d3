"""Opens models in ParaView and compares what it holds with what the reader in Python finds; leaves pictures.

Run by pvbatch with MoxReader in PV_PLUGIN_PATH: paraview_check.py GOLDEN MODELS PICTURES
"""

import math
import os
import sys
from pathlib import Path

import numpy
import paraview.simple as simple
from paraview import servermanager
from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkIOImage import vtkPNGReader

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "reader" / "python"))

import moxreader  # noqa: E402

NODAL, ELEMENTAL = range(12, 16), range(16, 20)
RESULTS = {12: 1, 13: 3, 14: 6, 15: 6, 16: 1, 17: 3, 18: 6, 19: 6}
# The types of the cells in the models made of files of others, block by block: VTK's number and how many there are.
MESHES = {
    "8-block": [{12: 8}] * 8,
    "BC_without_parents": [{12: 3840}, {9: 240}, {9: 240}, {9: 768}],
    "exomerge_unit_test": [{12: 200}, {12: 675}, {12: 200}, {12: 25}, {12: 200}],
    "horn": None,
    "mode_solid_shell_bar": [{12: 1}, {13: 2}, {10: 2}, {9: 4}, {5: 8}, {3: 1}, {3: 1}, {3: 2}],
    "mug": [{12: 1716}, {12: 760}],
    "seismic_force_test_z_out": [{12: 640}],
    "test-assembly": [{1: 1}] * 7,
}

failures = []


def check(is_right, complaint):
    if not is_right:
        failures.append(complaint)
        print("FAILED:", complaint, file=sys.stderr)


def opened(path):
    reader = simple.OpenDataFile(str(path))
    check(type(reader).__name__ == "MoxReader", f"{path.name}: File > Open takes {type(reader).__name__}")
    reader.UpdatePipeline()
    return reader


def output(reader):
    return reader.GetClientSideObject().GetOutputDataObject(0)


def grids_of(reader):
    """The names and the meshes of the parts."""
    collection = output(reader)
    names = []
    for place in range(collection.GetNumberOfPartitionedDataSets()):
        name = collection.GetMetaData(place).Get(collection.NAME())
        names.append((name, collection.GetPartition(place, 0)))
    return names


class Expected:
    """A part as the reader in Python finds it, without NumPy."""

    def __init__(self, model, node):
        self.name = node.name
        self.datasets = [each for each in node.content.datasets if each.variable_type in RESULTS]
        self._model = model
        static = {each.variable_type: each for each in reversed(node.content.datasets)
                  if not each.step and each.name != "Part Elements"}
        connectivity = [static.get(kind) for kind in (4, 5, 6) if kind in static]
        self.is_part = 1 in static and 9 in static and bool(connectivity)
        if self.is_part:
            self.points = [place_of(model, node, point) for point in self.rows(static[1])]
            self.nodes = [row[0] for row in self.rows(connectivity[0])]
            self.lengths = [row[0] for row in self.rows(static[9])]
            self.used = sorted(set(self.nodes))

    def rows(self, dataset):
        numbers, width = self._model.numbers(dataset), self._model.holder(dataset).width
        return [numbers[place:place + width] for place in range(0, len(numbers), width)]

    def fits(self, dataset):
        items = len(self.points) if dataset.variable_type in NODAL else len(self.lengths)
        holder = self._model.holder(dataset)
        return holder is not None and holder.size == 4 * items * RESULTS[dataset.variable_type]


def place_of(model, node, point):
    """Where a point of a node is after the transforms of all groups above it."""
    while node.parent:
        node = model.node(node.parent)
        if isinstance(node.content, moxreader.Group):
            point = moved(node.content, point)
    return point


def moved(group, point):
    x, y, z = (each * factor for each, factor in zip(point, group.scale))
    a, b, c, angle = group.rotation
    length = math.sqrt(a * a + b * b + c * c)
    if angle and length:
        a, b, c = a / length, b / length, c / length
        cos, sin, along = math.cos(angle), math.sin(angle), (a * x + b * y + c * z) * (1 - math.cos(angle))
        x, y, z = (x * cos + (b * z - c * y) * sin + a * along, y * cos + (c * x - a * z) * sin + b * along,
                   z * cos + (a * y - b * x) * sin + c * along)
    return [each + way for each, way in zip((x, y, z), group.translation)]


def expected_parts(model):
    parts = [Expected(model, node) for node in model.nodes if isinstance(node.content, moxreader.Geometry)]
    return [part for part in parts if part.is_part]


def compare_mesh(label, grid, part):
    check(grid.GetNumberOfCells() == len(part.lengths), f"{label}: {grid.GetNumberOfCells()} cells")
    check(grid.GetNumberOfPoints() == len(part.used), f"{label}: {grid.GetNumberOfPoints()} points")
    points = [part.points[node] for node in part.used]
    bounds = [limit(row[axis] for row in points) for axis in range(3) for limit in (min, max)]
    check(numpy.allclose(grid.GetBounds(), bounds, rtol=1e-6, atol=1e-4),
          f"{label}: the bounds are {grid.GetBounds()}, not {bounds}")
    place = 0
    for cell, length in enumerate(part.lengths):
        found = grid.GetCell(cell).GetPointIds()
        found = sorted(part.used[found.GetId(i)] for i in range(found.GetNumberOfIds()))
        check(found == sorted(part.nodes[place:place + length]), f"{label}: cell {cell} has other nodes")
        place += length


def compare_step(label, grid, part, step):
    """Every result of the step and of none, number by number."""
    compared = 0
    for dataset in part.datasets:
        if dataset.step not in ("", step) or not part.fits(dataset):
            continue
        is_nodal = dataset.variable_type in NODAL
        rows = part.rows(dataset)
        expected = numpy.array([rows[node] for node in part.used] if is_nodal else rows)
        data = grid.GetPointData() if is_nodal else grid.GetCellData()
        array = data.GetArray(dataset.name)
        check(array is not None, f"{label}: there is no {dataset.name}")
        if array is not None:
            found = vtk_to_numpy(array).reshape(len(expected), -1)
            if found.shape[1] < expected.shape[1]:
                found = numpy.hstack([found, vtk_to_numpy(data.GetArray("Rotation"))])
            check(numpy.array_equal(found, expected, equal_nan=True), f"{label}: {dataset.name} has other numbers")
            compared += 1
    return compared


def steps_of(parts):
    """The names of the steps by their values; times do not repeat in these models."""
    values = {}
    for part in parts:
        for dataset in part.datasets:
            if dataset.step and not dataset.is_link:
                attributes = dataset.attributes
                keys = ["Frequency (exact)", "Frequency"] if dataset.vibration else []
                texts = [attributes[key] for key in (*keys, "Time (exact)", "Time") if key in attributes]
                values.setdefault(dataset.step, float(texts[0]))
    return sorted((value, name) for name, value in values.items())


def compare_model(path):
    reader = opened(path)
    with moxreader.File(path) as file:
        parts = expected_parts(moxreader.Model(file))
        grids = grids_of(reader)
        check([name for name, _ in grids] == [part.name for part in parts], f"{path.name}: the parts are {grids}")
        for (name, grid), part in zip(grids, parts):
            compare_mesh(f"{path.name}, {name}", grid, part)
        steps = steps_of(parts)
        times = list(getattr(reader, "TimestepValues", None) or [])
        check(times == [value for value, _ in steps], f"{path.name}: the times are {times}")
        compared = 0
        for value, step in steps or [(0.0, "")]:
            reader.UpdatePipeline(value)
            for (name, grid), part in zip(grids_of(reader), parts):
                compared += compare_step(f"{path.name}, {step}, {name}", grid, part, step)
    print(f"{path.name}: {len(parts)} parts, {len(steps)} steps, {compared} results compared")
    return reader


def check_cell_types(path, reader):
    wanted = MESHES.get(path.stem)
    if wanted is None:
        return
    found = []
    for _, grid in grids_of(reader):
        types, counts = numpy.unique(vtk_to_numpy(grid.GetCellTypesArray()), return_counts=True)
        found.append(dict(zip(types.tolist(), counts.tolist())))
    check(found == wanted, f"{path.name}: the cells are {found}")


def check_golden(folder):
    """Files with odd names, links, materials, transforms and little else."""
    for path in sorted(Path(folder).glob("*.mox")):
        with moxreader.File(path) as file:
            parts = expected_parts(moxreader.Model(file))
        found = grids_of(opened(path))
        check(len(found) == len(parts), f"{path.name}: {len(found)} parts instead of {len(parts)}")


def check_properties(path):
    """What can be chosen in the panel of the cantilever."""
    reader = opened(path)
    check(list(reader.PointArrays) == ["Node Ids", "Displacement", "Reaction force", "Mode shape"],
          f"the results on nodes are {list(reader.PointArrays)}")
    reader.PointArrays = ["Displacement"]
    reader.CellArrays = ["Material Colour"]
    reader.UpdatePipeline(0.2)
    grid = grids_of(reader)[0][1]
    names = [grid.GetPointData().GetArrayName(i) for i in range(grid.GetPointData().GetNumberOfArrays())]
    check(names == ["Displacement"], f"chosen is Displacement, and there is {names}")
    colour = grid.GetCellData().GetArray("Material Colour").GetTuple(0)
    check(colour == (237, 125, 48, 255), f"the colour of a bolt is {colour}")
    diffuse = grid.GetFieldData().GetArray("Material Diffuse").GetTuple(0)
    check(numpy.allclose(diffuse, (0.93, 0.49, 0.19, 1)), f"the material of a bolt is {diffuse}")
    check(grid.GetFieldData().GetAbstractArray("Step").GetValue(0) == "Load step 1", "the step has no name")
    reader.Steps = "Mode shapes"
    reader.UpdatePipelineInformation()
    check(len(reader.TimestepValues) == 6, f"the mode shapes are {list(reader.TimestepValues)}")
    reader.Steps = "Times"
    reader.UpdatePipelineInformation()
    check(len(reader.TimestepValues) == 5, f"the times are {list(reader.TimestepValues)}")
    width = nut_centre(reader)
    reader.ApplyTransforms = 0
    check(width != nut_centre(reader), "the nuts stand at the same place without transforms")
    reader.OnlyUsedNodes = 0
    reader.UpdatePipeline(0.2)
    check(grids_of(reader)[0][1].GetNumberOfPoints() == 1617, "not all nodes are there when all are asked for")
    check_assembly(reader)
    simple.Delete(reader)


def nut_centre(reader):
    reader.UpdatePipeline(0.2)
    grid = dict(grids_of(reader))["Nut 1"]
    return grid.GetCenter()


def check_assembly(reader):
    assembly = output(reader).GetDataAssembly()
    bolts = assembly.GetFirstNodeByPath("/Boltedcantilever/Bolts")
    check(list(assembly.GetDataSetIndices(bolts)) == [0, 1, 2, 3, 6, 7, 8, 9],
          f"the parts of the bolts are {assembly.GetDataSetIndices(bolts)}")
    plate = assembly.GetFirstNodeByPath("/Boltedcantilever/Steelwork/Endplate")
    check(assembly.GetAttributeOrDefault(plate, "label", "") == "End plate", "the end plate has another label")
    block = simple.ExtractBlock(Input=reader, Assembly="Assembly", Selectors=["/Boltedcantilever/Steelwork/Beam"])
    block.UpdatePipeline()
    check(block.GetDataInformation().GetNumberOfCells() == 720, "the beam alone has not its 720 cells")
    simple.Delete(block)


def check_refusals(folder):
    """A file that is no model has no parts, and ParaView goes on."""
    path = Path(folder) / "broken.mox"
    path.write_bytes(b"no model")
    reader = simple.MoxReader(FileName=str(path))
    reader.UpdatePipeline()
    check(output(reader).GetNumberOfPartitionedDataSets() == 0, "a file that is no model has parts")
    simple.Delete(reader)
    path.unlink()


# --- Pictures -------------------------------------------------------------------------------------------------------


def picture(path, view):
    simple.SaveScreenshot(str(path), view, ImageResolution=[960, 540])
    image = vtkPNGReader()
    image.SetFileName(str(path))
    image.Update()
    colours = len(numpy.unique(vtk_to_numpy(image.GetOutput().GetPointData().GetScalars()), axis=0))
    check(colours > 100, f"{path.name} has {colours} colours")


def new_view(time):
    view = simple.CreateView("RenderView")
    view.ViewSize = [960, 540]
    view.ViewTime = time
    view.OrientationAxesVisibility = 0
    view.UseColorPaletteForBackground = 0
    view.Background = [1, 1, 1]
    return view


def coloured(source, view, place, name, title, is_direct=False):
    display = simple.Show(source, view)
    display.Representation = "Surface With Edges"
    display.EdgeColor = [0.35, 0.35, 0.35]
    simple.ColorBy(display, (place, name))
    if is_direct:
        display.MapScalars = 0
        return display
    display.RescaleTransferFunctionToDataRange(False, True)
    table = simple.GetColorTransferFunction(name)
    table.ApplyPreset("Viridis (matplotlib)", True)
    bar = simple.GetScalarBar(table, view)
    bar.Title, bar.ComponentTitle = title, ""
    bar.AutomaticLabelFormat, bar.LabelFormat, bar.RangeLabelFormat = 0, "%.3g", "%.3g"
    bar.TitleColor = bar.LabelColor = [0, 0, 0]
    display.SetScalarBarVisibility(view, True)
    return display


def warped(reader, name, factor):
    warp = simple.WarpByVector(Input=reader, ScaleFactor=factor)
    warp.Vectors = ["POINTS", name]
    return warp


def look(view, direction, up=(0, 0, 1), zoom=1.25):
    simple.ResetCamera(view)
    focus = numpy.array(view.CameraFocalPoint)
    view.CameraPosition = list(focus + numpy.array(direction))
    view.CameraViewUp = list(up)
    simple.ResetCamera(view)
    simple.GetActiveCamera().Zoom(zoom)


def picture_cantilever(path, folder):
    reader = opened(path)
    view = new_view(1.0)
    reader.UpdatePipeline(1.0)
    coloured(warped(reader, "Displacement", 20), view, "CELLS", "Von Mises stress", "Von Mises stress, MPa")
    look(view, (900, -1500, 700))
    picture(folder / "cantilever-stress.png", view)
    simple.Delete(view)

    reader.CellArrays = ["Material Colour"]
    reader.PointArrays = ["Mode shape"]
    reader.Steps = "Mode shapes"
    reader.UpdatePipelineInformation()
    value = reader.TimestepValues[2]
    reader.UpdatePipeline(value)
    view = new_view(value)
    shape = vtk_to_numpy(dict(grids_of(reader))["Beam"].GetPointData().GetArray("Mode shape"))  # The nuts have none.
    coloured(warped(reader, "Mode shape", 60 / abs(shape).max()), view, "CELLS", "Material Colour", "", True)
    look(view, (900, -1500, 700))
    picture(folder / "cantilever-mode.png", view)
    simple.Delete(view)
    simple.Delete(reader)


def picture_model(path, reader, folder):
    """The model in its last step, by the first result there is."""
    times = list(getattr(reader, "TimestepValues", None) or [0.0])
    reader.UpdatePipeline(times[-1])
    view = new_view(times[-1])
    data = reader.GetDataInformation()
    choices = [("CELLS", data.GetCellDataInformation()), ("POINTS", data.GetPointDataInformation())]
    names = [(place, info.GetArrayInformation(i).GetName()) for place, info in choices
             for i in range(info.GetNumberOfArrays())]
    names = [pair for pair in names if " id" not in pair[1].lower()] or names
    if len(output(reader).GetNumberOfPartitionedDataSets() and grids_of(reader)) and names:
        coloured(reader, view, *names[0], names[0][1])
    look(view, (1, -2, 1), zoom=1.0)
    picture(folder / f"{path.stem}.png", view)
    simple.Delete(view)


def main(golden, models, pictures):
    pictures = Path(pictures)
    pictures.mkdir(parents=True, exist_ok=True)
    simple._DisableFirstRenderCameraReset()
    for path in sorted(Path(models).glob("*.mox")):
        reader = compare_model(path)
        check_cell_types(path, reader)
        if path.stem != "test-assembly":  # One point.
            picture_model(path, reader, pictures)
        simple.Delete(reader)
    cantilever = Path(models) / "cantilever.mox"
    check_golden(golden)
    check_properties(cantilever)
    check_refusals(pictures)
    picture_cantilever(cantilever, pictures)
    servermanager.Disconnect()
    print(f"{len(failures)} failures")
    sys.stdout.flush()
    os._exit(1 if failures else 0)  # What pvbatch returns for an exit at its end depends on its version.


main(*sys.argv[1:])
