"""Small valid files of the formats that mox imports, made by mox and by the libraries of the formats themselves.

Each function returns files by name, or nothing where a library is not installed.
"""

import ctypes
import ctypes.util
import os
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

PLATE = """$MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
2
1 7 "edge"
2 8 "plate"
$EndPhysicalNames
$Nodes
6
10 0 0 0
20 1 0 0
30 1 1 0
40 0 1 0.5
50 2 0 0
60 2 1 0
$EndNodes
$Elements
5
1 15 2 0 1 10
2 1 2 7 1 10 20
3 2 2 8 1 10 20 30
4 2 2 8 2 10 30 40
5 3 2 8 2 20 50 60 30
$EndElements
$NodeData
1
"heat"
1
0.25
3
0
1
6
10 1
20 2
30 3
40 4
50 5
60 6
$EndNodeData
$ElementData
1
"stress"
1
0.25
3
0
9
2
3 1 4 6 4 2 5 6 5 3
5 7 0 0 0 7 0 0 0 7
$EndElementData
"""


def library(*names):
    for name in names:
        path = ctypes.util.find_library(name)
        if path:
            return ctypes.CDLL(path)
    return None


def exodus_files(folder):
    """What mox exports: of a mesh, and of one with results for several steps."""
    files = {}
    for name in ("mesh", "steps", "golden"):
        path = folder / f"{name}.e"
        command = [os.environ["MOX"], "export", "-q", "-f", str(ROOT / "tests" / "golden" / f"{name}.mox"), str(path)]
        if subprocess.run(command, capture_output=True, check=False).returncode == 0:
            files[path.name] = path.read_bytes()
    return files


def gmsh_files(folder):
    """The plate as text of two versions, and in binary."""
    source = folder / "plate.msh"
    source.write_text(PLATE)
    files = {source.name: source.read_bytes()}
    gmsh = library("gmsh")
    if gmsh is None:
        return files
    error = ctypes.byref(ctypes.c_int())
    gmsh.gmshInitialize(0, None, 0, error)
    option = gmsh.gmshOptionSetNumber
    option.argtypes = [ctypes.c_char_p, ctypes.c_double, ctypes.c_void_p]
    option(b"General.Terminal", 0, None)
    option(b"Mesh.SaveAll", 1, None)
    gmsh.gmshMerge(str(source).encode(), error)
    for version, binary in ((4.1, 0), (4.1, 1), (2.2, 1), (4.0, 0)):
        path = folder / f"plate-{version}-{binary}.msh"
        option(b"Mesh.MshFileVersion", version, None)
        option(b"Mesh.Binary", binary, None)
        gmsh.gmshWrite(str(path).encode(), error)
        files[path.name] = path.read_bytes()
    gmsh.gmshFinalize(error)
    return files


class CgnsFile:
    """One base with one zone. Numbers of the CGNS library: 3 Unstructured, 4 RealDouble, 2 Vertex, 3 CellCenter."""

    def __init__(self, cgns, path, kind):
        self.cgns, self.file = cgns, ctypes.c_int()
        self.call("cg_set_file_type", kind)
        self.call("cg_open", str(path).encode(), 1, ctypes.byref(self.file))
        self.base = self.made("cg_base_write", b"Base", 3, 3)

    def call(self, name, *arguments):
        if getattr(self.cgns, name)(*arguments) != 0:
            raise OSError(f"{name} failed")

    def made(self, name, *arguments):
        number = ctypes.c_int()
        self.call(name, self.file, *arguments, ctypes.byref(number))
        return number.value

    def write(self):
        doubles = ctypes.c_double * 5
        zone = self.made("cg_zone_write", self.base, b"Zone", (ctypes.c_int * 3)(5, 2, 0), 3)
        for i, axis in enumerate((b"CoordinateX", b"CoordinateY", b"CoordinateZ")):
            self.made("cg_coord_write", self.base, zone, 4, axis, doubles(*[(i + 1) * j % 3 for j in range(5)]))
        # Element type 10: TETRA_4.
        self.made("cg_section_write", self.base, zone, b"Solid", 10, 1, 2, 0, (ctypes.c_int * 8)(1, 2, 3, 4, 2, 3, 4, 5))
        for location, name, size in ((2, b"Points", 5), (3, b"Cells", 2)):
            solution = self.made("cg_sol_write", self.base, zone, name, location)
            self.made("cg_field_write", self.base, zone, solution, 4, b"Pressure", (ctypes.c_double * size)(*range(size)))
        self.call("cg_close", self.file)


def cgns_files(folder):
    """One zone of two tetrahedra with results, in HDF5 (2) and in ADF (1)."""
    cgns = library("cgns")
    files = {}
    for name, kind in (("tetra-hdf5.cgns", 2), ("tetra-adf.cgns", 1)) if cgns else ():
        path = folder / name
        try:
            CgnsFile(cgns, path, kind).write()
            files[name] = path.read_bytes()
        except OSError:
            continue
    return files


def foreign_files(folder):
    return {**exodus_files(folder), **gmsh_files(folder), **cgns_files(folder)}
