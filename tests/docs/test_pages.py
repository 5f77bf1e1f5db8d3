"""The pages agree with the code that they show, their links lead somewhere, and no block of code is left unchecked.

Nothing is compiled or run here: scripts/docs does that.
"""

import ast
import re
import unittest

import pages


class Pages(unittest.TestCase):
    def test_the_code_of_the_pages_is_that_of_the_examples(self):
        cut = [block for page in pages.all_pages() for block in pages.blocks(page) if block.mark("from")]
        self.assertGreater(len(cut), 12)
        for block in cut:
            with self.subTest(block=str(block)):
                self.assertEqual(pages.source_of(block), block.text, "see tests/docs/pages.py --update")

    def test_each_block_of_code_says_what_becomes_of_it(self):
        for page in pages.all_pages():
            for block in pages.blocks(page):
                with self.subTest(block=str(block)):
                    for mark in block.marks:
                        self.assertTrue(mark.startswith(pages.KINDS), mark)
                    if block.language.split(" ")[0] in pages.CODE:
                        self.assertTrue(block.marks, "no comment before the block; tests/docs/pages.py lists them")
                    if block.mark("tested by"):
                        self.assertTrue((pages.ROOT / block.mark("tested by")).exists())

    def test_each_example_of_the_tutorial_is_on_its_page_and_short(self):
        page = (pages.ROOT / "docs" / "tutorial.md").read_text(encoding="utf-8")
        programs = sorted((pages.ROOT / "examples" / "tutorial").glob("*.cpp"))
        self.assertEqual(7, len(programs))
        for program in programs:
            with self.subTest(program=program.name):
                self.assertIn(f"examples/tutorial/{program.name}", page)
                self.assertLessEqual(len(program.read_text(encoding="utf-8").splitlines()), 100)

    def test_each_public_member_of_the_python_package_has_a_text_for_the_reference(self):
        count = 0
        for name in ("_writing", "_reading", "_types", "_errors"):
            path = pages.ROOT / "python" / "moxwriter" / f"{name}.py"
            for node in ast.parse(path.read_text(encoding="utf-8")).body:
                for one in [node, *getattr(node, "body", [])] if isinstance(node, ast.ClassDef) else [node]:
                    if isinstance(one, (ast.ClassDef, ast.FunctionDef)) and not {node.name[0], one.name[0]} & {"_"}:
                        count += 1
                        with self.subTest(file=path.name, member=f"{node.name}.{one.name}"):
                            self.assertTrue(ast.get_docstring(one))
        self.assertGreater(count, 70)

    def test_links_lead_to_files_and_headings(self):
        found = 0
        for page in pages.all_pages():
            for line, target in pages.links(page):
                if re.match(r"[a-z]+:", target):
                    continue
                found += 1
                path, _, name = target.partition("#")
                file = (page.parent / path).resolve() if path else page
                with self.subTest(link=f"{page.relative_to(pages.ROOT)}:{line}: {target}"):
                    self.assertTrue(file.exists(), "there is no such file")
                    if name and file.suffix == ".md":
                        self.assertIn(name, [heading[3] for heading in pages.headings(file)], "no such heading")
        self.assertGreater(found, 60)


if __name__ == "__main__":
    unittest.main()
