"""The reference of the Python package as a page, from its docstrings. The sources are read and not imported."""

import ast
import inspect
import re
from pathlib import Path

PACKAGE = Path(__file__).resolve().parents[2] / "python" / "moxwriter"
MODULES = {
    "moxwriter": ("_writing", "_reading", "_types", "_errors"),
    "moxwriter.meshio": ("meshio",),
    "moxwriter.convert": ("convert",),
}
SECTIONS = ("Args", "Returns", "Raises", "Attributes")


def public_names():
    text = (PACKAGE / "__init__.py").read_text(encoding="utf-8")
    return set(re.findall(r'"(\w+)"', text.split("__all__")[1]))


def escaped(text):
    """Prose for Doxygen: outside code spans nothing is a command, a tag or a link."""
    parts = re.split(r"(`[^`]*`)", text)
    return "".join(part if part.startswith("`") else re.sub(r"([@\\<>#%_])", r"\\\1", part) for part in parts)


def code(lines):
    return ["", "```{.py}", *lines, "```", ""]


def described(docstring):
    """A docstring in the form that this package uses: paragraphs, examples, and sections of indented items."""
    result, example, in_section = [], [], False
    for line in inspect.cleandoc(docstring or "").splitlines():
        text = line.strip()
        if example and text:
            example.append(line)
            continue
        if example:
            result += code(example)
            example = []
        if text.startswith(">>>") or (line.startswith("    ") and not in_section):
            example = [line]
        elif text.rstrip(":") in SECTIONS and text.endswith(":"):
            result += ["", f"**{text.rstrip(':')}**", ""]
            in_section = True
        elif in_section and line.startswith("        "):
            result[-1] += " " + escaped(text)
        elif in_section and line.startswith("    "):
            name, colon, rest = text.partition(":")
            is_item = colon and re.fullmatch(r"[\w, ]+", name)
            result.append(f"- `{name}`: {escaped(rest.strip())}" if is_item else f"- {escaped(text)}")
        else:
            in_section = in_section and not text
            result.append(escaped(line))
    return result + (code(example) if example else [])


def signature(function):
    arguments = ast.unparse(function.args).removeprefix("self, ").removeprefix("self")
    returns = f" -> {ast.unparse(function.returns)}" if function.returns is not None else ""
    return f"{function.name}({arguments}){returns}"


def is_public(node):
    return isinstance(node, ast.FunctionDef) and (not node.name.startswith("_") or node.name == "__getitem__")


def members(node, lines):
    """The numbers and fields of a class, with the comments `#:` that follow them."""
    found = []
    for item in node.body:
        if isinstance(item, (ast.Assign, ast.AnnAssign)):
            target = item.targets[0] if isinstance(item, ast.Assign) else item.target
            if isinstance(target, ast.Name) and not target.id.startswith("_") and target.id != "code":
                comment = lines[item.end_lineno - 1].partition("#: ")[2]
                value = f" = {ast.unparse(item.value)}" if item.value is not None else ""
                kind = f": {ast.unparse(item.annotation)}" if isinstance(item, ast.AnnAssign) else ""
                found.append(f"- `{target.id}{kind}{value}` {escaped(comment)}")
    return ["", *found, ""] if found else []


def of_class(node, module, lines):
    bases = ", ".join(ast.unparse(base) for base in node.bases)
    result = [f"### class {node.name} {{#python_{node.name}}}", "", *([f"Bases: `{bases}`", ""] if bases else []),
              *described(ast.get_docstring(node)), *members(node, lines)]
    for function in filter(is_public, node.body):
        is_property = any(ast.unparse(mark) == "property" for mark in function.decorator_list)
        title = function.name if is_property else signature(function)
        result += ["", f"`{title}`", "", *described(ast.get_docstring(function)), ""]
    return result


def of_function(node):
    return [f"### {node.name}() {{#python_{node.name}}}", "", f"`{signature(node)}`", "",
            *described(ast.get_docstring(node))]


def of_file(name, module, public):
    text = (PACKAGE / f"{name}.py").read_text(encoding="utf-8")
    tree = ast.parse(text)
    result = [] if module == "moxwriter" else described(ast.get_docstring(tree))
    for node in tree.body:
        if not isinstance(node, (ast.ClassDef, ast.FunctionDef)) or node.name.startswith("_"):
            continue
        if module == "moxwriter" and node.name not in public or not ast.get_docstring(node):
            continue
        result += ["", *(of_class(node, module, text.splitlines()) if isinstance(node, ast.ClassDef)
                         else of_function(node)), ""]
    return result


def page():
    public = public_names()
    lines = ["# Python reference {#page_python_reference}", "",
             "What `import moxwriter` gives; [Models in Python](@ref page_docs_python_md) shows how it is used.", ""]
    for module, files in MODULES.items():
        lines += [f"## {module} {{#python_{module.replace('.', '_')}}}", ""]
        for name in files:
            lines += of_file(name, module, public)
    return "\n".join(lines) + "\n"
