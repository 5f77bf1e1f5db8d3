"""The small changes that mutate.py makes to a source of the library."""

import re
from collections import Counter
from dataclasses import dataclass, replace
from pathlib import Path

from pygments.lexers import CppLexer
from pygments.token import Comment, Number, String, Token

# clang-format sets blanks around binary operators and none within template arguments.
OPERATORS = {
    " < ": [" <= ", " > "],
    " <= ": [" < ", " >= "],
    " > ": [" >= ", " < "],
    " >= ": [" > ", " == "],
    " == ": [" != "],
    " != ": [" == "],
    " && ": [" || "],
    " || ": [" && "],
    " + ": [" - "],
    " - ": [" + "],
    " * ": [" + "],
    " / ": [" * "],
    " % ": [" / "],
    " += ": [" -= ", " = "],
    " -= ": [" += "],
    " |= ": [" = ", " &= "],
    " | ": [" & "],
    " & ": [" | "],
    " ^ ": [" | "],
    " << ": [" >> "],
    " >> ": [" << "],
    " ? ": [" ? !"],
}
# What a slip of the pen or of the mind puts in each other's place, in both directions.
CONFUSABLE = [
    ("std::min", "std::max"),
    ("front()", "back()"),
    ("begin()", "end()"),
    ("starts_with", "ends_with"),
    ("find", "rfind"),
    ("insert_or_assign", "emplace"),
    ("SetCurrentId", "PutCurrentId"),
    ("assertNotEmpty", "assertOpenedForWriting"),
    ("AddGroupNode", "AddShapeNode"),
    ("GetSize", "GetPosition"),
    ("GetSize", "GetCapacity"),
    ("Put", "Append"),
    ("rows", "cols"),
    ("rows", "size"),
    ("size_", "position_"),
    ("size_", "capacity_"),
    ("id", "parent"),
    ("previous", "next"),
    ("firstChild", "lastChild"),
    ("nextId_", "currentId_"),
    ("length", "uncompressedLength"),
    ("frozen", "released"),
    ("BlockCompressed", "BlockFreezable"),
    ("EmptyBlockName", "IndexBlockName"),
    ("HeadRecords", "IndexBlockRecords"),
    ("indexSize_", "indexPosition_"),
    ("lightData", "heavyData"),
    ("lightData", "attributes"),
    ("sourceName", "sourceVersion"),
    ("SourceName", "SourceVersion"),
    ("openedForReading_", "openedForWriting_"),
    ("group", "shape"),
    ("std::uint32_t", "std::uint64_t"),
    ("continue", "break"),
    ("GeometryVersion", "GeometryWithNarrowPositions"),
    ("integer", "real"),
    ("first", "second"),
    ("diffuse_", "specular_"),
    ("emissive_", "ambient_"),
]
EXCEPTIONS = [
    "MiscelleneousException",
    "InvalidArguments",
    "FileOpenException",
    "FileWriteException",
    "OutOfBounds",
    "OverflowError",
    "UnderflowError",
    "KeyNotFound",
    "MemoryAllocationException",
    "InvalidObjectState",
    "TemplateSpecializationNotDefined",
    "NotYetImplemented",
]
# Conditions of the preprocessor that never and always hold where this runs.
NEVER_HOLDS = "defined(_WIN32)"
ALWAYS_HOLDS = "defined(QEL_HAS_SSE2)"
STATEMENT = re.compile(r"^(?P<indent> {4,})(?P<text>(?:[A-Za-z_*(+][^{}]*);)$")
# These introduce a name, leave the function with a value or belong to a class.
NOT_A_STATEMENT = re.compile(
    r"^(?:return .*|case|default|using|namespace|static_assert|friend|typedef|constexpr|extern|"
    r"template|public|private|virtual|explicit|~|else)\b"
)
DECLARATION = re.compile(r"^(?:const |static |std::)?[\w:<>,*& ]+[*& ]\w+(?: = .*|\(.*\)|\{.*\})?;$")
CONDITION = re.compile(r"^ *(?:\} else )?(?:if|while) \((?P<text>.*)\) \{$")


@dataclass(frozen=True)
class Mutant:
    path: str  # below the root
    line: int  # from 1
    kind: str
    before: tuple  # the lines that change
    after: tuple  # as many lines in their place
    place: int = 1  # among the equal mutants of equal lines of the source, from 1

    def key(self):
        """Names the mutant without the number of its line, so that it holds while the source moves."""
        place = f" | {self.place}" if self.place > 1 else ""
        return f"{self.path} | {joined(self.before)} | {joined(self.after)}{place}"

    def __str__(self):
        return f"{self.path}:{self.line}: {self.kind}\n  - {joined(self.before)}\n  + {joined(self.after)}"

    def applied(self, lines):
        start = self.line - 1
        return lines[:start] + list(self.after) + lines[start + len(self.after) :]


def joined(lines):
    return " ".join(line.strip() for line in lines)


class Source:
    """A source file, and the mutants that can be made of it."""

    def __init__(self, root, path):
        self.path = path
        self.text = (Path(root) / path).read_text(encoding="utf-8")
        self.lines = self.text.split("\n")
        self.starts = [0]
        for line in self.lines:
            self.starts.append(self.starts[-1] + len(line) + 1)
        self.is_code = bytearray(b"\1" * (len(self.text) + 1))
        self.numbers = []
        for start, kind, value in CppLexer(stripnl=False, ensurenl=False).get_tokens_unprocessed(self.text):
            if kind in Comment or kind in String or kind in Token.Comment.Preproc:
                self.is_code[start : start + len(value)] = b"\0" * len(value)
            elif kind in Number:
                self.numbers.append((start, kind, value))
        self.left_out = self.lines_left_out()

    def lines_left_out(self):
        """The lines, from 1, that the preprocessor leaves out."""
        found, conditions = set(), []
        for number, line in enumerate(self.lines, 1):
            if line.startswith("#if"):
                is_known = NEVER_HOLDS in line or ALWAYS_HOLDS in line
                conditions.append(ALWAYS_HOLDS in line if is_known else None)
            elif line.startswith("#else") and conditions[-1] is not None:
                conditions[-1] = not conditions[-1]
            elif line.startswith("#endif"):
                conditions.pop()
            elif False in conditions:
                found.add(number)
        return found

    def mutants(self):
        seen, found = set(), []
        for mutant in self.all_mutants():
            place = (mutant.line, mutant.after)
            if mutant.before != mutant.after and place not in seen and mutant.line not in self.left_out:
                seen.add(place)
                found.append(mutant)
        places = Counter()
        for mutant in sorted(found, key=lambda mutant: mutant.line):
            places[mutant.key()] += 1
            yield replace(mutant, place=places[mutant.key()])

    def all_mutants(self):
        yield from self.replaced_operators()
        yield from self.changed_numbers()
        yield from self.changed_texts()
        yield from self.changed_conditions()
        yield from self.confused_names()
        yield from self.changed_exceptions()
        yield from self.swapped_arguments()
        yield from self.removed_else()
        yield from self.removed_statements()
        yield from self.swapped_statements()

    def line_of(self, place):
        low, high = 0, len(self.lines)
        while high - low > 1:
            middle = (low + high) // 2
            low, high = (middle, high) if self.starts[middle] <= place else (low, middle)
        return low

    def replaced(self, kind, start, end, new):
        line = self.line_of(start)
        text = self.lines[line]
        if text.lstrip().startswith("#"):
            return
        offset = self.starts[line]
        yield Mutant(self.path, line + 1, kind, (text,), (text[: start - offset] + new + text[end - offset :],))

    def places(self, pattern):
        for match in re.finditer(pattern, self.text):
            if self.is_code[match.start()] and self.is_code[match.end() - 1]:
                yield match

    def replaced_operators(self):
        for operator, others in OPERATORS.items():
            for match in self.places(re.escape(operator)):
                for other in others:
                    yield from self.replaced("operator", match.start(), match.end(), other)
        for match in self.places(r"\+\+|--"):
            yield from self.replaced("operator", match.start(), match.end(), "--" if match[0] == "++" else "++")

    def changed_numbers(self):
        for start, kind, value in self.numbers:
            if kind is Number.Float:
                digits = re.match(r"[\d.]+", value)
                yield from self.replaced("number", start, start + digits.end(), str(float(digits[0]) + 0.1))
                continue
            digits = re.match(r"0[xX][0-9a-fA-F']+|[\d']+", value)
            if not digits:
                continue
            number = int(digits[0].replace("'", ""), 0)
            for other in {number + 1, number - 1} if number > 0 else {1}:
                yield from self.replaced("number", start, start + digits.end(), str(other))

    def changed_texts(self):
        for match in re.finditer(r'"((?:[^"\\\n]|\\.)*)"', self.text):
            if self.is_code[match.start()]:
                continue
            line = self.line_of(match.start())
            if "//" in self.lines[line][: match.start() - self.starts[line]]:
                continue
            inner = match[1]
            other = inner[:-1] if inner and inner[-2:-1] != "\\" else inner + "x"
            yield from self.replaced("text", match.start(1), match.end(1), other)

    def changed_conditions(self):
        for match in self.places(r"\btrue\b|\bfalse\b"):
            yield from self.replaced("condition", *match.span(), "false" if match[0] == "true" else "true")
        for match in self.places(r"!(?=[\w(])"):
            yield from self.replaced("condition", match.start(), match.end(), "")
        for number, line in enumerate(self.lines):
            match = CONDITION.match(line)
            if not match or not self.is_code[self.starts[number] + match.start("text")]:
                continue
            condition, start = match["text"], self.starts[number] + match.start("text")
            if ";" in condition:  # what stands before it is a declaration
                first = condition.index(";") + 2
                condition, start = condition[first:], start + first
            for other in ["true", "false", f"!({condition})", *operands(condition)]:
                yield from self.replaced("condition", start, start + len(condition), other)

    def confused_names(self):
        for one, other in CONFUSABLE:
            for before, after in ((one, other), (other, one)):
                for match in self.places(rf"(?<![\w:]){re.escape(before)}(?!\w)"):
                    yield from self.replaced("name", match.start(), match.end(), after)

    def changed_exceptions(self):
        for match in self.places(r"(?<=Exception::)(\w+)(?=\()"):
            if match[0] in EXCEPTIONS:
                other = EXCEPTIONS[(EXCEPTIONS.index(match[0]) + 1) % len(EXCEPTIONS)]
                yield from self.replaced("exception", match.start(), match.end(), other)

    def swapped_arguments(self):
        argument = r"[\w:.*&\[\]>\-]+(?:\(\))?"
        for match in self.places(rf"(?<=[(,]) ?({argument}), ({argument})(?=[,)])"):
            blank = " " if match[0].startswith(" ") else ""
            yield from self.replaced("arguments", *match.span(), f"{blank}{match[2]}, {match[1]}")

    def removed_else(self):
        for match in self.places(r"\} else \{"):
            yield from self.replaced("else", match.start(), match.end(), "} {")

    def statements(self):
        for number, line in enumerate(self.lines):
            match = STATEMENT.match(line)
            if not match or not self.is_code[self.starts[number] + len(match["indent"])]:
                continue
            text = match["text"]
            if NOT_A_STATEMENT.match(text) or text.count("(") != text.count(")"):
                continue
            if self.path.endswith(".h") and len(match["indent"]) < 8:  # a member's declaration
                continue
            if self.ends_a_statement(number - 1):
                yield number, match["indent"], text

    def ends_a_statement(self, number):
        before = self.lines[number].strip()
        return before == "" or before.startswith("//") or before.endswith(("{", "}", ";", ":"))

    def removed_statements(self):
        for number, indent, text in self.statements():
            if not DECLARATION.match(text):
                yield Mutant(self.path, number + 1, "left out", (indent + text,), (indent + ";",))

    def swapped_statements(self):
        before = None
        for number, indent, text in self.statements():
            if (
                before
                and before[:2] == (number - 1, indent)
                and not (DECLARATION.match(text) and DECLARATION.match(before[2]))
            ):
                lines = (indent + before[2], indent + text)
                yield Mutant(self.path, number, "swapped", lines, lines[::-1])
            before = (number, indent, text)


def operands(condition):
    """Yields a condition of one operator `&&` or `||` without each of its operands in turn."""
    for operator in (" && ", " || "):
        if operator in condition and (" || " if operator == " && " else " && ") not in condition:
            parts = condition.split(operator)
            for left_out in range(len(parts)):
                rest = parts[:left_out] + parts[left_out + 1 :]
                if all(part.count("(") == part.count(")") for part in parts):
                    yield operator.join(rest)
