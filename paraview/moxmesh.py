"""What a program that draws a model needs of it: parts with their cells, fields and steps, as NumPy arrays.

Cells have VTK's numbers of types and its orders of nodes. Parts, fields, steps and the values of these are those of
mox export.
"""

import math  # not in the joined file
from dataclasses import dataclass, field  # not in the joined file
from typing import Any, Dict, List, Optional, Tuple  # not in the joined file

import numpy
from moxreader import Dataset, Geometry, Group, Integer, Model  # not in the joined file
from moxreader import Material, Node, Shape, require  # not in the joined file

CELL_TYPES = {  # By the dimension of the elements and the number of their nodes.
    (1, 1): 1, (1, 2): 3, (1, 3): 21,
    (2, 3): 5, (2, 4): 9, (2, 6): 22, (2, 8): 23, (2, 9): 28,
    (3, 4): 10, (3, 5): 14, (3, 6): 13, (3, 8): 12, (3, 10): 24, (3, 13): 27, (3, 15): 26, (3, 20): 25, (3, 27): 29,
}
POLYGON = 7
LOOSE_POINTS = 2  # Elements of which only the nodes are known.

# The node of the element for each node of the cell. Files go round the middle of a solid before its top, VTK after it.
HEXAHEDRON = [*range(12), 16, 17, 18, 19, 12, 13, 14, 15, 23, 24, 25, 26, 21, 22, 20]
NODE_ORDERS = {25: HEXAHEDRON[:20], 26: [*range(9), 12, 13, 14, 9, 10, 11], 29: HEXAHEDRON}

COORDINATES = 1
DIMENSIONS = {4: 1, 5: 2, 6: 3}  # Of the elements, by the variable type of their connectivity.
POLYLENGTH = 9
NODE_SIX_A = 14
NODAL_COLUMNS = {12: 1, 13: 3, 14: 6, 15: 6}
ELEMENTAL_COLUMNS = {16: 1, 17: 3, 18: 6, 19: 6}
RESULT_COLUMNS = {**NODAL_COLUMNS, **ELEMENTAL_COLUMNS}
SIX_B_NAMES = ["1", "2", "3", "4", "5", "6"]  # Nothing is known of these, and they are no tensor.


def table(model: Model, dataset: Dataset) -> numpy.ndarray:
    """The numbers of a dataset, of 32 bits, with a row for each item."""
    holder, payload = model.shuffled_numbers(dataset)
    kind = numpy.dtype("<f4" if holder.element_tag == 1 else "<u4")
    rows = len(payload) // (4 * holder.width) if holder.width else 0
    planes = numpy.frombuffer(payload, numpy.uint8).reshape(holder.width, 4, rows)
    numbers = numpy.ascontiguousarray(planes.transpose(2, 0, 1)).view(kind).reshape(rows, holder.width)
    return numbers.astype(kind.newbyteorder("="), copy=False)


def number_attribute(attributes: Dict[str, Any], key: str) -> Optional[float]:
    """The number of an attribute, which can be a text; the text beside a float that has its digits comes first."""
    for value in (attributes.get(f"{key} (exact)"), attributes.get(key)):
        try:
            if isinstance(value, Integer):
                return float(value - (1 << 32) if value >> 31 else value)
            if value is not None:
                return float(value)
        except ValueError:
            pass
    return None


# --- Cells ----------------------------------------------------------------------------------------------------------


@dataclass
class Cells:
    types: numpy.ndarray  # A number of VTK for each cell.
    offsets: numpy.ndarray  # Where the nodes of each cell begin, and the end of the last.
    nodes: numpy.ndarray


def make_cells(dimension: int, nodes: numpy.ndarray, lengths: numpy.ndarray, is_nsided: bool = False) -> Cells:
    """The cells of elements of one dimension, given the nodes of all and the number of nodes of each."""
    offsets = numpy.zeros(len(lengths) + 1, numpy.int64)
    numpy.cumsum(lengths, dtype=numpy.int64, out=offsets[1:])
    require(offsets[-1] == len(nodes),
            f"its elements have {offsets[-1]} nodes by Polylength and {len(nodes)} by Connectivity")
    kinds = [int(length) for length in numpy.unique(lengths)]
    require(0 not in kinds, "it has an element without nodes")
    nodes = nodes.astype(numpy.int64)
    has_polygons = dimension == 2 and any((2, kind) not in CELL_TYPES for kind in kinds)
    if is_nsided or has_polygons:
        return Cells(numpy.full(len(lengths), POLYGON, numpy.uint8), offsets, nodes)
    types = numpy.empty(len(lengths), numpy.uint8)
    for kind in kinds:
        places = lengths == kind
        types[places] = cell = CELL_TYPES.get((dimension, kind), LOOSE_POINTS)
        if cell in NODE_ORDERS:
            firsts = offsets[:-1][places][:, None]
            nodes[firsts + numpy.arange(kind)] = nodes[firsts + numpy.array(NODE_ORDERS[cell])]
    return Cells(types, offsets, nodes)


def squeeze(cells: Cells, node_count: int) -> Tuple[Cells, Optional[numpy.ndarray]]:
    """The cells in a numbering of the nodes that they use, and these nodes; the same cells if they use all."""
    is_used = numpy.zeros(node_count, bool)
    is_used[cells.nodes] = True
    if is_used.all():
        return cells, None
    numbers = numpy.cumsum(is_used, dtype=numpy.int64) - 1
    return Cells(cells.types, cells.offsets, numbers[cells.nodes]), numpy.flatnonzero(is_used)


# --- Parts: geometries with a mesh ----------------------------------------------------------------------------------


@dataclass
class Part:
    geometry: Node
    coordinates: Dataset  # These are as the geometry has them, so they can be links.
    connectivity: Dataset
    polylength: Dataset
    node_count: int
    element_count: int
    transform: Optional[numpy.ndarray]  # Of all groups above, 4 x 4; none if it changes nothing.
    material: Optional[Material]  # That of the shape.

    @property
    def name(self) -> str:
        return self.geometry.name


def find_parts(model: Model) -> List[Part]:
    """All geometries that have coordinates, connectivity and lengths, in the order of their nodes."""
    transforms = group_transforms(model)
    parts = []
    for node in model.nodes:
        if isinstance(node.content, Geometry):
            mesh = mesh_datasets(node.content)
            holders = [dataset and model.holder(dataset) for dataset in mesh]
            if None not in holders:
                parts.append(Part(node, *mesh, holders[0].size // 12, holders[2].size // 4, transforms[node.id - 1],
                                  material_of(model, node)))
    return parts


def mesh_datasets(geometry: Geometry) -> List[Optional[Dataset]]:
    """The first of each kind without a step. Only its name distinguishes a part's list of elements from a mesh."""
    tests = [lambda dataset: dataset.variable_type == COORDINATES,
             lambda dataset: dataset.variable_type in DIMENSIONS and dataset.name != "Part Elements",
             lambda dataset: dataset.variable_type == POLYLENGTH]
    static = [dataset for dataset in geometry.datasets if not dataset.step]
    return [next(filter(test, static), None) for test in tests]


def material_of(model: Model, geometry: Node) -> Optional[Material]:
    parent = model.nodes[geometry.parent - 1].content if geometry.parent else None
    return parent.material if isinstance(parent, Shape) else None


def group_transforms(model: Model) -> List[Optional[numpy.ndarray]]:
    """For each node the transform of its group and all groups above it."""
    transforms: List[Optional[numpy.ndarray]] = []
    for node in model.nodes:
        own = own_transform(node.content) if isinstance(node.content, Group) else None
        above = transforms[node.parent - 1] if node.parent else None
        transforms.append(above if own is None else own if above is None else above @ own)
    return transforms


def own_transform(group: Group) -> Optional[numpy.ndarray]:
    """Scale, then rotation about the axis by an angle in radians, then translation."""
    transform = numpy.eye(4)
    transform[:3, :3] = rotation(group.rotation) * numpy.array(group.scale, float)
    transform[:3, 3] = group.translation
    return None if numpy.array_equal(transform, numpy.eye(4)) else transform


def rotation(axis_and_angle) -> numpy.ndarray:
    axis, angle = numpy.array(axis_and_angle[:3], float), float(axis_and_angle[3])
    length = numpy.linalg.norm(axis)
    if angle == 0 or length == 0 or not math.isfinite(angle):
        return numpy.eye(3)
    x, y, z = axis / length
    cross = numpy.array([[0, -z, y], [z, 0, -x], [-y, x, 0]])
    return numpy.eye(3) + math.sin(angle) * cross + (1 - math.cos(angle)) * (cross @ cross)


def read_points(model: Model, part: Part, transforms: bool) -> numpy.ndarray:
    points = table(model, part.coordinates)
    require(points.shape[1] == 3, "its coordinates have not three columns")
    points = points.astype(numpy.float32, copy=False)
    if transforms and part.transform is not None:
        points = (points @ part.transform[:3, :3].T + part.transform[:3, 3]).astype(numpy.float32)
    return points


def read_cells(model: Model, part: Part) -> Cells:
    nodes, lengths = table(model, part.connectivity), table(model, part.polylength)
    for numbers in (nodes, lengths):
        require(numbers.shape[1] == 1 and numbers.dtype.kind == "u", "its elements are no lists of integers")
    nodes, lengths = nodes[:, 0], lengths[:, 0]
    highest = int(nodes.max(initial=0))
    require(not len(nodes) or highest < part.node_count, f"an element refers to node {highest} of {part.node_count}")
    connectivity = model.required_holder(part.connectivity)
    return make_cells(DIMENSIONS[part.connectivity.variable_type], nodes, lengths, is_nsided(connectivity.attributes))


def is_nsided(attributes: Dict[str, Any]) -> bool:
    """Whether an import from Exodus, which alone leaves ids of blocks, took polygons."""
    kind = attributes.get("Element Type")
    return "Block Id" in attributes and isinstance(kind, str) and kind.lower().rstrip("0123456789") == "nsided"


# --- Fields and steps -----------------------------------------------------------------------------------------------


@dataclass
class ModelStep:
    name: str
    place: int  # From 0, in the order in which the steps were written.
    position: int  # Of its first numbers in the file.
    time: Optional[float] = None
    frequency: Optional[float] = None
    is_vibration: bool = False

    def describe(self, dataset: Dataset) -> None:
        """Takes from a dataset of this step what is not known yet."""
        if self.time is None:
            self.time = number_attribute(dataset.attributes, "Time")
        if self.frequency is None:
            self.frequency = number_attribute(dataset.attributes, "Frequency")
        self.is_vibration = self.is_vibration or dataset.vibration

    @property
    def value(self) -> float:
        """Its place on the axis of time: the frequency of a vibration, else the time, else the number of the step."""
        first, second = (self.frequency, self.time) if self.is_vibration else (self.time, self.frequency)
        return first if first is not None else second if second is not None else float(self.place)


@dataclass
class Field:
    """Results of one name, type and meaning, over all steps and parts; or some of their columns."""

    name: str  # Unique among those on nodes, and among those on elements.
    is_nodal: bool
    first_column: int
    end_column: int
    column_names: List[str]  # Empty if nothing is known of them.
    sources: Dict[Tuple[int, Optional[str]], Dataset] = field(default_factory=dict)  # By part, and step or none.

    def source(self, part: int, step: Optional[str]) -> Optional[Dataset]:
        """What holds the numbers in a step. A result without a step is the same in all."""
        static = self.sources.get((part, None))
        return static if static is not None or step is None else self.sources.get((part, step))


def component_names(holder: Dataset) -> List[str]:
    names: List[str] = []
    while len(names) < holder.width:
        name = holder.attributes.get(f"Component {len(names) + 1}")
        if not isinstance(name, str) or not name:
            break
        names.append(name)
    return names


class Results:
    """The fields of all parts, and the steps of these."""

    def __init__(self, model: Model, parts: List[Part]):
        self._model = model
        self._names: Dict[bool, set] = {True: set(), False: set()}
        self._fields_by_key: Dict[tuple, List[Field]] = {}
        self._steps_by_name: Dict[str, ModelStep] = {}
        self.misfits: List[str] = []  # Results that can't be shown.
        for place, part in enumerate(parts):
            for dataset in part.geometry.content.datasets:
                if dataset.variable_type in RESULT_COLUMNS:
                    self._add(place, part, dataset)
        self.fields = [each for fields in self._fields_by_key.values() for each in fields]
        self.steps = sorted(self._steps_by_name.values(), key=lambda step: step.position)
        for place, step in enumerate(self.steps):
            step.place = place

    def _add(self, place: int, part: Part, dataset: Dataset) -> None:
        holder = self._model.holder(dataset)
        if holder is None:
            self.misfits.append(f'"{dataset.name}" of "{part.name}" is a link without an end')
            return
        if dataset.step:
            self._add_step(dataset, holder)
        is_nodal = dataset.variable_type in NODAL_COLUMNS
        items = part.node_count if is_nodal else part.element_count
        if holder.width != RESULT_COLUMNS[dataset.variable_type] or holder.size != 4 * holder.width * items:
            self.misfits.append(f'"{dataset.name}" of "{part.name}" fits neither nodes nor elements')
            return
        step = dataset.step or None
        for each in self._fields(dataset, holder, is_nodal, step is None):
            each.sources.setdefault((place, step), holder)

    def _add_step(self, dataset: Dataset, holder: Dataset) -> None:
        step = self._steps_by_name.setdefault(dataset.step, ModelStep(dataset.step, 0, holder.position))
        step.position = min(step.position, holder.position)
        if holder.step == dataset.step:  # A link from another step shares that step's numbers, not its attributes.
            step.describe(holder)

    def _fields(self, dataset: Dataset, holder: Dataset, is_nodal: bool, is_static: bool) -> List[Field]:
        columns = component_names(holder)
        key = (is_nodal, dataset.name, dataset.variable_type, holder.element_tag, is_static, tuple(columns))
        if key not in self._fields_by_key:
            self._fields_by_key[key] = [
                Field(self._unique(name, is_nodal), is_nodal, first, end, columns[first:end])
                for name, first, end in split(dataset)]
            if dataset.variable_type in (15, 19) and not columns:
                self._fields_by_key[key][0].column_names = SIX_B_NAMES
        return self._fields_by_key[key]

    def _unique(self, wanted: str, is_nodal: bool) -> str:
        taken, name, number = self._names[is_nodal], wanted, 2
        while name in taken:
            name, number = f"{wanted} ({number})", number + 1
        taken.add(name)
        return name


def split(dataset: Dataset) -> List[Tuple[str, int, int]]:
    """The fields of a dataset with their columns: a displacement with rotations is two, so that the first can warp."""
    if dataset.variable_type == NODE_SIX_A and dataset.name == "Displacement":
        return [("Displacement", 0, 3), ("Rotation", 3, 6)]
    return [(dataset.name, 0, RESULT_COLUMNS[dataset.variable_type])]


def on_axis(steps: List[ModelStep]) -> List[Tuple[float, ModelStep]]:
    """Steps with their values, ascending; 1, 2, 3 and so on if values repeat or are not finite."""
    values = [step.value for step in steps]
    if len(set(values)) < len(values) or not all(map(math.isfinite, values)):
        values = [float(number) for number in range(1, len(steps) + 1)]
    return sorted(zip(values, steps), key=lambda pair: pair[0])
