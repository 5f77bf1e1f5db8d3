"""Makes the pages of the site from the pages of the project, as Doxygen takes them.

    make_pages.py FOLDER

Headings get the anchors by which pages link to each other, links become references, which Doxygen checks, and each
source that a page links to becomes a page as well. So does the reference of the Python package.
"""

import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "docs"))

import diagrams  # noqa: E402
import pages  # noqa: E402
import python_reference  # noqa: E402

ROOT = pages.ROOT
LANGUAGES = {".cpp": "cpp", ".h": "cpp", ".py": "py", ".cmake": "cmake"}

def page_id(path):
    """The name of a page of the site, made of a path in the project."""
    return "page_" + re.sub(r"\W", "_", str(path.relative_to(ROOT)))


def anchor_id(path, anchor):
    return page_id(path) + "_" + re.sub(r"\W", "_", anchor)


# The pages below the first one, in this order; pages that are not named follow in that of the alphabet.
FIRST = ("docs/tutorial.md", "docs/recipes.md", "docs/exceptions.md", "docs/large-models.md", "docs/parallel.md",
         "docs/performance.md", "docs/python.md")
FORMAT = ROOT / "docs" / "format" / "README.md"


class Site:
    def __init__(self, folder):
        self.folder = folder
        self.sources = set()
        self.pages = pages.all_pages()

    def write(self, name, text):
        (self.folder / f"{name}.md").write_text(text, encoding="utf-8")

    def make(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        texts = {page: self.page(page) for page in self.pages}
        for page, text in texts.items():
            self.write(page_id(page), text + self.below(page))
        for source in sorted(self.sources):
            self.write(page_id(source), self.source(source))
        self.write("page_python_reference", python_reference.page())
        self.write("page_sources", "# Sources {#page_sources}\n\nWhat pages link to.\n\n"
                   + self.subpages(map(page_id, sorted(self.sources))))

    def subpages(self, names):
        return "".join(f"- @subpage {name}\n" for name in names)

    def below(self, page):
        """The list of the pages that stand below a page in the tree of the site."""
        of_format = [one for one in self.pages if one.parent == FORMAT.parent and one != FORMAT]
        if page == FORMAT:
            return "\n## Pages {#pages_of_the_format}\n\n" + self.subpages(map(page_id, of_format))
        if page != ROOT / "README.md":
            return ""
        first = [ROOT / name for name in FIRST]
        others = [one for one in self.pages if one not in (*first, *of_format, page)]
        return "\n## All pages {#all_pages}\n\n" + self.subpages(
            [*map(page_id, first), "page_python_reference", *map(page_id, others), "page_sources"])

    def page(self, page):
        anchors = {number: (level, text, anchor) for number, level, text, anchor in pages.headings(page)}
        diagram_at = {block.line: block for block in pages.blocks(page) if block.language == "mermaid"}
        lines, code = [], None
        paragraph = []

        def flush():
            if paragraph:
                lines.append(self.prose(page, "\n".join(paragraph)))
                paragraph.clear()

        for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), start=1):
            if code is not None:
                if code != "mermaid":
                    lines.append(line)
                if line == "```":
                    code = None
            elif number in diagram_at:
                flush()
                code = "mermaid"
                lines += ["", *diagrams.shown(diagram_at[number].text), ""]
            elif line.startswith("```"):
                flush()
                code = line[3:].split(" ")[0]
                lines.append("```{." + code + "}" if code in ("cpp", "python", "cmake") else "```")
            elif re.fullmatch(r"<!-- .* -->", line):
                flush()
            elif number in anchors:
                flush()
                level, text, anchor = anchors[number]
                name = self.title(page) if number == min(anchors) else anchor_id(page, anchor)
                lines.append(f"{'#' * level} {self.plain(text)} {{#{name}}}")
            elif not line or line.startswith("    "):
                flush()
                lines.append(line)
            elif line.startswith("|"):
                flush()
                lines.append(self.prose(page, line))
            else:
                paragraph.append(line)
        flush()
        return "\n".join(lines) + "\n"

    def title(self, page):
        return "mainpage" if page == ROOT / "README.md" else page_id(page)

    def plain(self, text):
        """A heading, without code spans and links: its name is shown in lists, which don't know them."""
        return re.sub(r"`([^`]*)`", r"\1", re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text)).replace("<", "&lt;")

    def prose(self, page, text):
        text = pages.LINK.sub(lambda found: self.link(page, *found.groups()), text)
        return "".join(self.span(part) if part.startswith("`") else part for part in re.split(r"(`[^`]*`)", text))

    def span(self, code):
        """A code span; Doxygen would take one that begins with colons for a name to link to."""
        return code.replace("`::", "<code>&#58;&#58;", 1)[:-1] + "</code>" if code.startswith("`::") else code

    def link(self, page, picture, text, target):
        if re.match(r"[a-z]+:", target):
            return f"[{text}]({target})"
        path, _, anchor = target.partition("#")
        file = (page.parent / path).resolve() if path else page
        if picture:
            return f"![{text}]({file.name})"
        file = self.readme_of(file)
        if file.suffix == ".md":
            title = next(pages.headings(file))[3]
            reference = anchor_id(file, anchor) if anchor not in ("", title) else page_id(file)
            return f"[{text}](@ref {'index' if reference == page_id(ROOT / 'README.md') else reference})"
        self.sources.add(file)
        return f"[{text}](@ref {page_id(file)})"

    def readme_of(self, file):
        readme = file / "README.md"
        return readme if file.is_dir() and readme in self.pages else file

    def source(self, path):
        title = f"# {path.relative_to(ROOT)} {{#{page_id(path)}}}\n\n"
        if path.is_dir():
            files = sorted(file for file in path.rglob("*") if file.is_file() and file.suffix in (*LANGUAGES, ".txt"))
            return title + "".join(f"- `{file.relative_to(path)}`\n" for file in files)
        language = LANGUAGES.get(path.suffix)
        fence = "```{." + language + "}" if language else "```"
        return f"{title}{fence}\n{path.read_text(encoding='utf-8')}```\n"


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    Site(Path(sys.argv[1])).make()
