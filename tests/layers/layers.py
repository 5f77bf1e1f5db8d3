"""Which part of the tree may include which, and where the tool makes paths.

A part is a folder with all that is below it, up to a folder that is a part of its own. Each may include itself and the
parts that stand after it here. Headers from elsewhere, such as those of other libraries, are no matter of these rules.
"""

import re
from pathlib import Path, PurePosixPath

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
SUFFIXES = {".h", ".inl", ".cpp"}

# The library, from the application's interface down to the bytes.
WRITER = {
    "Qel/Mox2": {"Qel/Mox", "Qel/Base", "Qel/Data", "Qel/Type", "Qel/Variant",
                 "Qel/Log", "Qel/Exception", "Qel/Util"},
    "Qel/Base": {"Qel/Exception", "Qel/Util"},
    "Qel/Data": {"Qel/Exception", "Qel/Util"},
    "Qel/Type": {"Qel/Exception", "Qel/Util"},
    "Qel/Variant": {"Qel/Exception", "Qel/Util"},
    "Qel/Mox": {"Qel/Tnf", "Qel/Adt", "Qel/Log", "Qel/Exception", "Qel/Util"},
    "Qel/Tnf": {"Qel/Log", "Qel/Exception", "Qel/Util"},
    "Qel/Adt": {"Qel/Log", "Qel/Exception", "Qel/Util"},
    "Qel/Log": {"Qel/Util"},
    "Qel/Exception": {"Qel/Util"},
    "Qel/Util": set(),
}

# The tool. What every command may use comes first; a command that is not listed is a folder with these rules.
SHARED = {"common", "mesh", "exodus"}
IMPORT = SHARED | {"import", "import/model"}
TOOL = {
    "common": set(),
    "mesh": {"common"},
    "exodus": {"common", "mesh"},
    "import": IMPORT | {"import/exodus", "import/cgns", "import/gmsh"},
    "import/model": {"common", "mesh", "import", "check", "parts"},  # import --check; what processes save is joined
    "import/exodus": IMPORT,
    "import/cgns": IMPORT,
    "import/gmsh": IMPORT,
    "import/gmsh/module": {"common", "import/gmsh"},
    "export": SHARED | {"export/exodus", "export/vtk"},
    "export/exodus": SHARED | {"export"},
    "export/vtk": {"common", "mesh", "export"},
    "parts": {"common", "check"},  # a file whose blocks are copied is checked first
    "join": SHARED | {"parts"},
    "split": SHARED | {"parts"},
}
# The one part of the tool that uses the library's insides: no call that applications have takes a block as a file
# stores it, and the layout of the container is written once, in the library.
WITH_INSIDES = {"parts"}

# Where paths are UTF-16, a path made of a std::string, or the other way round, loses what is not ASCII.
PATH_OF_TEXT = re.compile(r'(?:filesystem|fs)::path(?:\(|\{)(?!"|\)|\})[^;]*|[.](?:generic_)?string\(\)')
UTF8_PATHS = "common/utf8Path.cpp"


def part_of(path, parts):
    """The innermost part that a file is in; None if it is in none."""
    return next((str(folder) for folder in PurePosixPath(path).parents if str(folder) in parts), None)


def sources(folder):
    return [file for file in sorted(Path(folder).rglob("*")) if file.suffix in SUFFIXES]


def includes(file):
    return INCLUDE.findall(file.read_text(encoding="utf-8"))


class Tree:
    """Folders whose files include each other by one set of rules."""

    def __init__(self, roots, rules):
        """The roots are the folders that stand in front of a path in an include."""
        self.roots = [Path(root).resolve() for root in roots]
        self.rules = rules

    def violations(self):
        """A line for each include that leads where it must not."""
        return [line for root in self.roots for file in sources(root) for line in self._violations_of(root, file)]

    def _violations_of(self, root, file):
        part = part_of(file.relative_to(root).as_posix(), self.rules)
        for include in includes(file) if part else []:
            target = self._find(file, include)
            other = part_of(target, self.rules) if target else None
            if other and other != part and other not in self.rules[part]:
                yield f"{file}: {include}: {part} must not include {other}"

    def _find(self, file, include):
        """The path of an included file below its root; None if it is none of this tree."""
        beside = (file.parent / include).resolve()
        for root in self.roots:
            if beside.is_file() and beside.is_relative_to(root):
                return beside.relative_to(root).as_posix()
            if (root / include).is_file():
                return include
        return None


def tool_rules(root):
    """The rules of the tool with its commands; the files beside their folders put all together."""
    commands = {folder.name: SHARED for folder in Path(root).iterdir() if folder.is_dir()}
    rules = commands | TOOL
    return rules | {".": set(rules)}


def foreign_includes(folders, prefix):
    """A line for each include whose path begins with a prefix that the folders have nothing to do with."""
    return [f"{file}: {include}" for folder in folders for file in sources(folder)
            for include in includes(file) if include.startswith(prefix)]


def private_includes(project):
    """A line for each include of the Python package that an application could not have.

    It sets back what the library keeps from one model to the next, and that is no part of the interface.
    """
    public = {file.relative_to(project / "include").as_posix() for file in sources(project / "include")}
    allowed = public | {"Qel/Tnf/Block.h"}
    return [f"{file}: {include}" for file in sources(project / "python") for include in includes(file)
            if include.startswith("Qel/") and include not in allowed]

def includes_of_insides(project):
    """A line for each include of a header that the library does not install, by a part of the tool that may not."""
    tool = project / "tools" / "mox"
    return [f"{file}: {include}: the tool must not include the library's insides"
            for file in sources(tool) if file.relative_to(tool).parts[0] not in WITH_INSIDES
            for include in includes(file)
            if include.startswith("Qel/") and not (project / "include" / include).is_file()]


def paths_of_texts(tool):
    """A line for each place of the tool that makes a path from a text, or a text from a path, by itself."""
    return [f"{file}: {found}: use pathOf() or utf8Of()" for file in sources(tool)
            if file.relative_to(tool).as_posix() != UTF8_PATHS
            for found in PATH_OF_TEXT.findall(file.read_text(encoding="utf-8"))]


def violations(project):
    """A line for each include in the project that leads where it must not, and for each path that is made wrongly."""
    project = Path(project)
    writer = [project / "include", project / "src"]
    tool = project / "tools" / "mox"
    return (Tree(writer, WRITER).violations()
            + foreign_includes(writer, "MoxReader/")
            + foreign_includes([project / "reader"], "Qel/")
            + private_includes(project)
            + includes_of_insides(project)
            + Tree([tool], tool_rules(tool)).violations()
            + paths_of_texts(tool))
