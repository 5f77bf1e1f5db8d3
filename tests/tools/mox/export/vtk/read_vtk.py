"""Shows what stands in a VTK XML file, for tests to compare.

usage: read_vtk.py xml FILE.vtu...  by the rules of the format, with the standard library alone
       read_vtk.py vtk FILE.vtu...  through VTK's own reader; exit code 77 if VTK is not installed
       read_vtk.py series FILE.pvd

Each mesh begins with a line of its numbers of points and cells; then each array gives two lines: section, name,
type, number of components and names of the components, separated by tabs, and the numbers. Of a series each file
gives one line: its value, a tab, its path.
"""
import struct
import sys
import xml.etree.ElementTree as ElementTree

CODES = {"Float32": "f", "Float64": "d", "UInt8": "B", "UInt32": "I", "Int64": "q"}
NOT_INSTALLED = 77


def show(section, name, kind, components, names, numbers):
    print("\t".join([section, name, kind, str(components)] + names))
    print(" ".join(repr(number) for number in numbers))


def split_appended(data):
    """The markup without the raw bytes, and these."""
    opening = data.index(b"<AppendedData")
    start = data.index(b"_", data.index(b">", opening)) + 1
    end = data.rindex(b"</AppendedData>")
    return data[:start] + data[end:], data[start:end]


def component_names(array):
    return [array.get(f"ComponentName{i}") for i in range(6) if array.get(f"ComponentName{i}") is not None]


def show_array(section, array, order, raw):
    kind, components = array.get("Type", array.get("type")), int(array.get("NumberOfComponents", "1"))
    if array.get("format") == "ascii":
        numbers = [float(text) if kind == "Float64" else int(text) for text in array.text.split()]
    else:
        offset = int(array.get("offset"))
        (length,) = struct.unpack_from(order + "Q", raw, offset)
        code = CODES[kind]
        count, rest = divmod(length, struct.calcsize(code))
        assert rest == 0 and offset + 8 + length <= len(raw)
        numbers = struct.unpack_from(f"{order}{count}{code}", raw, offset + 8)
    show(section, array.get("Name"), kind, components, component_names(array), numbers)


def show_xml(path):
    with open(path, "rb") as file:
        markup, raw = split_appended(file.read())
    root = ElementTree.fromstring(markup)
    assert root.get("type") == "UnstructuredGrid" and root.get("header_type") == "UInt64"
    order = {"LittleEndian": "<", "BigEndian": ">"}[root.get("byte_order")]
    grid = root.find("UnstructuredGrid")
    (piece,) = grid.findall("Piece")
    print(f"size\t{piece.get('NumberOfPoints')}\t{piece.get('NumberOfCells')}")
    for section in list(grid.find("FieldData").iter("DataArray")):
        show_array("FieldData", section, order, raw)
    for section in piece:
        for array in section:
            show_array(section.tag, array, order, raw)


def vtk_numbers(array):
    return [array.GetComponent(i, j) for i in range(array.GetNumberOfTuples())
            for j in range(array.GetNumberOfComponents())]


def show_vtk_array(section, array, name=None):
    names = [array.GetComponentName(i) for i in range(array.GetNumberOfComponents())]
    show(section, name or array.GetName(), "VTK", array.GetNumberOfComponents(), [text for text in names if text],
         vtk_numbers(array))


def show_vtk(path):
    try:
        from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
    except ImportError:
        sys.exit(NOT_INSTALLED)
    reader = vtkXMLUnstructuredGridReader()
    reader.SetFileName(path)
    reader.Update()
    assert reader.GetErrorCode() == 0
    grid = reader.GetOutput()
    print(f"size\t{grid.GetNumberOfPoints()}\t{grid.GetNumberOfCells()}")
    show_vtk_array("Points", grid.GetPoints().GetData(), "Points")
    show_vtk_array("Cells", grid.GetCells().GetConnectivityArray(), "connectivity")
    show("Cells", "types", "VTK", 1, [], [grid.GetCellType(i) for i in range(grid.GetNumberOfCells())])
    offsets = vtk_numbers(grid.GetCells().GetOffsetsArray())
    show("Cells", "offsets", "VTK", 1, [], offsets[1:])
    for section, data in (("PointData", grid.GetPointData()), ("CellData", grid.GetCellData())):
        for i in range(data.GetNumberOfArrays()):
            show_vtk_array(section, data.GetArray(i))
    fields = grid.GetFieldData()
    for i in range(fields.GetNumberOfArrays()):
        array = fields.GetAbstractArray(i)
        if array.GetClassName() == "vtkStringArray":
            texts = "".join(array.GetValue(j) + "\0" for j in range(array.GetNumberOfValues()))
            show("FieldData", array.GetName(), "String", 1, [], list(texts.encode()))
        else:
            show_vtk_array("FieldData", array)


def show_series(path):
    root = ElementTree.parse(path).getroot()
    assert root.get("type") == "Collection"
    for entry in root.find("Collection"):
        print(f"{entry.get('timestep')}\t{entry.get('file')}")


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8", newline="\n")
    for argument in sys.argv[2:]:
        {"xml": show_xml, "vtk": show_vtk, "series": show_series}[sys.argv[1]](argument)
