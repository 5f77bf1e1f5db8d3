"""The reader that ParaView shows: models as collections of parts, each with its place in the tree of the model."""

import bisect  # not in the joined file
import os  # not in the joined file
import weakref
from typing import Any, Dict, List, Optional, Tuple  # not in the joined file

import numpy  # not in the joined file
from moxmesh import Cells, Field, ModelStep, Part, Results, find_parts, on_axis  # not in the joined file
from moxmesh import read_cells, read_points, squeeze, table  # not in the joined file
from moxreader import Dataset, File, Group, Material, Model, MoxError, Node, Shape  # not in the joined file
from paraview.util.vtkAlgorithm import VTKPythonAlgorithmBase, smdomain, smhint, smproperty, smproxy
from vtkmodules.util.numpy_support import get_vtk_array_type, numpy_to_vtk
from vtkmodules.vtkCommonCore import (vtkDataArraySelection, vtkOutputWindow, vtkPoints, vtkStringArray)
from vtkmodules.vtkCommonDataModel import (vtkCellArray, vtkCompositeDataSet, vtkDataAssembly, vtkDataObject,
                                           vtkPartitionedDataSetCollection, vtkUnstructuredGrid)
from vtkmodules.vtkCommonExecutionModel import vtkAlgorithm, vtkStreamingDemandDrivenPipeline

paraview_plugin_name = "Mox Reader"
paraview_plugin_version = "1.0"

MATERIAL_COLOUR = "Material Colour"
ALL_STEPS, TIMES, MODE_SHAPES = range(3)
MOST_COMPLAINTS = 10


def shown(text: str) -> str:
    """A text as VTK takes it: bytes that are not UTF-8, and control characters, are written out as in \\xff."""
    text = text.encode("utf-8", "surrogateescape").decode("utf-8", "backslashreplace")
    return "".join(f"\\x{ord(each):02x}" if ord(each) < 32 or ord(each) == 127 else each for each in text)


def to_vtk(numbers: numpy.ndarray, name: str, column_names: Tuple[str, ...] = ()):
    """An array of VTK with a row for each item.

    It has a copy of the numbers, since those that it would share with NumPy go with this array, even if others share
    them: a vtkCellArray takes the numbers of an array, not the array.
    """
    numbers = numpy.ascontiguousarray(numbers[:, 0] if numbers.ndim == 2 and numbers.shape[1] == 1 else numbers)
    array = numpy_to_vtk(numbers, deep=True, array_type=get_vtk_array_type(numbers.dtype))
    array.SetName(shown(name))
    for column, column_name in enumerate(column_names):
        array.SetComponentName(column, shown(column_name))
    return array


def to_texts(name: str, texts: List[str]) -> vtkStringArray:
    array = vtkStringArray()
    array.SetName(name)
    for text in texts:
        array.InsertNextValue(shown(text))
    return array


# --- What stays from step to step -----------------------------------------------------------------------------------


class Source:
    """An open file, and what has been made of it so far."""

    def __init__(self, path: str):
        self.path = path
        self.state = file_state(path)
        self.file = File(path)
        try:
            self.model = Model(self.file)
            self.parts = find_parts(self.model)
            self.results = Results(self.model, self.parts)
        except BaseException:
            self.file.close()
            raise
        self.complaints: List[str] = [f"result {misfit}" for misfit in self.results.misfits]
        self._grids: Dict[tuple, Optional["Grid"]] = {}
        self._points: Dict[tuple, Any] = {}
        self._arrays: Dict[tuple, Any] = {}

    def close(self) -> None:
        self.file.close()

    def grid(self, place: int, transforms: bool, squeezes: bool) -> Optional["Grid"]:
        """The mesh of a part; none if it can't be read."""
        key = (place, transforms and self.parts[place].transform is not None, squeezes)
        if key not in self._grids:
            part = self.parts[place]
            try:
                self._grids[key] = Grid(self, part, *key[1:])
            except MoxError as error:
                self._grids[key] = None
                self.complain(f'"{part.name}" can\'t be shown: {error}')
        return self._grids[key]

    def points(self, part: Part, transforms: bool, used: Optional[numpy.ndarray]) -> vtkPoints:
        """Shared by parts at the same place that use all nodes of the same coordinates."""
        holder = self.model.required_holder(part.coordinates)
        transform = part.transform.tobytes() if transforms else b""
        key = (holder.node_id, holder.index, transform)
        if used is None and key in self._points:
            return self._points[key]
        numbers = read_points(self.model, part, transforms)
        points = vtkPoints()
        points.SetData(to_vtk(numbers if used is None else numbers[used], "Points"))
        if used is None:
            self._points[key] = points
        return points

    def arrays(self, wanted: List["Wanted"]) -> List[Any]:
        """The arrays of one step, none for one that can't be read. What two parts share is read once."""
        arrays: Dict[tuple, Any] = {each.key: self._arrays.get(each.key) for each in wanted}
        missing = [each for each in wanted if arrays[each.key] is None]
        holder, numbers = None, None
        for each in sorted(missing, key=lambda each: each.holder.position):
            if holder is not each.holder:
                holder, numbers = each.holder, self._numbers(each)
            if numbers is not None and arrays[each.key] is None:
                arrays[each.key] = each.array(numbers)
        self._arrays = arrays
        return [arrays[each.key] for each in wanted]

    def _numbers(self, wanted: "Wanted") -> Optional[numpy.ndarray]:
        try:
            return table(self.model, wanted.holder)
        except MoxError as error:
            self.complain(f'"{wanted.field.name}" can\'t be shown: {error}')
            return None

    def complain(self, complaint: str) -> None:
        self.complaints.append(complaint)


def file_state(path: str) -> tuple:
    state = os.stat(path)
    return state.st_size, state.st_mtime_ns, state.st_ino


class Grid:
    """The mesh of a part, without results."""

    def __init__(self, source: Source, part: Part, transforms: bool, squeezes: bool):
        cells = read_cells(source.model, part)
        self.used: Optional[numpy.ndarray] = None
        if squeezes:
            cells, self.used = squeeze(cells, part.node_count)
        self.mesh = vtkUnstructuredGrid()
        self.mesh.SetPoints(source.points(part, transforms, self.used))
        self.mesh.SetCells(to_vtk(cells.types, "Types"), to_cell_array(cells))
        for array in material_arrays(part.material):
            self.mesh.GetFieldData().AddArray(array)
        self.colours = colour_array(part.material, len(cells.types))

    def copy(self) -> vtkUnstructuredGrid:
        copy = vtkUnstructuredGrid()
        copy.ShallowCopy(self.mesh)
        return copy


def to_cell_array(cells: Cells) -> vtkCellArray:
    array = vtkCellArray()
    array.SetData(to_vtk(cells.offsets, "Offsets"), to_vtk(cells.nodes, "Nodes"))
    return array


def material_arrays(material: Optional[Material]) -> List[Any]:
    if material is None:
        return []
    colours = [("Diffuse", material.diffuse), ("Specular", material.specular),
               ("Emissive", material.emissive[:3]), ("Ambient", material.ambient),
               ("Transparency", [material.transparency]), ("Shininess", [material.shininess])]
    return [to_vtk(numpy.array([numbers], numpy.float32), f"Material {name}") for name, numbers in colours]


def colour_array(material: Optional[Material], cells: int):
    """Red, green, blue and opacity of each cell, from 0 to 255, as ParaView shows them without a table of colours."""
    if material is None:
        return None
    colour = numpy.array([*material.diffuse[:3], 1 - material.transparency], numpy.float64)
    colour = numpy.rint(255 * numpy.clip(numpy.nan_to_num(colour), 0, 1)).astype(numpy.uint8)
    return to_vtk(numpy.tile(colour, (cells, 1)), MATERIAL_COLOUR)


class Wanted:
    """A field on one part in one step."""

    def __init__(self, place: int, field: Field, holder: Dataset, used: Optional[numpy.ndarray]):
        self.place = place
        self.field = field
        self.holder = holder
        self._used = used if field.is_nodal else None
        whose = None if self._used is None else place
        self.key = (holder.node_id, holder.index, field.name, field.is_nodal, whose)

    def array(self, numbers: numpy.ndarray):
        numbers = numbers[:, self.field.first_column:self.field.end_column]
        numbers = numbers if self._used is None else numbers[self._used]
        return to_vtk(numbers, self.field.name or "(no name)", tuple(self.field.column_names))


# --- The tree -------------------------------------------------------------------------------------------------------


def make_assembly(model: Model, parts: List[Part]) -> vtkDataAssembly:
    """The groups and shapes of a model. What a shape shows belongs to its geometry, so the two are one node here."""
    assembly = vtkDataAssembly()
    places = {part.geometry.id: place for place, part in enumerate(parts)}
    names: Dict[int, set] = {}
    nodes: Dict[int, int] = {}
    for node in model.nodes:
        above = nodes.get(node.parent, assembly.GetRootNode())
        if node.id in places and isinstance(model.nodes[node.parent - 1].content, Shape) and node.parent in nodes:
            nodes[node.id] = above
        elif node.id in places or isinstance(node.content, (Group, Shape)):
            nodes[node.id] = add_node(assembly, node, above, names)
        if node.id in places:
            assembly.AddDataSetIndex(nodes[node.id], places[node.id])
    return assembly


def add_node(assembly: vtkDataAssembly, node: Node, above: int, names: Dict[int, set]) -> int:
    """Names become what an assembly allows; the label keeps what they were."""
    wanted = vtkDataAssembly.MakeValidNodeName(shown(node.name) or node.type)
    taken = names.setdefault(above, set())
    name, number = wanted, 2
    while name in taken:
        name, number = f"{wanted}_{number}", number + 1
    taken.add(name)
    if node.parent == 0:
        assembly.SetRootNodeName(name)
        added = assembly.GetRootNode()
    else:
        added = assembly.AddNode(name, above)
    assembly.SetAttribute(added, "label", shown(node.name))
    return added


# --- The reader -----------------------------------------------------------------------------------------------------


@smproxy.reader(name="MoxReader", label="Mox Reader", extensions="mox", file_description="Mox models",
                support_reload=False)
@smhint.xml('<ReloadFiles property="Refresh"/>')
class MoxReader(VTKPythonAlgorithmBase):
    """Reads mox files: one part of the output for each geometry that has a mesh."""

    def __init__(self):
        super().__init__(nInputPorts=0, nOutputPorts=1, outputType="vtkPartitionedDataSetCollection")
        self._path = ""
        self._steps_shown = ALL_STEPS
        self._applies_transforms = True
        self._squeezes = True
        self._source: Optional[Source] = None
        self._axis: List[Tuple[float, ModelStep]] = []
        self._point_arrays = self._selection()
        self._cell_arrays = self._selection()

    def _selection(self) -> vtkDataArraySelection:
        """A strong reference from the selection to the reader would keep both, and the file, for good."""
        selection, reader = vtkDataArraySelection(), weakref.ref(self)

        def on_change(*_) -> None:
            if reader() is not None:
                reader().Modified()

        selection.AddObserver("ModifiedEvent", on_change)
        return selection

    # Properties, in the order of ParaView's panel: that of the methods' names.

    @smproperty.stringvector(name="FileName", label="File Name", panel_visibility="never")
    @smdomain.filelist()
    @smhint.filechooser(extensions="mox", file_description="Mox models")
    def SetFileName(self, path):
        path = "" if path in (None, "None") else path  # ParaView sets a name that nobody has set to this text.
        if path != self._path:
            self._path = path
            self.Modified()

    @smproperty.xml('<Property name="Refresh" command="Refresh" panel_widget="command_button"/>')
    def Refresh(self):
        self._close()
        self.Modified()

    @smproperty.doublevector(name="TimestepValues", information_only="1", si_class="vtkSITimeStepsProperty")
    def GetTimestepValues(self):
        return [value for value, _ in self._axis] or None

    @smproperty.dataarrayselection(name="PointArrays")
    def GetPointArraySelection(self):
        return self._point_arrays

    @smproperty.dataarrayselection(name="CellArrays")
    def GetCellArraySelection(self):
        return self._cell_arrays

    @smproperty.intvector(name="Steps", default_values=ALL_STEPS)
    @smdomain.xml('<EnumerationDomain name="enum"><Entry text="Times and mode shapes" value="0"/>'
                  '<Entry text="Times" value="1"/><Entry text="Mode shapes" value="2"/></EnumerationDomain>')
    def SetSteps(self, steps):
        if steps != self._steps_shown:
            self._steps_shown = steps
            self.Modified()

    @smproperty.intvector(name="ApplyTransforms", label="Apply Transforms", default_values=1)
    @smdomain.xml('<BooleanDomain name="bool"/>')
    def SetApplyTransforms(self, applies):
        if bool(applies) != self._applies_transforms:
            self._applies_transforms = bool(applies)
            self.Modified()

    @smproperty.intvector(name="OnlyUsedNodes", label="Only Used Nodes", default_values=1)
    @smdomain.xml('<BooleanDomain name="bool"/>')
    def SetOnlyUsedNodes(self, squeezes):
        if bool(squeezes) != self._squeezes:
            self._squeezes = bool(squeezes)
            self.Modified()

    # What ParaView asks for.

    def RequestInformation(self, request, inInfo, outInfo):
        if not self._path:
            return 1
        try:
            self._open()
        except (MoxError, OSError) as error:
            self._refuse(error)
            return 0
        self._publish_steps(outInfo.GetInformationObject(0))
        return 1

    def RequestData(self, request, inInfo, outInfo):
        if self._source is None:
            return 1 if not self._path else 0
        output = vtkPartitionedDataSetCollection.GetData(outInfo, 0)
        info = outInfo.GetInformationObject(0)
        value, step = self._wanted_step(info)
        try:
            self._fill(output, step, info)
        except OSError as error:
            self._refuse(error)
            return 0
        output.SetDataAssembly(make_assembly(self._source.model, self._source.parts))
        if step is not None:
            output.GetInformation().Set(vtkDataObject.DATA_TIME_STEP(), value)
        self._warn()
        return 1

    def _open(self) -> None:
        """Opens the file, and again if it has changed."""
        if self._source is not None:
            if (self._source.path, self._source.state) == (self._path, file_state(self._path)):
                self._choose_steps()
                return
            self._close()
        self._source = Source(self._path)
        self._choose_steps()
        fields = self._source.results.fields
        offer(self._point_arrays, [each.name for each in fields if each.is_nodal], [])
        has_colours = any(part.material for part in self._source.parts)
        offer(self._cell_arrays, [each.name for each in fields if not each.is_nodal],
              [MATERIAL_COLOUR] if has_colours else [])

    def _close(self) -> None:
        if self._source is not None:
            self._source.close()
        self._source = None

    def _choose_steps(self) -> None:
        steps = self._source.results.steps
        if self._steps_shown != ALL_STEPS:
            steps = [step for step in steps if step.is_vibration == (self._steps_shown == MODE_SHAPES)]
        self._axis = on_axis(steps)

    def _publish_steps(self, info) -> None:
        keys = vtkStreamingDemandDrivenPipeline
        info.Remove(keys.TIME_STEPS())
        info.Remove(keys.TIME_RANGE())
        for value, _ in self._axis:
            info.Append(keys.TIME_STEPS(), value)
        if self._axis:
            info.Append(keys.TIME_RANGE(), self._axis[0][0])
            info.Append(keys.TIME_RANGE(), self._axis[-1][0])
        info.Set(vtkAlgorithm.CAN_HANDLE_PIECE_REQUEST(), 1)

    def _wanted_step(self, info) -> Tuple[float, Optional[ModelStep]]:
        """The last step at or before the time that ParaView shows, or the first."""
        if not self._axis:
            return 0.0, None
        key = vtkStreamingDemandDrivenPipeline.UPDATE_TIME_STEP()
        time = info.Get(key) if info.Has(key) else self._axis[0][0]
        tolerance = 1e-9 * abs(time)
        place = bisect.bisect_right([value for value, _ in self._axis], time + tolerance) - 1
        return self._axis[max(place, 0)]

    def _fill(self, output: vtkPartitionedDataSetCollection, step: Optional[ModelStep], info) -> None:
        """Of several processes each takes every so many parts; the others are empty there."""
        keys = vtkStreamingDemandDrivenPipeline
        piece, pieces = info.Get(keys.UPDATE_PIECE_NUMBER()) or 0, info.Get(keys.UPDATE_NUMBER_OF_PIECES()) or 1
        parts = self._source.parts
        output.SetNumberOfPartitionedDataSets(len(parts))
        grids = {place: self._source.grid(place, self._applies_transforms, self._squeezes)
                 for place in range(piece, len(parts), pieces)}
        meshes = {place: grid.copy() for place, grid in grids.items() if grid is not None}
        self._add_results(meshes, grids, step)
        for place, part in enumerate(parts):
            output.SetNumberOfPartitions(place, 1)
            output.SetPartition(place, 0, meshes.get(place))
            output.GetMetaData(place).Set(vtkCompositeDataSet.NAME(), shown(part.name))

    def _add_results(self, meshes: Dict[int, vtkUnstructuredGrid], grids: Dict[int, Optional[Grid]],
                     step: Optional[ModelStep]) -> None:
        name = None if step is None else step.name
        label = None if step is None else to_texts("Step", [step.name])
        wanted = [Wanted(place, field, holder, grids[place].used) for place in meshes
                  for field in self._source.results.fields if is_chosen(self._selection_of(field), field.name)
                  for holder in [field.source(place, name)] if holder is not None]
        for each, array in zip(wanted, self._source.arrays(wanted)):
            mesh = meshes[each.place]
            if array is not None:
                (mesh.GetPointData() if each.field.is_nodal else mesh.GetCellData()).AddArray(array)
        for place, mesh in meshes.items():
            if label is not None:
                mesh.GetFieldData().AddArray(label)
            if grids[place].colours is not None and is_chosen(self._cell_arrays, MATERIAL_COLOUR):
                mesh.GetCellData().AddArray(grids[place].colours)

    def _selection_of(self, field: Field) -> vtkDataArraySelection:
        return self._point_arrays if field.is_nodal else self._cell_arrays

    def _refuse(self, error: Exception) -> None:
        reason = error.strerror if isinstance(error, OSError) and error.strerror else error
        vtkOutputWindow.GetInstance().DisplayErrorText(f"MoxReader: {shown(self._path)}: {shown(str(reason))}\n")

    def _warn(self) -> None:
        """Once of each thing that can't be shown."""
        complaints, self._source.complaints = self._source.complaints, []
        lines = [f"MoxReader: {shown(self._path)}: {shown(each)}\n" for each in complaints[:MOST_COMPLAINTS]]
        if len(complaints) > MOST_COMPLAINTS:
            lines.append(f"MoxReader: {shown(self._path)}: and {len(complaints) - MOST_COMPLAINTS} more\n")
        if lines:
            vtkOutputWindow.GetInstance().DisplayWarningText("".join(lines))


def offer(selection: vtkDataArraySelection, chosen: List[str], others: List[str]) -> None:
    """Lists names to choose from. Those that the selection knows keep their state; those of another file go."""
    names = {shown(name) for name in (*chosen, *others)}
    for known in [selection.GetArrayName(place) for place in range(selection.GetNumberOfArrays())]:
        if known not in names:
            selection.RemoveArrayByName(known)
    for name in chosen:
        selection.AddArray(shown(name), True)
    for name in others:
        selection.AddArray(shown(name), False)


def is_chosen(selection: vtkDataArraySelection, name: str) -> bool:
    return bool(selection.ArrayIsEnabled(shown(name)))
