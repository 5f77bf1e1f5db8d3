"""docs/exceptions.md has every exception that the sources of the writer and the reader can throw, and no other."""

import re
import unittest

import pages

PAGE = pages.ROOT / "docs" / "exceptions.md"


def sources(*folders):
    for folder in folders:
        for path in sorted((pages.ROOT / folder).rglob("*")):
            if path.suffix in (".h", ".cpp", ".inl"):
                yield path.read_text(encoding="utf-8")


def fixed_texts():
    text = (pages.ROOT / "src/Qel/Exception/Exception.cpp").read_text(encoding="utf-8")
    return {name: (code, words) for name, code, words
            in re.findall(r'QEL_EXCEPTION_ROW\((\w+), (\d+), "([^"]*)"\)', text)}


def literal(expression):
    """The text of a throw, with the name of a variable in capitals in its place."""
    text = re.sub(r'"\s*\+\s*(\w+)\s*\+\s*"', lambda found: found[1].upper(), expression.strip())
    return text[1:-1].replace('\\"', '"')


def thrown_by_the_writer():
    classes = fixed_texts()
    found = set()
    for text in sources("src"):
        for name, expression in re.findall(r"QEL_THROW\((?:Qel::)?Exception::(\w+)\((.*?)\)\);", text, re.S):
            code, words = classes[name]
            found.add((name, code, literal(expression) if expression.strip() else words))
        for name, expression in re.findall(r"\bthrow (std::\w+)\((.*?)\);", text, re.S):
            found.add((name, "", literal(expression) if expression.strip() else "the standard library's"))
    return found


def codes_of_the_reader():
    text = (pages.ROOT / "reader/src/MoxReader/Error.cpp").read_text(encoding="utf-8")
    return {(code, words) for code, words in re.findall(r'Entry\{ErrorCode::(\w+), "\w+",\s*"([^"]*)"\}', text)}


def rows(columns):
    """The rows of all tables of the page whose headings begin with these."""
    inside = False
    for line in PAGE.read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")] if line.startswith("|") else []
        if not cells:
            inside = False
        elif cells[:len(columns)] == columns:
            inside = True
        elif inside and cells[0] and not cells[0].startswith("---"):
            yield (*(cell.strip("`") for cell in cells[:3]), *cells[3:])


class Exceptions(unittest.TestCase):
    maxDiff = None

    def test_the_page_has_each_text_that_the_writer_throws_and_no_other(self):
        thrown = thrown_by_the_writer()
        self.assertGreater(len(thrown), 30)
        listed = [row[:3] for row in rows(["Class", "Code", "Text"])]
        self.assertEqual(len(listed), len(set(listed)), "a row comes twice")
        self.assertEqual(sorted(thrown), sorted(listed))

    def test_each_throw_of_the_writer_has_a_form_that_this_test_reads(self):
        form = r"QEL_THROW\((?:Qel::)?Exception::\w+\(.*?\)\);|\bthrow std::\w+\(.*?\);"
        read = sum(len(re.findall(form, text, re.S)) for text in sources("src"))
        throws = sum(len(re.findall(r"^\s*(?:QEL_THROW\(|throw\b(?!;))", text, re.M)) for text in sources("src"))
        self.assertEqual(throws, read)

    def test_the_page_has_each_code_of_the_reader_with_its_text(self):
        codes = codes_of_the_reader()
        header = (pages.ROOT / "reader/include/MoxReader/Error.h").read_text(encoding="utf-8")
        enumerators = re.search(r"enum class ErrorCode \{(.*?)\n\};", header, re.S)[1]
        self.assertEqual(len(re.findall(r"(?m)^    \w+,", enumerators)), len(codes))
        self.assertEqual(sorted(codes), sorted(row[:2] for row in rows(["Code", "Text", "From"])))

    def test_the_reader_throws_nothing_but_its_error_and_bad_alloc(self):
        for text in sources("reader/src", "reader/include"):
            for thrown in re.findall(r"\bthrow ([^;]*);", re.sub(r"//.*", "", text)):
                self.assertRegex(thrown, r"^(Error\(|std::bad_alloc\(|damage_ \?|stream\.damage\(\) \?|\*stream\.damage"
                                         r"|error\.inRecord|openError\(|blockError\()")

    def test_each_call_that_the_page_names_is_a_call(self):
        header = (pages.ROOT / "include/Qel/Mox2/Model.h").read_text(encoding="utf-8")
        named = set()
        for row in rows(["Class", "Code", "Text", "From"]):
            named |= set(re.findall(r"`(\w+)`", row[3])) - {"StepList"}
        self.assertGreater(len(named), 6)
        for name in sorted(named):
            self.assertRegex(header, rf"\b{name}\(", name)


if __name__ == "__main__":
    unittest.main()
