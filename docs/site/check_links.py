"""Checks that each link of a built site leads to a file of it and to an anchor that is there.

    check_links.py FOLDER

Links to other sites are listed, each once, and not followed.
"""

import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        self.anchors.update(value for value in (values.get("id"), values.get("name")) if value)
        link = values.get("href") or values.get("src") or values.get("data")
        if link:
            self.links.append((self.getpos()[0], link))


def main(folder):
    found = {path.resolve(): Page(path) for path in sorted(folder.rglob("*.html"))}
    outside, broken, count = set(), [], 0
    for path, page in found.items():
        for line, link in page.links:
            parts = urlsplit(link)
            if parts.scheme in ("http", "https", "mailto"):
                outside.add(link)
                continue
            if parts.scheme == "javascript":
                continue
            count += 1
            target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
            if not target.exists():
                broken.append(f"{path.name}:{line}: {link}: there is no such file")
            elif parts.fragment and target in found and unquote(parts.fragment) not in found[target].anchors:
                broken.append(f"{path.name}:{line}: {link}: there is no such anchor")
    for link in sorted(outside):
        print(f"not followed: {link}")
    for problem in broken:
        print(problem, file=sys.stderr)
    print(f"{len(found)} pages, {count} links inside, {len(broken)} broken, {len(outside)} outside")
    return 1 if broken or not found else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(Path(sys.argv[1])))
