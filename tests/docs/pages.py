"""The Markdown pages of the project: their code blocks, what is to become of each, their headings and links.

A comment before a block of code says what becomes of it:

    <!-- from PATH [SECTION] -->     it is that file, or the lines between "[SECTION]" and "[/SECTION]" in it
    <!-- file NAME -->               it becomes that file in the scratch folder of the page
    <!-- run -->                     it runs there; <!-- run; fails --> if its exit code is not 0
    <!-- prints -->                  it is what the block before it printed; text after a semicolon is for people
    <!-- compile -->                 it is a whole program, which has to build and link
    <!-- tested by PATH -->          that test compares it with the code
    <!-- not run: REASON -->

    python3 tests/docs/pages.py --update     fills the blocks that come from files
"""

import re
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CODE = {"cpp", "sh", "python"}  #: Languages whose blocks have such a comment.
KINDS = ("from", "file", "run", "prints", "compile", "tested by", "not run:")
COMMENT = re.compile(r"<!-- (.*) -->")
FENCE = re.compile(r"```(.*)")


@dataclass
class Block:
    page: Path
    line: int  #: Of the opening fence, from 1.
    language: str
    text: str
    marks: list = field(default_factory=list)

    def __str__(self):
        return f"{self.page.relative_to(ROOT)}:{self.line}"

    def mark(self, kind):
        """What follows the kind in its comment; None without such a comment."""
        for mark in self.marks:
            if mark == kind or mark.startswith((kind + " ", kind + ";")) or (kind[-1] == ":" and mark.startswith(kind)):
                return mark[len(kind):].strip()
        return None


def all_pages():
    """Every page that is not ignored by version control, but for the forms of a forge."""
    listed = subprocess.run(["git", "-C", str(ROOT), "ls-files", "--cached", "--others", "--exclude-standard", "*.md"],
                            capture_output=True, text=True, check=False)
    if listed.returncode == 0 and listed.stdout:
        pages = [ROOT / line for line in listed.stdout.splitlines()]
    else:
        pages = [page for page in ROOT.rglob("*.md") if not page.relative_to(ROOT).parts[0].startswith("build")
                 and "node_modules" not in page.parts]
    return sorted(page for page in pages if page.exists() and ".github" not in page.parts)


def blocks(page):
    result, marks, block = [], [], None
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), start=1):
        fence = FENCE.fullmatch(line)
        if block is not None and line == "```":
            result.append(block)
            block, marks = None, []
        elif block is not None:
            block.text += line + "\n"
        elif fence:
            block = Block(page, number, fence[1].strip(), "", marks)
        elif COMMENT.fullmatch(line):
            marks.append(COMMENT.fullmatch(line)[1])
        else:
            marks = []
    return result


def section(path, name=None):
    """A file, or the lines between the marks of a section, without the indentation that they share."""
    text = path.read_text(encoding="utf-8")
    if name is None:
        return re.sub(r"(?m)^ *// \[/?[\w-]+\]\n", "", text)
    found = re.search(rf"(?ms)^ *// \[{re.escape(name)}\]\n(.*?)^ *// \[/{re.escape(name)}\]\n", text)
    if not found:
        raise ValueError(f"{path} has no section {name}")
    lines = found[1].splitlines()
    indent = min(len(line) - len(line.lstrip()) for line in lines if line)
    return "".join(line[indent:] + "\n" for line in lines)


def source_of(block):
    words = block.mark("from").split()
    return section(ROOT / words[0], *words[1:])


def prose(page):
    """The lines outside code, each with its number."""
    fenced = False
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), start=1):
        if line.startswith("```"):
            fenced = not fenced
        elif not fenced and not line.startswith("    "):
            yield number, line


def anchor(heading):
    """The anchor that a heading gets where Markdown is shown."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading)
    return re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")


def headings(page):
    """Each heading's line, level, text and anchor."""
    seen = {}
    for number, line in prose(page):
        found = re.match(r"(#+) (.*?)\s*$", line)
        if found:
            name = anchor(found[2])
            count = seen.get(name, 0)
            seen[name] = count + 1
            yield number, len(found[1]), found[2], f"{name}-{count}" if count else name


LINK = re.compile(r"(!?)\[((?:[^\[\]`]|`[^`]*`|\[[^\]]*\])*)\]\(([^()\s]+)\)")


def links(page):
    """Each link's line and target, pictures included. Links may go on from one line to the next."""
    lines = dict(prose(page))
    text = "\n".join(re.sub(r"`[^`]*`", lambda code: " " * len(code[0]), lines.get(number, ""))
                     for number in range(1, max(lines, default=0) + 1))
    for found in LINK.finditer(text):
        yield text.count("\n", 0, found.start()) + 1, found[3]


def fill(page, text_of):
    """Replaces the text of each block for which the function gives one."""
    lines = page.read_text(encoding="utf-8").splitlines(keepends=True)
    for block in reversed(blocks(page)):
        text = text_of(block)
        if text is not None and text != block.text:
            lines[block.line:block.line + block.text.count("\n")] = [text]
    page.write_text("".join(lines), encoding="utf-8")


if __name__ == "__main__":
    if sys.argv[1:] != ["--update"]:
        sys.exit(__doc__)
    for one in all_pages():
        fill(one, lambda block: source_of(block) if block.mark("from") else None)
