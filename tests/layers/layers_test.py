"""The include lines of the project keep to the layers, and one that does not would be found."""

import tempfile
import unittest
from pathlib import Path

import layers

PROJECT = Path(__file__).resolve().parents[2]


class ProjectTest(unittest.TestCase):
    def test_no_include_of_the_project_leads_where_it_must_not(self):
        self.assertEqual(layers.violations(PROJECT), [])

    def test_every_folder_of_the_library_has_rules(self):
        folders = {f"Qel/{folder.name}" for root in ("include", "src")
                   for folder in (PROJECT / root / "Qel").iterdir() if folder.is_dir()}
        self.assertEqual(folders, set(layers.WRITER))

    def test_every_folder_with_rules_is_there(self):
        self.assertEqual([part for part in layers.TOOL if not (PROJECT / "tools/mox" / part).is_dir()], [])


class FindingTest(unittest.TestCase):
    """Made-up trees of files with one include line each."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = Path(folder.name).resolve()
        for name in ("include", "src", "reader", "tools/mox"):
            (self.project / name).mkdir(parents=True)

    def file(self, path, include=None):
        file = self.project / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(f"// Text\n#include {include}\n" if include else "", encoding="utf-8")

    def assert_found(self, path, include, reason):
        self.file(path, include)
        found = layers.violations(self.project)
        self.assertEqual(len(found), 1, found)
        self.assertTrue(found[0].startswith(f"{self.project / path}: "), found)
        self.assertIn(reason, found[0])

    def assert_allowed(self, path, include):
        self.file(path, include)
        self.assertEqual(layers.violations(self.project), [])

    def test_a_lower_layer_of_the_library_must_not_include_a_higher_one(self):
        self.file("src/Qel/Mox/Tree.h")
        self.assert_found("src/Qel/Tnf/Index.cpp", "<Qel/Mox/Tree.h>", "Qel/Tnf must not include Qel/Mox")

    def test_a_layer_must_not_be_left_out(self):
        self.file("src/Qel/Tnf/Index.h")
        self.assert_found("src/Qel/Mox2/Saver.cpp", "<Qel/Tnf/Index.h>", "Qel/Mox2 must not include Qel/Tnf")

    def test_a_public_header_counts_like_a_source(self):
        self.file("src/Qel/Mox/Node.h")
        self.assert_found("include/Qel/Exception/Exception.h", "<Qel/Mox/Node.h>", "Qel/Exception must not")

    def test_a_higher_layer_may_include_the_next_one(self):
        self.file("src/Qel/Tnf/Index.h")
        self.assert_allowed("src/Qel/Mox/Tree.cpp", "<Qel/Tnf/Index.h>")

    def test_the_writer_must_not_include_the_reader(self):
        self.assert_found("src/Qel/Mox/Tree.cpp", "<MoxReader/Node.h>", "MoxReader/Node.h")

    def test_the_reader_must_not_include_the_writer(self):
        self.assert_found("reader/src/MoxReader/Node.cpp", "<Qel/Mox2/Step.h>", "Qel/Mox2/Step.h")

    def test_the_python_package_must_not_include_the_inside_of_the_library(self):
        self.assert_found("python/src/writer.cpp", "<Qel/Mox/Tree.h>", "Qel/Mox/Tree.h")

    def test_the_python_package_may_include_what_is_installed(self):
        self.file("include/Qel/Mox2/Model.h")
        self.assert_allowed("python/src/writer.cpp", "<Qel/Mox2/Model.h>")

    def test_a_command_must_not_include_another(self):
        self.file("tools/mox/import/ImportRequest.h")
        self.assert_found("tools/mox/export/ExportCommand.cpp", '"../import/ImportRequest.h"',
                          "export must not include import")

    def test_an_include_from_the_root_of_the_tool_counts_too(self):
        self.file("tools/mox/info/InfoCommand.h")
        self.assert_found("tools/mox/salvage/SalvageCommand.cpp", '"info/InfoCommand.h"',
                          "salvage must not include info")

    def test_a_new_command_must_not_include_another(self):
        self.file("tools/mox/tree/TreePrinter.h")
        self.assert_found("tools/mox/view/ViewCommand.cpp", '"../tree/TreePrinter.h"',
                          "view must not include tree")

    def test_a_new_command_may_include_what_is_shared(self):
        self.file("tools/mox/mesh/NodeOrder.h")
        self.assert_allowed("tools/mox/view/ViewCommand.cpp", '"../mesh/NodeOrder.h"')

    def test_what_is_shared_must_not_include_a_command(self):
        self.file("tools/mox/extract/writeNumbers.h")
        self.assert_found("tools/mox/common/OutputFile.h", '"../extract/writeNumbers.h"',
                          "common must not include extract")

    def test_a_command_must_not_include_the_list_of_commands(self):
        self.file("tools/mox/Commands.h")
        self.assert_found("tools/mox/man/ManCommand.cpp", '"../Commands.h"', "man must not include .")

    def test_formats_of_the_import_must_not_include_each_other(self):
        self.file("tools/mox/import/gmsh/TagIndex.h")
        self.assert_found("tools/mox/import/cgns/CgnsImporter.h", '"../gmsh/TagIndex.h"',
                          "import/cgns must not include import/gmsh")

    def test_the_import_alone_may_include_the_check(self):
        self.file("tools/mox/check/FileCheck.h")
        self.assert_allowed("tools/mox/import/model/saveImported.cpp", '"../../check/FileCheck.h"')
        self.assert_found("tools/mox/export/ExportCommand.cpp", '"../check/FileCheck.h"',
                          "export must not include check")

    def test_a_command_must_not_include_the_insides_of_the_library(self):
        self.file("src/Qel/Tnf/Index.h")
        self.assert_found("tools/mox/join/JoinCommand.cpp", "<Qel/Tnf/Index.h>",
                          "the tool must not include the library's insides")

    def test_a_command_may_include_what_the_library_installs(self):
        self.file("include/Qel/Mox2/Model.h")
        self.assert_allowed("tools/mox/import/ImportCommand.cpp", "<Qel/Mox2/Model.h>")

    def test_the_part_that_copies_blocks_may_include_the_insides_of_the_library(self):
        self.file("src/Qel/Tnf/Index.h")
        self.assert_allowed("tools/mox/parts/StoredModel.cpp", "<Qel/Tnf/Index.h>")

    def test_the_tool_must_not_make_a_path_from_a_text(self):
        file = self.project / "tools/mox/view/ViewCommand.cpp"
        file.parent.mkdir(parents=True)
        for code in ("fs::path(name)", "std::filesystem::path{name}", "path.filename().string()"):
            file.write_text(f"f({code}, x);\n", encoding="utf-8")
            self.assertEqual(len(layers.violations(self.project)), 1, code)

    def test_the_tool_may_make_a_path_from_a_literal(self):
        file = self.project / "tools/mox/view/ViewCommand.cpp"
        file.parent.mkdir(parents=True)
        file.write_text('f(fs::path("."), fs::path());\n', encoding="utf-8")
        self.assertEqual(layers.violations(self.project), [])

    def test_one_source_of_the_tool_may_make_a_path_from_a_text(self):
        file = self.project / "tools/mox" / layers.UTF8_PATHS
        file.parent.mkdir(parents=True)
        file.write_text("return std::filesystem::path(utf8);\n", encoding="utf-8")
        self.assertEqual(layers.violations(self.project), [])

    def test_other_libraries_do_not_matter(self):
        self.assert_allowed("tools/mox/mesh/NodeOrder.cpp", "<fmt/core.h>")


if __name__ == "__main__":
    unittest.main()
